// Pictures that are drawn in tiles, by one process or by many.
#include "apps/draw/tiles.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "apps/files/png_reader.h"
#include "tests/apps/program.h"

namespace {

using namespace kv;

TEST(Tile_Grid, covers_each_pixel_once) {
  const Tile_Grid grid{{50, 41}, {16, 20}};
  ASSERT_EQ(grid.count(), 12);
  std::vector<int> covered(50 * 41);
  for (int index = 0; index < grid.count(); ++index) {
    const KT_Int_Rectangle part = grid.part(index);
    EXPECT_EQ(part.top, 41 - 1 - grid.top(index));
    for (int y = part.bottom; y <= part.top; ++y)
      for (int x = part.left; x <= part.right; ++x) ++covered.at(std::size_t(y * 50 + x));
  }
  EXPECT_EQ(covered, std::vector<int>(50 * 41, 1));
}

TEST(Tile_Note, is_read_back_and_nothing_else_is) {
  const Tile_Note note{{{1000, 700}, {137, 93}}, 11};
  EXPECT_EQ(words_of(parse_tile_note(words_of(note))), words_of(note));
  for (const char* words :
       {"", "11", "64 of 1000x700 in 137x93", "-1 of 1000x700 in 137x93", "0 of 0x0 in 16x16",
        "0 of 999999999x999999999 in 16x16", "0 of 99x99 in 1x1", "0 of 99x99 in 16x16 "})
    EXPECT_THROW(parse_tile_note(words), std::runtime_error) << words;
}

struct Shell_Outcome {
  int exit_code = -1;
  std::string output;
};

class Tiles : public Program {
 protected:
  Tiles() {
    write_cube();
    // Many triangles of all sizes and slopes, cut by every tile.
    std::ostringstream text;
    for (int i = 0; i < 600; ++i)
      text << "v " << i * 37 % 101 << " " << i * 53 % 97 << " " << i * 29 % 89 << "\n";
    for (int i = 1; i + 2 <= 600; i += 3) text << "f " << i << " " << i + 1 << " " << i + 2 << "\n";
    write("shards.obj", text.str());
  }

  // With $KVDRAW and $MODULE, in the folder of the test.
  Shell_Outcome shell(const std::string& command) const {
    const std::string line = "cd '" + path("") +
                             "' && export KVDRAW='" KVDRAW "' MODULE='" RENDERER_MODULE "' && (" +
                             command + ") 2>&1";
    Shell_Outcome outcome;
    std::FILE* output = popen(line.c_str(), "r");
    if (!output) throw std::runtime_error("no shell");
    char buffer[4096];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, output)) > 0;)
      outcome.output.append(buffer, got);
    const int status = pclose(output);
    outcome.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
  }

  std::vector<std::string> draw(const std::string& picture, std::vector<std::string> more) const {
    more.insert(more.begin(), {"shards.obj", "-o", picture, "--module", RENDERER_MODULE});
    return more;
  }

  std::string content(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path(name), std::ios::binary).rdbuf();
    return text.str();
  }

  std::vector<std::uint8_t> pixels(const std::string& name) const {
    Png_Reader reader(path(name), Png_Pixels::rgb);
    std::vector<std::uint8_t> all;
    std::vector<std::uint8_t> row(reader.row_bytes());
    for (int y = 0; y < reader.size().height; ++y) {
      reader.row(row.data());
      all.insert(all.end(), row.begin(), row.end());
    }
    return all;
  }

  // Draws as a whole and in tiles, and expects pixels of which at most `share` differ.
  void expect_same(std::vector<std::string> options, double share = 0) const {
    options.insert(options.end(), {"--size", "213x157"});
    ASSERT_EQ(run(draw("whole.png", options)).errors, "");
    options.insert(options.end(), {"--tile", "61x37"});
    ASSERT_EQ(run(draw("tiled.png", options)).errors, "");
    const std::vector<std::uint8_t> whole = pixels("whole.png"), tiled = pixels("tiled.png");
    ASSERT_EQ(tiled.size(), whole.size());
    std::size_t differing = 0;
    for (std::size_t i = 0; i < whole.size(); i += 3)
      differing += !std::equal(&whole[i], &whole[i] + 3, &tiled[i]);
    EXPECT_LE(static_cast<double>(differing), share * static_cast<double>(whole.size()) / 3);
    EXPECT_NE(whole, std::vector<std::uint8_t>(whole.size(), whole[0])) << "nothing was drawn";
  }
};

TEST_F(Tiles, make_the_same_picture_in_flat_shading) {
  for (const char* variant : {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z"})
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{},
                                               {"--distance", "0.3"},
                                               {"--zoom", "7", "--ortho"},
                                               {"--clip", "circle"},
                                               {"--pattern", "66"}}) {
      SCOPED_TRACE(variant + (options.empty() ? "" : options[0]));
      std::vector<std::string> all = options;
      all.insert(all.end(), {"--mode", "flat", "--variant", variant});
      expect_same(all);
    }
  expect_same({"--polygons", "--clip", "circle"});
  expect_same({"--mode", "points", "--clip", "circle"});
  expect_same({"--mode", "flat", "--variant", "rgb-alpha", "--merge"});
}

// Renderers draw a triangle, a dithered one above all, and a line a little otherwise when it is
// cut; patterns and dithers must be in step all the same.
TEST_F(Tiles, make_nearly_the_same_picture_otherwise) {
  expect_same({}, 0.01);
  expect_same({"--mode", "flat", "--variant", "mapped"}, 0.01);
  expect_same({"--variant", "mapped-z", "--pattern", "20"}, 0.01);
  expect_same({"--mode", "wireframe", "--line-width", "3"}, 0.02);
}

TEST_F(Tiles, drawn_by_two_jobs_are_joined) {
  const std::string scene = "shards.obj --module \"$MODULE\" --size 213x157 --tile 61x37";
  ASSERT_EQ(shell("\"$KVDRAW\" " + scene + " -o whole.png").exit_code, 0);
  const Shell_Outcome jobs = shell(
      "job='\"$KVDRAW\" " + scene +
      " --tile-index {} -o tile-{}.png'; if command -v parallel; then seq 0 19 | parallel -j2 "
      "\"$job\"; else seq 0 19 | xargs -P2 -I{} sh -c \"$job\"; fi");
  ASSERT_EQ(jobs.exit_code, 0) << jobs.output;
  ASSERT_EQ(run({"join", "-o", "joined.png", "tile-19.png", "tile-0.png"}).exit_code, 1);
  const Shell_Outcome join = shell("\"$KVDRAW\" join -o joined.png tile-*.png");
  EXPECT_EQ(join.exit_code, 0);
  EXPECT_EQ(join.output, "");
  EXPECT_TRUE(content("joined.png") == content("whole.png"));
  const std::string seven = content("tile-7.png");
  ASSERT_EQ(shell("\"$KVDRAW\" " + scene + " --tile-index 7 -o tile-7.png").exit_code, 0);
  EXPECT_TRUE(content("tile-7.png") == seven) << "a tile drawn anew differs";
}

TEST_F(Tiles, that_do_not_fit_are_named) {
  const auto tile = [&](const std::string& name, const char* index, const char* size) {
    ASSERT_EQ(run(draw(name, {"--size", size, "--tile", "50", "--tile-index", index})).errors, "");
  };
  for (const char* index : {"0", "1", "3"}) tile(std::string(index) + ".png", index, "90x90");
  tile("one.png", "1", "90x90");
  tile("other.png", "2", "99x90");
  ASSERT_EQ(run(draw("no_tile.png", {"--size", "40x40"})).errors, "");
  write("cut.png", content("0.png").substr(0, 300));
  write("text.png", "no picture at all");
  const std::set<std::string> before = files();
  const auto refuse = [&](std::vector<std::string> tiles, const char* file, const char* words) {
    tiles.insert(tiles.begin(), {"join", "-o", "joined.png"});
    expect_failure(tiles, 1, file, words);
    EXPECT_EQ(files(), before);
  };
  refuse({"0.png", "3.png"}, "joined.png", "2 of 4 tiles are missing: 1, 2");
  refuse({"0.png", "1.png", "one.png"}, "one.png", "tile 1 again, after 1.png");
  refuse({"0.png", "1.png", "other.png"}, "other.png", "another picture");
  refuse({"0.png", "no_tile.png"}, "no_tile.png", "no tile");
  refuse({"0.png", "text.png"}, "text.png", "no PNG");
  refuse({"0.png", "gone.png"}, "gone.png", "No such file");
  tile("2.png", "2", "90x90");
  std::filesystem::remove(path("0.png"));
  expect_failure({"join", "-o", "joined.png", "cut.png", "1.png", "2.png", "3.png"}, 1, "cut.png",
                 "");
  EXPECT_FALSE(std::filesystem::exists(path("joined.png")));
}

TEST_F(Tiles, options_that_cannot_be_followed_are_refused) {
  const std::set<std::string> before = files();
  const auto refuse = [&](const std::vector<std::string>& options, const char* words) {
    expect_failure(draw("out.png", options), 2, "", words);
    EXPECT_EQ(files(), before);
  };
  refuse({"--size", "16385x100"}, "--tile");
  refuse({"--size", "131073x1", "--tile", "512"}, "size");
  for (const char* tile : {"15", "16385", "0", "a", "16x", "x16", "64x8"})
    refuse({"--tile", tile}, "tile");
  refuse({"--tile-index", "0"}, "--tile");
  refuse({"--size", "90x90", "--tile", "50", "--tile-index", "4"}, "0 to 3");
  refuse({"--size", "90x90", "--tile", "50", "--tile-index", "-1"}, "-1");
  refuse({"--tile", "50", "--clip", "circle", "--mode", "wireframe"}, "--clip");
  refuse({"--tile", "50", "--variant", "rgb", "--merge"}, "rgb-alpha");
}

TEST_F(Tiles, leave_nothing_behind_when_they_cannot_be_written_or_are_stopped) {
  write("poster.png", "an earlier one");
  const std::set<std::string> before = files();
  expect_failure(draw("poster.png", {"--size", "800x800", "--tile", "100"}), 4, "poster.png",
                 "File too large", 2000);
  EXPECT_EQ(files(), before);
  const Shell_Outcome stopped = shell(
      "timeout 0.5 \"$KVDRAW\" shards.obj -o poster.png --module \"$MODULE\" --size "
      "60000x60000 --tile 512");
  EXPECT_EQ(stopped.exit_code, 124) << stopped.output;
  EXPECT_EQ(stopped.output, "");
  EXPECT_EQ(files(), before);
  EXPECT_EQ(content("poster.png"), "an earlier one");
}

TEST_F(Tiles, tell_their_progress_on_a_terminal_alone) {
  if (shell("command -v script").exit_code != 0) GTEST_SKIP() << "there is no script(1)";
  const std::string poster =
      "\\\"$KVDRAW\\\" cube.obj -o poster.png --module \\\"$MODULE\\\" --size 5000x5000 --tile 250";
  const Shell_Outcome seen = shell("script -qec \"" + poster + "\" /dev/null </dev/null");
  EXPECT_EQ(seen.exit_code, 0) << seen.output;
  EXPECT_NE(seen.output.find(" of 400 ("), std::string::npos) << seen.output;
  EXPECT_EQ(seen.output.substr(seen.output.size() - 4), "\r\033[K") << "the line stays";
}

}  // namespace
