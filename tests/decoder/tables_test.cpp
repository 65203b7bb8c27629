// What the tables of the decode maps hold: how many rows, in which order, by which route, and that no two meet.
#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "sve/decoder/decode_map.h"

namespace quern {
namespace {

using testing::ElementsAreArray;

struct map_size {
  std::string name;
  std::size_t rows;
  bool operator==(const map_size&) const = default;
  friend void PrintTo(const map_size& m, std::ostream* out) { *out << m.name << ' ' << m.rows; }
};

// In lookup order: by decreasing number of fixed bits.
const map_size expected_maps[] = {
    {"decode_map__31_0", 1},
    {"decode_map__31_9__4_0", 1},
    {"decode_map__31_4", 2},
    {"decode_map__31_14__9_9__4_0", 1},
    {"decode_map__31_9__4_4", 13},
    {"decode_map__31_10__4_4", 8},
    {"decode_map__31_9", 58},
    {"decode_map__31_13__9_6", 24},
    {"decode_map__31_21__15_10__4_0", 4},
    {"decode_map__31_10", 38},
    {"decode_map__31_13__9_8", 4},
    {"decode_map__31_11", 1},
    {"decode_map__31_24__21_10", 1},
    {"decode_map__31_20__15_9__4_4", 24},
    {"decode_map__31_14__9_9__4_4", 8},
    {"decode_map__31_13__4_4", 18},
    {"decode_map__31_13__9_9", 4},
    {"decode_map__31_14__9_9", 4},
    {"decode_map__31_19__15_10", 6},
    {"decode_map__31_24__21_21__19_10", 1},
    {"decode_map__31_13", 403},
    {"decode_map__31_17__15_13", 3},
    {"decode_map__31_14", 32},
    {"decode_map__31_23__21_13", 4},
    {"decode_map__31_20__15_10", 65},
    {"decode_map__31_24__21_21__18_10", 1},
    {"decode_map__31_21__15_10__4_4", 32},
    {"decode_map__31_24__21_21__17_10", 1},
    {"decode_map__31_21__15_10", 135},
    {"decode_map__31_21__15_11", 2},
    {"decode_map__31_20__15_14__9_9__4_4", 19},
    {"decode_map__31_24__21_21__16_10", 1},
    {"decode_map__31_23__21_21__15_10", 6},
    {"decode_map__31_21__15_13__4_4", 131},
    {"decode_map__31_21__15_12", 2},
    {"decode_map__31_20__15_13", 81},
    {"decode_map__31_21__15_13", 285},
    {"decode_map__31_20__15_14", 8},
    {"decode_map__31_18", 4},
    {"decode_map__31_22__15_13__4_4", 6},
    {"decode_map__31_21__15_14", 4},
    {"decode_map__31_21__13_13__4_4", 16},
    {"decode_map__31_22__15_13", 18},
    {"decode_map__31_21__15_15", 3},
};

// The direct handlers that compute with the host's floating-point unit.
const std::set<std::string_view> float_handlers = {
    "sve_fadd_zpi",       "sve_fadd_zpz",       "sve_fadd_zzz",       "sve_fcmeq_ppz",      "sve_fcmeq_ppzz",
    "sve_fcmge_ppz",      "sve_fcmge_ppzz",     "sve_fcmgt_ppz",      "sve_fcmgt_ppzz",     "sve_fcmla_zpzzr",
    "sve_fcmle_ppz",      "sve_fcmlt_ppz",      "sve_fcmne_ppzz",     "sve_fcmuo_ppzz",     "sve_fcvt_d2s_zpz",
    "sve_fcvt_s2d_zpz",   "sve_fcvtzs_d2d_zpz", "sve_fcvtzs_d2s_zpz", "sve_fcvtzs_s2d_zpz", "sve_fcvtzs_s2s_zpz",
    "sve_fcvtzu_d2d_zpz", "sve_fcvtzu_d2s_zpz", "sve_fdiv_zpz",       "sve_fdivr_zpz",      "sve_fmad_zpzz",
    "sve_fmax_zpz",       "sve_fmaxnm_zpz",     "sve_fmaxnmv_vpz",    "sve_fminnm_zpz",     "sve_fminnmv_vpz",
    "sve_fmla_zpzz",      "sve_fmls_zpzz",      "sve_fmsb_zpzz",      "sve_fmul_zpi",       "sve_fmul_zpz",
    "sve_fmul_zzz",       "sve_fnmad_zpzz",     "sve_fnmla_zpzz",     "sve_fnmls_zpzz",     "sve_fnmsb_zpzz",
    "sve_frecpe_zz",      "sve_frecps_zzz",     "sve_frinta_zpz",     "sve_fsqrt_zpz",      "sve_fsub_zpi",
    "sve_fsub_zpz",       "sve_fsub_zzz",       "sve_fsubr_zpi",      "sve_fsubr_zpz",      "sve_scvtf_d2d_zpz",
    "sve_scvtf_d2s_zpz",  "sve_scvtf_s2d_zpz",  "sve_scvtf_s2s_zpz",  "sve_ucvtf_d2d_zpz",  "sve_ucvtf_s2d_zpz",
    "sve_ucvtf_s2s_zpz",
};

template <class F>
void for_each_row(F f) {
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows) f(map, row);
}

TEST(Tables, HaveTheirNumbersOfRowsInLookupOrder) {
  std::vector<map_size> maps;
  for (const decode_map& map : decode_maps()) maps.push_back({map.name, map.rows.size()});
  EXPECT_THAT(maps, ElementsAreArray(expected_maps));
  std::size_t total = 0;
  for (const map_size& map : maps) total += map.rows;
  EXPECT_EQ(total, 1483u);
}

TEST(Tables, StandByDecreasingNumberOfFixedBits) {
  int before = 32;
  for (const decode_map& map : decode_maps()) {
    const int fixed = std::popcount(map.key.mask());
    EXPECT_LE(fixed, before) << map.name;
    before = fixed;
  }
}

TEST(Tables, AreWhatTheMapsAreBuiltFrom) {
  for (const decode_map& map : decode_maps()) {
    ASSERT_EQ(map.map->size(), map.rows.size()) << map.name;
    for (const decode_row& row : map.rows) EXPECT_EQ(map.map->at(row.key), row.thunk) << row.name.view();
  }
}

TEST(Tables, StandInTheOrderOfTheThunksNames) {
  for (const decode_map& map : decode_maps()) {
    const auto by_name = [](const decode_row& a, const decode_row& b) { return a.name.view() < b.name.view(); };
    EXPECT_TRUE(std::is_sorted(map.rows.begin(), map.rows.end(), by_name)) << map.name;
  }
}

TEST(Tables, NameEachThunkOnce) {
  std::set<std::string_view> names;
  for_each_row([&](const decode_map&, const decode_row& row) { EXPECT_TRUE(names.insert(row.name.view()).second); });
  EXPECT_EQ(names.size(), 1483u);
}

TEST(Tables, HoldOneRowOf128BitElements) {
  std::vector<std::string_view> names;
  for_each_row([&](const decode_map&, const decode_row& row) {
    if (row.name.view().starts_with("VecU128")) names.push_back(row.name.view());
  });
  EXPECT_THAT(names, testing::ElementsAre("VecU128ExtDupVI"));
}

TEST(Tables, LieInTheScalableVectorSpace) {
  for_each_row([](const decode_map&, const decode_row& row) { EXPECT_EQ(row.value >> 25 & 0xF, 0b0010u); });
}

// Two patterns meet when they agree in all bits that both fix.
TEST(Tables, HaveNoTwoRowsThatMeet) {
  struct pattern {
    std::uint32_t mask, value;
    std::string_view name;
  };
  std::vector<pattern> patterns;
  for_each_row([&](const decode_map& map, const decode_row& row) {
    patterns.push_back({map.key.mask(), row.value, row.name.view()});
  });
  for (std::size_t i = 0; i != patterns.size(); ++i) {
    for (std::size_t j = 0; j != i; ++j) {
      const pattern &a = patterns[i], &b = patterns[j];
      ASSERT_NE((a.value ^ b.value) & a.mask & b.mask, 0u) << a.name << " meets " << b.name;
    }
  }
}

TEST(Routes, AreSharedOutAsDesigned) {
  std::map<route, int> count;
  for_each_row([&](const decode_map&, const decode_row& row) { ++count[row.way]; });
  EXPECT_EQ(count[route::direct] + count[route::direct_fp], 803);
  EXPECT_EQ(count[route::direct_fp], 97);
  EXPECT_EQ(count[route::library], 644);
  EXPECT_EQ(count[route::none], 36);
}

TEST(Routes, MoveTheFloatingPointStatusAroundTheHandlersThatComputeOnTheHost) {
  std::set<std::string_view> seen;
  for_each_row([&](const decode_map&, const decode_row& row) {
    EXPECT_EQ(row.way == route::direct_fp, float_handlers.contains(row.handler)) << row.name.view();
    if (row.way == route::direct_fp) seen.insert(row.handler);
  });
  EXPECT_EQ(seen, float_handlers);
}

TEST(Routes, NameTheHandlersOfDirectRowsAlone) {
  for_each_row([](const decode_map&, const decode_row& row) {
    const bool direct = row.way == route::direct || row.way == route::direct_fp;
    EXPECT_EQ(row.handler.starts_with("sve_"), direct) << row.name.view();
    EXPECT_EQ(row.handler.empty(), !direct) << row.name.view();
  });
}

TEST(Routes, LeaveOnlyPrefetchesWithNothingToDo) {
  for_each_row([](const decode_map&, const decode_row& row) {
    EXPECT_EQ(row.way == route::none, row.name.view().find("Prefetch") != std::string_view::npos) << row.name.view();
  });
}

struct route_case {
  std::string_view name;
  route way;
  std::string_view handler;
};

// Where neighbours in name or in kind go different ways, or one handler has two names.
const route_case asymmetries[] = {
    {"VecP8Zip1PP", route::direct, "sve_zip1_ppp"},
    {"VecP8Zip2PP", route::direct, "sve_zip2_ppp"},
    {"VecP8Uzp1PP", route::direct, "sve_uzp1_ppp"},
    {"VecP8Uzp2PP", route::library, ""},
    {"VecP8Trn1PP", route::library, ""},
    {"VecP8Trn2PP", route::library, ""},
    {"VecU8QDecrVL4SI", route::direct, "sve_uqdecb_rii"},
    {"VecU8QDecrVL8SI", route::direct, "sve_uqdecb_rii"},
    {"VecU16QDecrVL4SI", route::library, ""},
    {"VecS8QDecrVL8SI", route::library, ""},
    {"VecU8QIncrVL4SI", route::library, ""},
    {"VecPBreakAPM", route::direct, "sve_brka_ppp"},
    {"VecPBreakAPZ", route::direct, "sve_brka_ppp"},
    {"VecS8DupIM", route::direct, "sve_cpy_zpi"},
    {"VecS8DupIZ", route::direct, "sve_cpy_zpi"},
    {"VecF16DupIM", route::library, ""},
    {"VecF16DupI", route::direct, "sve_fdup_zi"},
    {"VecU8MovePrefix1VM", route::direct, "sve_movprfx_zpz"},
    {"VecU8MovePrefix1VZ", route::direct, "sve_movprfx_zpz"},
    {"VecPClearFFSR", route::direct, "sve_setffr"},
    {"VecPActualP", route::direct, "sve_rdffr_pp"},
    {"VecPReadFFSRP", route::direct, "sve_rdffr_p"},
    {"VecU8SlideVI", route::direct, "sve_ext_zzi"},
    {"VecU64Rev4V", route::direct, "sve_revw_zpz"},
    {"VecU64FillSI", route::direct, "sve_ldr_zri"},
    {"VecPFillSI", route::direct, "sve_ldr_pri"},
    {"VecU64SpillSI", route::direct, "sve_str_zri"},
    {"VecPSpillSI", route::direct, "sve_str_pri"},
    {"VecU8CondXBSV", route::direct, "sve_clastb_rpz"},
    {"VecB8CondXBSV", route::library, ""},
    {"VecU8CondXASV", route::library, ""},
    {"VecU8CLoadFF1LSSZ", route::direct, "sve_ldff1b_scaled_zprr"},
    {"VecS16CLoadFF1LSSZ", route::library, ""},
    {"VecU16CLoadFF2LSSZ", route::library, ""},
    {"VecF16AddVVM", route::library, ""},
    {"VecU64LEA1VV", route::direct, "sve_adr_scaled_zzz"},
    {"VecU32LEA1VV", route::library, ""},
    {"VecS32_4FromFVM", route::direct_fp, "sve_fcvtzs_s2s_zpz"},
    {"VecU32_4FromFVM", route::library, ""},
    {"VecF64FromS8VM", route::direct_fp, "sve_scvtf_d2s_zpz"},
    {"VecF64FromU8VM", route::library, ""},
    {"VecF32AbsVM", route::direct, "sve_fabs_zpz"},
    {"VecS32CLoad2LSSZ", route::direct, "sve_ld1sh_s_scaled_zprr"},
    {"VecU64LoadDup4SIZ", route::direct, "sve_ld1rw_d_zpri"},
    {"VecU32Load1VSZ", route::direct, "sve_ld1b_s_uxtw_zpzr"},
    {"VecU32Store2SVZ", route::direct, "sve_st1h_s_uxtw_scaled_zprz"},
    {"VecU32Load4VIZ", route::direct, "sve_ld1w_zpzi"},
};

TEST(Routes, KeepTheirAsymmetries) {
  std::map<std::string_view, const decode_row*> by_name;
  for_each_row([&](const decode_map&, const decode_row& row) { by_name[row.name.view()] = &row; });
  for (const route_case& c : asymmetries) {
    ASSERT_TRUE(by_name.contains(c.name)) << c.name;
    EXPECT_EQ(by_name[c.name]->way, c.way) << c.name;
    EXPECT_EQ(by_name[c.name]->handler, c.handler) << c.name;
  }
}

}  // namespace
}  // namespace quern
