// Every trace command on traces that are damaged or cut anywhere: it ends, with a result or with one line.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>

#include "tests/support/small_traces.h"
#include "tools/trace_commands.h"
#include "tools/user_error.h"

namespace quern::test {
namespace {

namespace fs = std::filesystem;

// Lets what is printed go nowhere.
class silence {
 public:
  silence() : output_(dup(STDOUT_FILENO)), errors_(dup(STDERR_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY);
    std::fflush(stdout);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
  }
  ~silence() {
    std::fflush(stdout);
    dup2(output_, STDOUT_FILENO);
    dup2(errors_, STDERR_FILENO);
    close(output_);
    close(errors_);
  }
  silence(const silence&) = delete;
  silence& operator=(const silence&) = delete;

 private:
  int output_, errors_;
};

std::string damaged(std::string trace, std::mt19937& random) {
  constexpr unsigned most_changes = 4;
  for (unsigned change = random() % most_changes; change != 0; --change) {
    const char any[] = {0, '\xFF', static_cast<char>(random()), static_cast<char>(random())};
    trace[random() % trace.size()] = any[random() % std::size(any)];
  }
  if (random() % 4 == 0) trace.resize(random() % trace.size());
  return trace;
}

struct DamagedTraces : testing::Test {
  DamagedTraces() {
    std::string name = (fs::temp_directory_path() / "quern.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    folder = name;
  }
  ~DamagedTraces() override { fs::remove_all(folder); }

  // What the command has to say, or nothing.
  std::string complaint(const std::function<void(trace_reader&)>& command) const {
    try {
      trace_reader reader(folder / "trace");
      command(reader);
    } catch (const trace_error& error) {
      return error.message;
    } catch (const user_error& error) {
      return error.message;
    }
    return "";
  }
  fs::path folder;
};

TEST_F(DamagedTraces, EveryCommandGivesAResultOrALine) {
  const trace_filter all;
  trace_filter some;
  some.region = 1;
  some.addresses = number_range{0x10000, 0x20000};
  const fs::path plots = folder / "plots";
  cache_options by_array;
  by_array.by_array = true;
  const std::function<void(trace_reader&)> commands[] = {
      [](trace_reader& reader) { print_trace_info(reader); },
      [](trace_reader& reader) { print_trace_modules(reader.modules()); },
      [&](trace_reader& reader) { dump_trace(reader, all, {.format = dump_format::text, .elements = true}); },
      [&](trace_reader& reader) { dump_trace(reader, some, {.format = dump_format::jsonl, .elements = false}); },
      [&](trace_reader& reader) { print_trace_stats(reader, all, {}); },
      [&](trace_reader& reader) {
        trace_reader other(folder / "trace");
        print_trace_diff(reader, other, all, {});
      },
      [&](trace_reader& reader) { export_trace(reader, all, export_format::din); },
      [&](trace_reader& reader) { print_trace_cache(reader, all, {}); },
      [&](trace_reader& reader) { print_trace_cache(reader, all, by_array); },
      [&](trace_reader& reader) { plot_trace(reader, all, plots.string()); },
      [&](trace_reader& reader) { check_trace(reader, all); },
  };
  constexpr int rounds = 60;
  std::mt19937 random(1);
  std::vector<std::string> bad;  // what is said of whole traces, or in several lines
  std::size_t results = 0;
  for (int round = 0; round != rounds; ++round)
    for (const std::string& trace : small_traces()) {
      std::ofstream(folder / "trace", std::ios::binary) << (round == 0 ? trace : damaged(trace, random));
      const silence nothing_is_shown;
      for (const auto& command : commands) {
        const std::string said = complaint(command);
        if (said.find('\n') != std::string::npos || (round == 0 && !said.empty())) bad.push_back(said);
        results += said.empty();
      }
    }
  EXPECT_THAT(bad, testing::IsEmpty());
  EXPECT_GT(results, rounds * std::size(commands));  // a quarter, at least
}

TEST_F(DamagedTraces, TheWholeOnesHaveAllThatCanBeDamaged) {
  std::uint32_t version = 0;
  for (const std::string& trace : small_traces()) {
    std::ofstream(folder / "trace", std::ios::binary) << trace;
    const trace_reader reader(folder / "trace");
    EXPECT_EQ(reader.header().version, ++version);
    EXPECT_EQ(reader.summary().records, 105u);
    EXPECT_EQ(reader.summary().damaged_chunks + reader.summary().missing + reader.summary().incomplete, 0u);
    EXPECT_EQ(reader.modules().all().size(), version < 3 ? 0u : 2u);
    EXPECT_FALSE(reader.is_cut());
  }
  EXPECT_EQ(version, trace_version);
}

}  // namespace
}  // namespace quern::test
