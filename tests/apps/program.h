// Runs kvdraw in a folder of its own, as a user would.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/apps/decoded.h"

struct Outcome {
  int exit_code = -1;  // 128 and more: the signal that ended the program
  std::string errors;  // what it wrote on standard error
  std::string output;  // and on standard output
};

using Words = std::vector<std::string>;
Words split(const std::string& line);  // at its blanks
std::string content_of(const std::string& path);

// Tests with an empty folder as the working directory of the program.
class Program : public testing::Test {
 protected:
  Program();
  ~Program() override;

  // In the folder, with the program's path in $KVDRAW.
  Outcome shell(const std::string& command) const;
  Outcome run(const Words& arguments) const;
  // The same for a line of words. `least_disk`: only files of 512 bytes can be written.
  Outcome run(const std::string& line, bool least_disk = false) const;
  // Runs and expects this exit code and one line "kvdraw: NAME: error: ..." with `words` in it.
  void expect_failure(const std::string& line, int exit_code, const std::string& name,
                      const std::string& words, bool least_disk = false) const;
  // Draws into out.png, without a word; from the front and small unless the line says otherwise.
  Decoded draw(const std::string& line) const;

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  void write(const std::string& name, const std::string& content) const;
  std::set<std::string> files() const;

  // A cube with a red material, "cube.obj".
  void write_cube() const;
  // One red triangle with its tip up, as "sheet.obj", "sheet.ply" and (without colour) "sheet.stl".
  void write_sheets() const;
  // One red triangle with its three points in the file that `buffer` names.
  void write_gltf(const std::string& name, const std::string& buffer) const;
  void write_points(const std::string& name) const;

 private:
  std::filesystem::path folder_;
};
