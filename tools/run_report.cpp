// What `quern run` tells of the SVE instructions of a program that was run.
#include "tools/run_report.h"

#include <fmt/core.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "tools/assembly/assembly_form.h"
#include "tools/foreign_instructions.h"
#include "tools/module_code.h"
#include "tools/printable.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

struct counted_place {
  std::string name, instruction;
  bool is_emulated;
  std::uint64_t count;
};

std::string instruction_name(std::uint32_t word) {
  const decoded_word decoded = decode_word(word);
  if (decoded.row != nullptr) return std::string(form_of(*decoded.row).mnemonic);
  const foreign_instruction* const form = find_foreign(word);
  return form != nullptr ? fmt::format("{} ({})", form->mnemonic, form->extension) : fmt::format("word {:08x}", word);
}

// Names places by the symbols of the files that the modules were loaded from.
class place_names {
 public:
  place_names(const place_report& report, fs::path program) : report_(report), program_(std::move(program)) {}

  std::string name(const reported_place& place) {
    if (place.module == 0 || place.module > place_report::most_modules) return fmt::format("{:#x}", place.offset);
    const reported_module& module = report_.modules[place.module - 1];
    const std::string path(module.path, strnlen(module.path, sizeof module.path));
    const module_code& file = files_.try_emplace(path, path.empty() ? program_ : fs::path(path)).first->second;
    const std::string symbol = file.code().place(file.address_in_file(module.base + place.offset, module.base));
    const fs::path library = fs::path(path).filename();
    return path.empty() || library == program_.filename() ? symbol : fmt::format("{} ({})", symbol, library.string());
  }

 private:
  const place_report& report_;
  fs::path program_;
  std::map<std::string, module_code> files_;
};

// The places that were met, by their counts: those of several processes together.
std::vector<counted_place> counted_places(const place_report& report, const fs::path& program) {
  place_names names(report, program);
  std::map<std::pair<std::string, std::uint32_t>, counted_place> met;
  for (const reported_place& place : report.places) {
    if (place.key == 0) continue;
    const std::string name = names.name(place);
    const counted_place fresh{name, instruction_name(place.word), place.is_emulated, 0};
    met.try_emplace({name, place.word}, fresh).first->second.count += place.count;
  }
  std::vector<counted_place> places;
  places.reserve(met.size());
  for (const auto& [key, place] : met) places.push_back(place);
  std::ranges::stable_sort(places, std::greater{}, &counted_place::count);
  return places;
}

const char* times(std::uint64_t count) { return count == 1 ? "time" : "times"; }

void print_refused(const std::vector<counted_place>& places) {
  constexpr std::size_t most_shown = 20;
  std::uint64_t total = 0;
  std::size_t shown = 0, met = 0;
  for (const counted_place& place : places) {
    if (place.is_emulated) continue;
    total += place.count;
    if (++met > most_shown) continue;
    ++shown;
    fmt::print(stderr, "quern: {} at {} can't be emulated: met {} {}\n", place.instruction, printable(place.name),
               place.count, times(place.count));
  }
  if (met > 1)
    fmt::print(stderr, "quern: {} places with instructions that can't be emulated, {} of them shown, met {} times\n",
               met, shown, total);
}

void print_counts(std::FILE* out, std::string_view title, std::vector<std::pair<std::uint64_t, std::string>> lines,
                  std::size_t most) {
  std::ranges::stable_sort(lines, std::greater{}, &std::pair<std::uint64_t, std::string>::first);
  fmt::print(out, "{}\n", title);
  for (std::size_t i = 0; i != std::min(most, lines.size()); ++i)
    fmt::print(out, "{:>12}  {}\n", lines[i].first, lines[i].second);
  if (lines.size() > most) fmt::print(out, "{:>12}  more\n", lines.size() - most);
}

void print_stats(std::FILE* out, const std::vector<counted_place>& places, std::size_t most) {
  std::map<std::string, std::uint64_t> by_instruction;
  std::vector<std::pair<std::uint64_t, std::string>> instructions, named_places;
  std::uint64_t total = 0;
  for (const counted_place& place : places) {
    if (!place.is_emulated) continue;
    total += place.count;
    by_instruction[place.instruction] += place.count;
    named_places.emplace_back(place.count, fmt::format("{:<10}  {}", place.instruction, printable(place.name)));
  }
  for (const auto& [instruction, count] : by_instruction) instructions.emplace_back(count, instruction);
  fmt::print(out, "emulated: {} instructions, of {} kinds, at {} places\n", total, instructions.size(),
             named_places.size());
  print_counts(out, "by instruction:", instructions, most);
  print_counts(out, "by place:", named_places, most);
}

}  // namespace

run_report::run_report(const run_options& options, const fs::path& program)
    : program_(program), stats_(options.stats), file_(memfd_create("quern-report", MFD_CLOEXEC)) {
  const bool made = file_ >= 0 && ftruncate(file_, sizeof(place_report)) == 0;
  void* const mapped =
      made ? mmap(nullptr, sizeof(place_report), PROT_READ | PROT_WRITE, MAP_SHARED, file_, 0) : MAP_FAILED;
  if (mapped == MAP_FAILED) {
    if (stats_.empty() && !options.strict) return;
    throw user_error{fmt::format("can't make a file to count in: {}", std::strerror(errno)), status_cannot_run};
  }
  report_ = static_cast<place_report*>(mapped);
  report_->counts_emulated = !stats_.empty();
  report_->is_strict = options.strict;
  setenv(place_report_variable, fmt::format("/proc/{}/fd/{}", getpid(), file_).c_str(), 1);
}

run_report::~run_report() {
  if (file_ >= 0) close(file_);
}

std::string run_report::place_of_death(pid_t process, int signal) const {
  if (report_ == nullptr || report_->death.key != static_cast<std::uint64_t>(process)) return "";
  if (report_->death_signal != static_cast<std::uint32_t>(signal)) return "";
  return place_names(*report_, program_).name(report_->death);
}

void run_report::print() const {
  if (report_ == nullptr) return;
  const std::vector<counted_place> places = counted_places(*report_, program_);
  print_refused(places);
  if (stats_.empty()) return;

  const bool to_terminal = stats_ == "true";
  std::FILE* const out = to_terminal ? stderr : std::fopen(stats_.c_str(), "w");
  if (out == nullptr)
    throw user_error{fmt::format("{} can't be written: {}", stats_, std::strerror(errno)), status_cannot_run};
  print_stats(out, places, to_terminal ? 20 : places.size());
  if (report_->lost != 0) fmt::print(out, "not counted, for want of room: {}\n", report_->lost.load());
  if (!to_terminal && std::fclose(out) != 0)
    throw user_error{fmt::format("{} can't be written: {}", stats_, std::strerror(errno)), status_cannot_run};
}

int run_reported(const started_program& started, const run_options& options, const fs::path& program) {
  if (options.dry_run) return run_to_end(started, options);
  const run_report report(options, program);
  const int status =
      run_to_end(started, options, [&](pid_t process, int signal) { return report.place_of_death(process, signal); });
  report.print();
  return status;
}

}  // namespace quern
