// The commands of the program beside drawing a model.
#include <png.h>

#include <cstdio>
#include <cstdlib>

#include "apps/files/png_reader.h"
#include "apps/files/png_writer.h"
#include "tests/apps/program.h"

namespace {

using namespace kv;

class Compare : public Program {
 protected:
  Compare() {
    draw("a.png", 8);
    draw("same.png", 8);
    draw("near.png", 11);
    draw("wide.png", 8, 5);
  }

  // A grey picture with one pixel of its own at column 1, row 2.
  void draw(const std::string& name, std::uint8_t red, int width = 4) const {
    std::FILE* stream = std::fopen(path(name).c_str(), "wb");
    Png_Writer writer(stream, {width, 3});
    for (int y = 0; y < 3; ++y) {
      std::vector<std::uint8_t> row(3 * static_cast<std::size_t>(width), 100);
      if (y == 2) row[3] = red;
      writer.row(row.data());
    }
    writer.finish();
    std::fclose(stream);
  }

  int compare(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "compare");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.errors, "");
    return outcome.exit_code;
  }

  void expect_error(std::vector<std::string> arguments, const char* file, const char* words) const {
    const std::set<std::string> before = files();
    arguments.insert(arguments.begin(), "compare");
    expect_failure(arguments, 2, file, words);
    EXPECT_EQ(files(), before);
  }
};

TEST_F(Compare, answers_by_its_exit_code) {
  EXPECT_EQ(compare({"a.png", "same.png", "-o", "none.png"}), 0);
  EXPECT_EQ(compare({"a.png", "near.png", "--threshold", "3", "-o", "none.png"}), 0);
  EXPECT_FALSE(std::filesystem::exists(path("none.png"))) << "there is nothing to show";
  EXPECT_EQ(compare({"a.png", "near.png", "--threshold", "2"}), 1);
  EXPECT_EQ(compare({"a.png", "near.png"}), 1);
  EXPECT_EQ(compare({"a.png", "wide.png"}), 1);
}

TEST_F(Compare, shows_the_differences_in_red) {
  ASSERT_EQ(compare({"a.png", "near.png", "-o", "difference.png"}), 1);
  Png_Reader reader(path("difference.png"), Png_Pixels::rgb);
  ASSERT_EQ(reader.size(), (Size{4, 3}));
  for (int y = 0; y < 3; ++y) {
    std::uint8_t row[12];
    reader.row(row);
    for (int x = 0; x < 4; ++x) {
      const bool red = row[3 * x] > row[3 * x + 1] + 50;
      EXPECT_EQ(red, x == 1 && y == 2) << x << " " << y;
    }
  }
}

// As other programs may write pictures: the reader makes one form of all.
TEST_F(Compare, reads_interlaced_grey_and_alpha) {
  const auto write_grey = [&](const char* name, int interlace, int type, std::uint8_t last) {
    std::FILE* stream = std::fopen(path(name).c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, stream);
    png_set_IHDR(png, info, 2, 9, 8, type, interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    std::vector<std::uint8_t> bytes(18 * static_cast<std::size_t>(png_get_channels(png, info)),
                                    255);
    bytes.back() = last;
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < 9; ++y) rows.push_back(&bytes[y * bytes.size() / 9]);
    png_write_image(png, rows.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    std::fclose(stream);
  };
  write_grey("plain.png", PNG_INTERLACE_NONE, PNG_COLOR_TYPE_GRAY, 255);
  write_grey("interlaced.png", PNG_INTERLACE_ADAM7, PNG_COLOR_TYPE_RGB, 255);
  write_grey("clear.png", PNG_INTERLACE_ADAM7, PNG_COLOR_TYPE_GRAY_ALPHA, 0);
  EXPECT_EQ(compare({"plain.png", "interlaced.png"}), 0);
  EXPECT_EQ(compare({"plain.png", "clear.png"}), 1);
}

TEST_F(Compare, ends_with_2_on_errors) {
  write("text.png", "no picture");
  write("cut.png", "\x89PNG\r\n\x1a\n and no more");
  expect_error({"a.png", "gone.png"}, "gone.png", "No such file");
  expect_error({"text.png", "a.png"}, "text.png", "no PNG");
  expect_error({"a.png", "cut.png"}, "cut.png", "");
  expect_error({"a.png", "near.png", "-o", "a.png"}, "a.png", "replace");
  expect_error({"a.png", "near.png", "-o", "missing/d.png"}, "missing/d.png", "No such file");
  expect_error({"a.png"}, "", "B");
  expect_error({"a.png", "near.png", "--threshold", "256"}, "", "256");
}

class Gallery : public Program {};

TEST_F(Gallery, has_a_sheet_for_each_family) {
  const Outcome outcome = run({"gallery", "-o", "sheets/new", "--module", RENDERER_MODULE});
  ASSERT_EQ(outcome.exit_code, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  for (const char* family : {"triangles", "textures", "lines", "markers", "polygons", "images"}) {
    SCOPED_TRACE(family);
    Png_Reader sheet(path("sheets/new/" + std::string(family) + ".png"), Png_Pixels::rgb);
    std::set<std::vector<std::uint8_t>> colors;
    std::vector<std::uint8_t> row(sheet.row_bytes());
    for (int y = 0; y < sheet.size().height; ++y) {
      sheet.row(row.data());
      for (std::size_t x = 0; x + 3 <= row.size(); x += 3)
        colors.insert({row.begin() + static_cast<std::ptrdiff_t>(x),
                       row.begin() + static_cast<std::ptrdiff_t>(x + 3)});
    }
    EXPECT_GT(colors.size(), 10u);
  }
}

TEST_F(Gallery, that_cannot_be_made_says_why) {
  write("file", "");
  expect_failure({"gallery", "-o", "file/sheets", "--module", RENDERER_MODULE}, 4, "file/sheets",
                 "directory");
  expect_failure({"gallery", "-o", "sheets", "--module", "missing.kvd"}, 3, "missing.kvd",
                 "no such file");
  expect_failure({"gallery"}, 2, "", "--output");
}

}  // namespace
