// Clears and read-backs at their odd places. The frame is 6 by 4 pixels at device (10, 20).
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

TEST(Frame_Buffer, ClearsTheHardClipCutToTheImage) {
  struct Case {
    KT_Int_Rectangle clip;
    std::vector<std::string> picture;
  };
  const Case cases[] = {
      {{11, 13, 21, 22}, {"......", ".###..", ".###..", "......"}},
      {{0, 11, 0, 20}, {"......", "......", "......", "##...."}},
      {{15, 99, 23, 99}, {".....#", "......", "......", "......"}},
      {{10, 15, 21, 22}, {"......", "######", "######", "......"}},  // whole rows as one block
      {{-5, 9, 20, 23}, {"......", "......", "......", "......"}},
      {{10, 15, 0, 19}, {"......", "......", "......", "......"}},
      {{16, 20, 20, 23}, {"......", "......", "......", "......"}},
      {{13, 12, 20, 23}, {"......", "......", "......", "......"}},
  };
  for (const Variant variant : all_variants) {
    Session session({.variant = variant, .size = {6, 4}, .origin = {10, 20}, .padding = 0});
    session.material().window_color = {1, 2, 3, 4};
    session.material().window_index = 99;
    for (const Case& c : cases) {
      session.clear();
      session.display().hard_clip = c.clip;
      session.actions().call<KT_Action::Clear_Color>(session.rendition);
      EXPECT_TRUE(shows(*session.color, c.picture, {{'#', is_mapped(variant) ? 99u : 0x04030201u}}))
          << name_of(variant);
    }
  }
}

/// What reading a device rectangle back puts into `image`, in memory order.
Pixels read_back(const Session& session, KT_Int_Rectangle r, KT_Shared_Image& image) {
  const KT_DCI_Point start{r.left, r.top, -1}, end{r.right, r.bottom, 99};
  const KT_Image_Format format = KT_Image_Format::renderer_own;
  session.actions().call<KT_Action::Get_Image>(session.rendition, &start, &end, &format, &image);
  const auto* first = reinterpret_cast<const std::uint32_t*>(image->scan_lines[0]);
  return {first, first + image->row_bytes / 4 * image->height};
}

TEST(Frame_Buffer, ReadsBackDirectColours) {
  Session session({.size = {6, 4}, .origin = {10, 20}, .padding = 0});
  for (int i = 0; i < 24; ++i) {
    session.color->row<std::uint32_t>(i / 6)[i % 6] =
        static_cast<std::uint32_t>(i / 6 * 10 + i % 6);
  }
  const auto fresh = [&](const KT_Int_Rectangle& rectangle) {
    KT_Shared_Image image;
    return read_back(session, rectangle, image);
  };
  EXPECT_EQ(fresh({11, 12, 20, 21}), (Pixels{11, 12, 1, 2}));
  // Outside the frame rows are shortened, and the destination stays where it is.
  EXPECT_EQ(fresh({8, 11, 20, 21}), (Pixels{10, 11, 0, 0, 0, 1, 0, 0}));
  EXPECT_EQ(fresh({14, 17, 20, 21}), (Pixels{14, 15, 0, 0, 4, 5, 0, 0}));
  // The top row is held against the request's height, not the frame's: of rows 3 and 2 nothing
  // is left, of rows 3 to 1 the top one goes.
  EXPECT_EQ(fresh({10, 11, 22, 23}), (Pixels{0, 0, 0, 0}));
  EXPECT_EQ(fresh({10, 11, 21, 23}), (Pixels{20, 21, 10, 11, 0, 0}));

  // A target kept at the frame's size takes row 1 in memory order, which is picture row 2, for
  // the greater of end and frame width - 1, less start, plus 1: one pixel.
  KT_Shared_Image image(2, 2, KT_Image_Format::rgb32, 8, nullptr, false);
  image->keep_window_size = 1;
  Pixels expected(24);
  expected[1 * 6 + 2] = 22;
  EXPECT_TRUE(same_pixels(read_back(session, {12, 12, 21, 21}, image), expected, 6));
  EXPECT_EQ(image->keep_window_size, 1);
}

}  // namespace
