// Values through the library's front and back end.
#include "sve/arith/float/process.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

TEST(FPProcess, FlushesSubnormalsByTheirOwnBitAndHalvesWithoutAFlag) {
  check<half>(FPProcess16, {
                               {"FZ16", {0x0001}, FZ16, 0, 0},
                               {"FZ16, negative", {0x83FF}, FZ16, 0x8000, 0},
                               {"FZ alone leaves halves", {0x83FF}, FZ, 0x83FF, 0},
                           });
  check<single>(FPProcess32, {
                                 {"FZ", {1}, FZ, 0, IDC},
                                 {"FZ, negative", {0x807FFFFF}, FZ, 0x80000000, IDC},
                                 {"FZ16 alone leaves singles", {0x807FFFFF}, FZ16, 0x807FFFFF, 0},
                             });
  check<double_bits>(FPProcess64, {
                                      {"FZ", {1}, FZ, 0, IDC},
                                      {"FZ16 alone leaves doubles", {1}, FZ16, 1, 0},
                                      {"-0 loses nothing", {0x8000000000000000}, FZ, 0x8000000000000000, 0},
                                  });
}

TEST(FPProcess, QuietensASignallingNaNAndGivesTheDefaultOneUnderDN) {
  check<half>(FPProcess16, {
                               {"signalling", {0xFC01}, 0, 0xFE01, IOC},
                               {"quiet", {0xFE01}, 0, 0xFE01, 0},
                               {"quiet under DN", {0xFE01}, DN, 0x7E00, 0},
                           });
  check<single>(FPProcess32, {
                                 {"signalling", {0xFF800001}, 0, 0xFFC00001, IOC},
                                 {"signalling under DN", {0xFF800001}, DN, 0x7FC00000, IOC},
                             });
  check<double_bits>(FPProcess64, {{"signalling", {0x7FF0000000000001}, 0, 0x7FF8000000000001, IOC}});
}

TEST(FPProcess, GivesAllElseBackInEveryRoundingMode) {
  for (const std::uint32_t mode : {RN, RP, RM, RZ}) {
    for (unsigned value = 0; value != 0x10000; ++value) {
      FPSCR fpscr{mode};
      const auto pattern = static_cast<half>(value);
      if ((value & 0x7FFF) > 0x7C00) continue;
      ASSERT_EQ(FPProcess16(pattern, fpscr), pattern);
      ASSERT_EQ(fpscr.word, mode);
    }
    check<single>(FPProcess32, {
                                   {"the largest", {0x7F7FFFFF}, mode, 0x7F7FFFFF, 0},
                                   {"minus infinity", {0xFF800000}, mode, 0xFF800000, 0},
                               });
    check<double_bits>(FPProcess64, {
                                        {"minus the largest", {0xFFEFFFFFFFFFFFFF}, mode, 0xFFEFFFFFFFFFFFFF, 0},
                                        {"an exact subnormal", {3}, mode, 3, 0},
                                    });
  }
}

TEST(FPProcess, KeepsBitsThatAreSet) {
  FPSCR fpscr{0xF8009F9F};
  FPProcess32(0x7F800001, fpscr);
  EXPECT_EQ(fpscr.word, 0xF8009F9F);
}

}  // namespace
}  // namespace quern
