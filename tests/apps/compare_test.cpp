// kvdraw compare, by its exit code and its picture of the differences.
#include <png.h>

#include <cstdio>

#include "tests/apps/program.h"

namespace {

class Compare : public Program {
 protected:
  // Grey pictures of `type` with `last` as the last byte.
  void write_png(const char* name, std::uint8_t last, int type = PNG_COLOR_TYPE_RGB,
                 int interlace = PNG_INTERLACE_NONE, png_uint_32 width = 2) const {
    std::FILE* stream = std::fopen(path(name).c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, stream);
    png_set_IHDR(png, info, width, 9, 8, type, interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    std::vector<std::uint8_t> bytes(std::size_t{9} * width * png_get_channels(png, info), 200);
    bytes.back() = last;
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < 9; ++y) rows.push_back(&bytes[y * bytes.size() / 9]);
    png_write_image(png, rows.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    std::fclose(stream);
  }
};

TEST_F(Compare, answers_by_its_exit_code) {
  write_png("a.png", 200);
  write_png("same.png", 200);
  write_png("near.png", 197);
  write_png("wide.png", 200, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, 3);
  // As other programs may write pictures.
  write_png("grey.png", 200, PNG_COLOR_TYPE_GRAY);
  write_png("interlaced.png", 200, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7);
  write_png("clear.png", 0, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_INTERLACE_ADAM7);
  for (const auto& [line, code] : {std::pair("a.png same.png -o none.png", 0),
                                   {"a.png near.png --threshold 3 -o none.png", 0},
                                   {"a.png near.png --threshold 2", 1},
                                   {"a.png near.png -o difference.png", 1},
                                   {"a.png wide.png", 1},
                                   {"grey.png interlaced.png", 0},
                                   {"grey.png clear.png", 1}}) {
    const Outcome outcome = run("compare " + std::string(line));
    EXPECT_EQ(outcome.exit_code, code) << line;
    EXPECT_EQ(outcome.errors, "") << line;
  }
  EXPECT_FALSE(files().contains("none.png")) << "there is nothing to show";
  const Decoded difference = decode(path("difference.png"));
  for (std::uint32_t i = 0; i < 18; ++i) {
    const auto pixel = difference.at(i % 2, i / 2);
    EXPECT_EQ(pixel[0] > pixel[1] + 50, i == 17) << i;
  }
}

}  // namespace
