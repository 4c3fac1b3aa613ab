// The module as a file: what it exports and needs, and that nothing outlives it.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "tests/support/session.h"

namespace {

using namespace support;

std::vector<std::string> lines_of(const std::string& command) {
  std::stringstream text;
  FILE* pipe = popen(command.c_str(), "r");
  for (int c; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) text << static_cast<char>(c);
  EXPECT_EQ(pipe != nullptr ? pclose(pipe) : -1, 0) << command;
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

TEST(Module, ExportsOneSymbol) {
  const auto lines = lines_of("nm -D --defined-only '" TEST_MODULE "'");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0].ends_with(" T KD_Renderer")) << lines[0];
}

TEST(Module, NeedsTheFrameworkAndTheRuntimeAlone) {
  for (const std::string& line : lines_of("readelf -d '" TEST_MODULE "' | grep '(NEEDED)'")) {
    const std::string library = line.substr(line.find('[') + 1);
    bool known = false;
    for (const char* name : {"libkorvel12.so", "libstdc++.so", "libgcc_s.so", "libm.so", "libc.so",
                             "ld-linux", "libasan.so", "libubsan.so"}) {
      known |= library.starts_with(name);
    }
    EXPECT_TRUE(known) << library;
  }
}

// Templates grow unseen; what they come to is held here.
TEST(Module, StaysWithinItsBudgetOfCode) {
  constexpr long budget = MODULE_CODE_BUDGET;
  if (budget == 0) GTEST_SKIP() << "not as it is built for use";
  const auto lines = lines_of("size -A '" TEST_MODULE "' | grep '^[.]text '");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_LE(std::stol(lines[0].substr(5)), budget) << "bytes of .text";
}

// One life of everything: a long clipped strip under a mask, in each variant in turn. Records and
// images are blocks of the framework's heap, so that a reference left behind shows there.
void live_and_draw(int round) {
  Session session({.variant = all_variants[round % 6], .size = {40, 30}, .use_mask = true});
  session.display().complex_clip = contour({{2, 2, 0}, {38, 4, 0}, {20, 29, 0}});
  Strip strip;
  for (int i = 0; i < 70; ++i) {
    strip.points.push_back({i - 10, i % 2 * 40 - 5, i * 100});
    strip.colors.push_back(KT_RGB32::from_word(0xFF000000u + static_cast<unsigned>(i) * 0x30507));
  }
  draw(session, Layer::float_any, Kind::gouraud, strip);
  EXPECT_TRUE(session.color->touched(20, 10));
  session.establish();
  draw(session, Layer::int_any, Kind::flat, strip);
}

/// What a process takes: bytes that malloc has given, mappings, and KB of memory in use.
struct Footprint {
  std::size_t allocated = mallinfo2().uordblks + mallinfo2().hblkhd;
  long mappings = 0, resident = 0;

  Footprint() {
    std::ifstream maps("/proc/self/maps"), status("/proc/self/status");
    for (std::string line; std::getline(maps, line);) ++mappings;
    for (std::string word; status >> word;) {
      if (word == "VmRSS:") status >> resident;
    }
  }
};

TEST(Module, AThousandLivesLeaveNothingBehind) {
  for (int round = 0; round < 100; ++round) live_and_draw(round);  // what is made once and kept
  const long before = heap::live();
  const Footprint begin;
  for (int round = 0; round < 1000; ++round) {
    live_and_draw(round);
    ASSERT_EQ(heap::live(), before) << "after round " << round;
    ASSERT_EQ(dlopen(TEST_MODULE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
  }
  if (MODULE_CODE_BUDGET == 0) return;  // sanitizers keep memory back
  const Footprint end;
  EXPECT_LE(end.allocated, begin.allocated + 4096);  // what malloc keeps at hand counts, too
  EXPECT_EQ(end.mappings, begin.mappings);
  EXPECT_LE(end.resident, begin.resident + 64);
  RecordProperty("mappings", static_cast<int>(end.mappings));
  RecordProperty("resident",
                 std::to_string(begin.resident) + " to " + std::to_string(end.resident));
}

}  // namespace
