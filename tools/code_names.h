// Names of the code addresses of a trace, by the files of the modules that it lists.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/accessed_elements.h"
#include "tools/module_code.h"
#include "tools/source_lines.h"
#include "utils/trace_modules.h"

namespace quern {

struct code_place {
  std::uint64_t pc = 0;
  std::string function;      // "kernel(float*, int)"; empty where no symbol tells
  std::string module;        // "libkernels.so"; empty for the program itself, and where no module is known
  std::string source;        // "/src/kernel.c:12"; empty where nothing tells
  std::uint64_t offset = 0;  // from the function's start, else the address in the file, else the pc

  std::string text() const;           // "kernel+0x1c", "kernel+0x1c (libkernels.so)", "0x4007d0"
  std::string function_text() const;  // "kernel", "kernel (libkernels.so)", "? (libkernels.so)", "?"
  std::string source_text() const;    // "kernel.c:12"
};

class code_names {
 public:
  // `modules` must outlive it. The module of the program's name is not told in names.
  code_names(const trace_modules& modules, std::string program);

  // The number of the pc's module, as trace_modules::find() has it.
  std::size_t module_of(std::uint64_t pc, std::uint64_t count);

  // The names of a place in a module. Says once on standard error what is wrong with a file.
  code_place place(std::uint64_t pc, std::size_t module);

  // The variable that a data address in a module is in, and where in memory that lies. Its name tells the module as
  // code_place::text() does.
  struct variable {
    std::string name;
    std::uint64_t first, last;
  };
  std::optional<variable> variable_at(std::uint64_t address, std::size_t module);

  // What the instruction there makes of a lane; nothing where no file tells, and of those that are not traced.
  std::optional<element_form> elements_at(std::uint64_t pc, std::size_t module);

  // Whether the place is in a function of that name, with or without its parameters.
  bool is_in(std::uint64_t pc, std::size_t module, const std::string& function);

  // Whether a module has such a function.
  bool has_function(const std::string& function);

 private:
  struct loaded_file {
    explicit loaded_file(const std::filesystem::path& path) : code(path), lines(path) {}
    module_code code;
    source_lines lines;
  };
  struct recent {
    std::uint64_t pc = 1;  // no instruction's
    std::uint64_t first_count = 0, end_count = 0;
    std::size_t module = 0;
  };

  const loaded_file* file_of(std::size_t module);
  std::unique_ptr<loaded_file> load(const trace_module& module) const;

  const trace_modules& modules_;
  std::string program_;
  std::array<recent, 256> recent_;
  std::map<std::size_t, std::unique_ptr<loaded_file>> files_;  // by module; null where the file is of no use
  std::map<std::pair<std::uint64_t, std::size_t>, bool> is_in_;
  std::map<std::pair<std::uint64_t, std::size_t>, std::optional<element_form>> elements_;
};

// Whether a function's name, as symbols have it when demangled, is what a user gave.
bool is_function_name(std::string_view name, std::string_view wanted);

}  // namespace quern
