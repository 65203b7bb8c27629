// quern trace dump: the records of a trace, for people and for programs.
#include <fmt/core.h>

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

using known_elements = std::optional<filtered_records::elements>;

std::string text_line(const trace_record& record) {
  if (record.is_marker()) return fmt::format("{:>10} {:>8} {}", record.count, record.thread, name_of(record.kind));
  return fmt::format("{:>10} {:>8} {:<7} {:>5} {:>6} {:#018x} {:#018x}", record.count, record.thread,
                     name_of(record.kind), record.group, record.size, record.addr, record.pc);
}

// In the place of the addresses' first zeros there are the elements: "64x4", of which a marker has none.
std::string text_line_with_elements(const trace_record& record, const known_elements& known) {
  if (record.is_marker()) return text_line(record);
  const std::string elements = known ? fmt::format("{}x{}", known->count, known->form.memory_bytes) : "-";
  return fmt::format("{:>10} {:>8} {:<7} {:>5} {:>6} {:>7} {:#014x} {:#014x}", record.count, record.thread,
                     name_of(record.kind), record.group, record.size, elements, record.addr, record.pc);
}

std::string csv_line(const trace_record& record) {
  if (record.is_marker()) return fmt::format("{},{},{},,,,", record.count, record.thread, name_of(record.kind));
  return fmt::format("{},{},{},{},{},{:#x},{:#x}", record.count, record.thread, name_of(record.kind), record.group,
                     record.size, record.addr, record.pc);
}

std::string csv_line_with_elements(const trace_record& record, const known_elements& known) {
  if (!known) return csv_line(record) + ",,,";
  return fmt::format("{},{},{},{}", csv_line(record), known->count, known->form.memory_bytes, known->form.lane_bytes);
}

// Addresses are text, since many readers of JSON keep 53 bits of a number.
nlohmann::ordered_json json_object(const trace_record& record) {
  nlohmann::ordered_json object{{"count", record.count}, {"thread", record.thread}, {"kind", name_of(record.kind)}};
  if (!record.is_marker()) {
    object["group"] = record.group;
    object["size"] = record.size;
    object["addr"] = fmt::format("{:#x}", record.addr);
    object["pc"] = fmt::format("{:#x}", record.pc);
  }
  return object;
}

std::string json_line(const trace_record& record) { return json_object(record).dump(); }

std::string json_line_with_elements(const trace_record& record, const known_elements& known) {
  nlohmann::ordered_json object = json_object(record);
  if (known) {
    object["elements"] = known->count;
    object["element_bytes"] = known->form.memory_bytes;
    object["lane_bytes"] = known->form.lane_bytes;
  }
  return object.dump();
}

struct format_entry {
  std::string_view heading, heading_with_elements;
  std::string (*line)(const trace_record&);
  std::string (*line_with_elements)(const trace_record&, const known_elements&);
};

format_entry entry_of(dump_format format) {
  switch (format) {
    case dump_format::csv:
      return {"count,thread,kind,group,size,addr,pc\n",
              "count,thread,kind,group,size,addr,pc,elements,element_bytes,lane_bytes\n", csv_line,
              csv_line_with_elements};
    case dump_format::jsonl: return {"", "", json_line, json_line_with_elements};
    case dump_format::text: break;
  }
  return {"     count   thread kind    group   size address            pc\n",
          "     count   thread kind    group   size   lanes address        pc\n", text_line, text_line_with_elements};
}

}  // namespace

void dump_trace(trace_reader& reader, const trace_filter& filter, const dump_options& options) {
  const format_entry entry = entry_of(options.format);
  filtered_records records(reader, filter);
  fmt::print("{}", options.elements ? entry.heading_with_elements : entry.heading);
  while (const std::optional<trace_record> record = records.next())
    fmt::print("{}\n", options.elements ? entry.line_with_elements(*record, records.elements_of(*record))
                                        : entry.line(*record));
}

}  // namespace quern
