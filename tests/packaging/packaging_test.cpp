// What is installed is complete: programs run, and other projects build against it.
#include <gmock/gmock.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/apps/decoded.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string quoted(const std::string& word) {
  return "'" + word + "'";
}

// The output of the command on both channels. It must end well.
std::string output_of(const std::string& command) {
  std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
  if (!pipe) throw std::runtime_error("no pipe");
  std::string output;
  char buffer[4096];
  for (std::size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    output.append(buffer, got);
  const int status = pclose(pipe);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command << "\n" << output;
  return output;
}

std::string read(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

std::string line_of(const std::string& command) {
  std::string line = output_of(command);
  while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();
  return line;
}

// Options, as "--name", anywhere in a text; a man page writes its hyphens as "\-".
std::set<std::string> options_in(std::string text) {
  for (std::size_t at; (at = text.find("\\-")) != std::string::npos;) text.erase(at, 1);
  std::set<std::string> options;
  for (std::size_t at = 0; (at = text.find("--", at)) != std::string::npos;) {
    const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-", at);
    options.insert(text.substr(at, end - at));
    at = end == std::string::npos ? text.size() : end;
  }
  return options;
}

class Installed : public testing::Test {
 protected:
  // The tree is moved after it was installed: nothing in it may hold on to the place.
  static void SetUpTestSuite() {
    std::string name = (fs::temp_directory_path() / "packaging_test.XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the test");
    folder_ = name;
    output_of(std::string(CMAKE_PROGRAM) + " --install " + quoted(BUILD_TREE) + " --prefix " +
              quoted((folder_ / "first").string()));
    fs::rename(folder_ / "first", folder_ / "prefix");
    unsetenv("LD_LIBRARY_PATH");
    setenv("PKG_CONFIG_PATH", found("korvel12.pc").parent_path().c_str(), 1);
  }
  static void TearDownTestSuite() { fs::remove_all(folder_); }

  static std::string path(const std::string& name) { return (folder_ / name).string(); }
  // The one file of this name that is installed.
  static fs::path found(const std::string& name) {
    std::vector<fs::path> matches;
    for (const auto& entry : fs::recursive_directory_iterator(folder_ / "prefix"))
      if (entry.path().filename() == name) matches.push_back(entry.path());
    if (matches.size() != 1) throw std::runtime_error(name + " is not installed once");
    return matches[0];
  }
  static std::string pkg_config(const std::string& question) {
    return line_of(std::string(PKG_CONFIG_PROGRAM) + " " + question);
  }

  static inline fs::path folder_;
};

// The strip of the example: its area, and in the middle of a triangle the mean of its corners.
void expect_strip(const std::string& path) {
  const Decoded picture = decode(path);
  ASSERT_EQ(picture.width, 640u);
  ASSERT_EQ(picture.height, 480u);
  int covered = 0;
  for (std::uint32_t y = 0; y < 480; ++y)
    for (std::uint32_t x = 0; x < 640; ++x)
      covered += picture.at(x, y) != std::array{255, 255, 255};
  EXPECT_NEAR(covered, (520 + 350) / 2 * 360, 1000);
  const auto middle_of_first = picture.at((60 + 60 + 230) / 3, 479 - (60 + 420 + 60) / 3);
  const std::array<int, 3> mean = {(230 + 240 + 60) / 3, (40 + 200 + 200) / 3, (40 + 40 + 60) / 3};
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(middle_of_first[i], mean[i], 3);
}

TEST_F(Installed, holds_everything_in_its_place) {
  const fs::path prefix = folder_ / "prefix";
  EXPECT_EQ(found("kvdraw"), prefix / "bin/kvdraw");
  EXPECT_EQ(found("kvview"), prefix / "bin/kvview");
  for (const char* page : {"kvdraw.1", "kvview.1"})
    EXPECT_EQ(found(page).parent_path().filename(), "man1");
  const fs::path library = found("libkorvel12.so").parent_path();
  EXPECT_EQ(found("software_z_buffer.kvd"), library / "korvel12/software_z_buffer.kvd");
  EXPECT_EQ(found("korvel12.pc"), library / "pkgconfig/korvel12.pc");
  EXPECT_EQ(found("application.h"), prefix / "include/korvel12/host/application.h");
}

// An empty entry, as in "/folder:", is the working directory.
TEST_F(Installed, nothing_is_loaded_from_the_working_directory) {
  std::istringstream paths(output_of(
      "find " + quoted(BUILD_TREE) + " " + quoted(path("prefix")) +
      " -type f \\( -perm -u+x -o -name '*.so.*' -o -name '*.kvd' \\) -exec readelf -d {} + "
      "2>/dev/null | sed -n 's/.*(R.*PATH).*\\[\\(.*\\)\\]/\\1/p' | sed 's/:/\\n/g' | sort -u"));
  std::vector<std::string> entries;
  for (std::string entry; std::getline(paths, entry); entries.push_back(entry))
    EXPECT_TRUE(entry.starts_with("/") || entry.starts_with("$ORIGIN/")) << quoted(entry);
  EXPECT_GE(entries.size(), 3u);
}

TEST_F(Installed, library_exports_the_contract_alone) {
  output_of("nm -DC --defined-only " + quoted(found("libkorvel12.so").string()) +
            " | sed -E '/ V (vtable|typeinfo|typeinfo name) for KT_/d; s/^[0-9a-f]+ [A-Z] //'"
            " | LC_ALL=C sort -u | diff " EXPORTS " -");
}

TEST_F(Installed, flags_of_the_builder_are_kept) {
  const std::string build = path("flags");
  output_of(std::string(CMAKE_PROGRAM) + " -S " SOURCES " -B " + quoted(build) +
            " -G Ninja -DCMAKE_CXX_COMPILER=" CXX_COMPILER
            " -DZB_TESTS=OFF -DZB_BENCHMARKS=OFF"
            " -DCMAKE_CXX_FLAGS=-DFIRST -DCMAKE_CXX_FLAGS_RELEASE='-O2 -DSECOND'");
  const std::string commands = read(build + "/compile_commands.json");
  EXPECT_THAT(commands, HasSubstr(" -DFIRST -O2 -DSECOND "));
  EXPECT_THAT(commands, testing::Not(HasSubstr(" -O3")));
}

TEST_F(Installed, program_finds_its_module) {
  std::ofstream(path("sheet.obj")) << "v -1 0 0\nv 1 0 0\nv 0 2 0\nf 1 2 3\n";
  output_of(found("kvdraw").string() + " " + path("sheet.obj") + " -o " + path("sheet.png") +
            " --size 60x40 --azimuth 0 --background '#0000ff'");
  const Decoded picture = decode(path("sheet.png"));
  EXPECT_EQ(picture.at(0, 0), (std::array{0, 0, 255}));
  EXPECT_NE(picture.at(30, 20), (std::array{0, 0, 255}));
}

TEST_F(Installed, manuals_tell_of_every_option) {
  const std::string kvdraw = found("kvdraw").string(), kvview = found("kvview").string();
  const std::string own = read(found("kvdraw.1"));
  // Options that both programs have are described once.
  for (const auto& [program, manual] :
       {std::pair{kvdraw, own}, std::pair{kvview, own + read(found("kvview.1"))}}) {
    const std::set<std::string> offered = options_in(output_of(program + " --help"));
    EXPECT_GT(offered.size(), 10u);
    EXPECT_THAT(options_in(manual), testing::IsSupersetOf(offered)) << program;
  }
}

TEST_F(Installed, cmake_package_builds_the_example) {
  const std::string build = path("example");
  output_of(std::string(CMAKE_PROGRAM) + " -S " + EXAMPLES + " -B " + quoted(build) +
            " -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=" + CXX_COMPILER +
            " -DCMAKE_CXX_FLAGS=" + quoted(CXX_FLAGS) +
            " -DCMAKE_PREFIX_PATH=" + quoted(path("prefix")));
  output_of(std::string(CMAKE_PROGRAM) + " --build " + quoted(build));
  output_of(quoted(build + "/draw_strip") + " " + path("strip.png"));
  expect_strip(path("strip.png"));
}

TEST_F(Installed, pkg_config_builds_the_example) {
  const fs::path modules = pkg_config("--variable=moduledir korvel12");
  EXPECT_TRUE(fs::equivalent(modules / "software_z_buffer.kvd", found("software_z_buffer.kvd")));
  EXPECT_THAT(pkg_config("--modversion korvel12"), HasSubstr("1."));
  output_of(std::string(CXX_COMPILER) + " " + CXX_FLAGS + " -DMODULE='\"\"' " + EXAMPLES +
            "/draw_strip.cpp -o " + path("draw_strip") + " " +
            pkg_config("--cflags --libs korvel12 libpng"));
  output_of("LD_LIBRARY_PATH=" + quoted(found("libkorvel12.so").parent_path().string()) + " " +
            path("draw_strip") + " " + path("strip2.png") + " " +
            quoted((modules / "software_z_buffer.kvd").string()));
  expect_strip(path("strip2.png"));
}

}  // namespace
