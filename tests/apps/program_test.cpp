// What the program says and how it ends when something is wrong.
#include "tests/apps/program.h"

#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <sstream>

namespace {

std::string content_of(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

class Bad_Model : public Program {
 protected:
  // The model is refused in words, and nothing is left in the folder beside it.
  void expect_refused(const std::string& name, const std::string& words,
                      const std::vector<std::string>& more = {}) const {
    const std::set<std::string> before = files();
    std::vector<std::string> arguments = {name, "-o", "out.png", "--module", RENDERER_MODULE};
    arguments.insert(arguments.end(), more.begin(), more.end());
    expect_failure(arguments, 1, name, words);
    EXPECT_EQ(files(), before);
  }
};

TEST_F(Bad_Model, is_no_file_with_content) {
  expect_refused("missing.obj", "No such file");
  expect_refused(".", "directory");
  write("empty.glb", "");
  expect_refused("empty.glb", "empty");
  write("blank.obj", "\n\n");
  expect_refused("blank.obj", "");
  ASSERT_EQ(mkfifo(path("pipe.obj").c_str(), 0600), 0);
  expect_refused("pipe.obj", "not a regular file");
  expect_refused("/dev/zero", "not a regular file");
}

TEST_F(Bad_Model, has_no_triangle) {
  write("points.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\np 1 2 3\nl 1 2\n");
  expect_refused("points.obj", "no triangle");
  write("flat.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n");
  expect_refused("flat.obj", "no triangle");
}

TEST_F(Bad_Model, has_a_coordinate_that_is_no_number) {
  write("nan.ply",
        "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
        "0 0 nan\n1 0 0\n0 1 0\n3 0 1 2\n");
  expect_refused("nan.ply", "");
}

// Whatever the damage: one line and exit 1, or a picture, if need be with a warning of its texture.
// Never a crash, noise or a partial file.
TEST_F(Bad_Model, is_cut_short_or_has_damaged_bytes) {
  write_cube();
  write_ply_cube();
  write_gltf_triangle();
  const std::string models = "/usr/share/assimp/models/";
  std::vector<std::pair<std::string, std::string>> originals = {
      {"a.gltf", content_of(path("triangle.gltf"))},
      {"b.ply", content_of(path("cube.ply"))},
      {"c.obj", content_of(path("cube.obj"))},
      {"d.ply", content_of(models + "PLY/cube_binary.ply")},
      {"e.glb", content_of(models + "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb")},
      {"f.stl", content_of(models + "STL/Spider_binary.stl")}};
  int refused = 0;
  for (const auto& [name, whole] : originals) {
    if (whole.empty()) continue;
    for (std::size_t step = 1; step <= 6; ++step) {
      const std::size_t at = whole.size() * step / 7;
      std::string damaged = whole;
      for (std::size_t i = 0; i < 6 && at + i < damaged.size(); ++i) damaged[at + i] = '\xff';
      for (const std::string& content : {whole.substr(0, at), damaged}) {
        write(name, content);
        const std::set<std::string> before = files();
        const Outcome outcome =
            run({name, "-o", "out.png", "--size", "40x30", "--module", RENDERER_MODULE,
                 "--load-seconds", "1", "--load-memory", "512"});
        SCOPED_TRACE(name + " at " + std::to_string(at) + ": " + outcome.errors);
        ASSERT_TRUE(outcome.exit_code == 0 || outcome.exit_code == 1) << outcome.exit_code;
        refused += outcome.exit_code;
        if (outcome.exit_code == 0) {
          if (!outcome.errors.empty()) {
            EXPECT_EQ(outcome.errors.find("kvdraw: " + name + ": warning: "), 0u);
            EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1);
          }
          std::filesystem::remove(path("out.png"));
        } else {
          EXPECT_EQ(outcome.errors.find("kvdraw: " + name + ": error: "), 0u);
          EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1);
        }
        EXPECT_EQ(files(), before);
      }
    }
  }
  EXPECT_GT(refused, 10);
}

TEST_F(Bad_Model, takes_too_long_to_load) {
  std::string points;
  for (int i = 0; i < 4'000'000; ++i) points += "v 1 2 3\n";
  write("long.obj", points);
  const auto start = std::chrono::steady_clock::now();
  expect_refused("long.obj", "took longer than the 0.1 s", {"--load-seconds", "0.1"});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_F(Bad_Model, is_too_large) {
  write_cube();
  expect_refused("cube.obj", "12 triangles", {"--max-triangles", "11"});
  write("vast.stl", "");
  std::filesystem::resize_file(path("vast.stl"), std::uintmax_t{6} << 30);  // takes no room
  expect_refused("vast.stl", "larger than the 4096 MB");
}

class Bad_Module : public Program {};

TEST_F(Bad_Module, is_one_line_and_exit_3) {
  write_cube();
  write("text.kvd", "no module");
  const std::set<std::string> before = files();
  const auto arguments = [](const std::string& module) {
    return std::vector<std::string>{"cube.obj", "-o", "out.png", "--module", module};
  };
  expect_failure(arguments("missing.kvd"), 3, "missing.kvd", "no such file");
  expect_failure(arguments("text.kvd"), 3, "text.kvd", "");
  expect_failure(arguments("."), 3, ".", "");
  expect_failure(arguments(MODULE_WITHOUT_EXPORT), 3, MODULE_WITHOUT_EXPORT, "KD_Renderer");
  EXPECT_EQ(files(), before);
}

class Bad_Usage : public Program {};

TEST_F(Bad_Usage, is_one_line_and_exit_2) {
  write_cube();
  const std::set<std::string> before = files();
  const auto expect_usage = [&](const std::vector<std::string>& more, const std::string& words) {
    std::vector<std::string> arguments = {"cube.obj", "-o", "out.png"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    expect_failure(arguments, 2, "", words);
  };
  for (const char* size : {"0x5", "5x0", "99999x1", "axb", "", "640", "-3x4"})
    expect_usage({"--size", size}, "size");
  expect_usage({"--variant", "rgba"}, "rgb-alpha-z");
  expect_usage({"--mode", "shiny"}, "shaded");
  expect_usage({"--background", "#12"}, "colour");
  for (const char* number : {"abc", "nan", "inf", "1e999", "-1"}) {
    expect_usage({"--zoom", number}, number);
    expect_usage({"--load-seconds", number}, number);
  }
  expect_usage({"--unknown"}, "--unknown");
  expect_usage({"--size"}, "--size");
  expect_failure({}, 2, "", "MODEL");
  expect_failure({"cube.obj"}, 2, "", "--output");
  expect_failure({"cube.obj", "-o", "./cube.obj"}, 2, "./cube.obj", "replace the model");
  EXPECT_EQ(files(), before);
  const std::string model = content_of(path("cube.obj"));
  EXPECT_FALSE(model.empty());
}

}  // namespace
