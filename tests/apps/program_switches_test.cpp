// Switches whose effect is seen in the picture alone: with each of them it is another one.
#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

using Switches = Program;
using Words = std::vector<std::string>;

TEST_F(Switches, each_make_another_picture) {
  write("skin.mtl", "newmtl red\nKd 1 0 0\n");
  write("box.obj",  // of three lengths, its faces of two triangles each
        "mtllib skin.mtl\nusemtl red\nv 0 0 0\nv 1 0 0\nv 1 2 0\nv 0 2 0\nv 0 0 3\nv 1 0 3\n"
        "v 1 2 3\nv 0 2 3\nf 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n");
  const auto draw = [&](const Words& base, const Words& more) {
    Words arguments = {"box.obj", "-o", "out.png", "--module", RENDERER_MODULE, "--size=90x70"};
    arguments.insert(arguments.end(), base.begin(), base.end());
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    return decode(path("out.png")).bytes;
  };
  const struct {
    Words base, more;
  } cases[] = {
      {{}, {"--pan", "0.1,-0.2"}},
      {{}, {"--up", "z"}},
      {{}, {"--zoom", "1.5"}},
      {{}, {"--elevation", "70"}},
      {{}, {"--framing", "steady"}},
      {{}, {"--pattern", "66"}},
      {{"--variant=rgb-alpha-z"}, {"--opacity", "0.4"}},
      {{"--variant=mapped-z"}, {"--palette", "cube3"}},
      {{"--variant=rgb", "--mode=flat"}, {"--merge"}},
      {{}, {"--edges"}},
      {{"--mode=wireframe"}, {"--wire", "feature"}},
      {{"--mode=wireframe", "--variant=rgb"}, {"--antialias"}},
      {{"--mode=wireframe"}, {"--line-width", "5"}},
      {{"--mode=wireframe"}, {"--line-pattern", "2"}},
      {{"--mode=wireframe", "--line-width=3"}, {"--outline"}},
  };
  for (const auto& [base, more] : cases) {
    SCOPED_TRACE(more[0]);
    EXPECT_TRUE(draw(base, {}) != draw(base, more));
  }
}

}  // namespace
