#include "tests/apps/program.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "tests/apps/shapes.h"

namespace {

[[noreturn]] void become_program(const std::vector<std::string>& arguments,
                                 const std::string& folder, int errors, int output,
                                 unsigned long most_file_bytes) {
  std::vector<char*> words;
  std::string program = KVDRAW;
  words.push_back(program.data());
  std::vector<std::string> copies = arguments;
  for (std::string& argument : copies) words.push_back(argument.data());
  words.push_back(nullptr);
  if (most_file_bytes > 0) {
    const rlimit limit{most_file_bytes, most_file_bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  dup2(errors, STDERR_FILENO);
  dup2(output, STDOUT_FILENO);
  if (chdir(folder.c_str()) == 0) execv(KVDRAW, words.data());
  _exit(127);
}

std::string all_of(int file) {
  std::string text;
  char buffer[4096];
  for (ssize_t got; (got = read(file, buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(got));
  return text;
}

}  // namespace

Program::Program() {
  std::string name = (std::filesystem::temp_directory_path() / "kvdraw_test.XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the test");
  folder_ = name;
}

Program::~Program() {
  std::filesystem::remove_all(folder_);
}

Outcome Program::run(const std::vector<std::string>& arguments,
                     unsigned long most_file_bytes) const {
  int ends[2], output_ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0 || pipe2(output_ends, O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe");
  const pid_t pid = fork();
  if (pid == 0)
    become_program(arguments, folder_.string(), ends[1], output_ends[1], most_file_bytes);
  close(ends[1]);
  close(output_ends[1]);
  Outcome outcome;
  outcome.errors = all_of(ends[0]);
  close(ends[0]);
  outcome.output = all_of(output_ends[0]);
  close(output_ends[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  outcome.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return outcome;
}

void Program::expect_failure(const std::vector<std::string>& arguments, int exit_code,
                             const std::string& name, const std::string& words,
                             unsigned long most_file_bytes) const {
  const Outcome outcome = run(arguments, most_file_bytes);
  EXPECT_EQ(outcome.exit_code, exit_code) << outcome.errors;
  const std::string start = name.empty() ? "kvdraw: error: " : "kvdraw: " + name + ": error: ";
  EXPECT_EQ(outcome.errors.substr(0, start.size()), start);
  EXPECT_NE(outcome.errors.find(words), std::string::npos) << outcome.errors;
  EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
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
  const kv::Mesh cube = shapes::box({0, 0, 0}, {1, 1, 1}).meshes[0];
  std::ostringstream text;
  text << "mtllib cube.mtl\nusemtl red\n";
  for (const kv::Vertex& v : cube.vertices)
    text << "v " << v.position.x << " " << v.position.y << " " << v.position.z << "\n";
  for (std::size_t i = 0; i < cube.indices.size(); i += 3)
    text << "f " << cube.indices[i] + 1 << " " << cube.indices[i + 1] + 1 << " "
         << cube.indices[i + 2] + 1 << "\n";
  write("cube.obj", text.str());
  write("cube.mtl", "newmtl red\nKd 0.9 0.1 0.1\n");
}

void Program::write_ply_cube() const {
  const kv::Mesh cube = shapes::box({0, 0, 0}, {1, 1, 1}).meshes[0];
  std::ostringstream text;
  text << "ply\nformat ascii 1.0\nelement vertex 8\nproperty float x\nproperty float y\n"
          "property float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
          "element face 12\nproperty list uchar int vertex_indices\nend_header\n";
  for (const kv::Vertex& v : cube.vertices)
    text << v.position.x << " " << v.position.y << " " << v.position.z << " 230 25 25\n";
  for (std::size_t i = 0; i < cube.indices.size(); i += 3)
    text << "3 " << cube.indices[i] << " " << cube.indices[i + 1] << " " << cube.indices[i + 2]
         << "\n";
  write("cube.ply", text.str());
}

void Program::write_stl_cube() const {
  const kv::Mesh cube = shapes::box({0, 0, 0}, {1, 1, 1}).meshes[0];
  std::ostringstream text;
  text << "solid cube\n";
  for (std::size_t i = 0; i < cube.indices.size(); ++i) {
    const kv::Vec3f p = cube.vertices[cube.indices[i]].position;
    if (i % 3 == 0) text << "facet normal 0 0 0\nouter loop\n";
    text << "vertex " << p.x << " " << p.y << " " << p.z << "\n";
    if (i % 3 == 2) text << "endloop\nendfacet\n";
  }
  text << "endsolid cube\n";
  write("cube.stl", text.str());
}

void Program::write_gltf_triangle() const {
  write("triangle.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
    "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0, "scale": [1, 1, -1]}],
    "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "material": 0}]}],
    "materials": [{"pbrMetallicRoughness": {"baseColorFactor": [0.8, 0.01, 0.01, 1]}}],
    "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                   "min": [-1, -1, 0], "max": [1, 1, 0]}],
    "bufferViews": [{"buffer": 0, "byteLength": 36}],
    "buffers": [{"uri": "points.bin", "byteLength": 36}]})");
  const float points[9] = {-1, -1, 0, 1, -1, 0, 0, 1, 0};
  write("points.bin", std::string(reinterpret_cast<const char*>(points), sizeof points));
}
