// Names that this host takes over from the C library. All else in the shared object is hidden, so that none of it meets
// a name of the application.
#pragma once

#define QUERN_EXPORT extern "C" __attribute__((visibility("default")))
