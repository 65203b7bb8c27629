// All functions of the vector library.
#pragma once

#include "sve/veclib/integer/arithmetic.h"
