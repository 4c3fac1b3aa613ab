// Messages and exit codes of the programs when something is wrong: one line, an exit code, and not
// a file more than before.
#include <sys/stat.h>

#include <span>

#include "tests/apps/program.h"

namespace {

struct Row {
  const char* line;
  int exit_code;
  const char* name;
  const char* words;
};

const Row models[] = {
    {"missing.obj", 1, "missing.obj", "No such file"},
    {".", 1, ".", "directory"},
    {"empty.glb", 1, "empty.glb", "empty"},
    {"blank.obj", 1, "blank.obj", ""},
    {"pipe", 1, "pipe", "not a regular file"},
    {"/dev/zero", 1, "/dev/zero", "not a regular file"},
    {"cube.obj --max-triangles 11", 1, "cube.obj", "12 triangles"},
    {"vast.stl", 1, "vast.stl", "larger than the 4096 MB"},
    // What a model names must lie in its folder and be a regular file.
    {"buffer-outside.gltf", 1, "buffer-outside.gltf", "'../points.bin' lies outside"},
    {"buffer-absolute.gltf", 1, "buffer-absolute.gltf", "lies outside"},
    {"buffer-link.gltf", 1, "buffer-link.gltf", "'link' lies outside"},
    {"buffer-pipe.gltf", 1, "buffer-pipe.gltf", "'pipe' is not a regular file"},
};

const Row modules[] = {
    {"cube.obj --module missing.kvd", 3, "missing.kvd", "no such file"},
    {"cube.obj --module text", 3, "text", ""},
    {"cube.obj --module " MODULE_WITHOUT_EXPORT, 3, MODULE_WITHOUT_EXPORT, "KD_Renderer"},
};

const Row usages[] = {
    {"cube.obj --size 0x5", 2, "", "size"},
    {"cube.obj --size 99999x1", 2, "", "--tile"},
    {"cube.obj --size 131073x1 --tile 512", 2, "", "size"},
    {"cube.obj --size 4294967297x1", 2, "", "size"},
    {"cube.obj --size '1x2 '", 2, "", "size"},
    {"cube.obj -o out.png --size", 2, "", "--size"},
    {"cube.obj --variant rgba", 2, "", "rgb-alpha-z"},
    {"cube.obj --mode shiny", 2, "", "shaded"},
    {"cube.obj --zoom abc", 2, "", "abc"},
    {"cube.obj --zoom nan", 2, "", "nan"},
    {"cube.obj --zoom 1e999", 2, "", "1e999"},
    {"cube.obj --load-seconds -1", 2, "", "-1"},
    {"cube.obj --line-width 1.5", 2, "", "1.5"},
    {"cube.obj --pan 1,nan", 2, "", "pair"},
    {"cube.obj --opacity 0.5 --variant mapped", 2, "", "--opacity"},
    {"cube.obj --unknown", 2, "", "--unknown"},
    {"cube.obj -o ./cube.obj", 2, "./cube.obj", "replace the model"},
    {"cube.obj points.obj", 2, "out.png", "{n}"},
    {"cube.obj --turntable 3", 2, "out.png", "{n}"},
    {"cube.obj --tile 16385", 2, "", "tile"},
    {"cube.obj --tile 64x8", 2, "", "tile"},
    {"cube.obj --tile-index 0", 2, "", "--tile"},
    {"cube.obj --size 90x90 --tile 50 --tile-index 4", 2, "", "0 to 3"},
    {"cube.obj --size 90x90 --tile 50 --tile-index -1", 2, "", "-1"},
    {"cube.obj --tile 50 --clip circle --mode wireframe", 2, "", "--clip"},
    {"cube.obj --tile 50 --variant rgb --merge", 2, "", "rgb-alpha"},
    {"cube.obj --background purple", 2, "", "colour"},
    {"cube.obj --background '#12'", 2, "", "colour"},
    {"cube.obj --background gone.png", 1, "gone.png", "No such file"},
    {"cube.obj --background cut.png", 1, "cut.png", "damaged"},
    {"cube.obj --background cube.obj", 1, "cube.obj", "PNG, JPEG"},
    {"cube.obj --clip none.txt", 1, "none.txt", "No such file"},
    {"cube.obj --clip empty.glb", 1, "empty.glb", "no polygon"},
    {"cube.obj --clip short.txt", 1, "short.txt", "line 2: a place without its y"},
    {"cube.obj --clip letter.txt", 1, "letter.txt", "at 'x"},
    {"cube.obj --clip far.txt", 1, "far.txt", "too far"},
};

const Row commands[] = {
    {"", 2, "", "MODEL"},
    {"cube.obj", 2, "", "--output"},
    {"compare a.png gone.png", 2, "gone.png", "No such file"},
    {"compare text a.png", 2, "text", "no PNG"},
    {"compare cut.png cut.png", 2, "cut.png", ""},
    {"compare a.png b.png -o a.png", 2, "a.png", "replace"},
    {"compare a.png", 2, "", "B"},
    {"compare a.png b.png --threshold 256", 2, "", "256"},
    {"gallery -o text/sheets", 4, "text/sheets", "directory"},
    {"gallery -o folder --module missing.kvd", 3, "missing.kvd", "no such file"},
    {"join -o out.png a.png", 1, "a.png", "no tile"},
    {"join -o out.png text", 1, "text", "no PNG"},
    {"cube.obj -o /dev/full", 4, "/dev/full", "No space left"},
    {"cube.obj -o missing/out.png", 4, "missing/out.png", "No such file"},
    {"cube.obj -o folder", 4, "folder", "directory"},
};

class Failures : public Program {
 protected:
  void SetUp() override {
    write_cube();
    for (const char* name : {"empty.glb", "vast.stl"}) write(name, "");
    std::filesystem::resize_file(path("vast.stl"), std::uintmax_t{6} << 30);  // takes no room
    write("blank.obj", "\n\n");
    write("text", "no module, no picture");
    write("points.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\np 1 2 3\nl 1 2\n");
    write("short.txt", "10,10 90,10 50,90\n10,10 20,20 50\n");
    write("letter.txt", "10,10 90,x 50,90\n");
    write("far.txt", "10,10 90,nan 50,90\n");
    write("a.png", png_of("rgbm", 2));
    write("b.png", png_of("rgbb", 2));
    write("cut.png", png_of("rgbm", 2, 50).substr(0, 60));
    std::filesystem::create_directory(path("folder"));
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    write_points("../points.bin");
    std::filesystem::create_symlink("../points.bin", path("link"));
    write_gltf("buffer-outside.gltf", "../points.bin");
    write_gltf("buffer-absolute.gltf", path("../points.bin"));
    write_gltf("buffer-link.gltf", "link");
    write_gltf("buffer-pipe.gltf", "pipe");
  }

  void expect_rows(std::span<const Row> rows, const std::string& more) const {
    const std::set<std::string> before = files();
    for (const Row& row : rows) {
      SCOPED_TRACE(row.line);
      const bool has_output = std::string(row.line).find(" -o ") != std::string::npos;
      expect_failure(row.line + (has_output ? "" : more), row.exit_code, row.name, row.words);
      EXPECT_EQ(files(), before);
    }
  }
};

TEST_F(Failures, of_models) {
  expect_rows(models, " -o out.png");
}
TEST_F(Failures, of_modules) {
  expect_rows(modules, " -o out.png");
}
TEST_F(Failures, of_options_and_their_files) {
  expect_rows(usages, " -o out.png");
}
TEST_F(Failures, of_commands_and_outputs) {
  expect_rows(commands, "");
  expect_failure("cube.obj -o out.png", 4, "out.png", "File too large", true);
  EXPECT_EQ(run("cube.obj -o /dev/null").exit_code, 0);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(Failures, loading_ends_in_time) {
  std::string points;
  for (int i = 0; i < 4'000'000; ++i) points += "v 1 2 3\n";
  write("long.obj", points);
  expect_failure("long.obj -o out.png --load-seconds 0.1", 1, "long.obj", "longer than the 0.1 s");
}

// Whatever the damage: one line and exit 1, or a picture, if need be with a warning of its texture.
// Never a crash, noise or a partial file.
TEST_F(Failures, of_models_that_are_cut_short_or_have_damaged_bytes) {
  write_points("points.bin");
  write_gltf("whole.gltf", "points.bin");
  const std::string samples = "/usr/share/assimp/models/";
  const std::pair<std::string, std::string> originals[] = {
      {"a.gltf", content_of(path("whole.gltf"))},
      {"b.obj", content_of(path("cube.obj"))},
      {"c.ply", content_of(samples + "PLY/cube_uv.ply")},
      {"d.ply", content_of(samples + "PLY/cube_binary.ply")},
      {"e.glb", content_of(samples + "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb")},
      {"f.stl", content_of(samples + "STL/Spider_binary.stl")}};
  int refused = 0;
  const auto try_one = [&](const std::string& name, const std::string& content) {
    write(name, content);
    const std::set<std::string> before = files();
    const Outcome outcome =
        run(name + " -o out.png --size 40x30 --load-seconds 1 --load-memory 512");
    SCOPED_TRACE(outcome.errors);
    ASSERT_TRUE(outcome.exit_code == 0 || outcome.exit_code == 1) << outcome.exit_code;
    refused += outcome.exit_code;
    const char* const kind = outcome.exit_code == 0 ? ": warning: " : ": error: ";
    if (outcome.exit_code == 1 || !outcome.errors.empty()) {
      EXPECT_EQ(outcome.errors.find("kvdraw: " + name + kind), 0u);
      EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1);
    }
    EXPECT_EQ(std::filesystem::remove(path("out.png")), outcome.exit_code == 0);
    EXPECT_EQ(files(), before);
  };
  for (const auto& [name, whole] : originals)
    for (std::size_t step = 1; step <= 6 && !whole.empty(); ++step) {
      const std::size_t at = whole.size() * step / 7;
      SCOPED_TRACE(name + " at " + std::to_string(at));
      try_one(name, whole.substr(0, at));
      try_one(name, std::string(whole).replace(at, 6, "\xff\xff\xff\xff\xff\xff"));
    }
  EXPECT_GT(refused, 10);
}

}  // namespace
