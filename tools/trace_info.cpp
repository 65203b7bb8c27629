// quern trace info: a trace summed up, in figures that can be checked by hand.
#include <fmt/chrono.h>
#include <fmt/core.h>

#include <cstring>
#include <ctime>

#include "tools/printable.h"
#include "tools/trace_commands.h"

namespace quern {
namespace {

void line(std::string_view name, const std::string& value) { fmt::print("{:<15}{}\n", name, value); }

std::string start_text(std::uint64_t nanoseconds) {
  const auto seconds = static_cast<std::time_t>(nanoseconds / 1'000'000'000);
  std::tm utc{};
  if (gmtime_r(&seconds, &utc) == nullptr) return "unknown";
  return fmt::format("{:%Y-%m-%d %H:%M:%S} UTC", utc);
}

std::string end_text(const trace_file_header& header) {
  if (header.stop_error != 0)
    return fmt::format("the trace stopped before the program: {}", std::strerror(static_cast<int>(header.stop_error)));
  return header.finished == 1 ? "in good order"
                              : "not in good order: killed, replaced by another program, or still running";
}

std::string address_text(const trace_summary& summary) {
  if (!summary.first_address) return "none";
  return fmt::format("{:#x} to {:#x}, a range of {} bytes", *summary.first_address, *summary.last_address,
                     *summary.last_address - *summary.first_address + 1);
}

void print_origin(const trace_file_header& header) {
  line("program", printable(header.application));
  line("process", fmt::format("{} (parent {})", header.process, header.parent));
  line("started", start_text(header.start_time));
  line("ended", end_text(header));
  line("vector length", fmt::format("{} bits", std::uint64_t{header.vector_bytes} * 8));
}

void print_losses(const trace_summary& summary) {
  if (summary.unknown != 0) line("unknown", fmt::format("{} records of no known kind", summary.unknown));
  if (summary.incomplete != 0)
    line("incomplete", fmt::format("{} records that were being written", summary.incomplete));
  if (summary.missing != 0) line("missing", fmt::format("{} counts without a record", summary.missing));
  if (summary.damaged_chunks != 0) line("damaged", fmt::format("{} chunks that can't be read", summary.damaged_chunks));
}

}  // namespace

void print_trace_info(const trace_reader& reader) {
  const trace_summary& summary = reader.summary();
  if (reader.header().magic != 0) print_origin(reader.header());
  line("file", fmt::format("{} bytes{}", reader.file_size(), reader.is_cut() ? ", cut: it was longer once" : ""));
  line("records", fmt::format("{}", summary.records));
  line("  loads", fmt::format("{}, of {} bytes", summary.loads, summary.loaded_bytes));
  line("  stores", fmt::format("{}, of {} bytes", summary.stores, summary.stored_bytes));
  const std::uint32_t open_regions = reader.header().open_regions;
  line("  markers", fmt::format("{} start, {} stop{}", summary.starts, summary.stops,
                                open_regions == 0   ? ""
                                : open_regions == 1 ? ", a region left open"
                                                    : fmt::format(", {} regions left open", open_regions)));
  line("addresses", address_text(summary));
  line("threads", fmt::format("{}", summary.threads.size()));
  print_losses(summary);
}

void print_trace_modules(const trace_modules& modules) {
  for (const trace_module& module : modules.all()) {
    std::string id;
    for (const char byte : module.build_id.substr(0, 4)) id += fmt::format("{:02x}", static_cast<unsigned char>(byte));
    const bool is_gone = module.end_count != ~std::uint64_t{0};
    fmt::print("{:#014x} {:<8} {}{}\n", module.begin, id, printable(module.path),
               is_gone ? fmt::format(", gone at record {}", module.end_count) : "");
  }
}

}  // namespace quern
