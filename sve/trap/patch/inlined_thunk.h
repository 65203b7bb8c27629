// A thunk's code, made anew for one word: what it computes from the word and the state's address alone, operands and
// branches among it, is computed when the code is made.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "sve/state/cpu_state.h"
#include "sve/trap/patch/instructions.h"
#include "sve/trap/patch/known_lanes.h"
#include "sve/trap/patch/known_stack.h"
#include "sve/trap/patch/known_value.h"
#include "sve/trap/patch/written_registers.h"

namespace quern {

// Instructions, and those among them that need an address that is not known yet.
struct code_part {
  static constexpr std::size_t most = 192;  // words
  std::array<aarch64::word, most> words{};
  std::size_t count = 0;
  std::array<std::uint16_t, 24> ways_back{};  // numbers of those that are to be ADR, with where the thunk returns to
  std::size_t way_back_count = 0;
  bool is_too_long = false;

  void clear() {
    count = way_back_count = 0;
    is_too_long = false;
  }
  void put(aarch64::word w) {
    if (count == most) {
      is_too_long = true;
    } else {
      words[count++] = w;
    }
  }
  // The address to which the thunk is to return to X<n>; the word tells n until then.
  void put_way_back(aarch64::word n) {
    if (way_back_count == ways_back.size()) {
      is_too_long = true;
    } else {
      ways_back[way_back_count++] = static_cast<std::uint16_t>(count);
    }
    put(n);
  }
  std::span<const aarch64::word> code() const { return {words.data(), count}; }
  std::span<const std::uint16_t> returns() const { return {ways_back.data(), way_back_count}; }
};

class inlined_thunk {
 public:
  // By the numbers of their instructions: a branch, or load of a literal, from the hot code to the cold; or a branch
  // from the cold code back into the hot.
  struct crossing {
    std::uint16_t from, to;
  };

  // X2 to X17. Of these the code needs one that is usable and that the thunk does not write.
  static constexpr std::uint32_t temporaries = 0x3FFFC;

  struct given {
    std::uint32_t usable = 0;              // the registers that the code may write besides those that the thunk writes
    std::uint32_t written_predicates = 0;  // those that the thunk writes
    bool follows_calls = false;            // whether it has what the thunk calls too, and does not go on there
    const unsigned char* pc = nullptr;  // the word's, which the thunk finds in cpu_state; the code itself stores none
  };

  // Makes the code. It expects the state's address in X19, and leaves that; it has no result. It goes on into the thunk
  // where a branch depends on what is not known, and not on the common way, or where the thunk is too long. It tests a
  // predicate's lanes only where it is not known that all are active (known_lanes.h), and learns that. False if the
  // thunk can't be had this way. For one thread at a time: it takes no stack to speak of.
  bool make(sve_handler thunk, std::uint32_t word, const given& what);

  // The hot code runs to its end; the cold code stands elsewhere.
  const code_part& hot() const { return hot_; }
  const code_part& cold() const { return cold_; }
  // Whether the code goes on nowhere else: no way leads into the thunk.
  bool is_whole() const { return !leaves_; }
  // The registers that the code itself writes; none if that can't be told.
  std::optional<written_registers> written() const;
  // Whether the hot code has seen to what is known of the predicates that the thunk writes; the ways into it always do.
  bool knows_written_predicates() const { return knows_written_; }
  std::span<const crossing> exits() const { return {exits_.data(), exit_count_}; }
  std::span<const crossing> ways_on() const { return {ways_on_.data(), way_on_count_}; }

 private:
  using word = aarch64::word;

  static constexpr std::uint32_t none = 31;  // no register
  static constexpr std::uint32_t set_of(std::uint32_t n) { return n == none ? 0 : std::uint32_t{1} << n; }
  static word word_at(const unsigned char* pc);

  // The state's address.
  static constexpr aarch64::reg base = aarch64::x19;
  // Those that the run's code needs.
  static constexpr bool is_kept(std::uint32_t n) { return n == base.number || n == known_lanes::keeper.number; }

  // Instructions between marks (lane_marks.h): the registers of the predicate's address and of the result, the size
  // code of the lanes, and where they are.
  struct marked_instructions {
    std::uint32_t at, result, size;
    std::span<const unsigned char> place;
  };

  // A register, and a distance from the address in it in units of what is moved.
  struct place_in_reach {
    std::uint32_t from;
    std::int64_t units;
  };

  // The walk (inlined_thunk.cpp): false, or the way out, for what can't be copied.
  void begin(std::uint32_t word, const given& what);
  const unsigned char* step(const unsigned char* pc);
  bool carry_out(std::uint32_t word, const unsigned char* pc);
  bool compute(std::uint32_t word, const unsigned char* pc);
  bool vector_operation(std::uint32_t word);
  bool move_known_vector(std::uint32_t word);
  bool system_operation(std::uint32_t word);
  const unsigned char* follow_branch(std::uint32_t word, const unsigned char* pc);
  const unsigned char* follow_condition(std::uint32_t word, const unsigned char* pc, std::int64_t distance);
  const unsigned char* follow_return(std::uint32_t word, const unsigned char* pc);

  // Memory (inlined_access.cpp).
  bool access(std::uint32_t word);
  bool pair_access(std::uint32_t word);
  bool single_access(std::uint32_t word);
  bool access_instr_word(std::uint32_t word, std::uint64_t offset, bool is_load);
  bool load_constant(std::uint32_t word);
  std::optional<std::uint64_t> distance_in_state(std::uint32_t n) const;
  std::optional<std::uint64_t> known_index(std::uint32_t word, unsigned scale) const;
  known_value value_in_processor(std::uint32_t n) const;
  std::optional<place_in_reach> reach(std::uint64_t distance, std::int64_t unit) const;

  // The stack (inlined_stack.cpp).
  std::optional<std::uint64_t> distance_in_stack(std::uint32_t n) const;
  bool stack_sum(std::uint32_t word);
  bool stack_access(std::uint32_t word);
  std::optional<known_value> stored_value(std::uint32_t t, bool is_vector) const;
  std::optional<known_value> loaded_value(std::uint32_t t, std::uint64_t place, bool is_word);
  void take_from_stack(std::uint32_t t, known_value value);
  bool needs_stack(std::uint32_t word) const;
  void put_stack(code_part& part);
  void write_stack();

  // Predicates (inlined_lanes.cpp).
  const unsigned char* marked_code(const unsigned char* mark);
  std::optional<std::uint32_t> predicate_at(std::uint32_t n) const;
  bool find_inactive(const marked_instructions& code);
  bool fill_predicate(const marked_instructions& code);
  bool go_to_cold(std::uint32_t bit);
  void put_marked(const marked_instructions& code);
  void put_way_on();

  // Registers, flags, and the ways out, which have to have all of them (inlined_registers.cpp).
  void set(std::uint32_t n, known_value value);
  void load(std::uint32_t n);
  void need(std::uint32_t n);
  void need_base(std::uint32_t n);
  void need_flags();
  std::uint32_t unused_register() const;
  void put_known(code_part& part, std::uint32_t n);
  void put_value(code_part& part, std::uint32_t n, known_value value);
  void put_number(code_part& part, std::uint32_t n, std::uint64_t number);
  void put_flags(code_part& part);
  void put_instr_word();
  bool add_exit();
  void put_exit(code_part& part, const unsigned char* target);
  const unsigned char* leave(const unsigned char* target);

  known_registers known_{};
  std::uint32_t missing_ = 0;  // the registers that hold something known, but not in the processor
  known_registers before_{};   // what those have there
  std::uint32_t set_ = 0;      // the registers that have been set, known or not
  std::uint32_t usable_ = 0, written_predicates_ = 0;
  const unsigned char* pc_ = nullptr;
  bool flags_are_known_ = false;  // and then not in the processor
  std::uint32_t flags_ = 0;
  bool word_is_stored_ = false;  // to instr_word; but not in memory: it is put there before somebody else may read it
  std::uint32_t word_ = 0;
  bool stack_is_known_ = false;  // and then not written
  known_stack stack_{};
  std::uint32_t known_vector_ = 0;  // as a set: the vector whose low doubleword is known, if there is one
  std::uint64_t doubleword_ = 0;
  bool is_done_ = false, has_failed_ = false, knows_written_ = false, follows_calls_ = false, leaves_ = false;
  code_part hot_{};
  code_part cold_{};
  std::array<crossing, 24> exits_{}, ways_on_{};
  std::size_t exit_count_ = 0, way_on_count_ = 0;
};

}  // namespace quern
