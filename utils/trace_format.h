// The trace file, as its writer and its reader share it: a header, then chunks of one size, each filled by one thread.
// A thread stores its records into a chunk as they are; when that is full it packs them behind those that it has packed
// before, and fills the chunk anew, so that a record is always in one of the two at least.
// docs/trace-format.md tells the same to other programs. The writer maps these into memory, and goes through
// std::atomic_ref at the fields that change under way.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quern {

inline constexpr std::uint64_t trace_magic = 0x4352544E52455551;    // "QUERNTRC"
inline constexpr std::uint64_t chunk_magic = 0x4B4E48434E524551;    // "QERNCHNK"
inline constexpr std::uint64_t packed_magic = 0x4B4341504E524551;   // "QERNPACK"
inline constexpr std::uint64_t modules_magic = 0x53444F4D4E524551;  // "QERNMODS"
inline constexpr std::uint32_t trace_version = 4;
inline constexpr std::uint32_t trace_byte_order = 0x01020304;

// At offset 0. All numbers are in the byte order of the machine that wrote them, which `byte_order` shows.
struct trace_file_header {
  std::uint64_t magic;
  std::uint32_t version;
  std::uint32_t byte_order;
  std::uint32_t header_size;        // bytes before chunk 0: the writer's page size
  std::uint32_t chunk_size;         // bytes a chunk, its header included
  std::uint32_t chunk_header_size;  // bytes before a chunk's first record
  std::uint32_t record_size;
  std::uint32_t vector_bytes;
  std::uint32_t page_size;
  std::uint64_t start_time;  // nanoseconds since 1970, UTC
  std::uint64_t process;
  std::uint64_t parent;        // process number of the parent
  std::uint64_t chunks;        // the file is at least that many chunks long, unless it was cut
  std::uint32_t finished;      // 1 once the program has ended in good order
  std::uint32_t stop_error;    // the errno that ended the trace before the program, or 0
  std::uint32_t open_regions;  // threads that have executed a start marker and no stop marker after it
  std::uint8_t reserved[44];
  char application[384];  // ended by a 0
};

static_assert(sizeof(trace_file_header) == 512 && offsetof(trace_file_header, start_time) == 40 &&
              offsetof(trace_file_header, chunks) == 64 && offsetof(trace_file_header, application) == 128);

// A record as stored: the fields of sve_mem_ref_t, with the one that has no meaning there used as the mark that tells a
// whole record from one that its thread was still writing. The mark is stored last. A marker's size is the time at
// which it was executed, in nanoseconds since 1970, and its address the number of the region that it begins or ends.
struct stored_record {
  std::uint64_t count;
  std::uint32_t tid;
  std::uint32_t group;
  std::uint32_t kind;
  std::uint32_t complete;  // the chunk's generation, or another number while the record is not whole
  std::uint64_t size;
  std::uint64_t addr;
  std::uint64_t pc;
};

static_assert(sizeof(stored_record) == 48 && offsetof(stored_record, complete) == 20);

inline constexpr std::uint32_t trace_chunk_size = 64 << 10;

// Chunk n is at header_size + n * chunk_size. It holds records or, where its magic says so, blocks of packed ones, or
// entries of the list of modules.
struct trace_chunk_header {
  std::uint64_t magic;  // 0 while the chunk is not in use
  std::uint64_t number;
  std::uint64_t pthread;  // pthread_self() of the thread; its low half is the `tid` of the thread's records
  std::uint32_t thread;   // the kernel's number of the thread
  std::uint32_t count;    // slots given out from the front, may exceed those that there are; or bytes of what is whole
  std::uint64_t time;     // when it was begun, or begun anew: nanoseconds since 1970
  std::uint32_t generation;  // from 1; one more each time that the chunk's records have been packed
  std::uint8_t reserved[20];
};

static_assert(sizeof(trace_chunk_header) == 64);

inline constexpr std::uint32_t trace_chunk_records =
    (trace_chunk_size - sizeof(trace_chunk_header)) / sizeof(stored_record);

struct trace_chunk {
  trace_chunk_header header;
  stored_record records[trace_chunk_records];
};

static_assert(sizeof(trace_chunk) == trace_chunk_size);

// Records that were packed from a chunk: those from `first_slot` on. The packed bytes follow: a block of LZ4's, of the
// flags of all records and then their numbers. Before version 4 they are flags and numbers record by record, not
// compressed, and the last two fields are not there. A block is whole once the chunk's count of bytes includes it.
struct packed_block_header {
  std::uint32_t size;  // bytes, this header and an end of 0 to 7 unused ones included
  std::uint32_t records;
  std::uint32_t source;      // the chunk's number
  std::uint32_t generation;  // of that chunk
  std::uint64_t time;        // of that chunk
  std::uint32_t first_slot;
  std::uint32_t packed_bytes;
  std::uint32_t unpacked_bytes;  // before they were compressed
  std::uint32_t reserved;
};

static_assert(sizeof(packed_block_header) == 40 && offsetof(packed_block_header, unpacked_bytes) == 32);

constexpr std::size_t packed_block_header_bytes(std::uint32_t version) {
  return version < 4 ? offsetof(packed_block_header, unpacked_bytes) : sizeof(packed_block_header);
}

// A program or library that was found in memory, or found to be gone. Its build ID and its path follow. An entry is
// whole once the chunk's count of bytes includes it.
struct module_entry {
  std::uint32_t size;    // bytes, this header and an end of 0 to 7 unused ones included
  std::uint32_t number;  // of the module, from 0 in the order in which they were found; the same when it is gone
  std::uint64_t count;   // of the record at which it was noticed
  std::uint64_t time;    // nanoseconds since 1970
  std::uint64_t begin;   // the address of the file's first byte
  std::uint64_t end;     // behind the last segment's last byte; 0 when the module is gone
  std::uint64_t inode;
  std::uint32_t build_id_bytes;
  std::uint32_t path_bytes;
};

static_assert(sizeof(module_entry) == 56);

// A chunk whose bytes are blocks of packed records, or entries of modules.
struct byte_chunk {
  trace_chunk_header header;
  unsigned char bytes[trace_chunk_size - sizeof(trace_chunk_header)];
};

static_assert(sizeof(byte_chunk) == trace_chunk_size);

}  // namespace quern
