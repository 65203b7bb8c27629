// The plots of a trace as one page that needs nothing else.
#pragma once

#include <string>

#include "tools/plot/plot_data.h"

namespace quern {

// Joins cells of the grid where there are too many for a page.
std::string draw_page(plot_data& data);

}  // namespace quern
