#include <gtest/gtest.h>

#include <string>

#include "sve/state/operands.h"

namespace {

template <std::size_t Count>
void expect_names(const std::array<const char*, Count>& table, const std::string& prefix, const std::string& suffix,
                  const char* name_31 = nullptr) {
  for (std::size_t n = 0; n != Count; ++n) {
    const std::string name = n == 31 && name_31 != nullptr ? name_31 : prefix + std::to_string(n) + suffix;
    EXPECT_EQ(table[n], name);
  }
}

TEST(OperandNames, OfVectors) {
  expect_names(aarch64_z_reg::zname, "z", "");
  expect_names(aarch64_z_reg::zname_b, "z", ".b");
  expect_names(aarch64_z_reg::zname_h, "z", ".h");
  expect_names(aarch64_z_reg::zname_s, "z", ".s");
  expect_names(aarch64_z_reg::zname_d, "z", ".d");
}

TEST(OperandNames, OfPredicates) {
  expect_names(aarch64_p_reg::pname, "p", "");
  expect_names(aarch64_p_reg::pname_m, "p", "/m");
  expect_names(aarch64_p_reg::pname_z, "p", "/z");
  expect_names(aarch64_p_reg::pname_b, "p", ".b");
  expect_names(aarch64_p_reg::pname_h, "p", ".h");
  expect_names(aarch64_p_reg::pname_s, "p", ".s");
  expect_names(aarch64_p_reg::pname_d, "p", ".d");
}

TEST(OperandNames, OfGeneralRegisters) {
  expect_names(aarch64_i_reg::xname, "x", "", "xzr");
  expect_names(aarch64_i_reg::wname, "w", "", "wzr");
  expect_names(aarch64_i_rsp_reg::xname, "x", "", "sp");
  expect_names(aarch64_i_rsp_reg::wname, "w", "", "illegal");
}

TEST(OperandRecords, AreFour32BitFieldsAndTwo) {
  EXPECT_EQ(sizeof(aarch64_z_reg), 16u);
  EXPECT_EQ(sizeof(aarch64_p_reg), 16u);
  EXPECT_EQ(sizeof(aarch64_i_reg), 16u);
  EXPECT_EQ(sizeof(aarch64_i_rsp_reg), 8u);
  EXPECT_EQ(offsetof(aarch64_z_reg, size), 4u);
  EXPECT_EQ(offsetof(aarch64_z_reg, dsize), 8u);
  EXPECT_EQ(offsetof(aarch64_z_reg, ssize), 12u);
}

}  // namespace
