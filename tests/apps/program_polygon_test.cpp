// Models whose faces are drawn as polygons.
#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

class Polygons : public Program {
 protected:
  void SetUp() override {
    write("model.mtl", "newmtl red\nKd 1 0 0\n");
    // An L of one face: the right top quarter is missing.
    write("model.obj",
          "mtllib model.mtl\nusemtl red\nv 0 0 0\nv 2 0 0\nv 2 1 0\nv 1 1 0\nv 1 2 0\nv 0 2 0\n"
          "f 1 2 3 4 5 6\n");
  }

  Decoded draw(const std::string& model, const std::vector<std::string>& more,
               const std::string& azimuth = "0") const {
    std::vector<std::string> arguments = {model,       "-o",         "out.png",     "--size",
                                          "100x100",   "--polygons", "--module",    RENDERER_MODULE,
                                          "--azimuth", azimuth,      "--elevation", "0"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    return decode(path("out.png"));
  }
};

TEST_F(Polygons, keep_their_notch_in_every_variant) {
  for (const char* variant : {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z", "mapped", "mapped-z"}) {
    SCOPED_TRACE(variant);
    const Decoded picture = draw("model.obj", {"--variant", variant});
    EXPECT_EQ(hue(picture.at(30, 30)), 'r');
    EXPECT_EQ(hue(picture.at(30, 70)), 'r');
    EXPECT_EQ(hue(picture.at(70, 70)), 'r');
    EXPECT_EQ(picture.at(70, 30), picture.at(0, 0));
  }
}

// Edges are those of faces; triangles would have more.
TEST_F(Polygons, have_no_edges_inside) {
  for (const char* mode : {"wireframe", "hidden-line"}) {
    SCOPED_TRACE(mode);
    const Decoded picture = draw("model.obj", {"--mode", mode});
    int inside = 0, around = 0;
    for (std::uint32_t x = 8; x < 48; ++x)
      for (std::uint32_t y = 55; y < 90; ++y) inside += picture.at(x, y) != picture.at(0, 0);
    for (std::uint32_t i = 0; i < 100; ++i) around += picture.at(30, i) != picture.at(0, 0);
    EXPECT_EQ(inside, 0);
    EXPECT_EQ(around, 2);
  }
}

TEST_F(Polygons, are_cut_before_the_eye_and_sorted_without_depth) {
  write("box.obj",
        "mtllib model.mtl\nusemtl red\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 1 0 1\n"
        "v 1 1 1\nv 0 1 1\nf 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n");
  EXPECT_EQ(draw("box.obj", {}, "30").bytes, draw("box.obj", {"--variant=rgb"}, "30").bytes);
  const Decoded inside = draw("box.obj", {"--distance=0"}, "30");
  for (const std::uint32_t at : {0u, 50u, 99u}) EXPECT_EQ(hue(inside.at(at, at)), 'r');
}

}  // namespace
