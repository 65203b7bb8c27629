// quern list: every instruction form that is emulated, a line a form.
#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/assembly/assembly_form.h"
#include "tools/commands.h"
#include "tools/instruction_form.h"

namespace quern {
namespace {

// How one format prints the tables: what comes before all, before each map, and for each row.
struct list_format {
  void (*begin)();
  void (*begin_map)(const decode_map& map, std::size_t listed);
  void (*row)(const decode_map& map, const decode_row& row);
};

std::uint32_t key_of(const decode_row& row) { return static_cast<std::uint32_t>(row.key); }

constexpr list_format text_format{
    [] {},
    [](const decode_map&, std::size_t) {},
    [](const decode_map& map, const decode_row& row) {
      fmt::print("{:<22} {:<8} {:<34} {:<#10x}  {:<39}  {:<7}  {:<26}  {}\n", row.name.view(), form_of(row).mnemonic,
                 map.name, key_of(row), pattern_of(map, row), route_name(row), handler_name(row), operand_forms(row));
    },
};

constexpr list_format csv_format{
    [] { fmt::print("thunk,mnemonic,map,key,pattern,route,fpsr,handler,operands\n"); },
    [](const decode_map&, std::size_t) {},
    [](const decode_map& map, const decode_row& row) {
      fmt::print("{},{},{},{:#x},{},{},{},{},\"{}\"\n", row.name.view(), form_of(row).mnemonic, map.name, key_of(row),
                 pattern_of(map, row), route_name(row), moves_fpsr(row) ? "yes" : "no", handler_name(row),
                 operand_forms(row));
    },
};

constexpr list_format jsonl_format{
    [] {},
    [](const decode_map&, std::size_t) {},
    [](const decode_map& map, const decode_row& row) {
      nlohmann::ordered_json operands = nlohmann::ordered_json::array();
      for (const operand& op : row.operands)
        operands.push_back({{"name", op.name}, {"form", operand_form(op, row)}, {"mask", op.mask}});
      const nlohmann::ordered_json line = {
          {"thunk", row.name.view()},
          {"mnemonic", form_of(row).mnemonic},
          {"map", map.name},
          {"key", key_of(row)},
          {"mask", map.key.mask()},
          {"value", row.value},
          {"pattern", pattern_of(map, row)},
          {"route", route_name(row)},
          {"fpsr", moves_fpsr(row)},
          {"handler", handler_name(row)},
          {"operands", operands},
      };
      fmt::print("{}\n", line.dump());
    },
};

constexpr list_format markdown_format{
    [] {
      fmt::print(
          "# Emulated instructions\n\n"
          "This page is what `quern list --format markdown` prints; `scripts/update-docs` writes it anew.\n\n"
          "One table for each decode map, in the order in which a word is looked up. A map's name tells the bits of "
          "its key, and the key with them the fixed bits of the form, which the encoding shows with the operands' "
          "bits by letter. A form goes to a direct handler, to a function of the vector library, or does nothing. "
          "FPSR tells the forms that compute on the processor's floating-point unit.\n");
    },
    [](const decode_map& map, std::size_t listed) {
      fmt::print(
          "\n## {}\n\n{} form{}.\n\n| Thunk | Mnemonic | Key | Encoding | Route | Handler | Operands |\n"
          "|---|---|---|---|---|---|---|\n",
          map.name, listed, listed == 1 ? "" : "s");
    },
    [](const decode_map& map, const decode_row& row) {
      std::string operands = operand_forms(row);
      for (std::size_t at = 0; (at = operands.find('|', at)) != std::string::npos; at += 2) operands.insert(at, "\\");
      fmt::print("| `{}` | {} | {:#x} | `{}` | {}{} | {} | {} |\n", row.name.view(), form_of(row).mnemonic, key_of(row),
                 pattern_of(map, row), route_name(row), moves_fpsr(row) ? ", FPSR" : "",
                 handler_name(row).empty() ? "" : fmt::format("`{}`", handler_name(row)), operands);
    },
};

void list_rows(const list_format& format, std::string_view route) {
  const auto is_listed = [&](const decode_row& row) { return route.empty() || route_name(row) == route; };
  format.begin();
  for (const decode_map& map : decode_maps()) {
    const auto listed = std::count_if(map.rows.begin(), map.rows.end(), is_listed);
    if (listed == 0) continue;
    format.begin_map(map, static_cast<std::size_t>(listed));
    for (const decode_row& row : map.rows)
      if (is_listed(row)) format.row(map, row);
  }
}

}  // namespace

void add_list_command(CLI::App& app, int&) {
  static const std::map<std::string, const list_format*> formats{
      {"text", &text_format}, {"csv", &csv_format}, {"jsonl", &jsonl_format}, {"markdown", &markdown_format}};
  struct options {
    std::string route, format = "text";
  };
  const auto chosen = std::make_shared<options>();
  CLI::App* command = app.add_subcommand("list", "List the emulated instruction forms");
  command->add_option("--route", chosen->route, "Only the forms of this route: direct, library or none")
      ->check(CLI::IsMember({"direct", "library", "none"}));
  command->add_option("--format", chosen->format, "text, csv, jsonl or markdown")
      ->check(CLI::IsMember({"text", "csv", "jsonl", "markdown"}))
      ->capture_default_str();
  command->callback([chosen] { list_rows(*formats.at(chosen->format), chosen->route); });
}

}  // namespace quern
