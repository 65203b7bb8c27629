// Is every base SVE instruction found, and nothing else? The assembler says what base SVE is.
#include <gtest/gtest.h>

#include "differences.h"
#include "sampling.h"
#include "sve/decoder/decode_map.h"
#include "sve/decoder/sve_utils.h"
#include "toolchain.h"

namespace quern::test {
namespace {

constexpr std::uint32_t sve_space = 0b0010u << 25, sve_space_mask = 0b1111u << 25;

// Complains of the words on which the decoder and the assembler disagree, and no known difference says why.
class judge {
 public:
  ~judge() {
    if (disagreements_ > most_shown) ADD_FAILURE() << disagreements_ << " disagreements in all";
  }

  void compare(std::span<const std::uint32_t> words) {
    const std::vector<std::string> lines = disassemble(words);
    const std::vector<bool> known = assembles_as_base_sve(lines);
    for (std::size_t i = 0; i != words.size(); ++i) compare(words[i], lines[i], known[i]);
  }

  std::size_t known_count() const { return known_; }

 private:
  static constexpr std::size_t most_shown = 20;

  void compare(std::uint32_t word, const std::string& line, bool known) {
    known_ += known;
    const bool found = get_sve_handler(word) != nullptr;
    if (found == known) return;
    if (found && is_in(claimed_beyond_the_architecture(), word)) return;
    if (++disagreements_ > most_shown) return;
    const decoded_word decoded = decode_word(word);
    ADD_FAILURE() << std::hex << word << (line.empty() ? " is no instruction" : ": " + line)
                  << (known ? " is base SVE" : " is not base SVE") << ", and "
                  << (found ? decoded.row->name.c_str() : "no row") << " claims it";
  }

  std::size_t disagreements_ = 0, known_ = 0;
};

TEST(Toolchain, TellsBaseSveFromTheRest) {
  const std::string lines[] = {"add z0.b, z1.b, z2.b", "eor3 z0.d, z0.d, z1.d, z2.d", "nonsense", "", "setffr"};
  EXPECT_EQ(assembles_as_base_sve(lines), (std::vector<bool>{true, false, false, false, true}));
  const std::uint32_t words[] = {0x04220020, 0x04600000, 0x252C9000};
  EXPECT_EQ(disassemble(words), (std::vector<std::string>{"add z0.b, z1.b, z2.b", "add z0.h, z0.h, z0.h", "setffr"}));
}

TEST(Completeness, TheDecoderFindsBaseSveAndNothingElseInRandomWords) {
  constexpr std::size_t chunks = 8, chunk_words = 262'144;  // over two million words
  word_source random(28'25);
  judge all;
  std::vector<std::uint32_t> words(chunk_words);
  for (std::size_t chunk = 0; chunk != chunks; ++chunk) {
    for (std::uint32_t& word : words) word = (static_cast<std::uint32_t>(random()) & ~sve_space_mask) | sve_space;
    all.compare(words);
  }
  EXPECT_GT(all.known_count(), chunks * chunk_words / 3);  // about half of the space is base SVE
}

// Random words seldom come near the forms with few open bits: these differ from a row in one fixed bit.
TEST(Completeness, TheDecoderFindsBaseSveAndNothingElseNextToEveryRow) {
  word_source random(1483);
  std::vector<std::uint32_t> words;
  for (const decode_map& map : decode_maps()) {
    const std::uint32_t mask = map.key.mask();
    for (const decode_row& row : map.rows)
      for (std::uint32_t rest = mask; rest != 0; rest &= rest - 1)
        for (int i = 0; i != 4; ++i)
          words.push_back((row.value ^ (rest & -rest)) | (static_cast<std::uint32_t>(random()) & ~mask));
  }
  std::erase_if(words, [](std::uint32_t word) { return (word & sve_space_mask) != sve_space; });
  judge{}.compare(words);
}

// Known differences that are none, or no longer one, would hide mistakes.
TEST(Completeness, EachKnownDifferenceIsOne) {
  word_source random(7);
  for (const difference& d : claimed_beyond_the_architecture()) {
    const auto words = words_of_pattern(d.words.mask, d.words.value, 40, random);
    const auto lines = disassemble(words);
    const auto known = assembles_as_base_sve(lines);
    for (std::size_t i = 0; i != words.size(); ++i) {
      EXPECT_NE(get_sve_handler(words[i]), nullptr) << std::hex << words[i] << " is claimed by no row: " << d.reason;
      EXPECT_TRUE(!known[i] || is_in(taken_by_a_lax_assembler(), words[i])) << lines[i] << ": " << d.reason;
    }
  }
}

TEST(Completeness, NoWordOutsideTheSveSpaceIsFound) {
  word_source random(31);
  for (int i = 0; i != 250'000; ++i) {
    const auto word = static_cast<std::uint32_t>(random());
    if ((word & sve_space_mask) == sve_space) continue;
    ASSERT_EQ(get_sve_handler(word), nullptr) << std::hex << word;
  }
}

}  // namespace
}  // namespace quern::test
