// The same bits on every platform: each routine's results on fixed cases have the digest of the committed
// table.
//
// When a routine's behaviour is changed on purpose, or one is added, the target update_digests writes the table anew
// (cmake --build build/native --target update_digests); the other platform's run of this test then judges it.
#include <gtest/gtest.h>

#include "tests/digest/digest_table.h"

namespace quern {
namespace {

const char* table_path = nullptr;

std::string text(const digest_table& table, const std::string& name) {
  const auto entry = table.find(name);
  if (entry == table.end()) return "none";
  char digits[24];
  std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(entry->second));
  return digits;
}

TEST(Digests, AreTheCommittedOnes) {
  const digest_table here = compute_digests(), committed = read_digests(table_path);
  digest_table all = here;
  all.insert(committed.begin(), committed.end());
  for (const auto& [name, digest] : all)
    EXPECT_EQ(text(here, name), text(committed, name))
        << name << ": here, and in " << table_path
        << "\nIf that is meant: cmake --build build/native --target update_digests";
}

}  // namespace
}  // namespace quern

// digest_tests TABLE checks; digest_tests --write TABLE writes.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc == 3 && std::string(argv[1]) == "--write") {
    quern::write_digests(argv[2], quern::compute_digests());
    return 0;
  }
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s [--write] TABLE\n", argv[0]);
    return 2;
  }
  quern::table_path = argv[1];
  return RUN_ALL_TESTS();
}
