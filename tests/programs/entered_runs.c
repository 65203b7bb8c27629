// A run whose middle is branched to, from elsewhere: the word there is met within the run first, and then on its own.
#include <stdint.h>

#include "counting_run.h"
#include "program.h"

enum { ROUNDS = 50, WORDS_BEFORE = 4 };

// Whether the emulator has put a branch in the place of a word: on a processor with SVE, never.
static bool is_branch(const void* place) { return *(const volatile uint32_t*)place >> 26 == 5; }

static bool counts(uint64_t count(void), uint64_t words) {
  bool right = true;
  for (int i = 0; i != ROUNDS; ++i) right = count() == words && right;
  return right;
}

int main(void) {
  check("from the start", counts(count_by_run, COUNTED_WORDS));
  check("one place for the run", !is_branch(counting_run_middle));
  check("from within", counts(count_from_within, COUNTED_WORDS - WORDS_BEFORE));
  check("from the start, again", counts(count_by_run, COUNTED_WORDS));
  check("places of their own", is_branch(counting_run_middle) == is_branch(counting_start));
  return finish("entered_runs");
}
