// The memory for generated code, filled to its bound and used again where places of the application have gone.
#include "sve/trap/host/code_pool.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <iterator>
#include <map>
#include <vector>

#include "sve/trap/patch/instructions.h"

namespace quern {
namespace {

constexpr std::size_t page_bytes = 4096, piece_bytes = 262144, bound = 64 << 20;
constexpr std::size_t site_bytes = 8, sites_in_page = piece_bytes / max_run_code_bytes;
constexpr std::size_t most_sites = bound / max_run_code_bytes + 2 * sites_in_page;

constexpr aarch64::word add = 0x04250083, other = 0x04660083, ret = 0xD65F03C0, breakpoint = 0xD4200000;

void put_word(unsigned char* at, aarch64::word word) { std::memcpy(at, &word, sizeof word); }
aarch64::word word_of(const unsigned char* site) {
  aarch64::word word;
  std::memcpy(&word, site, sizeof word);
  return word;
}

// Code that is none, of the most bytes, for a word in front of a `ret`, and the branch to it.
void make_code_of(unsigned char* site, const code_room& room, aarch64::word word = add) {
  run_code code{};
  code.site = site;
  code.words = 1;
  code.literals[0].word = word;
  code.behind = ret;
  code.entry = sizeof code;
  code.end = max_run_code_bytes;
  std::memcpy(room.writable, &code, sizeof code);
  take_code_room(room, max_run_code_bytes);
  put_word(site, aarch64::b(room.place + code.entry - site));
  put_word(code.behind_site(), ret);
}

class CodePool : public testing::Test {
 protected:
  using places = std::vector<unsigned char*>;

  void SetUp() override {
    void* const mapped = mmap(nullptr, most_sites / sites_in_page * page_bytes, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(mapped, MAP_FAILED);
    sites_ = static_cast<unsigned char*>(mapped);
    fill();
  }
  // What is there no more is not unmapped: sites of the next test at the same place would be taken for the same code.
  void TearDown() override { madvise(sites_, most_sites / sites_in_page * page_bytes, MADV_DONTNEED); }

  // Sites for all rooms that there are: those that earlier tests have left are gone with their pages.
  void fill() {
    while (count_ != most_sites) {
      unsigned char* const site = next_site();
      const code_room room = find_code_room(site);
      if (!room.place) return;
      make_code_of(site, room);
      sites_of_[piece_of(room)].push_back(site);
      ++count_;
    }
  }
  unsigned char* next_site() const {
    return sites_ + count_ / sites_in_page * page_bytes + count_ % sites_in_page * site_bytes;
  }
  static std::uintptr_t piece_of(const code_room& room) {
    return reinterpret_cast<std::uintptr_t>(room.place) / piece_bytes;
  }
  bool has_room() const { return find_code_room(next_site()).place != nullptr; }
  // Of one in the middle, which is within reach of all sites.
  const places& sites_of_some_piece() const { return std::next(sites_of_.begin(), std::ssize(sites_of_) / 2)->second; }

  // One of these whose branch no other site has: two that are as far from each other as their codes have the same.
  unsigned char* site_with_a_branch_of_its_own() const {
    std::map<aarch64::word, int> sites_with;
    for (const auto& [piece, sites] : sites_of_)
      for (unsigned char* const site : sites) ++sites_with[word_of(site)];
    for (unsigned char* const site : sites_of_some_piece())
      if (sites_with[word_of(site)] == 1) return site;
    return nullptr;
  }

  static void put(const places& sites, aarch64::word word) {
    for (unsigned char* const site : sites) put_word(site, word);
  }
  static void put_behind(const places& sites, aarch64::word word) {
    for (unsigned char* const site : sites) put_word(site + sizeof word, word);
  }

  std::map<std::uintptr_t, places> sites_of_;
  std::size_t count_ = 0;

 private:
  unsigned char* sites_ = nullptr;
};

TEST_F(CodePool, IsBoundedAndWithinReach) {
  EXPECT_LE(count_ * max_run_code_bytes, bound);
  EXPECT_GT(count_ * max_run_code_bytes, bound / 2) << "other mappings are in the way of some pieces";
  for (const auto& [piece, sites] : sites_of_) {
    for (unsigned char* const site : sites) {
      const auto distance = static_cast<std::int64_t>(piece * piece_bytes) - reinterpret_cast<std::intptr_t>(site);
      EXPECT_LT(std::abs(distance), aarch64::branch_reach - std::int64_t{piece_bytes});
    }
  }
  EXPECT_FALSE(has_room());
}

TEST_F(CodePool, IsUsedAgainWhereAllPlacesOfAPieceHaveOtherCode) {
  const places sites = sites_of_some_piece();
  put({sites.begin() + 1, sites.end()}, other);
  put_behind(sites, other);
  EXPECT_FALSE(has_room()) << "the first still has its branch";
  put(sites, other);
  EXPECT_TRUE(has_room());
  const std::size_t before = count_;
  fill();
  EXPECT_EQ(count_ - before, sites.size());
  EXPECT_FALSE(has_room());
}

TEST_F(CodePool, IsUsedAgainWhereAllPlacesOfAPieceAreAsBefore) {
  put(sites_of_some_piece(), add);
  EXPECT_TRUE(has_room());
}

TEST_F(CodePool, KeepsCodeFromWhichAThreadCouldGoOn) {
  const places sites = sites_of_some_piece();
  put(sites, other);
  EXPECT_FALSE(has_room()) << "the words behind are as before";
  put_behind({sites.begin() + 1, sites.end()}, other);
  EXPECT_FALSE(has_room()) << "one of them is as before";
  put_word(sites.front() + site_bytes / 2, aarch64::b(64));
  EXPECT_FALSE(has_room()) << "it may be a branch that leads on to other generated code";
  put_behind(sites, other);
  EXPECT_TRUE(has_room());
}

TEST_F(CodePool, KeepsCodeWhosePlacesAreMappedButCannotBeRead) {
  const places sites = sites_of_some_piece();
  ASSERT_EQ(mprotect(sites.front(), page_bytes, PROT_NONE), 0);
  EXPECT_FALSE(has_room());
  munmap(sites.front(), page_bytes);
  EXPECT_TRUE(has_room());
}

TEST_F(CodePool, IsUsedAgainWhereAllPlacesOfAPieceAreUnmapped) {
  const places sites = sites_of_some_piece();
  ASSERT_EQ(sites.size(), sites_in_page) << "a page has the sites of one piece";
  munmap(sites.front(), page_bytes);
  const code_room room = find_code_room(next_site());
  ASSERT_NE(room.place, nullptr);
  const char text[] = "written elsewhere, seen in place";
  std::memcpy(room.writable, text, sizeof text);
  EXPECT_STREQ(reinterpret_cast<const char*>(room.place), text);
}

TEST_F(CodePool, KeepsCodeWhosePlacesAreUnderBreakpoints) {
  put(sites_of_some_piece(), breakpoint);
  EXPECT_FALSE(has_room()) << "a debugger will put the branches back";
}

TEST_F(CodePool, KnowsNoCodeInAPieceThatWasGivenBack) {
  const places sites = sites_of_some_piece();
  const unsigned char* const entry = sites.front() + aarch64::b_distance(word_of(sites.front()));
  EXPECT_NE(find_code(entry), nullptr);
  put(sites, add);
  EXPECT_TRUE(has_room());
  EXPECT_EQ(find_code(entry), nullptr);
}

TEST_F(CodePool, FindsTheCodeOfACopiedBranch) {
  const unsigned char* const site = site_with_a_branch_of_its_own();
  ASSERT_NE(site, nullptr);
  unsigned char copy[8]{};
  std::memcpy(copy, site, sizeof copy);
  const unsigned char* const target = copy + aarch64::b_distance(word_of(site));
  const run_code* const code = find_code_of_copy(target);
  ASSERT_NE(code, nullptr);
  EXPECT_EQ(code->site, site);
  EXPECT_EQ(copied_site(*code, target), copy);
  put_word(copy, add);
  EXPECT_EQ(find_code_of_copy(target), nullptr) << "there is no branch";
  EXPECT_EQ(find_code_of_copy(code->at(code->entry)), nullptr) << "the site itself is no copy";
}

// Of two sites that are as far from each other as their codes, the branches are the same.
TEST_F(CodePool, FindsNoCodeOfACopyThatMayBeOneOfTwo) {
  put(sites_of_some_piece(), add);
  unsigned char* const first = sites_of_some_piece().front() + page_bytes / 2;
  for (const aarch64::word second_word : {add, other}) {
    const code_room room = find_code_room(first);
    ASSERT_NE(room.place, nullptr);
    make_code_of(first, room);
    const code_room next_room = find_code_room(first);
    unsigned char* const second = first + (next_room.place - room.place);
    make_code_of(second, next_room, second_word);
    ASSERT_EQ(std::memcmp(first, second, sizeof(aarch64::word)), 0);
    unsigned char copy[8]{};
    std::memcpy(copy, first, sizeof copy);
    const unsigned char* const target = copy + (room.place + sizeof(run_code) - first);
    EXPECT_EQ(find_code_of_copy(target) != nullptr, second_word == add);
  }
}

TEST_F(CodePool, KnowsWhereNoSitesAre) {
  const places sites = sites_of_some_piece();
  EXPECT_TRUE(may_have_codes_of(sites.front(), 1));
  EXPECT_TRUE(may_have_codes_of(sites.back() - page_bytes, 2 * page_bytes));
  const unsigned char* const lowest = sites_of_.begin()->second.front();
  const unsigned char elsewhere[8]{};
  EXPECT_FALSE(may_have_codes_of(elsewhere, sizeof elsewhere));
  EXPECT_FALSE(may_have_codes_of(nullptr, reinterpret_cast<std::uintptr_t>(lowest) / 2));
}

std::vector<const unsigned char*> visited;
void note_visit(const run_code& code) { visited.push_back(code.site); }

TEST_F(CodePool, VisitsTheCodesOfSomeMemoryAndKeepsThemForGood) {
  const places sites = sites_of_some_piece();
  put_word(sites[1], add);
  visited.clear();
  visit_codes_of(sites.front(), 3 * site_bytes, note_visit);
  EXPECT_EQ(visited, (std::vector<const unsigned char*>{sites[0], sites[2]})) << "the second has no branch";
  put(sites, add);
  EXPECT_FALSE(has_room());
}

}  // namespace
}  // namespace quern
