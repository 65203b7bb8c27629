// The options of a filter, and the walk through a trace that heeds them.
#include "tools/trace_filter.h"

#include <charconv>

#include "tools/number_option.h"

namespace quern {
namespace {

number_range parse_range(const std::string& option, const std::string& text) {
  const std::size_t dash = text.find('-');
  const auto first = parse_number(std::string_view(text).substr(0, dash));
  const auto last = dash == std::string::npos ? first : parse_number(std::string_view(text).substr(dash + 1));
  if (!first || !last || *last < *first)
    throw user_error{option + ": '" + text + "' is no address and no range of them, as in 0x1000 or 0x1000-0x1fff",
                     status_usage};
  return {*first, *last};
}

void add_range_option(CLI::App& command, const std::string& name, std::optional<number_range>& range,
                      const std::string& what) {
  command
      .add_option_function<std::string>(
          name, [name, &range](const std::string& text) { range = parse_range(name, text); }, what)
      ->type_name("FROM[-TO]");
}

}  // namespace

std::optional<std::uint64_t> parse_number(std::string_view text) {
  const int base = text.starts_with("0x") || text.starts_with("0X") ? 16 : 10;
  if (base == 16) text.remove_prefix(2);
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

void add_group_filter_options(CLI::App& command, trace_filter& filter) {
  add_number_option(command, "--thread", filter.thread, "Only this thread's records");
  add_range_option(command, "--pc", filter.pcs, "Only those of the instructions at these addresses");
  command.add_option("--symbol", filter.symbol, "Only those of the function of this name")->type_name("NAME");
  add_number_option(command, "--region", filter.region, "Only this region of interest; the first is 1");
}

void add_filter_options(CLI::App& command, trace_filter& filter) {
  add_group_filter_options(command, filter);
  command
      .add_option_function<std::string>(
          "--kind",
          [&filter](const std::string& kind) { filter.kind = kind == "load" ? trace_kind::load : trace_kind::store; },
          "Only loads, or only stores: load or store")
      ->check(CLI::IsMember({"load", "store"}))
      ->type_name("KIND");
  add_range_option(command, "--address", filter.addresses, "Only accesses to these addresses");
  add_number_option(command, "--limit", filter.limit, "Only so many records, the first ones");
}

std::uint64_t region_count::region_of(const trace_record& record) {
  std::uint64_t& open = open_[record.thread];
  if (record.region != 0)
    open = record.region;
  else if (record.kind == trace_kind::start_marker && open == 0)
    open = ++regions_;
  const std::uint64_t region = open;
  if (record.kind == trace_kind::stop_marker) open = 0;
  return region;
}

filtered_records::filtered_records(trace_reader& reader, const trace_filter& filter)
    : reader_(reader), filter_(filter), names_(reader.modules(), reader.header().application) {
  if (filter.symbol && !names_.has_function(*filter.symbol))
    throw user_error{"--symbol: no program or library of the trace has a function " + *filter.symbol};
}

bool filtered_records::takes(const trace_record& record) {
  if (filter_.thread && record.thread != *filter_.thread) return false;
  if (filter_.kind && record.kind != *filter_.kind) return false;
  if (filter_.region && region_ != *filter_.region) return false;
  if (record.is_marker() && (filter_.addresses || filter_.pcs || filter_.symbol)) return false;
  if (filter_.addresses && !filter_.addresses->meets(record.addr, record.last_byte())) return false;
  if (filter_.pcs && !filter_.pcs->meets(record.pc, record.pc)) return false;
  return !filter_.symbol || names_.is_in(record.pc, names_.module_of(record.pc, record.count), *filter_.symbol);
}

std::optional<filtered_records::elements> filtered_records::elements_of(const trace_record& record) {
  if (record.kind != trace_kind::load && record.kind != trace_kind::store) return std::nullopt;
  const auto form = names_.elements_at(record.pc, names_.module_of(record.pc, record.count));
  const auto count = form ? quern::elements_of(record, *form, reader_.header().vector_bytes) : std::nullopt;
  return count ? std::optional<elements>({*form, *count}) : std::nullopt;
}

std::optional<trace_record> filtered_records::next() {
  if (filter_.limit && given_ == *filter_.limit) {
    reader_.end_progress();
    return std::nullopt;
  }
  while (const std::optional<trace_record> record = reader_.next()) {
    region_ = regions_.region_of(*record);
    if (!takes(*record)) continue;
    ++given_;
    return record;
  }
  return std::nullopt;
}

}  // namespace quern
