// A double of the framework's extension that reserves registers: the client knows its end only.
#pragma once

enum drreg_status_t { DRREG_SUCCESS = 0, DRREG_ERROR = 1 };

drreg_status_t drreg_exit();
