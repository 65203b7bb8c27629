// The list of modules: each program and library whose code is in memory, from the record at which it was found to that
// at which it was gone, whatever happens to the process; and a reader that believes none of it.
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>

#include <chrono>
#include <cstring>
#include <fstream>
#include <random>

#include "tests/utils/traced_process.h"
#include "utils/build_id.h"

namespace quern::test {
namespace {

// A library that every system has, and that the tests' own program does without.
constexpr const char* library_name = "libresolv.so.2";

void load_at(const void* pc) {
  trace_mem({incr_count(), 5, 0, MEM_LOAD, 0, 8, 0x1000, reinterpret_cast<std::uint64_t>(pc)});
}
void pass_marker(std::uint32_t tid) { trace_mem({incr_count(), tid, 0, MEM_STORE, 0, 0, 0, 0}); }

const void* code_of(void* library) { return dlsym(library, "__p_query"); }

std::string build_id_in_memory(const void* pc) {
  struct search {
    std::uint64_t pc;
    std::string found;
  } wanted{reinterpret_cast<std::uint64_t>(pc), {}};
  const auto look = [](dl_phdr_info* info, std::size_t, void* to) {
    search& mine = *static_cast<search*>(to);
    bool is_here = false;
    for (int i = 0; i != info->dlpi_phnum; ++i) {
      const ElfW(Phdr)& segment = info->dlpi_phdr[i];
      is_here |= segment.p_type == PT_LOAD && mine.pc - (info->dlpi_addr + segment.p_vaddr) < segment.p_memsz;
    }
    for (int i = 0; is_here && i != info->dlpi_phnum; ++i) {
      const ElfW(Phdr)& segment = info->dlpi_phdr[i];
      const auto* const notes = reinterpret_cast<const char*>(info->dlpi_addr + segment.p_vaddr);
      if (segment.p_type == PT_NOTE && mine.found.empty())
        mine.found = find_build_id({notes, segment.p_memsz}, segment.p_align);
    }
    return is_here ? 1 : 0;
  };
  dl_iterate_phdr(look, &wanted);
  return wanted.found;
}

struct Modules : trace_test {
  static std::string name_at(const trace_reader& reader, std::uint64_t pc, std::uint64_t count) {
    const std::size_t found = reader.modules().find(pc, count);
    return found == reader.modules().all().size() ? "" : fs::path(reader.modules().all()[found].path).filename();
  }
  // The child tells by this what the parent can't know.
  struct told {
    std::uint64_t pc = 0;
    std::string build_id;
  };
  static void tell(const void* pc) {
    std::ofstream("told") << reinterpret_cast<std::uint64_t>(pc) << "\n" << build_id_in_memory(pc);
  }
  static told what_was_told() {
    told all;
    std::ifstream file("told");
    file >> all.pc;
    file.get();
    all.build_id.assign(std::istreambuf_iterator<char>(file), {});
    return all;
  }
  static std::uint64_t nanoseconds_now() {
    return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch() /
                                      std::chrono::nanoseconds(1));
  }
  static bool begin() {
    setenv("QUERN_TRACE", "trace", 1);
    return sve_init(0, "");
  }
};

TEST_F(Modules, TheProgramIsNamedWithItsFileItsBuildIdAndAllItsSegments) {
  static char data[100'000];  // behind what the file has
  const std::uint64_t before = nanoseconds_now();
  const child_end end = run([] {
    if (!begin()) return 1;
    load_at(reinterpret_cast<const void*>(&load_at));
    tell(reinterpret_cast<const void*>(&load_at));
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  const trace_reader reader("trace");
  const auto [pc, build_id] = what_was_told();
  const std::size_t found = reader.modules().find(pc, 0);
  ASSERT_LT(found, reader.modules().all().size());
  const trace_module& module = reader.modules().all()[found];
  EXPECT_EQ(module.path, fs::read_symlink("/proc/self/exe").string());
  EXPECT_EQ(module.build_id, build_id);
  EXPECT_FALSE(build_id.empty());
  EXPECT_EQ(module.first_count, 0u);
  EXPECT_EQ(reader.modules().find(reinterpret_cast<std::uint64_t>(data + sizeof data - 1), 0), found);
  EXPECT_LE(before, module.time);
  EXPECT_LE(module.time, nanoseconds_now());
}

TEST_F(Modules, ALibraryThatIsLoadedUnderWayIsThereFromItsFirstRecordOn) {
  const child_end end = run([] {
    if (!begin()) return 1;
    load_at(reinterpret_cast<const void*>(&load_at));
    void* const library = dlopen(library_name, RTLD_NOW);
    const void* const code = library != nullptr ? code_of(library) : nullptr;
    if (code == nullptr) return 2;
    load_at(reinterpret_cast<const void*>(&load_at));
    load_at(code);
    tell(code);
    kill(getpid(), SIGKILL);
    return 3;
  });
  ASSERT_TRUE(WIFSIGNALED(end.status)) << end.status << end.errors;
  const trace_reader reader("trace");
  const auto [pc, build_id] = what_was_told();
  EXPECT_EQ(name_at(reader, pc, 2), library_name);
  const trace_module& module = reader.modules().all()[reader.modules().find(pc, 2)];
  EXPECT_EQ(module.first_count, 2u);
  EXPECT_EQ(module.build_id, build_id);
}

TEST_F(Modules, ALibraryThatIsUnloadedIsGoneAtTheNextMarkerAndAtTheEnd) {
  for (const bool with_marker : {true, false}) {
    const child_end end = run([=] {
      if (!begin()) return 1;
      void* const library = dlopen(library_name, RTLD_NOW);
      const void* const code = library != nullptr ? code_of(library) : nullptr;
      if (code == nullptr) return 2;
      load_at(code);
      tell(code);
      dlclose(library);
      usleep(20'000);
      if (with_marker) pass_marker(tid_start_marker);
      if (with_marker) pass_marker(tid_stop_marker);
      if (!with_marker) sve_exit();
      return 0;
    });
    ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
    const trace_reader reader("trace");
    const std::uint64_t pc = what_was_told().pc;
    EXPECT_EQ(name_at(reader, pc, 0), library_name);
    EXPECT_EQ(reader.modules().all()[reader.modules().find(pc, 0)].end_count, 1u) << with_marker;
    fs::remove("trace");
  }
}

// A library of the same path as before is another, which may lie elsewhere.
TEST_F(Modules, WhatIsLoadedAgainIsListedAgain) {
  const child_end end = run([] {
    if (!begin()) return 1;
    for (int i = 0; i != 3; ++i) {
      void* const library = dlopen(library_name, RTLD_NOW);
      if (library == nullptr) return 2;
      load_at(reinterpret_cast<const char*>(&load_at) + i);
      usleep(20'000);
      pass_marker(tid_start_marker);
      dlclose(library);
      usleep(20'000);
      pass_marker(tid_stop_marker);
    }
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  const trace_reader reader("trace");
  int listed = 0;
  for (const trace_module& module : reader.modules().all()) listed += module.path.ends_with(library_name);
  EXPECT_EQ(listed, 3);
}

TEST_F(Modules, CodeThatIsInNoFileIsNoModulesAndCostsOneLook) {
  const child_end end = run([] {
    if (!begin()) return 1;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const code = mmap(nullptr, page, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    load_at(code);
    tell(code);
    munmap(code, page);
    const timespec start = [] {
      timespec now{};
      return clock_gettime(CLOCK_MONOTONIC, &now), now;
    }();
    for (int i = 0; i != 200'000; ++i) load_at(i % 2 != 0 ? code : nullptr);
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec - start.tv_sec < 10 ? 0 : 2;  // a look takes a tenth of a millisecond
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  const trace_reader reader("trace");
  EXPECT_EQ(name_at(reader, what_was_told().pc, 0), "");
  EXPECT_EQ(name_at(reader, 0, 1), "");
}

TEST_F(Modules, AFileThatIsNoProgramIsNoModuleWhetherItsBytesMayBeExecutedOrNot) {
  const child_end end = run([] {
    std::ofstream("data") << std::string(10'000, 'x');
    const int file = open("data", O_RDONLY), nameless = memfd_create("nameless", 0);
    if (ftruncate(nameless, 10'000) != 0) return 3;
    for (const auto& [from, may] : {std::pair{file, PROT_READ}, {file, PROT_EXEC}, {nameless, PROT_EXEC}})
      if (mmap(nullptr, 10'000, may, MAP_PRIVATE, from, 0) == MAP_FAILED) return 2;
    if (!begin()) return 1;
    load_at(nullptr);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  const trace_reader reader("trace");
  EXPECT_FALSE(reader.modules().all().empty());
  for (const trace_module& module : reader.modules().all()) {
    EXPECT_FALSE(module.path.ends_with("data"));
    EXPECT_EQ(module.path.find("nameless"), std::string::npos);
  }
}

TEST_F(Modules, AForkedChildListsThemInItsOwnTrace) {
  const child_end end = run([] {
    if (!begin()) return 1;
    load_at(reinterpret_cast<const void*>(&load_at));
    tell(reinterpret_cast<const void*>(&load_at));
    const pid_t process = fork();
    if (process == 0) {
      load_at(reinterpret_cast<const void*>(&load_at));
      _exit(0);
    }
    waitpid(process, nullptr, 0);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  int traces = 0;
  for (const fs::path& file : files()) {
    if (file.filename() == "told") continue;
    ++traces;
    EXPECT_NE(name_at(trace_reader(file.string()), what_was_told().pc, 0), "") << file;
  }
  EXPECT_EQ(traces, 2);
}

TEST_F(Modules, AChildThatSharesTheParentsMemoryDoesNotEndItsTrace) {
  const child_end end = run([] {
    if (!begin()) return 1;
    load_at(nullptr);
    const pid_t process = vfork();
    if (process == 0) {
      sve_exit();
      _exit(0);
    }
    waitpid(process, nullptr, 0);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  EXPECT_EQ(trace_reader("trace").header().finished, 0u);
}

// Markers carry the numbers of regions, which are the process's.
TEST_F(Modules, MarkersTellTheNumberOfTheirRegion) {
  const child_end end = run([] {
    if (!begin()) return 1;
    for (const std::uint32_t tid : {tid_stop_marker, tid_start_marker, tid_start_marker, tid_stop_marker,
                                    tid_start_marker, tid_stop_marker, tid_stop_marker})
      pass_marker(tid);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  trace_reader reader("trace");
  for (const std::uint64_t region : {0, 1, 1, 1, 2, 2, 0}) {
    const auto record = reader.next();
    ASSERT_TRUE(record);
    EXPECT_EQ(record->region, region) << record->count;
    EXPECT_EQ(record->addr, 0u);
  }
}

// Entries as they may lie in a file.
struct entry_text {
  std::uint32_t number;
  std::uint64_t count, begin, end;
  std::string path = {};
};
std::string bytes_of(const entry_text& text) {
  module_entry entry{};
  entry.number = text.number;
  entry.count = text.count;
  entry.begin = text.begin;
  entry.end = text.end;
  entry.path_bytes = static_cast<std::uint32_t>(text.path.size());
  entry.size = static_cast<std::uint32_t>((sizeof entry + text.path.size() + 7) / 8 * 8);
  std::string bytes(reinterpret_cast<const char*>(&entry), sizeof entry);
  bytes += text.path;
  bytes.resize(entry.size);
  return bytes;
}

TEST(ModuleList, AnAddressIsItsModulesOfThatTime) {
  trace_modules list;
  std::string bytes;
  for (const entry_text& each : std::initializer_list<entry_text>{{0, 0, 0x1000, 0x2000, "first"},
                                                                  {1, 0, 0x3000, 0x4000, "other"},
                                                                  {0, 10, 0, 0},
                                                                  {2, 20, 0x1800, 0x2800, "second"}})
    bytes += bytes_of(each);
  ASSERT_TRUE(list.take(bytes, true));
  struct question {
    std::uint64_t address, count;
    std::size_t wanted;
  };
  for (const question& q : std::initializer_list<question>{{0xFFF, 0, 3},
                                                           {0x1000, 0, 0},
                                                           {0x1FFF, 9, 0},
                                                           {0x1FFF, 15, 2},  // found later, and the first was gone
                                                           {0x1FFF, 20, 2},
                                                           {0x1400, 30, 0},  // gone, and nothing came
                                                           {0x27FF, 3, 2},
                                                           {0x2800, 30, 3},
                                                           {0x3FFF, 99, 1},
                                                           {0x4000, 99, 3}})
    EXPECT_EQ(list.find(q.address, q.count), q.wanted) << std::hex << q.address << " " << q.count;
}

TEST(ModuleList, WhatIsNoEntryIsRefusedAndWhatCameBeforeIsKept) {
  const std::string good = bytes_of({0, 0, 0x1000, 0x2000, "first"});
  const auto changed = [&](std::size_t offset, std::uint32_t value) {
    std::string bytes = good;
    std::memcpy(bytes.data() + offset, &value, sizeof value);
    return bytes;
  };
  for (const std::string& bad :
       {changed(offsetof(module_entry, size), 0), changed(offsetof(module_entry, size), 55),
        changed(offsetof(module_entry, size), 1000), changed(offsetof(module_entry, path_bytes), 9),
        changed(offsetof(module_entry, path_bytes), ~0u), changed(offsetof(module_entry, build_id_bytes), 65),
        changed(offsetof(module_entry, end), 0x1000), bytes_of({7, 0, 0, 0}), std::string(5, 'x')}) {
    trace_modules list;
    EXPECT_FALSE(list.take(good + bad, true));
    EXPECT_EQ(list.all().size(), 1u);
  }
}

TEST(ModuleList, AnEntryThatIsCutOffIsLeftOutWithoutComplaint) {
  const std::string both = bytes_of({0, 0, 0x1000, 0x2000, "first"}) + bytes_of({1, 0, 0x3000, 0x4000, "second"});
  const std::size_t first = bytes_of({0, 0, 0x1000, 0x2000, "first"}).size();
  for (std::size_t size = 0; size != both.size(); ++size) {
    trace_modules list;
    EXPECT_TRUE(list.take(std::string_view(both).substr(0, size), false)) << size;
    EXPECT_EQ(list.all().size(), size / first) << size;
  }
}

std::string note(std::uint32_t type, const std::string& name, const std::string& description, std::size_t unit) {
  const Elf64_Nhdr header{static_cast<std::uint32_t>(name.size()), static_cast<std::uint32_t>(description.size()),
                          type};
  std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
  for (const std::string& part : {name, description}) {
    bytes += part;
    bytes.resize((bytes.size() - sizeof header + unit - 1) / unit * unit + sizeof header);
  }
  return bytes;
}
const std::string gnu("GNU", 4);

TEST(BuildId, IsFoundAmongOtherNotes) {
  for (const std::size_t unit : {4, 8}) {
    const std::string notes = note(5, gnu, "a property", unit) +
                              note(NT_GNU_BUILD_ID, std::string("XYZ", 4), "no", unit) +
                              note(NT_GNU_BUILD_ID, gnu, "the build ID", unit) + note(1, gnu, "more", unit);
    EXPECT_EQ(find_build_id(notes, unit), "the build ID") << unit;
  }
}

TEST(BuildId, NothingIsReadBeyondTheNotes) {
  const std::string whole = note(NT_GNU_BUILD_ID, gnu, "twelve bytes", 4);
  for (std::size_t size = 0; size != whole.size(); ++size)
    EXPECT_EQ(find_build_id(std::string_view(whole).substr(0, size), 4), "") << size;
  EXPECT_EQ(find_build_id(whole, 4), "twelve bytes");
  EXPECT_EQ(find_build_id(note(NT_GNU_BUILD_ID, gnu, std::string(100, 'x'), 4), 4).size(), most_build_id_bytes);
}

}  // namespace
}  // namespace quern::test
