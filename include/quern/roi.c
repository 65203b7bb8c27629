// quern_roi_begin() and quern_roi_end() as functions to link, for languages that can't include the header.
#define QUERN_ROI_FUNCTION
#include "roi.h"
