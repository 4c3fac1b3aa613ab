// Each test has a folder of its own; what the program writes on its streams lies beside that
// folder.
#include "tests/apps/program.h"

#include <stdlib.h>
#include <sys/wait.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

Words split(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), {}};
}

std::string content_of(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

Program::Program() {
  std::string name = (std::filesystem::temp_directory_path() / "kvdraw_test.XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the test");
  folder_ = std::filesystem::path(name) / "work";
  std::filesystem::create_directory(folder_);
}

Program::~Program() {
  std::filesystem::remove_all(folder_.parent_path());
}

Outcome Program::shell(const std::string& command) const {
  const std::string line = "cd '" + path("") + "' && export KVDRAW='" KVDRAW "' && (" + command +
                           ") > ../output 2> ../errors";
  const int status = std::system(line.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, content_of(path("../errors")),
          content_of(path("../output"))};
}

Outcome Program::run(const Words& arguments) const {
  std::string command = "\"$KVDRAW\"";
  for (const std::string& argument : arguments) command += " '" + argument + "'";
  return shell(command);
}

Outcome Program::run(const std::string& line, bool least_disk) const {
  return shell((least_disk ? "ulimit -f 1; \"$KVDRAW\" " : "\"$KVDRAW\" ") + line);
}

void Program::expect_failure(const std::string& line, int exit_code, const std::string& name,
                             const std::string& words, bool least_disk) const {
  const Outcome outcome = run(line, least_disk);
  EXPECT_EQ(outcome.exit_code, exit_code) << outcome.errors;
  const std::string start = name.empty() ? "kvdraw: error: " : "kvdraw: " + name + ": error: ";
  EXPECT_EQ(outcome.errors.substr(0, start.size()), start);
  EXPECT_NE(outcome.errors.find(words), std::string::npos) << outcome.errors;
  EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
}

Decoded Program::draw(const std::string& line) const {
  std::string all = line + " -o out.png";
  for (const char* usual : {"--azimuth=0", "--elevation=0", "--size=100x100"}) {
    const std::string name(usual, std::string(usual).find('='));
    if (line.find(name) == std::string::npos) all += std::string(" ") + usual;
  }
  const Outcome outcome = run(all);
  EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  return decode(path("out.png"));
}

void Program::write(const std::string& name, const std::string& content) const {
  std::ofstream(path(name), std::ios::binary) << content;
}

std::set<std::string> Program::files() const {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_))
    names.insert(entry.path().filename().string());
  return names;
}

void Program::write_cube() const {
  write("cube.obj",
        "mtllib cube.mtl\nusemtl red\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 1 0 1\n"
        "v 1 1 1\nv 0 1 1\nf 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n");
  write("cube.mtl", "newmtl red\nKd 0.9 0.1 0.1\n");
}

void Program::write_sheets() const {
  write("sheet.obj", "mtllib cube.mtl\nusemtl red\nv -1 0 0\nv 1 0 0\nv 0 2 0\nf 1 2 3\n");
  write("sheet.ply",
        "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
        "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
        "-1 0 0 230 25 25\n1 0 0 230 25 25\n0 2 0 230 25 25\n3 0 1 2\n");
  write("sheet.stl",
        "solid s\nfacet normal 0 0 1\nouter loop\nvertex -1 0 0\nvertex 1 0 0\nvertex 0 2 0\n"
        "endloop\nendfacet\nendsolid s\n");
}

void Program::write_gltf(const std::string& name, const std::string& buffer) const {
  write(name, R"({"asset": {"version": "2.0"}, "scene": 0,
    "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0, "scale": [1, 1, -1]}],
    "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "material": 0}]}],
    "materials": [{"pbrMetallicRoughness": {"baseColorFactor": [0.8, 0.01, 0.01, 1]}}],
    "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                   "min": [-1, -1, 0], "max": [1, 1, 0]}],
    "bufferViews": [{"buffer": 0, "byteLength": 36}],
    "buffers": [{"uri": ")" +
                  buffer + R"(", "byteLength": 36}]})");
}

void Program::write_points(const std::string& name) const {
  const float points[9] = {-1, -1, 0, 1, -1, 0, 0, 1, 0};
  write(name, std::string(reinterpret_cast<const char*>(points), sizeof points));
}
