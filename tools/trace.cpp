// quern trace: the commands that read trace files.
#include <fmt/core.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands.h"
#include "tools/number_option.h"
#include "tools/printable.h"
#include "tools/progress_bar.h"
#include "tools/trace_commands.h"
#include "utils/trace_reader.h"

namespace quern {
namespace {

// What the command line says, to whichever command was given.
struct trace_options {
  std::string path, second_path;
  bool modules = false;
  trace_filter filter;
  dump_options dump;
  stats_options stats;
  export_format exported = export_format::din;
  cache_options cache;
  std::string plot_folder;
};

// What a command does beside reading, as far as its progress is concerned, and what it tells of the file.
enum class reading {
  once,            // the walk through the chunks suffices; it tells itself if the file is cut
  judging,         // it prints what is wrong with the file when it has read all
  then_printing,   // it prints when it has read all
  while_printing,  // a terminal shows its progress by what it prints
};

// Calls action(reader, options) with a bar that shows how far that is; a reader's complaint becomes the program's.
template <class Action>
void read_trace(const std::string& path, reading how, Action action) {
  const bool is_watched = isatty(STDERR_FILENO) != 0 && (how != reading::while_printing || isatty(STDOUT_FILENO) == 0);
  progress_bar bar(stderr, is_watched, how == reading::once ? 1 : 2);
  try {
    trace_reader reader(path, [&bar](unsigned pass, double done) { bar.show(pass, done); });
    action(reader);
    std::fflush(stdout);
    const bool tells_itself = how == reading::once || how == reading::judging;
    if (reader.is_cut() && !tells_itself) fmt::print(stderr, "quern: {} is cut: it was longer once\n", printable(path));
  } catch (const trace_error& error) {
    throw user_error{error.message};
  }
}

// Adds a command that reads a file.
template <class Action>
CLI::App* add_reading_command(CLI::App* trace, const std::string& name, const std::string& what, reading how,
                              const std::shared_ptr<trace_options>& options, Action action) {
  CLI::App* const command = trace->add_subcommand(name, what);
  command->add_option("FILE", options->path, "The trace file")->required();
  command->callback([options, how, action] {
    read_trace(options->path, how, [&](trace_reader& reader) { action(reader, *options); });
  });
  return command;
}

template <class Choice>
void add_choice(CLI::App* command, const std::string& name, Choice& choice, const std::string& what,
                const std::vector<std::pair<std::string, Choice>>& choices) {
  std::vector<std::string> names;
  names.reserve(choices.size());
  for (const auto& [each, value] : choices) names.push_back(each);
  const auto choose = [choices, &choice](const std::string& given) {
    for (const auto& [each, value] : choices)
      if (each == given) choice = value;
  };
  command->add_option_function<std::string>(name, choose, what)
      ->check(CLI::IsMember(names))
      ->type_name(name == "--format" ? "FORMAT" : "KEY");
}

constexpr const char* stats_footer =
    "Lines are of 64 bytes, pages of 4,096. Above 256, their numbers are estimates with a standard "
    "error of 1.6 %. The stride is the way from one access of an instruction to its next, if one in "
    "eight has the same. The reuse distance of a line is the number of other lines, all threads "
    "together, between two accesses of it: exact to the power of two up to 1,048,576.";

constexpr const char* array_footer =
    "\nAn array is one that --array names, else a variable of the program or a library, else a stretch of memory "
    "without a gap of 4,096 bytes that no access touches. An access is counted with the array that it begins in.";

void add_stats_options(CLI::App* command, const std::shared_ptr<trace_options>& options) {
  add_choice<stats_key>(command, "--by", options->stats.by,
                        "place, function, array, thread or region (place): what a row is for",
                        {{"place", stats_key::place},
                         {"function", stats_key::function},
                         {"array", stats_key::array},
                         {"thread", stats_key::thread},
                         {"region", stats_key::region}});
  add_choice<stats_format>(command, "--format", options->stats.format, "text, csv or json (text)",
                           {{"text", stats_format::text}, {"csv", stats_format::csv}, {"json", stats_format::json}});
  add_number_option(*command, "--top", options->stats.top, "So many rows, those with most records (20)");
  add_array_option(*command, options->stats.arrays);
  add_filter_options(*command, options->filter);
  command->footer(std::string(stats_footer) + array_footer);
}

// Two files: each is read with a bar of its own.
void add_diff_command(CLI::App* trace, const std::shared_ptr<trace_options>& options) {
  CLI::App* const diff = trace->add_subcommand("diff", "Count the accesses of two traces side by side");
  diff->add_option("A", options->path, "A trace file")->required();
  diff->add_option("B", options->second_path, "Another")->required();
  add_stats_options(diff, options);
  diff->callback([options] {
    read_trace(options->path, reading::then_printing, [&](trace_reader& first) {
      read_trace(options->second_path, reading::then_printing,
                 [&](trace_reader& second) { print_trace_diff(first, second, options->filter, options->stats); });
    });
  });
}

}  // namespace

void add_trace_command(CLI::App& app, int& status) {
  CLI::App* const trace = app.add_subcommand("trace", "Read a trace file");
  trace->require_subcommand(1);
  const auto options = std::make_shared<trace_options>();

  CLI::App* const info = add_reading_command(trace, "info", "Sum up a trace", reading::once, options,
                                             [](trace_reader& reader, const trace_options& given) {
                                               if (given.modules) return print_trace_modules(reader.modules());
                                               print_trace_info(reader);
                                             });
  info->add_flag("--modules", options->modules,
                 "List the programs and libraries that its code is from instead: address, beginning of the build ID, "
                 "path");

  CLI::App* const dump = add_reading_command(
      trace, "dump", "Print the records of a trace in their order", reading::while_printing, options,
      [](trace_reader& reader, const trace_options& given) { dump_trace(reader, given.filter, given.dump); });
  add_choice<dump_format>(dump, "--format", options->dump.format, "text, csv or jsonl (text)",
                          {{"text", dump_format::text}, {"csv", dump_format::csv}, {"jsonl", dump_format::jsonl}});
  dump->add_flag("--elements", options->dump.elements,
                 "Also the number of elements of each record, and their bytes in memory and in the register");
  add_filter_options(*dump, options->filter);
  dump->footer(
      "The elements are told by the instructions, in the files of the programs and libraries that were traced.");

  CLI::App* const stats = add_reading_command(
      trace, "stats", "Count the accesses of a trace by place, function, array, thread or region",
      reading::then_printing, options,
      [](trace_reader& reader, const trace_options& given) { print_trace_stats(reader, given.filter, given.stats); });
  add_stats_options(stats, options);
  add_diff_command(trace, options);

  CLI::App* const exported = add_reading_command(
      trace, "export", "Print the accesses of a trace for a cache simulator", reading::while_printing, options,
      [](trace_reader& reader, const trace_options& given) { export_trace(reader, given.filter, given.exported); });
  add_choice<export_format>(
      exported, "--format", options->exported,
      "din ('0 ADDRESS SIZE', 1 for stores, hexadecimal) or lackey (' L ADDRESS,SIZE', S for stores) (din)",
      {{"din", export_format::din}, {"lackey", export_format::lackey}});
  add_filter_options(*exported, options->filter);

  CLI::App* const cache = add_reading_command(
      trace, "cache", "Put the accesses of a trace through caches", reading::then_printing, options,
      [](trace_reader& reader, const trace_options& given) { print_trace_cache(reader, given.filter, given.cache); });
  cache
      ->add_option("--level", options->cache.levels,
                   "A cache, the first first: bytes, ways, bytes a line (32K,8,64 and 1M,16,64)")
      ->type_name("CACHE")
      ->expected(1)
      ->take_all();
  add_choice<bool>(cache, "--by", options->cache.by_array, "place or array (place): what a row is for",
                   {{"place", false}, {"array", true}});
  add_number_option(*cache, "--top", options->cache.top, "So many rows, those with most misses (20)");
  add_array_option(*cache, options->cache.arrays);
  add_filter_options(*cache, options->filter);
  cache->footer(
      std::string(
          "All threads share the caches. They throw out the least recently used line; a store fetches its line.") +
      array_footer);

  CLI::App* const plot = add_reading_command(
      trace, "plot", "Draw the accesses of a trace: a page to look into, and pictures", reading::then_printing, options,
      [](trace_reader& reader, const trace_options& given) {
        plot_trace(reader, given.filter, given.plot_folder.empty() ? given.path + ".plots" : given.plot_folder);
      });
  plot->add_option("-o,--output", options->plot_folder, "Where the files go (FILE.plots)")->type_name("FOLDER");
  add_filter_options(*plot, options->filter);
  plot->footer(
      "index.html needs nothing beside it: zoom, move and point in it. The pictures are addresses.svg, "
      "footprint.svg, strides.svg, reuse.svg and places.svg. Files of the same names are overwritten.");

  CLI::App* const check =
      add_reading_command(trace, "check", "Check that a trace is whole and in order", reading::judging, options,
                          [&status](trace_reader& reader, const trace_options& given) {
                            if (!check_trace(reader, given.filter)) status = 1;
                          });
  add_group_filter_options(*check, options->filter);
  check->footer("The exit status is 1 if it is not.");
}

}  // namespace quern
