// Environments of new programs, made on the stack of the function that executes them.
#include "sve/trap/host/handed_environment.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

#include "sve/trap/host/shown_processor.h"

namespace quern {
namespace {

constexpr std::string_view preload = "LD_PRELOAD=", separators = " :", own_prefix = "QUERN_";
constexpr std::string_view library_name = "libquern_trap_";

// What was set at the start. Copies, as programs write over their environment; the library is empty if it came here in
// another way than by LD_PRELOAD.
constinit std::string_view library;
constinit std::array<char*, 32> own{};
constinit std::size_t own_count = 0;
constinit char inherits_length[] = "QUERN_INHERITS_LENGTH=1";
constexpr std::string_view inherits_name = inherit_variable;

char* append(char* at, std::string_view text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

// The host's library among those of an LD_PRELOAD; empty if it isn't there.
std::string_view find_library(std::string_view list) {
  for (std::size_t end; !list.empty(); list.remove_prefix(end == list.npos ? list.size() : end + 1)) {
    end = list.find_first_of(separators);
    const std::string_view path = list.substr(0, end);
    if (path.find(library_name) != path.npos) return path;
  }
  return {};
}

std::string_view name_of(std::string_view entry) { return entry.substr(0, entry.find('=')); }

const char* find(char* const* environment, std::string_view name) {
  for (; *environment; ++environment)
    if (name_of(*environment) == name) return *environment;
  return nullptr;
}

std::size_t count(char* const* environment) {
  std::size_t result = 0;
  while (environment[result]) ++result;
  return result;
}

// The list of an environment's LD_PRELOAD.
std::string_view preloaded(char* const* environment) {
  const char* const entry = find(environment, name_of(preload));
  return entry ? std::string_view(entry).substr(preload.size()) : std::string_view();
}

bool lacks_host(char* const* environment) {
  if (library.empty()) return false;
  const bool wants_none = find(environment, name_of(preload)) && preloaded(environment).empty();
  return !wants_none && find_library(preloaded(environment)).empty();
}

// LD_PRELOAD of the host's library, and of those in `list`.
void put_preload(char* at, std::string_view list) {
  at = append(append(at, preload), library);
  if (!list.empty()) at = append(append(at, ":"), list);
  *at = '\0';
}

}  // namespace

void note_own_variables(char** environment) {
  const std::string_view path = find_library(preloaded(environment));
  if (auto* const room = static_cast<char*>(std::malloc(path.size())); room && !path.empty()) {
    append(room, path);
    library = {room, path.size()};
  }
  for (; *environment && own_count != own.size(); ++environment) {
    const std::string_view entry = *environment;
    if (!entry.starts_with(own_prefix) || name_of(entry) == inherits_name) continue;
    if (char* const kept = strdup(*environment)) own[own_count++] = kept;
  }
}

std::size_t room_for_environment(char* const* environment) {
  constexpr std::size_t further = 3;  // LD_PRELOAD, the flag of the vector length, and the null pointer
  const std::size_t pointers = count(environment) + own_count + further;
  return pointers * sizeof(char*) + preload.size() + library.size() + sizeof ":" + preloaded(environment).size();
}

char* const* environment_with_host(char* const* environment, void* room) {
  const bool needs_host = lacks_host(environment);
  const bool needs_flag = inherits_vector_length() && !find(environment, inherits_name);
  if (!needs_host && !needs_flag) return environment;
  auto** next = static_cast<char**>(room);
  for (char* const* entry = environment; *entry; ++entry)
    if (!needs_host || name_of(*entry) != name_of(preload)) *next++ = *entry;
  if (needs_host) {
    for (char* const variable : std::span(own).first(own_count))
      if (!find(environment, name_of(variable))) *next++ = variable;
  }
  if (needs_flag) *next++ = inherits_length;
  char* const text = reinterpret_cast<char*>(next + 2);
  if (needs_host) {
    put_preload(text, preloaded(environment));
    *next++ = text;
  }
  *next = nullptr;
  return static_cast<char**>(room);
}

}  // namespace quern
