// Which records of a trace a command is about, as its options say, and the regions of interest that they lie in.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tools/code_names.h"
#include "utils/trace_reader.h"

namespace CLI {
class App;
}

namespace quern {

struct number_range {
  std::uint64_t first = 0, last = ~std::uint64_t{0};
  bool meets(std::uint64_t from, std::uint64_t to) const { return from <= last && to >= first; }
};

struct trace_filter {
  std::optional<trace_kind> kind;
  std::optional<number_range> addresses, pcs;
  std::optional<std::string> symbol;
  std::optional<std::uint64_t> thread, region, limit;
};

// Of a decimal or, behind 0x, a hexadecimal text; nothing if it is none.
std::optional<std::uint64_t> parse_number(std::string_view text);

// Adds the options --thread, --kind, --address, --pc, --symbol, --region and --limit to a command.
void add_filter_options(CLI::App& command, trace_filter& filter);

// Those of them that let through all records of an instruction or none: --thread, --pc, --symbol and --region.
void add_group_filter_options(CLI::App& command, trace_filter& filter);

// Regions are numbered from 1 on in the order of the start markers that open them; a start marker in a region opens
// none. A thread is in region 0 where it is in none. The numbers are the file's where it has them.
class region_count {
 public:
  // The region of the record, a marker's own included. To be asked for each record, in their order.
  std::uint64_t region_of(const trace_record& record);

 private:
  std::uint64_t regions_ = 0;
  std::map<std::uint32_t, std::uint64_t> open_;  // by thread
};

// The records of a reader that a filter lets through, in their order.
class filtered_records {
 public:
  // Throws user_error where the filter can't be, as that of a symbol that no module has.
  filtered_records(trace_reader& reader, const trace_filter& filter);
  std::optional<trace_record> next();
  std::uint64_t region() const { return region_; }  // of the record that came last
  code_names& names() { return names_; }

  // The elements of a record, where the instruction at its pc tells of them.
  struct elements {
    element_form form;
    std::uint64_t count;
  };
  std::optional<elements> elements_of(const trace_record& record);

 private:
  bool takes(const trace_record& record);

  trace_reader& reader_;
  const trace_filter& filter_;
  code_names names_;
  region_count regions_;
  std::uint64_t region_ = 0, given_ = 0;
};

}  // namespace quern
