// The places of SVE instructions, counted for `quern run`.
#pragma once

#include "sve/client/framework.h"
#include "sve/report/place_counts.h"

namespace quern {

// Maps the report that quern run asks for.
void open_client_report();

// Tells of a signal that meets the application: of a fault, which may end it, and of a word that can't be emulated.
// Ends the process there if the user wants that.
void report_signal(const dr_siginfo_t& info);

}  // namespace quern
