// Rows: what a decode map's table holds, and how it is written. A row of a source file is one instruction form with the
// types that it exists for; it becomes one decode_row a type, checked at compile time.
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "sve/decoder/encoding.h"
#include "sve/decoder/thunk.h"
#include "sve/state/type_tag.h"

namespace quern {

// "Vec", type tag, stem: "VecU8AddVVX". In place, so that a table is one block of constants.
struct thunk_name {
  static constexpr std::size_t size = 32;
  std::array<char, size> text{};

  consteval thunk_name() = default;
  consteval thunk_name(std::string_view tag, std::string_view stem) {
    char* at = text.data();
    for (const std::string_view part : {std::string_view{"Vec"}, tag, stem})
      at = std::copy(part.begin(), part.end(), at);
  }
  constexpr const char* c_str() const { return text.data(); }
  constexpr std::string_view view() const { return text.data(); }
};

// One of the emulator's instruction forms, for one element type.
struct decode_row {
  int key = 0;
  sve_handler thunk = nullptr;
  sve_handler under_host_fpsr = nullptr;        // the same, but of a direct_fp row without its moves of FPSR
  const void* (*library_function)() = nullptr;  // answers the address of the function that a library row calls
  thunk_name name;
  std::string_view stem;              // the name without "Vec" and tag: the family of the vector library
  std::string_view handler;           // the direct handler's name, or empty
  std::span<const operand> operands;  // in the order the routine takes them; a library function's result before
  memory_effect memory;               // what it does to memory
  std::uint32_t value = 0;            // the encoding's fixed bits
  std::uint8_t size = 0;              // element size code
  route way = route::none;

  // The direct handler's name, or the family's; empty if there is nothing to do.
  constexpr std::string_view routine() const { return way == route::library ? stem : handler; }
};

// A row with the fixed bits of its encoding, before its map is known.
struct encoded_row {
  std::uint32_t mask = 0;
  decode_row row;
};

// The operands of a row must be drawn just where they are read, and every drawn field must be an operand.
consteval void check_operands(const encoding& drawing, std::span<const operand> operands) {
  std::uint32_t covered = drawing.mask | drawing.ignored;
  for (const operand& op : operands) {
    if (drawing.bits_of(op.letter) != op.mask) throw "an operand is not read from where the encoding draws it";
    covered |= op.mask;
  }
  if (covered != ~std::uint32_t{0}) throw "a field of the encoding is no operand";
}

// A row that touches memory must lie among the encodings that do.
consteval void check_memory(const encoding& drawing, route way, const memory_effect& memory) {
  const bool touches = memory.touches_memory() || way == route::none;
  if (touches != has_memory_encoding(drawing.value)) throw "loads and stores, and no others, say what they access";
}

template <type_tag Tag, class Shape>
consteval sve_handler under_host_fpsr() {
  if constexpr (Shape::way == route::direct_fp) {
    return Shape::under_host_fpsr::template thunk<Tag>;
  } else {
    return Shape::template thunk<Tag>;
  }
}

template <type_tag Tag, class Shape>
consteval auto library_function_of() -> const void* (*)() {
  if constexpr (Shape::way == route::library) {
    return Shape::template function<Tag>;
  } else {
    return nullptr;
  }
}

template <type_tag Tag, class Shape>
consteval encoded_row row_of_type(std::string_view stem, const encoding& drawing) {
  const encoding sized = drawing.bits_of('z') != 0 ? drawing.with('z', Tag.opcode) : drawing;
  check_operands(sized, Shape::operands);
  check_memory(sized, Shape::way, Shape::memory);
  if (Shape::way == route::library && Shape::routine != stem) throw "the family bears another name than the row";
  return {sized.mask,
          {.thunk = Shape::template thunk<Tag>,
           .under_host_fpsr = under_host_fpsr<Tag, Shape>(),
           .library_function = library_function_of<Tag, Shape>(),
           .name = {Tag.text, stem},
           .stem = stem,
           .handler = Shape::way == route::library ? std::string_view{} : Shape::routine,
           .operands = Shape::operands,
           .memory = Shape::memory,
           .value = sized.value,
           .size = Tag.size,
           .way = Shape::way}};
}

// row<TYPES...>(STEM, DRAWING, SHAPE): one form for each type. A field 'z' of the drawing, if there is one, takes the
// type's size code, or for TYPE.at(x) the value x.
template <type_tag... Tags, class Shape>
consteval std::array<encoded_row, sizeof...(Tags)> row(std::string_view stem, const encoding& drawing, Shape) {
  return {row_of_type<Tags, Shape>(stem, drawing)...};
}

// Sorts packed names with their places, not rows: a comparison of text costs a compiler dearly.
template <std::size_t N>
consteval void sort_by_name(std::array<decode_row, N>& table) {
  struct place {
    std::array<std::uint64_t, thunk_name::size / 8> name{};
    std::size_t index = 0;
  };
  std::array<place, N> places{};
  for (std::size_t i = 0; i != N; ++i) {
    places[i].index = i;
    for (std::size_t c = 0; c != thunk_name::size; ++c) {
      auto& word = places[i].name[c / 8];
      word = word << 8 | static_cast<unsigned char>(table[i].name.text[c]);
    }
  }
  std::sort(places.begin(), places.end(), [](const place& a, const place& b) { return a.name < b.name; });
  const std::array<decode_row, N> unsorted = table;
  for (std::size_t i = 0; i != N; ++i) table[i] = unsorted[places[i].index];
}

// group(ROWS...): the rows of several forms as one.
template <std::size_t... N>
consteval auto group(const std::array<encoded_row, N>&... forms) {
  std::array<encoded_row, (N + ...)> all{};
  std::size_t count = 0;
  ((std::copy(forms.begin(), forms.end(), all.begin() + count), count += N), ...);
  return all;
}

// Ends a group that a list writes, a comma behind each row.
inline constexpr std::array<encoded_row, 0> no_rows{};

// decode_rows<COUNT>(KEY, GROUPS...): the table of one map, in the order of the thunks' names: of all the rows given,
// those whose fixed bits are exactly the map's key bits. They are COUNT, and no two of them meet.
template <std::size_t Count, std::size_t... N>
consteval std::array<decode_row, Count> decode_rows(key_bits key, const std::array<encoded_row, N>&... groups) {
  std::array<decode_row, Count> table{};
  std::size_t count = 0;
  const auto take = [&](const encoded_row& e) {
    if (e.mask != key.mask()) return;
    if (count == Count) throw "the map has fewer rows";
    table[count] = e.row;
    table[count++].key = key.of(e.row.value);
  };
  (std::for_each(groups.begin(), groups.end(), take), ...);
  if (count != Count) throw "the map has more rows";
  sort_by_name(table);

  std::array<int, Count> keys{};
  for (std::size_t i = 0; i != keys.size(); ++i) keys[i] = table[i].key;
  std::sort(keys.begin(), keys.end());
  if (std::adjacent_find(keys.begin(), keys.end()) != keys.end()) throw "two rows of a map meet";
  return table;
}

}  // namespace quern
