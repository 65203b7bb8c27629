// The plots of a trace as SVG.
#pragma once

#include "tools/plot/plot_data.h"
#include "tools/plot/svg_chart.h"

namespace quern {

// At most 60 kB: joins cells of the grid.
svg_chart draw_addresses(plot_data& data);
svg_chart draw_footprint(const plot_data& data);
svg_chart draw_strides(const plot_data& data);
svg_chart draw_reuse(const plot_data& data);
svg_chart draw_places(const plot_data& data);

}  // namespace quern
