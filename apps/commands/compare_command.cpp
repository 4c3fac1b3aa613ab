// kvdraw compare: where two pictures differ. Both are read row by row, so that posters can be
// compared as well.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "apps/commands/command_line.h"
#include "apps/commands/commands.h"
#include "apps/common/errors.h"
#include "apps/files/picture_file.h"
#include "apps/files/png_reader.h"

namespace kv {
namespace {

using Pixel = const std::uint8_t*;  // red, green, blue, alpha
constexpr std::size_t pixel_bytes = 4;

struct Comparison {
  std::string first, second;
  int threshold = 0;  // pixels differ when a channel differs by more
  std::string picture;
};

struct Outcome {
  std::int64_t pixels = 0, differing = 0;
  int greatest = 0;
};

int difference(Pixel a, Pixel b) {
  int greatest = 0;
  for (std::size_t i = 0; i < pixel_bytes; ++i)
    greatest = std::max(greatest, std::abs(a[i] - b[i]));
  return greatest;
}

template <class Action>
auto of_file(const std::string& path, Action action) {
  try {
    return action();
  } catch (const std::runtime_error& error) {
    throw Failure(Exit_Code::input, path, error.what());
  }
}

// A picture whose faults are reported with its name.
class Source {
 public:
  explicit Source(std::string path)
      : path_(std::move(path)),
        reader_(of_file(path_, [&] { return Png_Reader(path_, Png_Pixels::rgba); })),
        row_(reader_.row_bytes()) {}

  Size size() const { return reader_.size(); }
  Pixel next_row() {
    of_file(path_, [&] { reader_.row(row_.data()); });
    return row_.data();
  }

 private:
  std::string path_;
  Png_Reader reader_;
  std::vector<std::uint8_t> row_;
};

// Visits the pixels of both pictures, row by row; `end_row` follows the last of each row.
void visit(const Comparison& comparison, const std::function<void(Pixel, Pixel)>& pixel,
           const std::function<void()>& end_row) {
  Source first(comparison.first), second(comparison.second);
  const Size size = first.size();
  for (int y = 0; y < size.height; ++y) {
    Pixel a = first.next_row(), b = second.next_row();
    for (int x = 0; x < size.width; ++x, a += pixel_bytes, b += pixel_bytes) pixel(a, b);
    end_row();
  }
}

Outcome compare(const Comparison& comparison) {
  Outcome outcome;
  const auto count = [&](Pixel a, Pixel b) {
    const int by = difference(a, b);
    ++outcome.pixels;
    outcome.differing += by > comparison.threshold;
    outcome.greatest = std::max(outcome.greatest, by);
  };
  visit(comparison, count, [] {});
  return outcome;
}

// What is equal is shown pale and grey, what differs in red, the darker the more it differs.
void append_difference(std::vector<std::uint8_t>& row, Pixel a, Pixel b, int threshold) {
  const int by = difference(a, b);
  if (by > threshold) {
    const auto rest = static_cast<std::uint8_t>(160 - by * 160 / 255);
    row.insert(row.end(), {static_cast<std::uint8_t>(255 - by * 80 / 255), rest, rest});
  } else {
    const int grey = (a[0] + 2 * a[1] + a[2]) / 4;
    row.insert(row.end(), 3, static_cast<std::uint8_t>(192 + grey / 4));
  }
}

void write_difference(const Comparison& comparison, const Size& size) {
  write_picture_file(comparison.picture, size, {}, [&](Png_Writer& writer) {
    std::vector<std::uint8_t> row;
    visit(
        comparison, [&](Pixel a, Pixel b) { append_difference(row, a, b, comparison.threshold); },
        [&] {
          writer.row(row.data());
          row.clear();
          stop_if_asked();
        });
  });
}

void check_picture(const Comparison& comparison) {
  std::error_code error;
  for (const std::string& source : {comparison.first, comparison.second})
    if (std::filesystem::equivalent(source, comparison.picture, error))
      throw Failure(Exit_Code::usage, comparison.picture, "the difference would replace a picture",
                    "name another file after -o");
}

int run(const Comparison& comparison) {
  check_picture(comparison);
  const Size size = Source(comparison.first).size(), other = Source(comparison.second).size();
  if (size != other) {
    std::printf("the sizes differ: %s is %s, %s is %s\n", comparison.first.c_str(),
                text_of(size).c_str(), comparison.second.c_str(), text_of(other).c_str());
    return 1;
  }
  const Outcome outcome = compare(comparison);
  std::printf("%lld of %lld pixels differ by more than %d; the greatest difference is %d\n",
              static_cast<long long>(outcome.differing), static_cast<long long>(outcome.pixels),
              comparison.threshold, outcome.greatest);
  if (outcome.differing == 0) return 0;
  if (!comparison.picture.empty()) write_difference(comparison, size);
  return 1;
}

}  // namespace

int compare_command(int argc, char** argv) {
  Comparison comparison;
  CLI::App app("Tells where two pictures differ. Exit codes: 0 nowhere, 1 somewhere, 2 an error.",
               "kvdraw compare");
  app.add_option("A", comparison.first, "a picture, PNG")->required()->type_name("");
  app.add_option("B", comparison.second, "the other one, of the same size")
      ->required()
      ->type_name("");
  app.add_option("--threshold", comparison.threshold,
                 "pixels differ when a channel differs by more than this (0)")
      ->check(CLI::Range(0, 255))
      ->type_name("T");
  app.add_option("-o,--output", comparison.picture, "picture of the differences, if there are any")
      ->type_name("FILE");
  if (!parse_command_line(app, argc, argv)) return 0;
  try {
    return run(comparison);
  } catch (const Failure& failure) {
    throw Failure(Exit_Code::usage, failure.file(), failure.what(), failure.hint());
  } catch (const std::bad_alloc&) {
    throw Failure(Exit_Code::usage, {}, "there is no memory to compare them");
  }
}

}  // namespace kv
