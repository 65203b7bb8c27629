// Records reach the file whole and once, from any number of threads, from signal handlers, and up to the moment at
// which the process is killed.
#include <sys/mman.h>
#include <sys/time.h>

#include <fstream>
#include <map>
#include <thread>

#include "sve/memory/trace_vector_length.h"
#include "tests/utils/traced_process.h"

namespace quern::test {
namespace {

struct Recording : trace_test {};

TEST_F(Recording, EightThreadsLoseAndMixNothing) {
  constexpr int threads = 8;
  constexpr std::uint64_t each = 10'000;
  const child_end end = run([&] {
    if (!sve_init(0, "eight threads")) return 1;
    std::vector<std::thread> running;
    for (int i = 0; i != threads; ++i) running.emplace_back(store_records, each);
    for (std::thread& thread : running) thread.join();
    sve_exit();
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  EXPECT_EQ(end.errors, "");
  trace_reader reader(only_file());
  EXPECT_EQ(reader.summary().threads.size(), std::size_t{threads});
  EXPECT_EQ(reader.summary().incomplete, 0u);
  EXPECT_FALSE(reader.is_cut());
  expect_all_counts(reader, threads * each);
}

// Each thread's records carry a number that it counts itself; they are read back in its order.
TEST_F(Recording, AThreadsRecordsStayInItsOrder) {
  const auto count_up = [] {
    for (std::uint64_t i = 0; i != 5000; ++i) {
      sve_mem_ref_t record{};
      record.count = incr_count();
      record.size = i;
      trace_mem(record);
    }
  };
  const child_end end = run([&] {
    if (!sve_init(0, "")) return 1;
    std::thread first(count_up), second(count_up);
    first.join();
    second.join();
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.errors;
  trace_reader reader(only_file());
  std::map<std::uint32_t, std::uint64_t> next;
  while (const auto record = reader.next()) ASSERT_EQ(record->size, next[record->thread]++);
  ASSERT_EQ(next.size(), 2u);
  for (const auto& [thread, records] : next) EXPECT_EQ(records, 5000u) << thread;
}

TEST_F(Recording, ThreadsThatEndLeaveTheirRecordsAndNoMapping) {
  constexpr std::uint64_t threads = 20;
  const auto mappings_of_the_file = [] {
    std::ifstream maps("/proc/self/maps");
    int found = 0;
    for (std::string line; std::getline(maps, line);) found += line.ends_with(".trace");
    return found;
  };
  const child_end end = run([&] {
    if (!sve_init(0, "")) return 1;
    std::vector<int> mappings;
    for (std::uint64_t i = 0; i != threads; ++i) {
      std::thread(store_records, 10).join();
      mappings.push_back(mappings_of_the_file());
    }
    return mappings == std::vector<int>(threads, 2) ? 0 : 2;  // the header, and the list of modules
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  trace_reader reader(only_file());
  expect_all_counts(reader, threads * 10);
}

void trace_in_handler(int) { store_records(7); }

TEST_F(Recording, SignalHandlersTraceInTheMidstOfTracing) {
  const child_end end = run([] {
    if (!sve_init(0, "")) return 1;
    struct sigaction action {};
    action.sa_handler = trace_in_handler;
    action.sa_flags = SA_NODEFER;
    sigaction(SIGALRM, &action, nullptr);
    const itimerval often{{0, 100}, {0, 100}};
    setitimer(ITIMER_REAL, &often, nullptr);
    store_records(200'000);
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  trace_reader reader(only_file());
  const std::uint64_t records = reader.summary().records;
  EXPECT_GT(records, 200'000u);
  EXPECT_EQ(reader.summary().incomplete, 0u);
  expect_all_counts(reader, records);
}

// The record lies in a page that can't be read: trace_mem faults on it with a slot in hand, and the handler fills more
// than a chunk before it lets the record be read.
void* unreadable_page = nullptr;
void trace_and_let_read(int) {
  store_records(3 * trace_chunk_records);
  mprotect(unreadable_page, static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), PROT_READ);
}

TEST_F(Recording, AHandlerThatFillsChunksLeavesTheInterruptedSlotInPlace) {
  const child_end end = run([] {
    if (!sve_init(0, "")) return 1;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    unreadable_page = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    store_records(10);
    auto& record = *static_cast<sve_mem_ref_t*>(unreadable_page);
    record = record_of_count(incr_count());
    mprotect(unreadable_page, page, PROT_NONE);
    signal(SIGSEGV, trace_and_let_read);
    trace_mem(record);
    store_records(10);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  trace_reader reader(only_file());
  EXPECT_EQ(reader.summary().incomplete, 0u);
  expect_all_counts(reader, 21 + 3 * trace_chunk_records);
}

TEST_F(Recording, ErrnoIsKept) {
  const child_end end = run([] {
    if (!sve_init(0, "")) return 1;
    errno = 77;
    store_records(5000);
    return errno == 77 ? 0 : 2;
  });
  EXPECT_TRUE(end.ended_well()) << end.status;
}

TEST_F(Recording, AKilledProcessLeavesAllThatItStored) {
  int reports[2];
  ASSERT_EQ(pipe(reports), 0);
  const child process([&] {
    if (!sve_init(0, "killed")) return 1;
    for (std::uint64_t stored = 0;; stored += 10) {
      if (write(reports[1], &stored, sizeof stored) != sizeof stored) return 2;
      store_records(10);
    }
  });
  close(reports[1]);
  std::uint64_t stored = 0;
  while (stored < 5000 && read(reports[0], &stored, sizeof stored) == sizeof stored) continue;
  kill(process.process(), SIGKILL);
  while (read(reports[0], &stored, sizeof stored) == sizeof stored) continue;
  close(reports[0]);
  const child_end end = process.wait();
  ASSERT_TRUE(WIFSIGNALED(end.status) && WTERMSIG(end.status) == SIGKILL);

  trace_reader reader(only_file());
  EXPECT_FALSE(reader.is_cut());
  EXPECT_EQ(reader.header().finished, 0u);
  EXPECT_GE(reader.summary().records, stored);
  EXPECT_GE(stored, 5000u);
  expect_all_counts(reader, reader.summary().records);
}

TEST_F(Recording, TheHeaderTellsWhoseTraceItIs) {
  const child_end end = run([] {
    if (!sve_init(0, "a program")) return 1;
    store_records(1);
    sve_exit();
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  const trace_reader reader(only_file());
  EXPECT_STREQ(reader.header().application, "a program");
  EXPECT_EQ(reader.header().process, static_cast<std::uint64_t>(end.process));
  EXPECT_EQ(reader.header().parent, static_cast<std::uint64_t>(getpid()));
  EXPECT_EQ(reader.header().vector_bytes, QUERN_VL_BITS / 8u);
  EXPECT_EQ(reader.header().page_size, static_cast<std::uint32_t>(sysconf(_SC_PAGESIZE)));
  EXPECT_EQ(reader.header().finished, 1u);
}

TEST_F(Recording, TheHeaderTellsTheVectorLengthThatTheHostTold) {
  const child_end end = run([] {
    quern_trace_vector_bytes(48);
    if (!sve_init(0, "")) return 1;
    store_records(1);
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  EXPECT_EQ(trace_reader(only_file()).header().vector_bytes, 48u);
}

void pass_marker(std::uint32_t tid) {
  sve_mem_ref_t record{};
  record.count = incr_count();
  record.tid = tid;
  trace_mem(record);
}

TEST_F(Recording, ThreadsThatAreInARegionAreCounted) {
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    pass_marker(tid_stop_marker);  // without a start: no region
    std::thread(pass_marker, tid_start_marker).join();
    pass_marker(tid_start_marker);
    pass_marker(tid_start_marker);
    if (trace_reader("trace").header().open_regions != 2) return 2;
    pass_marker(tid_stop_marker);
    sve_exit();
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  EXPECT_EQ(trace_reader(only_file()).header().open_regions, 1u);
}

TEST_F(Recording, ARegionThatAForkedChildLeavesIsItsParents) {
  const child_end end = run([] {
    if (!sve_init(0, "")) return 1;
    pass_marker(tid_start_marker);
    const pid_t process = fork();
    if (process == 0) {
      store_records(1);
      pass_marker(tid_stop_marker);
      _exit(0);
    }
    waitpid(process, nullptr, 0);
    return 0;
  });
  ASSERT_TRUE(end.ended_well()) << end.status << end.errors;
  for (const fs::path& file : files()) {
    const trace_reader reader(file.string());
    EXPECT_EQ(reader.header().open_regions,
              reader.header().process == static_cast<std::uint64_t>(end.process) ? 1u : 0u);
  }
}

// The bytes of a small file, field by field, as docs/trace-format.md gives them.
TEST_F(Recording, TheFileIsLaidOutAsDocumented) {
  const child_end end = run([] {
    if (!sve_init(0, "x")) return 1;
    store_records(2);
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  FILE* const file = fopen(only_file().c_str(), "rb");
  std::vector<unsigned char> bytes(4 << 20);
  bytes.resize(fread(bytes.data(), 1, bytes.size(), file));
  fclose(file);
  const auto number = [&](std::size_t offset, int size) {
    std::uint64_t value = 0;
    while (size-- != 0) value = value << 8 | bytes.at(offset + static_cast<std::size_t>(size));
    return value;
  };
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 8), "QUERNTRC");
  EXPECT_EQ(number(8, 4), 4u);            // version
  EXPECT_EQ(number(12, 4), 0x01020304u);  // byte order
  const std::uint64_t header_size = number(16, 4), chunk_size = number(20, 4), chunk_header = number(24, 4);
  EXPECT_EQ(chunk_size, 65536u);
  EXPECT_EQ(chunk_header, 64u);
  EXPECT_EQ(number(28, 4), 48u);  // record size
  EXPECT_EQ(number(64, 8), 2u);   // chunks
  EXPECT_EQ(bytes.at(128), 'x');
  EXPECT_EQ(bytes.size(), header_size + 2 * chunk_size);
  const auto text = [&](std::uint64_t offset, std::uint64_t size) {
    return std::string(reinterpret_cast<const char*>(bytes.data()) + offset, size);
  };
  EXPECT_EQ(text(header_size, 8), "QERNMODS");
  const std::uint64_t module = header_size + chunk_header;
  EXPECT_EQ(number(module + 4, 4), 0u);  // its number
  EXPECT_EQ(number(module + 8, 8), 0u);  // the record at which it was found
  EXPECT_EQ(number(module + 24, 8) % 4096, 0u);
  EXPECT_LT(number(module + 24, 8), number(module + 32, 8));  // begin, end
  const std::uint64_t build_id_bytes = number(module + 48, 4), path_bytes = number(module + 52, 4);
  EXPECT_EQ(number(module, 4), (56 + build_id_bytes + path_bytes + 7) / 8 * 8);
  EXPECT_EQ(text(module + 56 + build_id_bytes, path_bytes), fs::read_symlink("/proc/self/exe").string());

  const std::uint64_t records = header_size + chunk_size;
  EXPECT_EQ(text(records, 8), "QERNCHNK");
  EXPECT_EQ(number(records + 28, 4), 2u);  // slots given out
  const std::uint64_t second = records + chunk_header + 48;
  EXPECT_EQ(number(second, 8), 1u);              // count
  EXPECT_EQ(number(second + 16, 4), 1u);         // kind
  EXPECT_EQ(number(second + 20, 4), 1u);         // complete
  EXPECT_EQ(number(second + 24, 8), 4u);         // size
  EXPECT_EQ(number(second + 32, 8), 0x10005u);   // addr
  EXPECT_EQ(number(second + 40, 8), 0x400007u);  // pc
  EXPECT_EQ(number(second + 48 + 20, 4), 0u);    // no third record
}

}  // namespace
}  // namespace quern::test
