// Digests of what instructions leave.
#include "tests/digest/digest_table.h"

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tests/random_cases/random_source.h"
#include "tests/random_cases/test_case.h"

namespace quern {
namespace {

constexpr std::uint64_t cases_per_row = 20;

template <class T>
void add(std::uint64_t& digest, const T& value) {
  digest = hash_bytes(digest, &value, sizeof value);
}

// Field by field: between them there may be padding.
void add_outcome(std::uint64_t& digest, const test_case& c) {
  add(digest, c.state.x);
  add(digest, c.state.sp);
  add(digest, c.state.nzcv);
  add(digest, c.state.fpsr);
  add(digest, c.state.z);
  add(digest, c.state.p);
  add(digest, c.state.ffr);
  if (c.has_memory) digest = hash_bytes(digest, arena(), arena_bytes);
}

[[noreturn]] void give_up(const char* path, const char* why) {
  std::fprintf(stderr, "%s: %s\n", path, why);
  std::exit(EXIT_FAILURE);
}

}  // namespace

digest_table compute_digests() {
  digest_table table;
  const auto c = std::make_unique<test_case>();
  for (const case_row& r : all_rows()) {
    if (r.row->way == route::none) continue;
    std::uint64_t& digest = table.try_emplace(std::string(r.row->routine()), hash_start).first->second;
    for (std::uint64_t seed = 0; seed != cases_per_row; ++seed) {
      make_case(r, seed, *c);
      if (c->has_memory) std::memcpy(arena(), c->memory, arena_bytes);
      run_thunk(*r.row, c->word, c->state);
      add_outcome(digest, *c);
    }
  }
  return table;
}

digest_table read_digests(const char* path) {
  std::FILE* const file = std::fopen(path, "r");
  if (file == nullptr) give_up(path, std::strerror(errno));
  digest_table table;
  char name[64];
  std::uint64_t digest;
  int fields;
  while ((fields = std::fscanf(file, "%63s %" SCNx64, name, &digest)) == 2) table[name] = digest;
  if (fields != EOF) give_up(path, "a line is not a name and a hexadecimal number");
  std::fclose(file);
  return table;
}

void write_digests(const char* path, const digest_table& table) {
  std::FILE* const file = std::fopen(path, "w");
  if (file == nullptr) give_up(path, std::strerror(errno));
  for (const auto& [name, digest] : table) std::fprintf(file, "%s %016" PRIx64 "\n", name.c_str(), digest);
  if (std::fclose(file) != 0) give_up(path, std::strerror(errno));
}

}  // namespace quern
