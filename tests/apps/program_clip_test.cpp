// Clips from files of polygons.
#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

class Clips : public Program {
 protected:
  // A red wall larger than the picture.
  void SetUp() override {
    write("wall.mtl", "newmtl red\nKd 1 0 0\n");
    write("wall.obj",
          "mtllib wall.mtl\nusemtl red\nv 0 0 0\nv 4 0 0\nv 4 4 0\nv 0 4 0\nf 1 2 3 4\n");
  }
  static std::vector<std::string> arguments(const std::vector<std::string>& more) {
    std::vector<std::string> all = {"wall.obj",      "-o",          "out.png",       "--module",
                                    RENDERER_MODULE, "--azimuth=0", "--elevation=0", "--zoom=3",
                                    "--size=100x80", "--clip",      "shape.txt"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
};

// A frame with a hole, its left lower corner cut off: places count from the left top.
TEST_F(Clips, of_polygons_have_holes) {
  write("shape.txt", "# a frame\n10,10 90,10 90,90 40,90 10,60\n\n30 30 70 30 70 70 30 70\n");
  // All variants but rgb-alpha-z, whose faces the module draws whole, whatever the clip.
  for (const char* variant : {"rgb", "rgb-z", "rgb-alpha", "mapped", "mapped-z"})
    for (const char* how : {"--mode=shaded", "--mode=flat", "--tile=48"}) {
      SCOPED_TRACE(std::string(variant) + " " + how);
      const Outcome outcome = run(arguments({"--variant", variant, how}));
      ASSERT_EQ(outcome.exit_code, 0) << outcome.errors;
      const Decoded picture = decode(path("out.png"));
      for (const auto& [x, y] : {std::pair(20u, 16u), {85u, 40u}, {50u, 65u}})
        EXPECT_EQ(hue(picture.at(x, y)), 'r') << x << ", " << y;
      for (const auto& [x, y] : {std::pair(50u, 40u), {5u, 5u}, {15u, 70u}, {95u, 75u}})
        EXPECT_EQ(picture.at(x, y), picture.at(0, 0)) << x << ", " << y;
    }
}

TEST_F(Clips, that_are_wrong_name_the_line) {
  const auto refuse = [&](const std::string& text, const std::string& words) {
    write("shape.txt", text);
    expect_failure(arguments({}), 1, "shape.txt", words);
  };
  refuse("", "no polygon");
  refuse("10,10 90,10 50,90\n10,10 20\n", "line 2");
  refuse("10,10 90,10 50\n", "without its y");
  refuse("10,10 90,10\n", "three corners");
  refuse("10,10 90,x 50,90\n", "at 'x");
  refuse("10,10 90,nan 50,90\n", "too far");
  expect_failure({"wall.obj", "-o", "out.png", "--clip", "none.txt"}, 1, "none.txt", "");
}

}  // namespace
