// Where a trace goes: the names, what is refused, what is left behind, and who gets a file of their own.
#include <sys/resource.h>

#include <climits>
#include <fstream>
#include <thread>

#include "sve/memory/trace_forked.h"
#include "tests/utils/traced_process.h"

namespace quern::test {
namespace {

struct Place : trace_test {
  // Traces `number` records in a process of its own under that QUERN_TRACE (null: unset).
  static child_end trace_to(const char* value, std::uint64_t number = 1) {
    return run([=] {
      if (value != nullptr) setenv("QUERN_TRACE", value, 1);
      if (!sve_init(0, "program")) return 3;
      store_records(number);
      return 0;
    });
  }
  std::uint64_t records_in(const fs::path& name) const {
    return trace_reader((folder / name).string()).summary().records;
  }
};

std::string numbered(const char* before, pid_t process, const char* behind) {
  return before + std::to_string(process) + behind;
}

TEST_F(Place, TheDefaultIsNamedForTheProcessInTheCurrentFolder) {
  const child_end end = trace_to(nullptr);
  EXPECT_EQ(fs::path(only_file()).filename(), numbered("quern.", end.process, ".trace"));
}

TEST_F(Place, AnEmptyQuernTraceMeansTheDefault) {
  const child_end end = trace_to("");
  EXPECT_EQ(fs::path(only_file()).filename(), numbered("quern.", end.process, ".trace"));
}

TEST_F(Place, PercentPIsTheProcessNumberWhereverItStands) {
  const child_end end = trace_to("a%p.b%p%");
  EXPECT_EQ(fs::path(only_file()).filename(), numbered("a", end.process, ".b") + std::to_string(end.process) + "%");
}

TEST_F(Place, PercentPInTheCurrentFoldersNameIsLeftAlone) {
  fs::create_directory(folder / "in%p");
  fs::current_path(folder / "in%p");
  EXPECT_TRUE(trace_to("t").ended_well());
  EXPECT_EQ(records_in("in%p/t"), 1u);
}

TEST_F(Place, ItIsSettledAtTheStartWhateverFolderTheProgramGoesTo) {
  fs::create_directory(folder / "elsewhere");
  const child_end end = run([] {
    if (!sve_init(0, "")) return 1;
    fs::current_path("elsewhere");
    store_records(2000);
    return 0;
  });
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(records_in(numbered("quern.", end.process, ".trace")), 2000u);
}

TEST_F(Place, NoRecordNoFile) {
  EXPECT_TRUE(trace_to(nullptr, 0).ended_well());
  EXPECT_TRUE(trace_to("chosen", 0).ended_well());
  EXPECT_TRUE(files().empty());
}

TEST_F(Place, WhatCannotBeWrittenIsRefusedAtTheStart) {
  std::ofstream("file") << "text";
  fs::create_directory("folder");
  const std::string long_name(300, 'n'), long_path = "/" + std::string(5000, 'p');
  for (const char* value : {"absent/trace", "file/trace", "folder", ".", "/", "/proc/trace", "/dev/full", "/dev/null",
                            long_name.c_str(), long_path.c_str()}) {
    const child_end end = trace_to(value, 0);
    EXPECT_TRUE(WIFEXITED(end.status) && WEXITSTATUS(end.status) == 3) << value;
    EXPECT_EQ(end.lines(), 1) << value << ": " << end.errors;
    EXPECT_NE(end.errors.find("QUERN_TRACE"), std::string::npos) << value;
  }
  EXPECT_EQ(files().size(), 2u);
}

// Names that are too long by a few letters: their beginning alone would be a path that can be written.

// A path to `name` in the folder, of `size` letters.
std::string path_of_size(std::size_t size, const fs::path& folder, const std::string& name) {
  std::string path = folder.string() + "/";
  while (path.size() + 2 + name.size() <= size) path += "./";
  return path + std::string(size - path.size() - name.size(), '/') + name;
}
constexpr std::size_t longest_path = PATH_MAX - 1;

TEST_F(Place, APathTooLongByALetterIsRefusedNotCut) {
  const std::string path = path_of_size(longest_path + 1, folder, "trace%p");
  const child_end end = trace_to(path.c_str());
  EXPECT_TRUE(WIFEXITED(end.status) && WEXITSTATUS(end.status) == 3) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_NE(end.errors.find("File name too long"), std::string::npos) << end.errors;
  EXPECT_TRUE(files().empty());
}

TEST_F(Place, APathWithoutRoomForTheProcessNumberIsRefusedNotCut) {
  const std::string path = path_of_size(longest_path - 1, folder, "trace");
  const child_end end = trace_to(path.c_str());
  EXPECT_TRUE(WIFEXITED(end.status) && WEXITSTATUS(end.status) == 3) << end.status;
  EXPECT_NE(end.errors.find("File name too long"), std::string::npos) << end.errors;
  EXPECT_TRUE(files().empty());
}

TEST_F(Place, ATakenPathWithoutRoomForANumberBehindItCostsOneLine) {
  const child_end end = run([&] {
    const std::string process = "." + std::to_string(getpid());
    const std::string path = path_of_size(longest_path - process.size() - 1, folder, "trace");
    setenv("QUERN_TRACE", path.c_str(), 1);
    if (!sve_init(0, "")) return 1;
    std::ofstream("trace") << "first";
    std::ofstream("trace" + process) << "second";
    store_records(2);
    return 0;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_NE(end.errors.find("File name too long"), std::string::npos) << end.errors;
  EXPECT_EQ(files().size(), 2u);
}

TEST_F(Place, ADefaultInAFolderOfTooLongANameCostsOneLine) {
  for (std::string path = folder; path.size() != longest_path - 6;) {
    const std::size_t room = longest_path - 6 - path.size();
    const std::string part(room > 202 ? 200 : room - 1, 'd');
    fs::create_directory(part);
    fs::current_path(part);
    path += "/" + part;
  }
  const child_end end = trace_to(nullptr);
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_NE(end.errors.find("File name too long"), std::string::npos) << end.errors;
  EXPECT_TRUE(fs::is_empty("."));
}

TEST_F(Place, AnEarlierFileIsNeverOverwritten) {
  std::ofstream("trace") << "precious";
  const child_end end = trace_to("trace");
  EXPECT_TRUE(end.ended_well());
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_EQ(fs::file_size("trace"), 8u);
  EXPECT_EQ(records_in(numbered("trace.", end.process, "")), 1u);
  EXPECT_NE(end.errors.find(numbered("trace.", end.process, "")), std::string::npos);
}

// A program that runs another in its place keeps its process number.
TEST_F(Place, ATakenNameWithTheProcessNumberGetsANumberBehindIt) {
  const child_end end = run([] {
    const std::string name = "quern." + std::to_string(getpid()) + ".trace";
    std::ofstream(name) << "first";
    std::ofstream(name + ".1") << "second";
    if (!sve_init(0, "")) return 1;
    store_records(1);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  EXPECT_EQ(files().size(), 3u);
  EXPECT_EQ(records_in(numbered("quern.", end.process, ".trace.2")), 1u);
}

// A process that traces, forks a child that traces, and traces on. Parent and child are told apart by the number of
// their records.
child_end trace_across_fork(const char* value) {
  return run([=] {
    if (value != nullptr) setenv("QUERN_TRACE", value, 1);
    if (!sve_init(0, "")) return 1;
    store_records(2000);
    const pid_t process = fork();
    if (process == 0) {
      std::thread(store_records, 1500).join();
      store_records(100);
      sve_exit();
      _exit(0);
    }
    store_records(500);
    int status = 0;
    waitpid(process, &status, 0);
    return status;
  });
}

// The folder holds the parent's trace under its name and the child's under the name made of the child's number.
void expect_own_files(const fs::path& parents, const char* before, const char* behind) {
  trace_reader parent(parents.string());
  expect_all_counts(parent, 2500);
  EXPECT_EQ(parent.header().finished, 0u);
  EXPECT_EQ(parent.summary().threads.size(), 1u);
  for (const auto& entry : fs::directory_iterator(".")) {
    if (entry.path().filename() == parents) continue;
    trace_reader child(entry.path().string());
    EXPECT_EQ(entry.path().filename(), numbered(before, static_cast<pid_t>(child.header().process), behind));
    EXPECT_EQ(child.header().parent, parent.header().process);
    EXPECT_EQ(child.header().finished, 1u);
    expect_all_counts(child, 1600);
  }
}

TEST_F(Place, AForkedChildWritesAFileOfItsOwn) {
  const child_end end = trace_across_fork(nullptr);
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(files().size(), 2u);
  expect_own_files(numbered("quern.", end.process, ".trace"), "quern.", ".trace");
}

TEST_F(Place, AForkedChildAddsItsNumberToANameWithoutOne) {
  const child_end end = trace_across_fork("trace");
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(files().size(), 2u);
  expect_own_files("trace", "trace.", "");
}

TEST_F(Place, AForkedChildTakesNoNameThatItsParentHasYetToTake) {
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    const pid_t process = fork();
    if (process == 0) {
      store_records(1);
      _exit(0);
    }
    waitpid(process, nullptr, 0);
    store_records(2);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  EXPECT_EQ(files().size(), 2u);
  EXPECT_EQ(records_in("trace"), 2u);
}

TEST_F(Place, SayingThatItWasForkedDoesNothingElsewhere) {
  const child_end end = run([] {
    if (!sve_init(0, "")) return 1;
    store_records(3);
    quern_trace_forked();
    store_records(3);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  trace_reader reader(only_file());
  expect_all_counts(reader, 6);
}

// What fails only when there is something to write: one line, and the program runs on.

TEST_F(Place, ADefaultThatCannotBeWrittenCostsOneLine) {
  fs::create_directory(folder / "gone");
  fs::current_path(folder / "gone");
  fs::remove(folder / "gone");
  const child_end end = trace_to(nullptr, 5000);
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_NE(end.errors.find("can't make the trace file"), std::string::npos) << end.errors;
  fs::current_path(folder);
}

TEST_F(Place, AFolderThatGoesAwayCostsOneLineAndTheRecordsSoFarAreKept) {
  fs::create_directory(folder / "before");
  const child_end end = run([&] {
    setenv("QUERN_TRACE", "before/trace", 1);
    if (!sve_init(0, "")) return 1;
    store_records(100);
    fs::rename("before", "after");
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) threads.emplace_back(store_records, 3000);
    for (std::thread& thread : threads) thread.join();
    store_records(10'000);
    return 0;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  trace_reader reader("after/trace");
  EXPECT_EQ(reader.header().stop_error, static_cast<std::uint32_t>(ENOENT));
  EXPECT_FALSE(reader.is_cut());
  EXPECT_EQ(reader.summary().records, trace_chunk_records);  // the chunk that was mapped is filled
  for (std::uint64_t count = 0; count != 100; ++count) EXPECT_EQ(reader.next()->count, count);
}

TEST_F(Place, AFileThatAnotherTookThePlaceOfIsLeftAlone) {
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    store_records(1);
    fs::rename("trace", "moved");
    std::ofstream("trace") << "another's";
    store_records(5000);
    return 0;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_NE(end.errors.find("is not there any more"), std::string::npos) << end.errors;
  EXPECT_EQ(fs::file_size("trace"), 9u);
  EXPECT_EQ(records_in("moved"), trace_chunk_records);
}

TEST_F(Place, NoRoomCostsOneLineAndNoSignal) {
  const auto chunks = std::uint64_t{3};
  const child_end end = run([=] {
    const std::uint64_t room = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) + chunks * trace_chunk_size + 1000;
    const rlimit limit{room, room};
    setrlimit(RLIMIT_FSIZE, &limit);
    if (!sve_init(0, "")) return 1;
    store_records(20'000);
    return 0;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  trace_reader reader(only_file());
  EXPECT_EQ(reader.header().stop_error, static_cast<std::uint32_t>(EFBIG));
  EXPECT_FALSE(reader.is_cut());
  EXPECT_GT(reader.summary().records, trace_chunk_records);
  expect_all_counts(reader, reader.summary().records);
}

TEST_F(Place, NoRoomForTheHeaderLeavesNoFile) {
  const child_end end = run([] {
    const rlimit limit{100, 100};
    setrlimit(RLIMIT_FSIZE, &limit);
    if (!sve_init(0, "")) return 1;
    store_records(3);
    return 0;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(end.lines(), 1) << end.errors;
  EXPECT_TRUE(files().empty());
}

// The application may close every descriptor and open its own under the same numbers.
TEST_F(Place, NoDescriptorIsKeptThatTheProgramCouldCloseOrReuse) {
  const child_end end = run([] {
    const int lowest = dup(0);
    close(lowest);
    if (!sve_init(0, "")) return 1;
    store_records(1);
    const int now = dup(0);
    store_records(5000);
    return now == lowest ? 0 : 2;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
  EXPECT_EQ(records_in(fs::path(only_file()).filename()), 5001u);
}

}  // namespace
}  // namespace quern::test
