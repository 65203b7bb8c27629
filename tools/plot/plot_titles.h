// What each plot shows, in a line.
#pragma once

#include <string>

#include "tools/plot/plot_data.h"

namespace quern {

struct plot_title {
  std::string title, subtitle;
};

plot_title addresses_title(const plot_data& data);
plot_title footprint_title(const plot_data& data);
plot_title strides_title(const plot_data& data);
plot_title reuse_title(const plot_data& data);
plot_title places_title(const plot_data& data);

// How long a window of the footprint is: "8.19 k records".
std::string window_text(const plot_data& data);

}  // namespace quern
