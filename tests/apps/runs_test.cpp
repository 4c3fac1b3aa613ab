// Runs with several pictures, what they print, and the files they leave.
#include <sys/stat.h>

#include "tests/apps/program.h"

namespace {

class Runs : public Program {
 protected:
  void SetUp() override { write_cube(); }
};

// The number after a word.
double number_after(const std::string& text, const std::string& word) {
  const std::size_t at = text.find("  " + word + " ");
  EXPECT_NE(at, std::string::npos) << word << " in\n" << text;
  return at == std::string::npos ? -1 : std::stod(text.substr(at + word.size() + 3));
}

TEST_F(Runs, of_several_models_go_on_after_a_failure) {
  write("broken.stl", "solid\nfacet");
  write("quad.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n");
  const Outcome outcome =
      run("cube.obj broken.stl none.obj quad.obj --polygons --size 40x30 -o {n}-{model}.png");
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_NE(outcome.errors.find("kvdraw: 2 of 4 failed\n"), std::string::npos) << outcome.errors;
  EXPECT_NE(outcome.errors.find("broken.stl: error"), std::string::npos) << outcome.errors;
  EXPECT_EQ(files(), (std::set<std::string>{"1-cube.png", "4-quad.png", "broken.stl", "cube.mtl",
                                            "cube.obj", "quad.obj"}));
}

// Each frame is what its azimuth shows.
TEST_F(Runs, of_a_turntable_go_once_around) {
  ASSERT_EQ(run("cube.obj -o turn-{n}.png --turntable=12 --azimuth=10 --size=40x30").errors, "");
  EXPECT_EQ(decode(path("turn-05.png")).bytes,
            draw("cube.obj --framing=steady --azimuth=130 --elevation=20 --size=40x30").bytes);
  EXPECT_TRUE(files().contains("turn-12.png"));
  EXPECT_EQ(files().size(), 15u);
}

TEST_F(Runs, read_standard_input_and_write_standard_output) {
  write_sheets();
  write("sheet.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");  // alone, without its material
  for (const std::string model : {"sheet.obj", "sheet.ply", "sheet.stl"}) {
    ASSERT_EQ(run(model + " -o file.png --size 40x30").errors, "");
    ASSERT_EQ(shell("\"$KVDRAW\" - -o - --size 40x30 < " + model + " > piped.png").errors, "");
    EXPECT_TRUE(content_of(path("piped.png")) == content_of(path("file.png"))) << model;
  }
}

TEST_F(Runs, print_facts_of_the_model) {
  write("two.obj",
        "mtllib two.mtl\nv -1 0 0\nv 2 0 0\nv 2 3 0\nv -1 3 -5\nv 0 9 0\n"
        "usemtl red\nf 1 2 3 4\nusemtl bare\nf 1 2 5\n");
  write("two.mtl", "newmtl red\nKd 1 0 0\nnewmtl bare\nKd 0 1 0\nmap_Kd lost.png\n");
  const auto before = files();
  const Outcome outcome = run("two.obj --info");
  EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
  EXPECT_EQ(files(), before);
  EXPECT_EQ(number_after(outcome.output, "triangles"), 3);
  EXPECT_EQ(number_after(outcome.output, "meshes"), 2);
  for (const char* words : {"-1 0 -5", "2 9 0", "#ff0000", "lost.png"})
    EXPECT_NE(outcome.output.find(words), std::string::npos) << words << "\n" << outcome.output;
}

TEST_F(Runs, print_what_was_drawn) {
  const Outcome outcome =
      run("cube.obj -o out.png --stats --size=80x60 --mode=flat --azimuth=0 --elevation=0");
  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(number_after(outcome.errors, "triangles"), 12);
  EXPECT_EQ(number_after(outcome.errors, "pixels"), 4800);
  EXPECT_GT(number_after(outcome.errors, "covered"), 1000);
  EXPECT_LT(number_after(outcome.errors, "covered"), 3600);
  for (const char* stage : {"loading", "preparing", "drawing", "writing"})
    EXPECT_GE(number_after(outcome.errors, stage), 0);
}

TEST_F(Runs, replace_an_earlier_picture_only_when_complete) {
  write("old.png", "old");
  ASSERT_EQ(chmod(path("old.png").c_str(), 0640), 0);
  std::filesystem::create_symlink("old.png", path("link.png"));
  const std::set<std::string> before = files();
  // The disk is full in the middle of the picture.
  expect_failure("cube.obj -o old.png", 4, "old.png", "not written", true);
  EXPECT_EQ(content_of(path("old.png")), "old");
  EXPECT_EQ(files(), before);
  ASSERT_EQ(run("cube.obj -o link.png --size 120x90").errors, "");
  EXPECT_EQ(files(), before);
  EXPECT_TRUE(std::filesystem::is_symlink(path("link.png")));
  EXPECT_EQ(decode(path("old.png")).width, 120u);
  struct stat status {};
  stat(path("old.png").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(Runs, make_a_sheet_for_each_family_of_primitives) {
  ASSERT_EQ(run("gallery -o sheets/new").errors, "");
  for (const char* family : {"triangles", "textures", "lines", "markers", "polygons", "images"}) {
    const Decoded sheet = decode(path("sheets/new/" + std::string(family) + ".png"));
    EXPECT_GT(std::set(sheet.bytes.begin(), sheet.bytes.end()).size(), 20u) << family;
  }
}

}  // namespace
