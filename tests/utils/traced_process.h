// Helpers to trace in a process of its own, since a process has one trace, and to look at what it left.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "sve/memory/trace.h"
#include "utils/trace_reader.h"

namespace quern::test {

namespace fs = std::filesystem;

// A new folder that is the current one for the life of the test, and QUERN_TRACE unset.
class trace_test : public testing::Test {
 protected:
  trace_test() : start_(fs::current_path()) {
    std::string name = (fs::temp_directory_path() / "quern.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    folder = name;
    fs::current_path(folder);
    unsetenv("QUERN_TRACE");
  }
  ~trace_test() override {
    fs::current_path(start_);
    fs::remove_all(folder);
  }
  std::vector<fs::path> files() const {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder)) found.push_back(entry.path());
    return found;
  }
  // The one file of the folder.
  std::string only_file() const {
    const auto found = files();
    EXPECT_EQ(found.size(), 1u);
    return found.empty() ? "" : found.front().string();
  }
  fs::path folder;

 private:
  fs::path start_;
};

struct child_end {
  int status = 0;  // as waitpid gives it
  pid_t process = 0;
  std::string errors;  // what it wrote on standard error
  bool ended_well() const { return WIFEXITED(status) && WEXITSTATUS(status) == 0; }
  long lines() const { return std::count(errors.begin(), errors.end(), '\n'); }
};

// A process that does `work` and ends with its answer as exit status.
class child {
 public:
  explicit child(const std::function<int()>& work) {
    if (pipe(errors_) != 0) throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ != 0) {
      close(errors_[1]);
      return;
    }
    dup2(errors_[1], STDERR_FILENO);
    close(errors_[0]);
    close(errors_[1]);
    const int status = work();
    _exit(status);
  }
  pid_t process() const { return process_; }
  child_end wait() const {
    child_end end;
    end.process = process_;
    char bytes[4096];
    for (ssize_t got; (got = read(errors_[0], bytes, sizeof bytes)) > 0;)
      end.errors.append(bytes, static_cast<std::size_t>(got));
    close(errors_[0]);
    waitpid(process_, &end.status, 0);
    return end;
  }

 private:
  int errors_[2]{};
  pid_t process_ = 0;
};

inline child_end run(const std::function<int()>& work) { return child(work).wait(); }

// Records whose every field follows from the count, so that mixed ones are seen.
inline sve_mem_ref_t record_of_count(std::uint64_t count) {
  sve_mem_ref_t record{};
  record.count = count;
  record.tid = static_cast<std::uint32_t>(pthread_self());
  record.group = static_cast<std::uint32_t>(count % 8);
  record.kind = count % 2 != 0 ? MEM_LOAD : MEM_STORE;
  record.size = count * 3 + 1;
  record.addr = 0x10000 + count * 5;
  record.pc = 0x400000 + count * 7;
  return record;
}
inline bool is_whole(const trace_record& record) {
  const sve_mem_ref_t wanted = record_of_count(record.count);
  return record.group == wanted.group && record.size == wanted.size && record.addr == wanted.addr &&
         record.pc == wanted.pc && record.kind == (wanted.kind == MEM_LOAD ? trace_kind::load : trace_kind::store);
}
inline void store_records(std::uint64_t number) {
  for (std::uint64_t i = 0; i != number; ++i) trace_mem(record_of_count(incr_count()));
}

// Where the first chunk with records begins: behind the one with the list of modules.
inline std::uint64_t records_offset(const std::string& path) {
  return trace_reader(path).header().header_size + trace_chunk_size;
}

// Every count from 0 up to `number` once, in order, each record whole.
inline void expect_all_counts(trace_reader& reader, std::uint64_t number) {
  EXPECT_EQ(reader.summary().records, number);
  EXPECT_EQ(reader.summary().missing, 0u);
  for (std::uint64_t count = 0; count != number; ++count) {
    const auto record = reader.next();
    ASSERT_TRUE(record.has_value()) << count;
    ASSERT_EQ(record->count, count);
    ASSERT_TRUE(is_whole(*record)) << count;
  }
  EXPECT_FALSE(reader.next().has_value());
}

}  // namespace quern::test
