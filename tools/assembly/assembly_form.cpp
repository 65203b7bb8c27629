// Finds the form of a row, and writes a word as the form says.
#include "tools/assembly/assembly_form.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <vector>

namespace quern {
namespace {

std::array<std::span<const assembly_form>, 6> groups() {
  return {integer_forms(),   floating_point_forms(), permute_forms(),
          predicate_forms(), contiguous_forms(),     gather_forms()};
}

// "U8" of "VecU8AddVVM".
std::string_view tag_of(const decode_row& row) {
  const std::string_view tag_and_stem = row.name.view().substr(3);
  return tag_and_stem.substr(0, tag_and_stem.size() - row.stem.size());
}

bool has_tag(const assembly_form& form, std::string_view tag) {
  const bool is_one_tag =
      std::any_of(form.tags.begin(), form.tags.end(), [](unsigned char c) { return std::isdigit(c); });
  return is_one_tag ? form.tags == tag : form.tags.find(tag[0]) != std::string_view::npos;
}

// The operand that a placeholder names, and how it is written.
std::string written_operand(std::string_view placeholder, const decode_row& row, std::uint32_t word,
                            std::vector<bool>& used) {
  const std::size_t equals = placeholder.find('=');
  const std::string_view name = placeholder.substr(0, equals);
  for (std::size_t i = 0; i != row.operands.size(); ++i) {
    const operand& op = row.operands[i];
    if (op.name != name) continue;
    used[i] = true;
    std::string text = format_operand(op, row.size, word);
    if (equals == std::string_view::npos) return text;
    if (text[0] != 'w') throw std::runtime_error(std::string(name) + " is not a 32-bit register: " + text);
    text[0] = placeholder[equals + 1];
    return text;
  }
  throw std::runtime_error(std::string(row.name.view()) + " has no operand " + std::string(name));
}

}  // namespace

std::size_t form_count() {
  std::size_t count = 0;
  for (const auto group : groups()) count += group.size();
  return count;
}

const assembly_form& form_of(const decode_row& row) {
  const assembly_form* found = nullptr;
  for (const auto group : groups()) {
    for (const assembly_form& form : group) {
      if (form.stem != row.stem || !has_tag(form, tag_of(row))) continue;
      if (found != nullptr) throw std::runtime_error("two forms claim " + std::string(row.name.view()));
      found = &form;
    }
  }
  if (found == nullptr) throw std::runtime_error("no form is written down for " + std::string(row.name.view()));
  return *found;
}

std::string assembly_of(const decode_row& row, std::uint32_t word) {
  const assembly_form& form = form_of(row);
  std::vector<bool> used(row.operands.size());
  std::string text(form.mnemonic);
  if (!form.operands.empty()) text += ' ';
  for (std::size_t at = 0; at != form.operands.size();) {
    if (form.operands[at] != '<') {
      text += form.operands[at++];
      continue;
    }
    const std::size_t end = form.operands.find('>', at);
    text += written_operand(form.operands.substr(at + 1, end - at - 1), row, word, used);
    at = end + 1;
  }
  for (std::size_t i = 0; i != used.size(); ++i)
    if (!used[i])
      throw std::runtime_error(std::string(form.mnemonic) + " leaves out " + row.operands[i].name + " of " +
                               std::string(row.name.view()));
  return text;
}

}  // namespace quern
