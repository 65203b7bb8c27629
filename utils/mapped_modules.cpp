// Reading /proc/self/maps, and the headers of the files that it names.
#include "utils/mapped_modules.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quern {
namespace {

// DynamoRIO puts a function of its own in the place of open(), which reports no error in errno; it leaves openat()
// alone.
int open_to_read(const char* name) { return openat(AT_FDCWD, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK); }

// Takes a number off the front of a text, and the character behind it.
std::uint64_t take_number(std::string_view& text, unsigned base) {
  std::uint64_t number = 0;
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    const bool is_letter = c >= 'a' && c <= 'f';
    if (!is_letter && (c < '0' || c > '9')) break;
    number = number * base + static_cast<unsigned>(is_letter ? c - 'a' + 10 : c - '0');
  }
  return number;
}

bool read_exactly(int file, std::uint64_t offset, void* to, std::size_t size) {
  return pread(file, to, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

// The address space is less; a size above is not believed.
constexpr std::uint64_t most_module_bytes = std::uint64_t{1} << 40;

}  // namespace

bool mapped_modules::open(std::uint64_t place) {
  file_ = open_to_read("/proc/self/maps");
  place_ = place;
  around_ = {0, ~std::uint64_t{0}};
  module_ = {};
  is_read_ = is_given_ = false;
  read_ = taken_ = 0;
  return file_ >= 0;
}

void mapped_modules::close() {
  if (file_ >= 0) ::close(file_);
  file_ = -1;
}

// Reads on behind the lines that are not taken yet.
bool mapped_modules::fill() {
  std::memmove(lines_, lines_ + taken_, read_ - taken_);
  read_ -= taken_;
  taken_ = 0;
  ssize_t got = 0;
  do got = read(file_, lines_ + read_, sizeof lines_ - read_);
  while (got < 0 && errno == EINTR);
  if (got > 0) read_ += static_cast<std::size_t>(got);
  return got > 0;
}

// A line is: 5500000000-5500001000 r-xp 00000000 08:01 1234      /path
bool mapped_modules::next_mapping(mapping& found) {
  const void* end = nullptr;
  while ((end = std::memchr(lines_ + taken_, '\n', read_ - taken_)) == nullptr)
    if (!fill()) return false;
  const std::size_t size = static_cast<std::size_t>(static_cast<const char*>(end) - (lines_ + taken_));
  std::string_view line(lines_ + taken_, size);
  taken_ += size + 1;
  found.range.begin = take_number(line, 16);
  found.range.end = take_number(line, 16);
  found.is_code = line.size() > 2 && line[2] == 'x';
  while (!line.empty() && line.front() != ' ') line.remove_prefix(1);
  if (!line.empty()) line.remove_prefix(1);
  found.offset = take_number(line, 16);
  take_number(line, 16);  // the device, whose number layered file systems don't tell the same everywhere
  take_number(line, 16);
  found.inode = take_number(line, 10);
  while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
  found.path = line;
  return true;
}

// Narrows the range about the place.
void mapped_modules::look_at(const address_range& range) {
  if (range.has(place_))
    around_ = range;
  else if (range.end <= place_ && range.end > around_.begin)
    around_.begin = range.end;
  else if (range.begin > place_ && range.begin < around_.end)
    around_.end = range.begin;
}

void mapped_modules::read_build_id(int file, const Elf64_Phdr& segment) {
  const std::size_t wanted = segment.p_filesz < sizeof notes_ ? segment.p_filesz : sizeof notes_;
  if (!module_.build_id.empty() || !read_exactly(file, segment.p_offset, notes_, wanted)) return;
  module_.build_id = find_build_id({notes_, wanted}, segment.p_align);
}

// What the file itself tells, if it is still the one that was mapped. One that was removed is taken for a module;
// memory that never had a name is not.
void mapped_modules::read_file() {
  is_read_ = true;
  is_elf_ = !module_.path.starts_with("/memfd:");
  const int file = is_elf_ ? open_to_read(path_) : -1;
  if (file < 0) return;
  struct stat status {};
  Elf64_Ehdr header{};
  const bool is_same = fstat(file, &status) == 0 && status.st_ino == module_.inode;
  if (is_same)
    is_elf_ = read_exactly(file, 0, &header, sizeof header) && std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
              header.e_ident[EI_CLASS] == ELFCLASS64 && header.e_phentsize == sizeof(Elf64_Phdr);
  std::uint64_t first = ~std::uint64_t{0}, last = 0;
  Elf64_Phdr segment{};
  for (unsigned i = 0; is_same && is_elf_ && i != header.e_phnum; ++i) {
    if (!read_exactly(file, header.e_phoff + i * sizeof segment, &segment, sizeof segment)) break;
    if (segment.p_type == PT_NOTE) read_build_id(file, segment);
    if (segment.p_type != PT_LOAD) continue;
    if (segment.p_vaddr - segment.p_offset < first) first = segment.p_vaddr - segment.p_offset;
    if (segment.p_vaddr + segment.p_memsz > last) last = segment.p_vaddr + segment.p_memsz;
  }
  ::close(file);
  if (first < last && last - first < most_module_bytes && last - first > module_.end - module_.begin)
    module_.end = module_.begin + (last - first);
}

void mapped_modules::begin_module(const mapping& found) {
  const std::size_t size = found.path.size() < sizeof path_ ? found.path.size() : sizeof path_ - 1;
  std::memcpy(path_, found.path.data(), size);
  path_[size] = 0;
  module_ = {
      .begin = found.range.begin, .end = found.range.end, .inode = found.inode, .path = {path_, size}, .build_id = {}};
  is_read_ = is_given_ = false;
}

// Whether the mapping is of the module that was begun. More than one of its mappings may be of the file's beginning:
// segments that share a page of the file.
bool mapped_modules::belongs(const mapping& found) {
  if (found.inode == 0 || found.inode != module_.inode) return false;
  if (!is_read_) read_file();
  return found.range.begin < module_.end || found.offset != 0;
}

bool mapped_modules::next(mapped_module& module) {
  mapping found;
  while (next_mapping(found)) {
    const bool is_of_module = belongs(found);
    if (found.inode != 0 && found.offset == 0 && !is_of_module) begin_module(found);
    const bool is_code_of_file = found.is_code && found.inode != 0 && found.inode == module_.inode;
    if (is_code_of_file && !is_read_) read_file();
    if (is_code_of_file && !is_given_ && is_elf_) {
      if (found.range.end > module_.end) module_.end = found.range.end;
      is_given_ = true;
      look_at({module_.begin, module_.end});
      module = module_;
      return true;
    }
    if (!is_of_module || !is_given_) look_at(found.range);
  }
  return false;
}

}  // namespace quern
