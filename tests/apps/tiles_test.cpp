// Pictures that are drawn in tiles, by one process or by many.
#include "apps/draw/tiles.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "tests/apps/program.h"

namespace {

using namespace kv;

TEST(Tile_Note, is_read_back_and_nothing_else_is) {
  const Tile_Note note{{{1000, 700}, {137, 93}}, 11};
  EXPECT_EQ(words_of(parse_tile_note(words_of(note))), words_of(note));
  for (const char* words :
       {"", "11", "64 of 1000x700 in 137x93", "-1 of 1000x700 in 137x93", "0 of 0x0 in 16x16",
        "0 of 999999999x999999999 in 16x16", "0 of 99x99 in 1x1", "0 of 99x99 in 16x16 "})
    EXPECT_THROW(parse_tile_note(words), std::runtime_error) << words;
}

class Tiles : public Program {
 protected:
  // Many triangles of all sizes and slopes, cut by every tile.
  Tiles() {
    std::ostringstream text;
    for (int i = 0; i < 600; ++i)
      text << "v " << i * 37 % 101 << " " << i * 53 % 97 << " " << i * 29 % 89 << "\n";
    for (int i = 1; i + 2 <= 600; i += 3) text << "f " << i << " " << i + 1 << " " << i + 2 << "\n";
    write("shards.obj", text.str());
  }
  // Draws as a whole and in tiles, and expects pixels of which at most `share` differ.
  void expect_same(const std::string& options, double share = 0) const {
    SCOPED_TRACE(options);
    const std::string line = "shards.obj --size=213x157 --azimuth=30 --elevation=20 " + options;
    const Decoded whole = draw(line), tiled = draw(line + " --tile=61x37");
    ASSERT_EQ(tiled.bytes.size(), whole.bytes.size());
    std::size_t differing = 0;
    for (std::size_t i = 0; i < whole.bytes.size(); i += 3)
      differing += !std::equal(&whole.bytes[i], &whole.bytes[i] + 3, &tiled.bytes[i]);
    EXPECT_LE(static_cast<double>(differing), share * 213 * 157);
    EXPECT_GT(std::set(whole.bytes.begin(), whole.bytes.end()).size(), 3u) << "nothing was drawn";
  }
};

TEST_F(Tiles, make_the_same_picture_in_flat_shading) {
  for (const char* variant : {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z"})
    for (const char* how :
         {"", " --distance=0.3", " --zoom=7 --ortho", " --clip=circle", " --pattern=66"})
      expect_same("--mode=flat --variant=" + std::string(variant) + how);
  expect_same("--polygons --clip=circle");
  expect_same("--mode=points --clip=circle");
  expect_same("--mode=flat --variant=rgb-alpha --merge");
}

// Renderers draw a triangle, a dithered one above all, and a line a little otherwise when it is
// cut; patterns and dithers must be in step all the same.
TEST_F(Tiles, make_nearly_the_same_picture_otherwise) {
  expect_same("", 0.01);
  expect_same("--mode=flat --variant=mapped", 0.01);
  expect_same("--variant=mapped-z --pattern=20", 0.01);
  expect_same("--mode=wireframe --line-width=3", 0.02);
}

TEST_F(Tiles, drawn_by_two_jobs_are_joined) {
  const std::string scene = "shards.obj --size 213x157 --tile 61x37";
  ASSERT_EQ(run(scene + " -o whole.png").errors, "");
  const std::string job = "\"$KVDRAW\" " + scene + " --tile-index {} -o tile-{}.png";
  ASSERT_EQ(shell("seq 0 19 | xargs -P2 -I{} sh -c '" + job + "'").errors, "");
  ASSERT_EQ(run("join -o joined.png tile-19.png tile-0.png").exit_code, 1);
  ASSERT_EQ(run("join -o joined.png tile-*.png").errors, "");
  EXPECT_TRUE(content_of(path("joined.png")) == content_of(path("whole.png")));
  const std::string seven = content_of(path("tile-7.png"));
  ASSERT_EQ(run(scene + " --tile-index 7 -o tile-7.png").errors, "");
  EXPECT_TRUE(content_of(path("tile-7.png")) == seven) << "a tile drawn anew differs";
}

TEST_F(Tiles, that_do_not_fit_are_named) {
  const auto draw_tile = [&](const std::string& name, const char* index, const char* size) {
    ASSERT_EQ(run("shards.obj --tile 50 --size " + std::string(size) + " --tile-index " + index +
                  " -o " + name)
                  .errors,
              "");
  };
  for (const char* index : {"0", "1", "2", "3"})
    draw_tile(index + std::string(".png"), index, "90x90");
  draw_tile("one.png", "1", "90x90");
  draw_tile("other.png", "2", "99x90");
  write("cut.png", content_of(path("0.png")).substr(0, 300));
  const std::set<std::string> before = files();
  for (const auto& [tiles, file, words] :
       {std::tuple{"0.png 3.png", "joined.png", "2 of 4 tiles are missing: 1, 2"},
        {"0.png 1.png one.png", "one.png", "tile 1 again, after 1.png"},
        {"0.png 1.png other.png", "other.png", "another picture"},
        {"cut.png 1.png 2.png 3.png", "cut.png", ""}}) {
    expect_failure("join -o joined.png " + std::string(tiles), 1, file, words);
    EXPECT_EQ(files(), before);
  }
}

TEST_F(Tiles, leave_nothing_behind_when_they_cannot_be_written_or_are_stopped) {
  write("poster.png", "an earlier one");
  const std::set<std::string> before = files();
  expect_failure("shards.obj -o poster.png --size 800x800 --tile 100", 4, "poster.png",
                 "File too large", true);
  EXPECT_EQ(files(), before);
  const Outcome stopped =
      shell("timeout 0.5 \"$KVDRAW\" shards.obj -o poster.png --size 60000x60000 --tile 512");
  EXPECT_EQ(stopped.exit_code, 124) << stopped.errors;
  EXPECT_EQ(stopped.errors, "");
  EXPECT_EQ(files(), before);
  EXPECT_EQ(content_of(path("poster.png")), "an earlier one");
}

}  // namespace
