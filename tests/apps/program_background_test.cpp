// Pictures behind models.
#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

class Background : public Program {
 protected:
  void SetUp() override { write_cube(); }

  std::vector<std::string> before(const std::string& background) const {
    return {"cube.obj",  "-o",       "out.png",       "--size",       "100x100",
            "--zoom=.3", "--module", RENDERER_MODULE, "--background", background};
  }
};

// Of a picture twice as wide as the frame, the middle is seen; the model stands before it.
TEST_F(Background, covers_the_frame_in_every_variant) {
  write("paper.png", png_of("kkrbkkwwgmww", 6, 30));
  for (const char* variant : {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z", "mapped", "mapped-z"})
    for (const char* how : {"--mode=shaded", "--clip=circle", "--opacity=1", "--tile=64"}) {
      SCOPED_TRACE(std::string(variant) + " " + how);
      std::vector<std::string> arguments = before("paper.png");
      arguments.insert(arguments.end(), {"--variant", variant, how});
      const Outcome outcome = run(arguments);
      ASSERT_EQ(outcome.exit_code, 0) << outcome.errors;
      const Decoded picture = decode(path("out.png"));
      EXPECT_EQ(hue(picture.at(5, 5)), 'r');
      EXPECT_EQ(hue(picture.at(95, 5)), 'b');
      EXPECT_EQ(hue(picture.at(5, 95)), 'g');
      EXPECT_EQ(hue(picture.at(95, 95)), 'm');
      EXPECT_EQ(hue(picture.at(50, 50)), 'r');
    }
}

TEST_F(Background, shows_the_paper_where_it_is_transparent) {
  write("paper.png", png_of("..gg", 2, 30));
  ASSERT_EQ(run(before("paper.png")).exit_code, 0);
  const Decoded picture = decode(path("out.png"));
  EXPECT_EQ(hue(picture.at(5, 5)), 'w');
  EXPECT_EQ(hue(picture.at(5, 95)), 'g');
}

TEST_F(Background, that_cannot_be_had_is_one_line) {
  write("cut.png", png_of("rgbm", 2, 50).substr(0, 60));
  std::filesystem::create_directory(path("folder.png"));
  const std::set<std::string> files_before = files();
  expect_failure(before("gone.png"), 1, "gone.png", "No such file");
  expect_failure(before("cut.png"), 1, "cut.png", "damaged");
  expect_failure(before("cube.obj"), 1, "cube.obj", "PNG, JPEG");
  expect_failure(before("folder.png"), 1, "folder.png", "directory");
  expect_failure(before("purple"), 2, "", "colour");
  EXPECT_EQ(files(), files_before);
}

}  // namespace
