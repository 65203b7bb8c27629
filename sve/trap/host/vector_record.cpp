// The thread's scalable registers to and from the kernel's record. It stands outside of the frame, whose own room is
// for the shorter vectors only, and is found by way of a record in it that tells where.
#include "sve/trap/host/vector_record.h"

#include <cstdint>
#include <cstring>

#include "sve/state/predicate_bits.h"
#include "sve/trap/host/emulate.h"
#include "sve/trap/host/signal_frame.h"

namespace quern {
namespace {

static_assert(SVE_SIG_ZREG_SIZE(quadwords) == VL_BYTES && SVE_SIG_PREG_SIZE(quadwords) == predicate_image_bytes);

constexpr std::uint32_t end_bytes = sizeof(vector_record::end);

// The frame's record with that magic; the end of its list if there is none, or null if the list is out of order.
_aarch64_ctx* find_record(ucontext_t& frame, std::uint32_t magic) {
  unsigned char* at = frame.uc_mcontext.__reserved;
  const unsigned char* const end = at + sizeof frame.uc_mcontext.__reserved;
  while (at + sizeof(extra_context) + end_bytes <= end) {
    auto* const head = reinterpret_cast<_aarch64_ctx*>(at);
    if (head->magic == magic || head->magic == 0) return head;
    if (head->size == 0) return nullptr;
    at += head->size;
  }
  return nullptr;
}

void fill_record(const cpu_state& state, unsigned char* bytes) {
  sve_context head{};
  head.head = {SVE_MAGIC, SVE_SIG_CONTEXT_SIZE(quadwords)};
  head.vl = VL_BYTES;
  std::memcpy(bytes, &head, sizeof head);
  std::memcpy(bytes + SVE_SIG_ZREGS_OFFSET, state.z, sizeof state.z);
  for (int i = 0; i != 16; ++i) pack_predicate(state.p[i], bytes + SVE_SIG_PREG_OFFSET(quadwords, i));
  pack_predicate(state.ffr, bytes + SVE_SIG_FFR_OFFSET(quadwords));
}

}  // namespace

void show_vectors(ucontext_t& frame, vector_record& record) {
  cpu_state& state = thread_state();
  load_vectors(frame, state);
  fill_record(state, record.bytes);
  std::memset(record.end, 0, sizeof record.end);
  _aarch64_ctx* const place = find_record(frame, 0);
  if (!place) return;
  extra_context extra{};
  extra.head = {EXTRA_MAGIC, sizeof extra};
  extra.datap = reinterpret_cast<std::uintptr_t>(record.bytes);
  extra.size = sizeof record;
  std::memcpy(place, &extra, sizeof extra);
  std::memset(reinterpret_cast<unsigned char*>(place) + sizeof extra, 0, end_bytes);
}

void take_vectors(ucontext_t& frame, const vector_record& record) {
  if (_aarch64_ctx* const extra = find_record(frame, EXTRA_MAGIC)) *extra = {0, 0};
  thread_registers& registers = own_registers();
  cpu_state& state = registers.state;
  registers.known = 0;
  std::memcpy(state.z, record.bytes + SVE_SIG_ZREGS_OFFSET, sizeof state.z);
  for (int i = 0; i != 16; ++i) unpack_predicate(record.bytes + SVE_SIG_PREG_OFFSET(quadwords, i), state.p[i]);
  unpack_predicate(record.bytes + SVE_SIG_FFR_OFFSET(quadwords), state.ffr);
}

}  // namespace quern
