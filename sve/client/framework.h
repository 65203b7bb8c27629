// The framework's interface: the one place that includes its headers.
#pragma once
#pragma GCC system_header  // they do not compile without warnings

#include <dr_api.h>
#include <drmgr.h>
#include <drreg.h>
