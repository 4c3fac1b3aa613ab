// Several models, several frames, standard input and output.
#include <filesystem>
#include <fstream>

#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

class Batch : public Program {
 protected:
  static std::vector<std::string> drawn(std::vector<std::string> arguments) {
    for (const char* more : {"--module", RENDERER_MODULE, "--size", "40x30"})
      arguments.push_back(more);
    return arguments;
  }
};

TEST_F(Batch, goes_on_after_a_failure) {
  write_cube();
  write_ply_cube();
  write("broken.stl", "solid\nfacet");
  const std::string ply = "cube.ply";
  const Outcome outcome =
      run(drawn({"cube.obj", "broken.stl", "none.obj", ply, "-o", "{n}-{model}.png"}));
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_NE(outcome.errors.find("kvdraw: 2 of 4 failed\n"), std::string::npos) << outcome.errors;
  EXPECT_NE(outcome.errors.find("broken.stl: error"), std::string::npos) << outcome.errors;
  EXPECT_TRUE(files().contains("1-cube.png"));
  EXPECT_TRUE(files().contains("4-cube.png"));
  EXPECT_FALSE(files().contains("2-broken.png"));
}

TEST_F(Batch, refuses_two_pictures_of_one_name) {
  write_cube();
  write_ply_cube();
  expect_failure(drawn({"cube.obj", "cube.ply", "-o", "{model}.png"}), 2, "{model}.png", "{n}");
  expect_failure(drawn({"cube.obj", "-o", "x.png", "--turntable", "3"}), 2, "x.png", "{n}");
}

// Each frame is what its azimuth shows.
TEST_F(Batch, turntable_goes_once_around) {
  write_cube();
  ASSERT_EQ(
      run(drawn({"cube.obj", "-o", "turn-{n}.png", "--turntable=12", "--azimuth=10"})).exit_code,
      0);
  ASSERT_EQ(
      run(drawn({"cube.obj", "-o", "alone.png", "--framing=steady", "--azimuth=130"})).exit_code,
      0);
  EXPECT_EQ(decode(path("turn-05.png")).bytes, decode(path("alone.png")).bytes);
  EXPECT_TRUE(files().contains("turn-12.png"));
  EXPECT_FALSE(files().contains("turn-13.png"));
}

TEST_F(Batch, reads_standard_input_and_writes_standard_output) {
  write_cube();
  write_ply_cube();
  write_stl_cube();
  for (const char* model : {"cube.obj", "cube.ply", "cube.stl"}) {
    ASSERT_EQ(run(drawn({model, "-o", "file.png"})).exit_code, 0);
    const std::string command = "cd '" + path("") +
                                "' && '" KVDRAW "' - -o - --size 40x30 --module '" +
                                RENDERER_MODULE "' < " + model + " > piped.png 2> words";
    ASSERT_EQ(std::system(command.c_str()), 0) << model;
    EXPECT_EQ(std::filesystem::file_size(path("piped.png")),
              std::filesystem::file_size(path("file.png")))
        << model;
  }
}

}  // namespace
