// Conversion between the formats.
#include "sve/arith/float/convert.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

// The conversion in the controls' rounding mode.
template <class From, class To>
To convert(From value, FPSCR& fpscr) {
  return FPConvert<From, To>(value, rounding_of(fpscr), fpscr);
}

TEST(Widening, IsExact) {
  for (const std::uint32_t mode : {RN, RP, RM, RZ}) {
    check<half, single>(convert, {
                                     {"1", {0x3C00}, mode, 0x3F800000, 0},
                                     {"a third", {0x3555}, mode, 0x3EAAA000, 0},
                                     {"-0", {0x8000}, mode, 0x80000000, 0},
                                     {"the largest", {0x7BFF}, mode, 0x477FE000, 0},
                                     {"the smallest subnormal", {0x0001}, mode, 0x33800000, 0},
                                     {"the largest subnormal", {0x83FF}, mode, 0xB87FC000, 0},
                                 });
    check<half, double_bits>(convert, {
                                          {"1", {0xBC00}, mode, 0xBFF0000000000000, 0},
                                          {"the smallest subnormal", {0x0001}, mode, 0x3E70000000000000, 0},
                                      });
    check<single, double_bits>(convert, {
                                            {"a third", {0x3EAAAAAB}, mode, 0x3FD5555560000000, 0},
                                            {"the smallest subnormal", {0x00000001}, mode, 0x36A0000000000000, 0},
                                        });
  }
}

TEST(Widening, QuietsNansAndKeepsTheirSignAndPayload) {
  check<half, single>(convert, {
                                   {"infinity", {0xFC00}, 0, 0xFF800000, 0},
                                   {"quiet", {0xFE05}, 0, 0xFFC0A000, 0},
                                   {"signalling", {0x7C03}, 0, 0x7FC06000, IOC},
                                   {"quiet, DN", {0xFE05}, DN, 0x7FC00000, 0},
                                   {"signalling, DN", {0xFC03}, DN, 0x7FC00000, IOC},
                               });
  check<half, double_bits>(convert, {{"signalling", {0x7C01}, 0, 0x7FF8040000000000, IOC}});
  check<single, double_bits>(convert, {
                                          {"signalling", {0xFF800001}, 0, 0xFFF8000020000000, IOC},
                                          {"infinity", {0x7F800000}, 0, 0x7FF0000000000000, 0},
                                      });
}

TEST(Widening, FlushesByTheSourcesControlAndRaisesIDCForSinglesAlone) {
  check<half, single>(convert, {
                                   {"FZ16", {0x0001}, FZ16, 0, 0},
                                   {"FZ16, negative", {0x83FF}, FZ16, 0x80000000, 0},
                                   {"FZ16, normal", {0x0400}, FZ16, 0x38800000, 0},
                                   {"FZ", {0x0001}, FZ, 0x33800000, 0},
                                   {"AHP and FZ16", {0x0001}, AHP | FZ16, 0, 0},
                               });
  check<single, double_bits>(convert, {
                                          {"FZ", {0x80000001}, FZ, 0x8000000000000000, IDC},
                                          {"FZ, zero", {0x80000000}, FZ, 0x8000000000000000, 0},
                                          {"FZ16", {0x00000001}, FZ16, 0x36A0000000000000, 0},
                                      });
}

TEST(Widening, FindsNoInfinityOrNanInAlternativeHalves) {
  check<half, single>(convert, {
                                   {"65536", {0x7C00}, AHP, 0x47800000, 0},
                                   {"the largest", {0x7FFF}, AHP, 0x47FFE000, 0},
                                   {"-98304", {0xFE00}, AHP | DN, 0xC7C00000, 0},
                               });
  check<half, double_bits>(convert, {{"65536", {0x7C00}, AHP, 0x40F0000000000000, 0}});
  check<single, double_bits>(convert, {{"AHP is for halves", {0x7F800000}, AHP, 0x7FF0000000000000, 0}});
}

TEST(Narrowing, RoundsOnceInTheModeAskedFor) {
  check<single, half>(convert, {
                                   {"exact", {0x3F802000}, 0, 0x3C01, 0},
                                   {"a tie to even", {0x3F801000}, RN, 0x3C00, IXC},
                                   {"above a tie", {0x3F801001}, RN, 0x3C01, IXC},
                                   {"up", {0x3F800001}, RP, 0x3C01, IXC},
                                   {"down", {0xBF800001}, RM, 0xBC01, IXC},
                                   {"truncated", {0x3F801FFF}, RZ, 0x3C00, IXC},
                                   {"65504", {0x477FE000}, 0, 0x7BFF, 0},
                                   {"below 65520", {0x477FEFFF}, 0, 0x7BFF, IXC},
                                   {"65520", {0x477FF000}, 0, 0x7C00, OFC | IXC},
                                   {"65536, truncated", {0xC7800000}, RZ, 0xFBFF, OFC | IXC},
                               });
  check<double_bits, half>(convert, {{"not by way of a single", {0x3FF0020000001000}, RN, 0x3C01, IXC}});
  check<double_bits, single>(convert, {
                                          {"a tie to even", {0x3FF0000010000000}, RN, 0x3F800000, IXC},
                                          {"above a tie", {0x3FF0000010000001}, RN, 0x3F800001, IXC},
                                          {"overflow", {0xC7F0000000000000}, RN, 0xFF800000, OFC | IXC},
                                      });
}

TEST(Narrowing, RoundsAsItsArgumentAsksWhateverTheMode) {
  FPSCR fpscr{RZ};
  EXPECT_EQ((FPConvert<single, half>(0x3F800001, FPRounding_POSINF, fpscr)), 0x3C01);
  EXPECT_EQ((FPConvert<double_bits, single>(0x3FF0000000000001, FPRounding_ODD, fpscr)), 0x3F800001U);
  EXPECT_EQ(fpscr.word, RZ | IXC);
}

TEST(Narrowing, KeepsTheSignAndTheTopOfANansPayload) {
  check<single, half>(convert, {
                                   {"infinity", {0xFF800000}, 0, 0xFC00, 0},
                                   {"all bits", {0xFFFFFFFF}, 0, 0xFFFF, 0},
                                   {"signalling", {0xFF802000}, 0, 0xFE01, IOC},
                                   {"signalling, nothing kept", {0x7F800001}, 0, 0x7E00, IOC},
                                   {"quiet, DN", {0xFFFFFFFF}, DN, 0x7E00, 0},
                                   {"signalling, DN", {0xFF802000}, DN, 0x7E00, IOC},
                               });
  check<double_bits, half>(convert, {{"signalling", {0x7FF0040000000000}, 0, 0x7E01, IOC}});
  check<double_bits, single>(convert, {{"signalling", {0xFFF0000020000000}, 0, 0xFFC00001, IOC}});
}

TEST(Narrowing, ToAlternativeHalvesAnswersForInfinitiesAndNansWithIOC) {
  check<single, half>(convert, {
                                   {"infinity", {0x7F800000}, AHP, 0x7FFF, IOC},
                                   {"-infinity", {0xFF800000}, AHP, 0xFFFF, IOC},
                                   {"quiet", {0xFFC02000}, AHP, 0x8000, IOC},
                                   {"signalling", {0x7F802000}, AHP, 0x0000, IOC},
                                   {"DN", {0xFFC02000}, AHP | DN, 0x8000, IOC},
                                   {"65520, a tie", {0x477FF000}, AHP, 0x7C00, IXC},
                                   {"131008", {0x47FFE000}, AHP, 0x7FFF, 0},
                                   {"131072", {0xC8000000}, AHP, 0xFFFF, IOC},
                               });
  check<double_bits, half>(convert, {
                                        {"infinity", {0x7FF0000000000000}, AHP, 0x7FFF, IOC},
                                        {"quiet", {0xFFF8000000000000}, AHP, 0x8000, IOC},
                                    });
  check<double_bits, single>(convert, {{"AHP is for halves", {0x7FF0000000000000}, AHP, 0x7F800000, 0}});
}

TEST(Narrowing, OfASubnormalUnderflows) {
  check<single, half>(convert, {
                                   {"up", {0x00000001}, RP, 0x0001, UFC | IXC},
                                   {"up, the largest", {0x007FFFFF}, RP, 0x0001, UFC | IXC},
                                   {"up, negative", {0x80000001}, RP, 0x8000, UFC | IXC},
                                   {"nearest", {0x007FFFFF}, RN, 0x0000, UFC | IXC},
                                   {"FZ", {0x80000001}, RP | FZ, 0x8000, IDC},
                                   {"FZ16 alone", {0x00000001}, RP | FZ16, 0x0001, UFC | IXC},
                                   {"a zero", {0x80000000}, RM, 0x8000, 0},
                               });
  check<double_bits, half>(convert, {{"up", {1}, RP, 0x0001, UFC | IXC}, {"FZ", {1}, RP | FZ, 0, IDC}});
  check<double_bits, single>(convert, {{"up", {1}, RP, 1, UFC | IXC}, {"FZ", {1}, RP | FZ, 0, IDC}});
}

TEST(Narrowing, FlushesASingleResultAndNeverAHalf) {
  check<single, half>(convert, {
                                   {"2^-24", {0x33800000}, FZ16, 0x0001, 0},
                                   {"2^-24, FZ", {0x33800000}, FZ, 0x0001, 0},
                                   {"2^-25, a tie", {0x33000000}, FZ16 | FZ, 0x0000, UFC | IXC},
                               });
  check<double_bits, single>(convert, {
                                          {"2^-127", {0x3800000000000000}, 0, 0x00400000, 0},
                                          {"2^-127, FZ", {0xB800000000000000}, FZ, 0x80000000, UFC},
                                          {"2^-127, FZ16", {0x3800000000000000}, FZ16, 0x00400000, 0},
                                      });
}

}  // namespace
}  // namespace quern
