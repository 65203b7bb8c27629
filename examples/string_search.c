// Where a word stands in a text: a loop over all places compares the word's first and last letters, 256 places at a
// time, and the few places where both are right are compared in full.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <quern/roi.h>

enum { TEXT = 32768 };

static char text[TEXT];
static uint8_t likely[TEXT];

__attribute__((noinline)) static void mark_likely(const char* restrict in, uint8_t* restrict marks, size_t places,
                                                  const char* word, size_t length) {
  const char first = word[0], last = word[length - 1];
  for (size_t i = 0; i < places; ++i) marks[i] = (in[i] == first) & (in[i + length - 1] == last);
}

static size_t count_likely(size_t places, const char* word, size_t length, size_t* compared) {
  size_t found = 0;
  for (size_t i = 0; i < places; ++i) {
    if (!likely[i]) continue;
    ++*compared;
    found += memcmp(text + i, word, length) == 0;
  }
  return found;
}

int main(void) {
  static const char word[] = "vector";
  static const char* const words[] = {"a ",         "vector ", "visor ", "vapour ", "lanes, ", "a vectorised loop ",
                                      "varies for "};
  size_t written = 0, compared = 0, wanted = 0;
  uint32_t seed = 7;
  while (written < TEXT - 32) {
    seed = seed * 1664525 + 1013904223;
    const char* const next = words[(seed >> 16) % (sizeof words / sizeof *words)];
    wanted += strstr(next, word) != NULL;
    memcpy(text + written, next, strlen(next));
    written += strlen(next);
  }
  const size_t length = strlen(word), places = TEXT - length + 1;
  quern_roi_begin();
  mark_likely(text, likely, places, word, length);
  quern_roi_end();
  const size_t found = count_likely(places, word, length, &compared);
  printf("\"%s\" stands %zu times among %zu likely places, %s\n", word, found, compared,
         found == wanted ? "right" : "WRONG");
  return found != wanted;
}
