#include "apps/common/option_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace kv;

TEST(Option_Text, sizes) {
  EXPECT_EQ(parse_size("640x480").width, 640);
  EXPECT_EQ(parse_size("1x131072").height, 131072);
  for (const char* text :
       {"", "x", "640", "640x", "x480", "0x5", "5x0", "-1x5", "+1x5", "999999x1", "131073x1", "axb",
        "1x2x3", " 1x2", "1x2 ", "1.5x2", "4294967297x1", "99999999999999999999x1"})
    EXPECT_THROW(parse_size(text), std::invalid_argument) << text;
}

TEST(Option_Text, colors) {
  EXPECT_FLOAT_EQ(parse_color("#ff8000").green, 128 / 255.0f);
  EXPECT_FLOAT_EQ(parse_color("black").red, 0);
  for (const char* text : {"", "#", "#ff800", "#ff80000", "ff8000", "#gg8000", "#-f8000", "beige?"})
    EXPECT_THROW(parse_color(text), std::invalid_argument) << text;
}

}  // namespace
