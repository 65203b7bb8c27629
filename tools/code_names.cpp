// Finding the file of a module, and in it the name of a place.
#include "tools/code_names.h"

#include <fmt/core.h>

#include <cstdio>

#include "tools/printable.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t most_remembered = 1 << 16;

}  // namespace

std::string code_place::text() const {
  const std::string place = function.empty() ? fmt::format("{:#x}", offset) : fmt::format("{}+{:#x}", function, offset);
  return module.empty() ? place : fmt::format("{} ({})", place, module);
}

std::string code_place::function_text() const {
  const std::string name = function.empty() ? "?" : function;
  return module.empty() ? name : fmt::format("{} ({})", name, module);
}

std::string code_place::source_text() const { return source.substr(source.rfind('/') + 1); }

bool is_function_name(std::string_view name, std::string_view wanted) {
  return name == wanted || name.substr(0, name.find('(')) == wanted;
}

code_names::code_names(const trace_modules& modules, std::string program)
    : modules_(modules), program_(std::move(program)) {}

std::size_t code_names::module_of(std::uint64_t pc, std::uint64_t count) {
  recent& known = recent_[pc / 4 % recent_.size()];
  if (known.pc == pc && known.first_count <= count && count < known.end_count) return known.module;
  const std::size_t found = modules_.find(pc, count);
  if (found != modules_.all().size())
    known = {pc, modules_.all()[found].first_count, modules_.all()[found].end_count, found};
  else
    known = {pc, 0, ~std::uint64_t{0}, found};
  return found;
}

std::unique_ptr<code_names::loaded_file> code_names::load(const trace_module& module) const {
  auto file = std::make_unique<loaded_file>(module.path);
  const std::string_view build_id = file->code.build_id();
  if (!file->code.is_readable()) {
    fmt::print(stderr, "quern: {} can't be read: its places are told by their addresses\n", printable(module.path));
    return nullptr;
  }
  if (module.build_id.empty() || module.build_id == build_id) return file;
  fmt::print(stderr, "quern: {} is not what ran (its build ID differs): its places are told by their addresses\n",
             printable(module.path));
  return nullptr;
}

const code_names::loaded_file* code_names::file_of(std::size_t module) {
  const auto [at, is_new] = files_.try_emplace(module, nullptr);
  if (is_new) at->second = load(modules_.all()[module]);
  return at->second.get();
}

code_place code_names::place(std::uint64_t pc, std::size_t module) {
  code_place place;
  place.pc = place.offset = pc;
  if (module >= modules_.all().size()) return place;
  const trace_module& loaded = modules_.all()[module];
  place.module = fs::path(loaded.path).filename();
  place.offset = pc - loaded.begin;
  if (const loaded_file* const file = file_of(module); file != nullptr) {
    place.offset = file->code.address_in_file(pc, loaded.begin);
    place.source = file->lines.at(place.offset);
    if (const auto function = file->code.code().function_at(place.offset)) {
      place.function = function->name;
      place.offset -= function->start;
    }
  }
  if (place.module == program_ && !place.function.empty()) place.module.clear();
  return place;
}

std::optional<code_names::variable> code_names::variable_at(std::uint64_t address, std::size_t module) {
  if (module >= modules_.all().size()) return std::nullopt;
  const loaded_file* const file = file_of(module);
  if (file == nullptr) return std::nullopt;
  const trace_module& loaded = modules_.all()[module];
  const std::uint64_t in_file = file->code.address_in_file(address, loaded.begin);
  const auto found = file->code.code().variable_at(in_file);
  if (!found) return std::nullopt;
  const std::string library = fs::path(loaded.path).filename();
  const std::uint64_t first = address - (in_file - found->start);
  return variable{library == program_ ? found->name : fmt::format("{} ({})", found->name, library), first,
                  first + (found->size - 1)};
}

std::optional<element_form> code_names::elements_at(std::uint64_t pc, std::size_t module) {
  if (module >= modules_.all().size()) return std::nullopt;
  if (elements_.size() == most_remembered) elements_.clear();
  const auto [at, is_new] = elements_.try_emplace({pc, module}, std::nullopt);
  const loaded_file* const file = is_new ? file_of(module) : nullptr;
  if (file != nullptr) {
    const auto word = file->code.word_at(file->code.address_in_file(pc, modules_.all()[module].begin));
    if (word) at->second = element_form_of(*word);
  }
  return at->second;
}

bool code_names::is_in(std::uint64_t pc, std::size_t module, const std::string& function) {
  if (module >= modules_.all().size()) return false;
  if (is_in_.size() == most_remembered) is_in_.clear();
  const auto [at, is_new] = is_in_.try_emplace({pc, module}, false);
  if (is_new) at->second = is_function_name(place(pc, module).function, function);
  return at->second;
}

bool code_names::has_function(const std::string& function) {
  bool found = false;
  for (std::size_t module = 0; module != modules_.all().size() && !found; ++module)
    if (const loaded_file* const file = file_of(module); file != nullptr)
      file->code.code().for_each_function([&](const std::string& name) { found |= is_function_name(name, function); });
  return found;
}

}  // namespace quern
