// Runs kvdraw in a folder of its own, as a user would.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

struct Outcome {
  int exit_code = -1;  // negative: the signal that ended the program
  std::string errors;  // what it wrote on standard error
  std::string output;  // and on standard output, a few lines
};

// Tests with an empty folder as the working directory of the program.
class Program : public testing::Test {
 protected:
  Program();
  ~Program() override;

  // `most_file_bytes` above 0: larger files cannot be written, as on a full disk.
  Outcome run(const std::vector<std::string>& arguments, unsigned long most_file_bytes = 0) const;
  // Runs and expects this exit code and one line "kvdraw: NAME: error: ..." with `words` in it.
  void expect_failure(const std::vector<std::string>& arguments, int exit_code,
                      const std::string& name, const std::string& words,
                      unsigned long most_file_bytes = 0) const;

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  void write(const std::string& name, const std::string& content) const;
  std::set<std::string> files() const;

  // A red cube with its material.
  void write_cube() const;
  // The same cube in other formats, of the colours that these have.
  void write_ply_cube() const;
  void write_stl_cube() const;
  // One triangle with its three points in a file of their own, "points.bin".
  void write_gltf_triangle() const;

 private:
  std::filesystem::path folder_;
};
