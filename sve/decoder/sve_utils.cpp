// The 44 decode maps, the one static initialiser that readies the emulator, and the lookup.
#include "sve/decoder/sve_utils.h"

#include <algorithm>
#include <array>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/maps/tables.h"
#include "sve/memory/guest_memory.h"

namespace quern {
namespace {

// Inserted one by one: of two rows with one key the first would stay. The tables hold no such pair. A map is never
// destroyed, as the application's destructors may come after ours.
const handler_map& build(std::span<const decode_row> rows) {
  auto* const map = new handler_map;
  for (const decode_row& row : rows) map->emplace(row.key, row.thunk);
  return *map;
}

// The objects of this file are initialised in the order of their definitions: page size, maps, fault recovery.
[[maybe_unused]] const bool page_size_is_read = (read_page_size(), true);

}  // namespace

#define DEFINE(key) const handler_map& decode_map__##key = build(rows__##key);
DEFINE(31_13)
DEFINE(31_21__15_13)
DEFINE(31_21__15_10)
DEFINE(31_21__15_13__4_4)
DEFINE(31_20__15_13)
DEFINE(31_20__15_10)
DEFINE(31_9)
DEFINE(31_10)
DEFINE(31_14)
DEFINE(31_21__15_10__4_4)
DEFINE(31_13__9_6)
DEFINE(31_20__15_9__4_4)
DEFINE(31_20__15_14__9_9__4_4)
DEFINE(31_13__4_4)
DEFINE(31_22__15_13)
DEFINE(31_21__13_13__4_4)
DEFINE(31_9__4_4)
DEFINE(31_10__4_4)
DEFINE(31_14__9_9__4_4)
DEFINE(31_20__15_14)
DEFINE(31_19__15_10)
DEFINE(31_23__21_21__15_10)
DEFINE(31_22__15_13__4_4)
DEFINE(31_21__15_10__4_0)
DEFINE(31_13__9_8)
DEFINE(31_13__9_9)
DEFINE(31_14__9_9)
DEFINE(31_23__21_13)
DEFINE(31_18)
DEFINE(31_21__15_14)
DEFINE(31_17__15_13)
DEFINE(31_21__15_15)
DEFINE(31_4)
DEFINE(31_21__15_11)
DEFINE(31_21__15_12)
DEFINE(31_0)
DEFINE(31_9__4_0)
DEFINE(31_14__9_9__4_0)
DEFINE(31_11)
DEFINE(31_24__21_10)
DEFINE(31_24__21_21__19_10)
DEFINE(31_24__21_21__18_10)
DEFINE(31_24__21_21__17_10)
DEFINE(31_24__21_21__16_10)
#undef DEFINE

namespace {

[[maybe_unused]] const int sve_is_initialized = SVEInitialize();

#define LOOKUP(key) decode_map{"decode_map__" #key, key_bits{#key}, rows__##key, &decode_map__##key},
const std::array lookup_order{QUERN_DECODE_MAPS(LOOKUP)};
#undef LOOKUP

static_assert(std::tuple_size_v<decltype(lookup_order)> == 44);

}  // namespace

std::span<const decode_map> decode_maps() { return lookup_order; }

decoded_word decode_word(std::uint32_t word) {
  for (const decode_map& map : lookup_order) {
    const int key = map.key.of(word);
    const auto row = std::find_if(map.rows.begin(), map.rows.end(), [&](const decode_row& r) { return r.key == key; });
    if (row != map.rows.end()) return {&*row, &map};
  }
  return {};
}

}  // namespace quern

sve_handler get_sve_handler(unsigned int word) {
  for (const quern::decode_map& map : quern::lookup_order) {
    if (const auto found = map.map->find(map.key.of(word)); found != map.map->end()) return found->second;
  }
  return nullptr;
}
