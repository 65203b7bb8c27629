// Where the emulator differs from the processor on purpose.
#include "tests/differential/deviations.h"

#include <array>

#include "sve/memory/guest_memory.h"

namespace quern {
namespace {

// A predicate byte is 0 or 1 wherever an instruction wrote it; other values can stand only in a register that the
// program has not written yet.
bool has_rubbish(const decode_row&, const test_case& c) { return !c.clean; }

constexpr const char* whole_bytes =
    "the source's bytes are tested whole, which is the same as their bit 0 for all that an instruction writes";

bool crosses_page(const decode_row& row, const test_case& c) {
  const auto span = static_cast<std::uint64_t>(memory_form_of(row)->span);
  return c.access / page_size != (c.access + span - 1) / page_size;
}

bool splits_element(const decode_row&, const test_case& c) { return c.split_element; }

constexpr const char* stops_at_page = "a processor may give up such a load for any reason; qemu does at a page's end";

// Active lanes begin elsewhere than at a multiple of 64 bytes.
bool begins_within_64_bytes(const decode_row& row, const test_case& c) {
  const unsigned char* const pg = c.state.p[extract(memory_predicate(row).mask, c.word)];
  const int lane_bytes = 1 << row.size;
  int at = 0;
  while (at != VL_BYTES && (pg[at] & 1) == 0) at += lane_bytes;
  return at % 64 != 0;
}

constexpr const char* misread = "qemu 7.2 reads the wrong predicate bits up to the next multiple of 64 bytes";

// A signed result in a W register, which may be negative.
bool is_signed(const decode_row& row, const test_case&) { return row.name.view().starts_with("VecS"); }

constexpr const char* zero_extended = "results of 32 bits are zero-extended to X, also where they are signed";

constexpr std::array table{
    deviation{"QIncrVL4SI", part::x, is_signed, true, zero_extended},
    deviation{"QDecrVL4SI", part::x, is_signed, true, zero_extended},
    deviation{"QIncrSCount4PS", part::x, is_signed, true, zero_extended},
    deviation{"QDecrSCount4PS", part::x, is_signed, true, zero_extended},
    deviation{"sve_nor_pppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkn_ppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkns_ppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkns_ppp", part::nzcv, has_rubbish, true, whole_bytes},
    deviation{"sve_brkpb_pppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkpbs_pppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkpbs_pppp", part::nzcv, has_rubbish, true, whole_bytes},
    deviation{"sve_ldnf1*", part::z, crosses_page, false, stops_at_page},
    deviation{"sve_ldnf1*", part::ffr, crosses_page, false, stops_at_page},
    deviation{"sve_ldff1*", part::z, crosses_page, false, stops_at_page},
    deviation{"sve_ldff1*", part::ffr, crosses_page, false, stops_at_page},
    deviation{"sve_ldnf1*", part::z, begins_within_64_bytes, false, misread},
    deviation{"sve_ldff1*", part::z, begins_within_64_bytes, false, misread},
    deviation{"CLoadFF*", part::z, crosses_page, false, stops_at_page},
    deviation{"CLoadFF*", part::ffr, crosses_page, false, stops_at_page},
    deviation{"CLoadFF*", part::z, begins_within_64_bytes, false, misread},
    deviation{"LoadFF*", part::z, splits_element, false, stops_at_page},
    deviation{"LoadFF*", part::ffr, splits_element, false, stops_at_page},
};

}  // namespace

std::span<const deviation> known_deviations() { return table; }

}  // namespace quern
