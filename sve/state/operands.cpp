// The operand name tables.
#include "sve/state/operands.h"

namespace {

// "PREFIX" n "SUFFIX" for n from 0 to Count - 1, as one string a register.
template <std::size_t Count>
struct numbered_names {
  std::array<std::array<char, 8>, Count> text{};

  constexpr numbered_names(char prefix, const char* suffix) {
    for (std::size_t n = 0; n != Count; ++n) {
      std::size_t at = 0;
      text[n][at++] = prefix;
      if (n >= 10) text[n][at++] = static_cast<char>('0' + n / 10);
      text[n][at++] = static_cast<char>('0' + n % 10);
      for (const char* c = suffix; *c != '\0'; ++c) text[n][at++] = *c;
    }
  }
};

constexpr numbered_names<32> z{'z', ""}, z_b{'z', ".b"}, z_h{'z', ".h"}, z_s{'z', ".s"}, z_d{'z', ".d"};
constexpr numbered_names<16> p{'p', ""}, p_m{'p', "/m"}, p_z{'p', "/z"};
constexpr numbered_names<16> p_b{'p', ".b"}, p_h{'p', ".h"}, p_s{'p', ".s"}, p_d{'p', ".d"};
constexpr numbered_names<31> x{'x', ""}, w{'w', ""};

template <std::size_t Count>
constexpr std::array<const char*, Count> pointers(const numbered_names<Count>& names) {
  std::array<const char*, Count> list{};
  for (std::size_t n = 0; n != Count; ++n) list[n] = names.text[n].data();
  return list;
}

constexpr std::array<const char*, 32> general(const numbered_names<31>& names, const char* name_31) {
  std::array<const char*, 32> list{};
  for (std::size_t n = 0; n != 31; ++n) list[n] = names.text[n].data();
  list[31] = name_31;
  return list;
}

}  // namespace

constinit const std::array<const char*, 32> aarch64_z_reg::zname = pointers(z);
constinit const std::array<const char*, 32> aarch64_z_reg::zname_b = pointers(z_b);
constinit const std::array<const char*, 32> aarch64_z_reg::zname_h = pointers(z_h);
constinit const std::array<const char*, 32> aarch64_z_reg::zname_s = pointers(z_s);
constinit const std::array<const char*, 32> aarch64_z_reg::zname_d = pointers(z_d);

constinit const std::array<const char*, 16> aarch64_p_reg::pname = pointers(p);
constinit const std::array<const char*, 16> aarch64_p_reg::pname_m = pointers(p_m);
constinit const std::array<const char*, 16> aarch64_p_reg::pname_z = pointers(p_z);
constinit const std::array<const char*, 16> aarch64_p_reg::pname_b = pointers(p_b);
constinit const std::array<const char*, 16> aarch64_p_reg::pname_h = pointers(p_h);
constinit const std::array<const char*, 16> aarch64_p_reg::pname_s = pointers(p_s);
constinit const std::array<const char*, 16> aarch64_p_reg::pname_d = pointers(p_d);

constinit const std::array<const char*, 32> aarch64_i_reg::xname = general(x, "xzr");
constinit const std::array<const char*, 32> aarch64_i_reg::wname = general(w, "wzr");
constinit const std::array<const char*, 32> aarch64_i_rsp_reg::xname = general(x, "sp");
// The word-sized stack pointer has no name of its own in an operand.
constinit const std::array<const char*, 32> aarch64_i_rsp_reg::wname = general(w, "illegal");
