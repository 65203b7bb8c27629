// quern trace: the commands that read trace files.
#include <memory>

#include "tools/commands.h"
#include "tools/trace_commands.h"
#include "utils/trace_reader.h"

namespace quern {
namespace {

// Runs what a command does, with a reader's complaint as the program's.
template <class Action>
void read_trace(const std::string& path, Action action) {
  try {
    trace_reader reader(path);
    action(reader);
  } catch (const trace_error& error) {
    throw user_error{error.message};
  }
}

}  // namespace

void add_trace_command(CLI::App& app, int&) {
  CLI::App* const trace = app.add_subcommand("trace", "Read a trace file");
  trace->require_subcommand(1);
  const auto path = std::make_shared<std::string>();
  const auto format = std::make_shared<std::string>("text");

  CLI::App* const info = trace->add_subcommand("info", "Sum up a trace");
  info->add_option("FILE", *path, "The trace file")->required();
  info->callback([path] { read_trace(*path, print_trace_info); });

  CLI::App* const dump = trace->add_subcommand("dump", "Print the records of a trace in their order");
  dump->add_option("FILE", *path, "The trace file")->required();
  dump->add_option("--format", *format, "text, csv or jsonl (text)")
      ->check(CLI::IsMember({"text", "csv", "jsonl"}))
      ->type_name("FORMAT");
  dump->callback([path, format] {
    const dump_format chosen = *format == "csv"     ? dump_format::csv
                               : *format == "jsonl" ? dump_format::jsonl
                                                    : dump_format::text;
    read_trace(*path, [&](trace_reader& reader) { dump_trace(reader, chosen); });
  });
}

}  // namespace quern
