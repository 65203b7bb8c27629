// Which words the decoder knows, and as what.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/sve_utils.h"

namespace quern {
namespace {

struct lookup_case {
  std::uint32_t word;
  std::string_view name;  // empty: no instruction of ours
  std::string_view map;
};

const lookup_case cases[] = {
    {0x252C9000, "VecPClearFFSR", "decode_map__31_0"},
    {0x04000000, "VecU8AddVVM", "decode_map__31_13"},
    {0x04001FFF, "VecU8AddVVM", "decode_map__31_13"},
    {0x04200000, "VecU8AddVVX", "decode_map__31_21__15_10"},
    {0x04600000, "VecU16AddVVX", "decode_map__31_21__15_10"},
    {0x04A00000, "VecU32AddVVX", "decode_map__31_21__15_10"},
    {0x04E00000, "VecU64AddVVX", "decode_map__31_21__15_10"},
    {0x84408000, "VecU8LoadDup1SIZ", "decode_map__31_22__15_13"},
    {0xA400A000, "VecU8CLoad1SIZ", "decode_map__31_20__15_13"},  // bit 31 set: spaces 0x84, 0xA4, 0xC4 and 0xE4
    {0xC4004000, "VecU64Load1YVSZ", "decode_map__31_21__15_13"},
    {0xE400E000, "VecU8CStore1SIZ", "decode_map__31_20__15_13"},
    {0xD503201F, "", ""},  // NOP
    {0x00000000, "", ""},
    {0xFFFFFFFF, "", ""},
    {0x04000000 | 0b000010 << 16, "", ""},        // the operation field has no such code
    {0x04140000, "", ""},                         // SDIV of bytes
    {0x05208000 | 0b00 << 22 | 1 << 16, "", ""},  // COMPACT of bytes
    {0x65000000, "", ""},                         // FADD of no format
    {0x44000000, "", ""},                         // SDOT into bytes
};

TEST(Lookup, KnowsTheWord) {
  for (const lookup_case& c : cases) {
    const decoded_word found = decode_word(c.word);
    EXPECT_EQ(found.row == nullptr ? "" : found.row->name.view(), c.name) << std::hex << c.word;
    EXPECT_EQ(found.map == nullptr ? "" : std::string_view{found.map->name}, c.map) << std::hex << c.word;
    EXPECT_EQ(get_sve_handler(c.word), found.row == nullptr ? nullptr : found.row->thunk) << std::hex << c.word;
  }
}

struct key_case {
  std::string_view name, map;
  int key;
};

const key_case keys[] = {
    {"VecPClearFFSR", "decode_map__31_0", 0x252C9000},        {"VecU8AddVVM", "decode_map__31_13", 0x2000},
    {"VecU8AddVVX", "decode_map__31_21__15_10", 0x840},       {"VecU16AddVVX", "decode_map__31_21__15_10", 0x8C0},
    {"VecU32AddVVX", "decode_map__31_21__15_10", 0x940},      {"VecU64AddVVX", "decode_map__31_21__15_10", 0x9C0},
    {"VecU8LoadDup1SIZ", "decode_map__31_22__15_13", 0x108C},
};

TEST(Lookup, GoesByTheKeysOfTheMapsNames) {
  for (const key_case& c : keys) {
    const auto map = std::ranges::find(decode_maps(), c.map, &decode_map::name);
    const auto row = std::ranges::find(map->rows, c.key, &decode_row::key);
    ASSERT_NE(row, map->rows.end()) << c.name;
    EXPECT_EQ(row->name.view(), c.name);
  }
}

TEST(Lookup, HasOneWordForTheInstructionWithoutOperands) {
  const sve_handler setffr = get_sve_handler(0x252C9000);
  ASSERT_NE(setffr, nullptr);
  for (int bit = 0; bit != 32; ++bit) EXPECT_NE(get_sve_handler(0x252C9000 ^ 1u << bit), setffr) << bit;
}

// No map before the last but one claims a word of LD1RB.
TEST(Lookup, FindsBroadcastsInTheirMapAlone) {
  for (std::uint32_t fields = 0; fields < 1 << 19; fields += 37) {
    const std::uint32_t word = 0x84408000 | (fields & 0x1FFF) | (fields >> 13) << 16;
    int holders = 0;
    for (const decode_map& map : decode_maps()) holders += map.map->contains(map.key.of(word)) ? 1 : 0;
    ASSERT_EQ(holders, 1) << std::hex << word;
    ASSERT_STREQ(decode_word(word).map->name, "decode_map__31_22__15_13");
  }
}

// The thunk that holds a word, asked of each map: two claims would show here.
sve_handler only_holder(std::uint32_t word) {
  sve_handler holder = nullptr;
  for (const decode_map& map : decode_maps()) {
    const auto found = map.map->find(map.key.of(word));
    if (found == map.map->end()) continue;
    EXPECT_EQ(holder, nullptr) << std::hex << word;
    holder = found->second;
  }
  return holder;
}

void expect_thunk(const decode_row& row, std::uint32_t word) {
  ASSERT_EQ(get_sve_handler(word), row.thunk) << row.name.view() << ' ' << std::hex << word;
  ASSERT_EQ(only_holder(word), row.thunk) << row.name.view() << ' ' << std::hex << word;
}

// Keys leave the open bits out, so each of them alone, set and clear, stands for all their values.
TEST(Lookup, YieldsTheRowWhateverStandsOutsideTheKey) {
  for (const decode_map& map : decode_maps()) {
    const std::uint32_t open = ~map.key.mask();
    for (const decode_row& row : map.rows) {
      expect_thunk(row, row.value);
      expect_thunk(row, row.value | open);
      for (std::uint32_t left = open; left != 0; left &= left - 1) {
        const std::uint32_t bit = left & (0 - left);
        expect_thunk(row, row.value | bit);
        expect_thunk(row, row.value | (open ^ bit));
      }
    }
  }
}

TEST(Lookup, YieldsTheRowForAllWordsOfAPattern) {
  const sve_handler add = get_sve_handler(0x04000000);
  for (std::uint32_t fields = 0; fields != 8192; ++fields) ASSERT_EQ(get_sve_handler(0x04000000 | fields), add);
}

// ADD has all sizes, SDIV only words and doublewords.
TEST(Lookup, ChangesItsAnswerWithTheSizeButNotWithTheRegisters) {
  for (std::uint32_t size = 0; size != 4; ++size) {
    const std::uint32_t add = 0x04000000 | size << 22, sdiv = 0x04140000 | size << 22;
    for (std::uint32_t other = 0; other != size; ++other)
      EXPECT_NE(get_sve_handler(add), get_sve_handler(0x04000000 | other << 22));
    EXPECT_EQ(get_sve_handler(add | 0x1FFF), get_sve_handler(add));
    EXPECT_EQ(get_sve_handler(sdiv) != nullptr, size >= 2);
  }
}

}  // namespace
}  // namespace quern
