// The pictures the program writes, and what remains when it cannot write them.
#include <sys/stat.h>

#include <array>
#include <fstream>

#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

bool is_red(const std::array<int, 3>& color) {
  return color[0] > 60 && color[0] > 2 * color[1] && color[0] > 2 * color[2];
}

class Picture_Test : public Program {
 protected:
  std::vector<std::string> to(const std::string& picture) const {
    return {"cube.obj", "-o", picture, "--size", "120x90", "--module", RENDERER_MODULE};
  }
};

TEST_F(Picture_Test, shows_each_format_in_its_colour) {
  write_cube();
  write_ply_cube();
  write_stl_cube();
  write_gltf_triangle();
  for (const char* model : {"cube.obj", "cube.ply", "cube.stl", "triangle.gltf"}) {
    SCOPED_TRACE(model);
    const Outcome outcome = run({model, "-o", "out.png", "--size", "120x90", "--background",
                                 "#0000ff", "--module", RENDERER_MODULE});
    ASSERT_EQ(outcome.exit_code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    const Decoded picture = decode(path("out.png"));
    ASSERT_EQ(picture.width, 120u);
    ASSERT_EQ(picture.height, 90u);
    EXPECT_EQ(picture.at(0, 0), (std::array{0, 0, 255}));
    EXPECT_EQ(picture.at(119, 89), (std::array{0, 0, 255}));
    const auto middle = picture.at(60, 45);
    if (model == std::string("cube.stl"))  // has no colour
      EXPECT_TRUE(middle[0] == middle[2] && middle[0] > 60);
    else
      EXPECT_TRUE(is_red(middle)) << middle[0] << " " << middle[1] << " " << middle[2];
  }
}

TEST_F(Picture_Test, shows_the_cube_in_every_direct_variant_and_mode) {
  write_cube();
  for (const char* variant : {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z"})
    for (const char* mode : {"shaded", "flat"})
      for (const char* camera : {"--azimuth=30", "--ortho", "--distance=0"}) {
        SCOPED_TRACE(std::string(variant) + " " + mode + " " + camera);
        std::vector<std::string> arguments = to("out.png");
        arguments.insert(arguments.end(), {"--variant", variant, "--mode", mode, camera});
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.exit_code, 0) << outcome.errors;
        EXPECT_TRUE(is_red(decode(path("out.png")).at(60, 45)));
      }
}

// The cube stands upright: seen from above, its lit top is in the upper half of the picture.
TEST_F(Picture_Test, has_up_at_the_top) {
  write("sheet.obj", "v -1 0 0\nv 1 0 0\nv 0 2 0\nf 1 2 3\n");  // the tip is up
  ASSERT_EQ(run({"sheet.obj", "-o", "out.png", "--size", "120x120", "--azimuth", "0", "--elevation",
                 "0", "--module", RENDERER_MODULE})
                .exit_code,
            0);
  const Decoded picture = decode(path("out.png"));
  const auto covered = [&](std::uint32_t y) {
    int count = 0;
    for (std::uint32_t x = 0; x < 120; ++x) count += picture.at(x, y) != picture.at(0, 0);
    return count;
  };
  EXPECT_GT(covered(100), 3 * covered(25));
  EXPECT_GT(covered(25), 0);
}

TEST_F(Picture_Test, a_large_model_is_drawn) {
  const std::string engine =
      "/usr/share/assimp/models/glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb";
  if (!std::filesystem::exists(engine)) GTEST_SKIP() << "the model is not installed";
  ASSERT_EQ(run({engine, "-o", "out.png", "--module", RENDERER_MODULE}).exit_code, 0);
  const Decoded picture = decode(path("out.png"));
  std::set<std::array<int, 3>> colors;
  for (std::uint32_t y = 0; y < picture.height; y += 3)
    for (std::uint32_t x = 0; x < picture.width; x += 3) colors.insert(picture.at(x, y));
  EXPECT_GT(colors.size(), 100u);
}

TEST_F(Picture_Test, replaces_an_earlier_one_only_when_complete) {
  write_cube();
  write("old.png", "old");
  ASSERT_EQ(chmod(path("old.png").c_str(), 0640), 0);
  std::filesystem::create_symlink("old.png", path("link.png"));
  const std::set<std::string> before = files();
  // The disk is full in the middle of the picture.
  expect_failure(to("old.png"), 4, "old.png", "not written", 200);
  std::string content;
  std::ifstream(path("old.png")) >> content;
  EXPECT_EQ(content, "old");
  EXPECT_EQ(files(), before);
  ASSERT_EQ(run(to("link.png")).exit_code, 0);
  EXPECT_EQ(files(), before);
  EXPECT_TRUE(std::filesystem::is_symlink(path("link.png")));
  EXPECT_EQ(decode(path("old.png")).width, 120u);
  struct stat status {};
  stat(path("old.png").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(Picture_Test, that_cannot_be_written_leaves_nothing) {
  write_cube();
  std::filesystem::create_directory(path("folder"));
  const std::set<std::string> before = files();
  expect_failure(to("out.png"), 4, "out.png", "File too large", 200);
  expect_failure(to("/dev/full"), 4, "/dev/full", "No space left");
  expect_failure(to("missing/out.png"), 4, "missing/out.png", "No such file");
  expect_failure(to("folder"), 4, "folder", "directory");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
  EXPECT_EQ(files(), before);
  EXPECT_EQ(run(to("/dev/null")).exit_code, 0);
}

}  // namespace
