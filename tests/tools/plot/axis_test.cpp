// Ticks, short numbers, and the bins and windows that axes are made of.
#include "tools/plot/axis.h"

#include <gtest/gtest.h>

#include <limits>

#include "tools/plot/footprint_windows.h"
#include "tools/plot/stride_counts.h"
#include "tools/plot/svg_chart.h"

namespace quern::test {
namespace {

using numbers = std::vector<double>;

TEST(Axis, HasRoundTicksWithinItsEndsAndNotTooMany) {
  EXPECT_EQ(decimal_ticks(0, 10, 5), (numbers{0, 2, 4, 6, 8, 10}));
  EXPECT_EQ(decimal_ticks(0, 79, 8), (numbers{0, 10, 20, 30, 40, 50, 60, 70}));
  EXPECT_EQ(decimal_ticks(13, 47, 3), (numbers{20, 40}));
  EXPECT_EQ(decimal_ticks(0, 69'341, 8).back(), 60'000);
  EXPECT_EQ(decimal_ticks(0, 0.5, 5), (numbers{0}));
  EXPECT_EQ(binary_ticks(1000, 4), (numbers{0, 256, 512, 768}));
  EXPECT_EQ(binary_ticks(1, 4), (numbers{0, 1}));
  for (double end = 1; end < 1e18; end *= 1.7) {
    EXPECT_LE(decimal_ticks(0, end, 7).size(), 8u) << end;
    EXPECT_LE(binary_ticks(end, 7).size(), 8u) << end;
  }
}

TEST(Axis, WritesNumbersShort) {
  EXPECT_EQ(short_number(0), "0");
  EXPECT_EQ(short_number(999), "999");
  EXPECT_EQ(short_number(2500), "2.5 k");
  EXPECT_EQ(short_number(10e6), "10 M");
  EXPECT_EQ(short_bytes(0), "0 B");
  EXPECT_EQ(short_bytes(64), "64 B");
  EXPECT_EQ(short_bytes(1000), "1000 B");
  EXPECT_EQ(short_bytes(1536), "1.5 KiB");
  EXPECT_EQ(short_bytes(1ull << 40), "1 TiB");
  EXPECT_EQ(short_signed_bytes(0), "0 B");
  EXPECT_EQ(short_signed_bytes(64), "+64 B");
  EXPECT_EQ(short_signed_bytes(-1536), "−1.5 KiB");
}

TEST(Axis, SaysAHundredPercentOfAllAlone) {
  EXPECT_EQ(percent_text(0, 0), "0 %");
  EXPECT_EQ(percent_text(0, 5), "0 %");
  EXPECT_EQ(percent_text(1, 100'000), "<0.1 %");
  EXPECT_EQ(percent_text(9, 10'000), "<0.1 %");
  EXPECT_EQ(percent_text(1, 1000), "0.1 %");
  EXPECT_EQ(percent_text(1, 300), "0.3 %");
  EXPECT_EQ(percent_text(10, 100), "10 %");
  EXPECT_EQ(percent_text(7, 8), "88 %");
  EXPECT_EQ(percent_text(99, 100), "99.0 %");
  EXPECT_EQ(percent_text(995, 1000), "99.5 %");
  EXPECT_EQ(percent_text(999, 1000), "99.9 %");
  EXPECT_EQ(percent_text(9992, 10'000), ">99.9 %");
  EXPECT_EQ(percent_text(99'999, 100'000), ">99.9 %");
  EXPECT_EQ(percent_text(5, 5), "100 %");
}

TEST(StrideCounts, HaveABinForEachPowerOfTwoAndDirection) {
  constexpr int outermost = stride_counts::outermost;
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  constexpr std::pair<std::int64_t, int> cases[] = {{0, 0},
                                                    {1, 1},
                                                    {2, 2},
                                                    {3, 2},
                                                    {4, 3},
                                                    {256, 9},
                                                    {-1, -1},
                                                    {-4, -3},
                                                    {-255, -8},
                                                    {1 << 24, outermost},
                                                    {least, -outermost},
                                                    {~least, outermost}};
  for (const auto& [stride, bin] : cases) {
    EXPECT_EQ(stride_counts::bin_of(stride), bin) << stride;
    stride_counts counts;
    counts.add(stride, true);
    counts.add(stride, false);
    EXPECT_EQ(counts.bin(bin).loads, 1u);
    EXPECT_EQ(counts.bin(bin).sum(), 2u);
  }
}

TEST(FootprintWindows, TellLinesSoFarAndWithinEach) {
  footprint_windows windows(10, 19);
  windows.add(10, 1);
  windows.add(10, 2);
  windows.add(12, 2);
  windows.add(19, 3);
  windows.finish();
  ASSERT_EQ(windows.windows().size(), 10u);
  constexpr std::pair<std::uint64_t, std::uint64_t> wanted[] = {{2, 2}, {2, 0}, {2, 1}};
  for (std::size_t i = 0; i != std::size(wanted); ++i) {
    EXPECT_EQ(windows.windows()[i].so_far, wanted[i].first) << i;
    EXPECT_EQ(windows.windows()[i].within, wanted[i].second) << i;
  }
  EXPECT_EQ(windows.windows()[9].so_far, 3u);
}

TEST(FootprintWindows, AreNoMoreThanTheirMostAndNeverFall) {
  footprint_windows windows(0, 99'999);
  for (std::uint64_t time = 0; time != 100'000; ++time) windows.add(time, time * 7 % 5000);
  windows.finish();
  EXPECT_LE(windows.windows().size(), footprint_windows::most_windows);
  std::uint64_t before = 0;
  for (const footprint_windows::window& window : windows.windows()) {
    EXPECT_GE(window.so_far, before);
    before = window.so_far;
  }
  EXPECT_NEAR(static_cast<double>(before), 5000, 0.06 * 5000);
}

TEST(SvgChart, EscapesText) {
  EXPECT_EQ(xml_escaped("a<b>&\"c\""), "a&lt;b&gt;&amp;&quot;c&quot;");
  svg_chart chart(100, 50, "<&>", "");
  chart.rectangle("load", 0, 0, 1, 1, "\"");
  EXPECT_NE(chart.file().find("aria-label=\"&lt;&amp;&gt;\""), std::string::npos);
  EXPECT_NE(chart.file().find("<title>&quot;</title>"), std::string::npos);
}

}  // namespace
}  // namespace quern::test
