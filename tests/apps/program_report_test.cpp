// What the program tells of a model and of its own work.
#include "tests/apps/program.h"

namespace {

using Report = Program;

// The number behind a word.
double number_behind(const std::string& text, const std::string& word) {
  const std::size_t at = text.find("  " + word + " ");
  EXPECT_NE(at, std::string::npos) << word << " in\n" << text;
  return at == std::string::npos ? -1 : std::stod(text.substr(at + word.size() + 3));
}

TEST_F(Report, info_tells_of_the_model_and_draws_nothing) {
  write("two.obj",
        "mtllib two.mtl\nv -1 0 0\nv 2 0 0\nv 2 3 0\nv -1 3 -5\nv 0 9 0\n"
        "usemtl red\nf 1 2 3 4\nusemtl bare\nf 1 2 5\n");
  write("two.mtl", "newmtl red\nKd 1 0 0\nnewmtl bare\nKd 0 1 0\nmap_Kd lost.png\n");
  const auto before = files();
  const Outcome outcome = run({"two.obj", "--info"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
  EXPECT_EQ(files(), before);
  EXPECT_EQ(number_behind(outcome.output, "triangles"), 3);
  EXPECT_EQ(number_behind(outcome.output, "meshes"), 2);
  for (const char* words : {"-1 0 -5", "2 9 0", "#ff0000", "lost.png"})
    EXPECT_NE(outcome.output.find(words), std::string::npos) << words << "\n" << outcome.output;
  expect_failure({"two.obj", "--info", "-o", "out.png"}, 2, "", "--info");
  expect_failure({"none.obj", "--info"}, 1, "none.obj", "");
}

TEST_F(Report, stats_tell_what_was_drawn) {
  write_cube();
  const Outcome outcome = run({"cube.obj", "-o", "out.png", "--module", RENDERER_MODULE, "--stats",
                               "--size=80x60", "--mode=flat", "--azimuth=0", "--elevation=0"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
  EXPECT_EQ(number_behind(outcome.errors, "triangles"), 12);
  EXPECT_EQ(number_behind(outcome.errors, "pixels"), 4800);
  const double covered = number_behind(outcome.errors, "covered");
  EXPECT_GT(covered, 1000);
  EXPECT_LT(covered, 3600);
  for (const char* stage : {"loading", "preparing", "drawing", "writing"})
    EXPECT_GE(number_behind(outcome.errors, stage), 0);
}

}  // namespace
