// quern trace dump: the records of a trace, for people and for programs.
#include <fmt/core.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/trace_commands.h"

namespace quern {
namespace {

const char* name_of(trace_kind kind) {
  switch (kind) {
    case trace_kind::load: return "load";
    case trace_kind::store: return "store";
    case trace_kind::start_marker: return "start";
    case trace_kind::stop_marker: return "stop";
    case trace_kind::unknown: break;
  }
  return "unknown";
}

std::string text_line(const trace_record& record) {
  if (record.is_marker()) return fmt::format("{:>10} {:>8} {}\n", record.count, record.thread, name_of(record.kind));
  return fmt::format("{:>10} {:>8} {:<7} {:>5} {:>6} {:#018x} {:#018x}\n", record.count, record.thread,
                     name_of(record.kind), record.group, record.size, record.addr, record.pc);
}

std::string csv_line(const trace_record& record) {
  if (record.is_marker()) return fmt::format("{},{},{},,,,\n", record.count, record.thread, name_of(record.kind));
  return fmt::format("{},{},{},{},{},{:#x},{:#x}\n", record.count, record.thread, name_of(record.kind), record.group,
                     record.size, record.addr, record.pc);
}

// Addresses are text, since many readers of JSON keep 53 bits of a number.
std::string json_line(const trace_record& record) {
  nlohmann::ordered_json object{{"count", record.count}, {"thread", record.thread}, {"kind", name_of(record.kind)}};
  if (!record.is_marker()) {
    object["group"] = record.group;
    object["size"] = record.size;
    object["addr"] = fmt::format("{:#x}", record.addr);
    object["pc"] = fmt::format("{:#x}", record.pc);
  }
  return object.dump() + "\n";
}

struct format_entry {
  std::string_view heading;
  std::string (*line)(const trace_record&);
};

format_entry entry_of(dump_format format) {
  switch (format) {
    case dump_format::csv: return {"count,thread,kind,group,size,addr,pc\n", csv_line};
    case dump_format::jsonl: return {"", json_line};
    case dump_format::text: break;
  }
  return {"     count   thread kind    group   size address            pc\n", text_line};
}

}  // namespace

void dump_trace(trace_reader& reader, const trace_filter& filter, dump_format format) {
  const format_entry entry = entry_of(format);
  filtered_records records(reader, filter);
  fmt::print("{}", entry.heading);
  while (const std::optional<trace_record> record = records.next()) fmt::print("{}", entry.line(*record));
  std::fflush(stdout);
  if (reader.is_cut()) fmt::print(stderr, "quern: the trace is cut: the file was longer once\n");
}

}  // namespace quern
