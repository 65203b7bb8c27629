// Spill and fill of whole vectors and predicates.
#include "sve/handlers/memory/whole_register.h"

#include "tests/handlers/memory/memory_fixture.h"

namespace {

using namespace quern;

constexpr std::size_t image_bytes = vl / 8;

class WholeRegister : public MemoryHandlers {
 protected:
  void SetUp() override {
    MemoryHandlers::SetUp();
    fill(pages.at(0), 2 * mapped_pages::size());
    s.sp = pages.address(mapped_pages::size() + 3);
  }
  unsigned char* at(std::ptrdiff_t offset) { return pages.at(mapped_pages::size() + 3) + offset; }
  std::vector<unsigned char> memory() { return {pages.at(0), pages.at(2 * mapped_pages::size())}; }

  mapped_pages pages{page::open, page::open, page::closed};
};

TEST_F(WholeRegister, FillsAVector) {
  for (const int imm : {-7, -1, 0, 1, 7}) {
    SetUp();
    cpu_state expected = s;
    std::memcpy(expected.z[17], at(imm * VL_BYTES), vl);
    run([&] { return sve_ldr_zri(&s, z_reg(17, size_b), x_or_sp(31), imm); });
    EXPECT_TRUE(same(s, expected)) << "#" << imm;
    expect_no_trace();
  }
}

TEST_F(WholeRegister, SpillsAVector) {
  for (const int imm : {-7, -1, 0, 1, 7}) {
    SetUp();
    s.x[3] = s.sp;
    std::vector<unsigned char> expected = memory();
    std::memcpy(expected.data() + (at(imm * VL_BYTES) - pages.at(0)), s.z[17], vl);
    const cpu_state before = s;
    run([&] { return sve_str_zri(&s, z_reg(17, size_b), x_or_sp(3), imm); });
    EXPECT_EQ(memory(), expected) << "#" << imm;
    EXPECT_TRUE(same(s, before));
    expect_no_trace();
  }
}

TEST_F(WholeRegister, FillsAPredicateWithBytesOf0And1) {
  for (const int imm : {-256, -1, 0, 1, 100}) {
    SetUp();
    if (imm * static_cast<int>(image_bytes) < -static_cast<int>(mapped_pages::size())) continue;
    cpu_state expected = s;
    for (std::size_t i = 0; i != vl; ++i)
      expected.p[11][i] = at(imm * static_cast<std::ptrdiff_t>(image_bytes))[i / 8] >> i % 8 & 1;
    run([&] { return sve_ldr_pri(&s, aarch64_p_reg{11, p_none, p_none, p_none}, x_or_sp(31), imm); });
    EXPECT_TRUE(same(s, expected)) << "#" << imm;
    expect_no_trace();
  }
}

TEST_F(WholeRegister, SpillsAPredicateByBitZeroOfItsBytes) {
  for (const int imm : {-16, 0, 5}) {
    SetUp();
    std::vector<unsigned char> expected = memory();
    unsigned char* const image = expected.data() + (at(imm * static_cast<std::ptrdiff_t>(image_bytes)) - pages.at(0));
    std::memset(image, 0, image_bytes);
    for (std::size_t i = 0; i != vl; ++i) image[i / 8] |= static_cast<unsigned char>((s.p[4][i] & 1) << i % 8);
    const cpu_state before = s;
    run([&] { return sve_str_pri(&s, aarch64_p_reg{4, p_none, p_none, p_none}, x_or_sp(31), imm); });
    EXPECT_EQ(memory(), expected) << "#" << imm;
    EXPECT_TRUE(same(s, before));
    expect_no_trace();
  }
}

TEST_F(WholeRegister, ImagesOfFullPredicates) {
  for (const auto& [lane_bytes, byte] :
       {std::pair{8, 0x01}, std::pair{4, 0x11}, std::pair{2, 0x55}, std::pair{1, 0xFF}}) {
    for (int i = 0; i != VL_BYTES; ++i) s.p[0][i] = i % lane_bytes == 0;
    run([&] { return sve_str_pri(&s, aarch64_p_reg{0, p_none, p_none, p_none}, x_or_sp(31), 0); });
    for (std::size_t j = 0; j != image_bytes; ++j) EXPECT_EQ(at(0)[j], byte) << "lanes of " << lane_bytes;
  }
}

TEST_F(WholeRegister, AFilledPredicateSpillsTheSameImage) {
  const std::vector<unsigned char> image(at(0), at(image_bytes));
  run([&] { return sve_ldr_pri(&s, aarch64_p_reg{0, p_none, p_none, p_none}, x_or_sp(31), 0); });
  run([&] { return sve_str_pri(&s, aarch64_p_reg{0, p_none, p_none, p_none}, x_or_sp(31), 1); });
  EXPECT_EQ((std::vector<unsigned char>(at(image_bytes), at(2 * image_bytes))), image);
}

TEST_F(WholeRegister, NothingGuardsThem) {
  s.x[0] = pages.address(2 * mapped_pages::size());
  const aarch64_p_reg pt{0, p_none, p_none, p_none};
  EXPECT_TRUE(caught_fault([&] { sve_ldr_zri(&s, z_reg(0, size_b), x_or_sp(0), 0); }));
  EXPECT_TRUE(caught_fault([&] { sve_str_zri(&s, z_reg(0, size_b), x_or_sp(0), 0); }));
  EXPECT_TRUE(caught_fault([&] { sve_ldr_pri(&s, pt, x_or_sp(0), 0); }));
  EXPECT_TRUE(caught_fault([&] { sve_str_pri(&s, pt, x_or_sp(0), 0); }));
}

}  // namespace
