// All functions of the vector library.
#pragma once

#include "sve/veclib/integer/address.h"
#include "sve/veclib/integer/divide.h"
#include "sve/veclib/integer/integer_arithmetic.h"
#include "sve/veclib/integer/integer_compare.h"
#include "sve/veclib/integer/integer_logic.h"
#include "sve/veclib/integer/integer_unary.h"
#include "sve/veclib/integer/multiply.h"
#include "sve/veclib/integer/reduce.h"
#include "sve/veclib/integer/shift.h"
#include "sve/veclib/predicate/element_count.h"
#include "sve/veclib/predicate/first_fault_register.h"
#include "sve/veclib/predicate/predicate_break.h"
#include "sve/veclib/predicate/predicate_constant.h"
#include "sve/veclib/predicate/predicate_flags.h"
#include "sve/veclib/predicate/predicate_logic.h"
#include "sve/veclib/predicate/while_loop.h"
