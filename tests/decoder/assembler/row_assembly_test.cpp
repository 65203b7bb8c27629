// Every row's words, as the row binds them, against the disassembler.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "canonical.h"
#include "differences.h"
#include "sampling.h"
#include "sve/decoder/decode_map.h"
#include "toolchain.h"
#include "tools/assembly/assembly_form.h"

namespace quern::test {
namespace {

struct sample {
  const decode_row* row;
  std::uint32_t word;
};

std::vector<sample> samples_of_all_rows() {
  word_source random(20481);
  std::vector<sample> samples;
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows)
      for (const std::uint32_t word : words_of_pattern(map.key.mask(), row.value, 40, random))
        samples.push_back({&row, word});
  return samples;
}

std::string hexadecimal(std::uint32_t word) {
  char text[12];
  std::snprintf(text, sizeof text, "%08x", word);
  return text;
}

TEST(RowAssembly, EveryRowReadsItsWordsAsTheDisassemblerDoes) {
  const std::vector<sample> samples = samples_of_all_rows();
  std::vector<std::uint32_t> words;
  for (const sample& s : samples) words.push_back(s.word);
  const std::vector<std::string> lines = disassemble(words);

  std::set<const decode_row*> compared, failed;
  for (std::size_t i = 0; i != samples.size(); ++i) {
    const auto& [row, word] = samples[i];
    if (failed.contains(row)) continue;  // one complaint a row
    if (is_in(claimed_beyond_the_architecture(), word)) continue;
    std::string text;
    try {
      text = assembly_of(*row, word);
    } catch (const std::runtime_error& error) {
      text = error.what();
    }
    if (canonical(text) != canonical(lines[i])) {
      failed.insert(row);
      ADD_FAILURE() << row->name.view() << " reads " << hexadecimal(word) << " as '" << canonical(text)
                    << "', the disassembler as '" << canonical(lines[i]) << "'";
    }
    compared.insert(row);
  }
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows)
      EXPECT_TRUE(compared.contains(&row)) << "no word of " << row.name.view() << " was compared";
}

// A form that no row uses is a name spelt wrong, or a row that is missing.
TEST(RowAssembly, EveryFormIsTheFormOfSomeRow) {
  std::set<const assembly_form*> used;
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows) used.insert(&form_of(row));
  EXPECT_EQ(used.size(), form_count());
}

TEST(CanonicalAssembly, SpellsEqualThingsAlike) {
  constexpr struct {
    const char *written, *canonical;
  } cases[] = {
      {"ld3b {z31.b-z1.b}, p0/z, [x0]", "ld3b {z31.b, z0.b, z1.b}, p0/z, [x0]"},
      {"ld2b {z3.b, z4.b}, p0/z, [x0, #-4, mul vl]", "ld2b {z3.b, z4.b}, p0/z, [x0, #-4, mul vl]"},
      {"ldr z0, [sp, #0, mul vl]", "ldr z0, [sp]"},
      {"ld1rw {z0.d}, p0/z, [x1, #0]", "ld1rw {z0.d}, p0/z, [x1]"},
      {"incb x0, all, mul #1", "incb x0"},
      {"incb x0, all, mul #2", "incb x0, all, mul #2"},
      {"incb x0, vl16, mul #1", "incb x0, vl16"},
      {"ptrue p0.b, #0x14", "ptrue p0.b, #20"},
      {"dupm z0.h, #0xff", "dupm z0.d, #71777214294589695"},
      {"and z1.b, z1.b, #0x1", "and z1.d, z1.d, #72340172838076673"},
      {"and z1.d, z1.d, z2.d", "and z1.d, z1.d, z2.d"},
      {"fdup z0.s, #1.500000000000000000e+00", "fdup z0.s, #1.5f"},
      {"fdup z0.s, #-0.125", "fdup z0.s, #-0.125f"},
  };
  for (const auto& [written, expected] : cases) EXPECT_EQ(canonical(written), expected);
}

}  // namespace
}  // namespace quern::test
