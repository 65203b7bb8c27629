// Places of code are named by the files of the modules that a trace lists, if these are the files that ran.
#include "tools/code_names.h"

#include <gtest/gtest.h>
#include <link.h>

#include <cstring>
#include <filesystem>

#include "tools/module_code.h"

extern "C" [[gnu::noinline]] int quern_function_to_be_named(int x) {
  asm volatile("" : "+r"(x));
  return x + 1;
}

namespace quern::test {

// In a namespace, and with parameters in its name.
[[gnu::noinline]] int to_be_named(int x, const char*) {
  asm volatile("" : "+r"(x));
  return x + 2;
}

namespace {

template <class Function>
std::uint64_t address_of(Function* function) {
  return reinterpret_cast<std::uint64_t>(function);
}

const std::uint64_t c_function = address_of(quern_function_to_be_named), cpp_function = address_of(to_be_named);

// Where this program's file begins in memory.
std::uint64_t program_begin() {
  std::uint64_t base = 0;
  const auto first = [](dl_phdr_info* info, std::size_t, void* to) {
    *static_cast<std::uint64_t*>(to) = info->dlpi_addr;
    return 1;
  };
  dl_iterate_phdr(first, &base);
  return base;
}

trace_modules one_module(const std::string& path, const std::string& build_id) {
  module_entry entry{};
  entry.begin = program_begin();
  entry.end = entry.begin + (1 << 30);
  entry.build_id_bytes = static_cast<std::uint32_t>(build_id.size());
  entry.path_bytes = static_cast<std::uint32_t>(path.size());
  entry.size = static_cast<std::uint32_t>(sizeof entry + build_id.size() + path.size());
  std::string bytes(reinterpret_cast<const char*>(&entry), sizeof entry);
  trace_modules modules;
  EXPECT_TRUE(modules.take(bytes + build_id + path, true));
  return modules;
}

struct CodeNames : testing::Test {
  std::string program = std::filesystem::read_symlink("/proc/self/exe");
  std::string build_id = std::string(module_code(program).build_id());
};

TEST_F(CodeNames, APlaceHasItsFunctionItsOffsetAndItsModule) {
  ASSERT_FALSE(build_id.empty());
  const trace_modules modules = one_module(program, build_id);
  code_names names(modules, "another");
  const code_place place = names.place(c_function + 1, names.module_of(c_function + 1, 7));
  const std::string module = std::filesystem::path(program).filename();
  EXPECT_EQ(place.function, "quern_function_to_be_named");
  EXPECT_EQ(place.text(), "quern_function_to_be_named+0x1 (" + module + ")");
  EXPECT_EQ(place.function_text(), "quern_function_to_be_named (" + module + ")");
  EXPECT_EQ(place.pc, c_function + 1);
}

TEST_F(CodeNames, TheProgramItselfIsNotTold) {
  const trace_modules modules = one_module(program, build_id);
  code_names names(modules, std::filesystem::path(program).filename());
  EXPECT_EQ(names.place(cpp_function, 0).text(), "quern::test::to_be_named(int, char const*)+0x0");
}

TEST_F(CodeNames, AFileWithoutTheBuildIdOfWhatRanNamesNothing) {
  std::string other = build_id;
  other.front() = static_cast<char>(other.front() + 1);
  const trace_modules modules = one_module(program, other);
  code_names names(modules, "");
  testing::internal::CaptureStderr();
  const code_place place = names.place(c_function, 0);
  names.place(c_function, 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "quern: " + program + " is not what ran (its build ID differs): its places are told by their addresses\n");
  EXPECT_EQ(place.function, "");
  EXPECT_FALSE(names.has_function("quern_function_to_be_named"));
}

TEST_F(CodeNames, AFileThatIsGoneNamesNothing) {
  const trace_modules modules = one_module("/absent/library.so", "");
  code_names names(modules, "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(names.place(program_begin() + 0x1234, 0).text(), "0x1234 (library.so)");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "quern: /absent/library.so can't be read: its places are told by their addresses\n");
}

TEST_F(CodeNames, WhatIsInNoModuleIsAnAddress) {
  const trace_modules modules = one_module(program, build_id);
  code_names names(modules, "");
  EXPECT_EQ(names.module_of(0x10, 0), 1u);
  EXPECT_EQ(names.place(0x10, 1).text(), "0x10");
  EXPECT_EQ(names.place(0x10, 1).function_text(), "?");
}

TEST_F(CodeNames, AFunctionIsAskedForWithOrWithoutItsParameters) {
  const trace_modules modules = one_module(program, build_id);
  code_names names(modules, "");
  EXPECT_TRUE(names.is_in(cpp_function, 0, "quern::test::to_be_named"));
  EXPECT_TRUE(names.is_in(cpp_function, 0, "quern::test::to_be_named(int, char const*)"));
  EXPECT_FALSE(names.is_in(c_function, 0, "quern::test::to_be_named"));
  EXPECT_TRUE(names.has_function("quern::test::to_be_named"));
  EXPECT_FALSE(names.has_function("quern::test::to_be"));
}

}  // namespace
}  // namespace quern::test
