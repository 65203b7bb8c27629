// Real pages next to each other, each mapped readable and writable or not at all accessible.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>

namespace quern {

enum class page { open, closed };

class mapped_pages {
 public:
  // At `address` when it is not 0, where nothing may be mapped yet.
  explicit mapped_pages(std::initializer_list<page> pages, std::uint64_t address = 0) : bytes_(pages.size() * size()) {
    void* const wanted = reinterpret_cast<void*>(address);
    void* const at = mmap(wanted, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (at == MAP_FAILED || (wanted != nullptr && at != wanted)) throw std::runtime_error("no pages to test with");
    base_ = static_cast<unsigned char*>(at);
    std::size_t i = 0;
    for (const page p : pages) set(i++, p);
  }
  ~mapped_pages() { munmap(base_, bytes_); }
  mapped_pages(const mapped_pages&) = delete;
  mapped_pages& operator=(const mapped_pages&) = delete;

  static std::size_t size() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

  void set(std::size_t i, page p) {
    if (mprotect(base_ + i * size(), size(), p == page::open ? PROT_READ | PROT_WRITE : PROT_NONE) != 0)
      throw std::runtime_error("a page's protection can't be set");
  }

  // The byte at `offset` from the first page's start, and its address.
  unsigned char* at(std::size_t offset) { return base_ + offset; }
  std::uint64_t address(std::size_t offset) const { return reinterpret_cast<std::uint64_t>(base_ + offset); }

 private:
  std::size_t bytes_;
  unsigned char* base_ = nullptr;
};

}  // namespace quern
