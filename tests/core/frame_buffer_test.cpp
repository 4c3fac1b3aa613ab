// Clears, read-backs, depth transfer and presentation. The frame is 6 by 4 pixels at (10, 20).
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/session.h"

namespace {

using namespace support;
std::vector<KT_Int_Rectangle> pattern_fills;

}  // namespace

// Stands in front of the framework's routine.
void KD_Span_DC_Rectangle(KT_Renderer_Data*, const KT_Rendition&, int left, int right, int bottom,
                          int top) {
  pattern_fills.push_back({left, right, bottom, top});
}

namespace {

constexpr KT_Int_XY frame_size{6, 4};
constexpr KT_Int_XY frame_origin{10, 20};
Configuration frame_configuration(Variant variant) {
  return {.variant = variant, .size = frame_size, .origin = frame_origin};
}

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
      {{0, 99, 0, 99}, {"######", "######", "######", "######"}},
      {{-5, 9, 20, 23}, {"......", "......", "......", "......"}},
      {{10, 15, 0, 19}, {"......", "......", "......", "......"}},
      {{16, 20, 20, 23}, {"......", "......", "......", "......"}},
      {{13, 12, 20, 23}, {"......", "......", "......", "......"}},
  };
  for (const Variant variant : {Variant::rgb, Variant::mapped}) {
    Session session(frame_configuration(variant));
    session.full_rows_written = true;
    session.material().window_color = {1, 2, 3, 4};
    session.material().window_index = 99;
    const Legend legend{{'#', variant == Variant::rgb ? 0x04030201u : 99u}};
    for (const Case& c : cases) {
      session.clear();
      session.display().hard_clip = c.clip;
      session.actions().call<KT_Action::Clear_Color>(session.rendition);
      EXPECT_TRUE(shows(*session.color, c.picture, legend)) << support::name_of(variant);
      EXPECT_TRUE(session.color->guards_intact(c.clip.left > 10 || c.clip.right < 15));
    }
    // A patterned background is the framework's work, with the rectangle as it is.
    session.clear();
    session.display().hard_clip = {-3, 12, 5, 99};
    for (const int pattern : {0, 74, 80}) {
      session.face().face_pattern = pattern;
      pattern_fills.clear();
      session.actions().call<KT_Action::Clear_Color>(session.rendition);
      EXPECT_EQ(pattern_fills, std::vector{session.rendition->display_context->hard_clip});
      EXPECT_FALSE(session.color->touched(0, 0));
    }
  }
}

TEST(Frame_Buffer, ClearsDepthWhateverTheFacePattern) {
  Session session(frame_configuration(Variant::mapped_z));
  session.clear(5);
  session.face().face_pattern = 0;
  session.display().hard_clip = {12, 14, 20, 22};
  session.actions().call<KT_Action::Clear_Depth>(session.rendition);
  EXPECT_TRUE(shows(*session.depth, {"......", "..###.", "..###.", "..###."}, {{'#', 65535}}));
}

/// Reads a device rectangle back; every byte of a target that comes back is listed.
std::vector<std::uint32_t> read_back(const Session& session, bool depth, KT_Int_Rectangle r,
                                     unsigned asked, KT_Shared_Image& image) {
  const KT_DCI_Point start{r.left, r.top, -1}, end{r.right, r.bottom, 99};
  const auto format = static_cast<KT_Image_Format>(asked);
  if (depth) {
    session.actions().call<KT_Action::Get_Depth>(session.rendition, &start, &end, &format, &image);
  } else {
    session.actions().call<KT_Action::Get_Image>(session.rendition, &start, &end, &format, &image);
  }
  std::vector<std::uint32_t> values;
  if (!image) return values;
  const int size = image->row_bytes / image->width;
  for (int i = 0; i < image->height * image->width; ++i) {
    std::uint32_t value = 0;
    std::memcpy(&value, image->scan_lines[0] + i * size, static_cast<std::size_t>(size));
    values.push_back(value);
  }
  return values;
}

/// Numbers the pixels of an image: 10 times the row plus the column.
void number(Guarded_Image& image) {
  for (int i = 0; i < image.width * image.height; ++i) {
    image.set(i % image.width, i / image.width,
              static_cast<std::uint32_t>(i / image.width * 10 + i % image.width));
  }
}

using Values = std::vector<std::uint32_t>;

TEST(Frame_Buffer, ReadsBackTopRowFirst) {
  for (const Variant variant : {Variant::rgb_z, Variant::mapped_z}) {
    Session session(frame_configuration(variant));
    number(*session.color);
    number(*session.depth);
    const unsigned own = variant == Variant::rgb_z ? 2 : 1;
    for (const bool depth : {false, true}) {
      const unsigned format = depth ? 3 : own;
      for (const unsigned asked : {format, 7U}) {
        KT_Shared_Image image;
        // A rectangle at the bottom, for the direct form holds the top row against its height.
        const KT_Int_Rectangle two_by_two{11, 12, 20, 21};
        EXPECT_EQ(read_back(session, depth, two_by_two, asked, image), (Values{11, 12, 1, 2}));
        EXPECT_EQ(static_cast<unsigned>(image->format), format);
        const KT_Shared_Image before = image;
        read_back(session, depth, two_by_two, asked, image);
        EXPECT_EQ(image, before);  // reused
        read_back(session, depth, {11, 13, 20, 21}, asked, image);
        EXPECT_NE(image, before);
        for (const unsigned wrong : {0U, 1U, 2U, 3U, 4U, 70000U}) {
          if (wrong == format) continue;
          KT_Shared_Image given = before;
          read_back(session, depth, two_by_two, wrong, given);
          EXPECT_FALSE(given) << "format " << wrong;
        }
      }
    }
  }
}

// What lies outside the frame: rows are shortened, and the destination stays where it is.
TEST(Frame_Buffer, DirectReadBackCutsToTheFrame) {
  Session session(frame_configuration(Variant::rgb));
  number(*session.color);
  KT_Shared_Image image;
  EXPECT_EQ(read_back(session, false, {8, 11, 20, 21}, 2, image),
            (Values{10, 11, 0, 0, 0, 1, 0, 0}));
  image.release();
  EXPECT_EQ(read_back(session, false, {14, 17, 20, 21}, 2, image),
            (Values{14, 15, 0, 0, 4, 5, 0, 0}));
  image.release();
  // The top row is held against the request's height, not the frame's: of rows 3 and 2 nothing
  // is left, of rows 3 to 1 the top one goes.
  EXPECT_EQ(read_back(session, false, {10, 11, 22, 23}, 2, image), (Values{0, 0, 0, 0}));
  image.release();
  EXPECT_EQ(read_back(session, false, {10, 11, 21, 23}, 2, image), (Values{20, 21, 10, 11, 0, 0}));
}

// A target of the frame's size: the same scan lines, from the left column to the row's end.
TEST(Frame_Buffer, KeptTargetTakesTheRectangleAtItsPlace) {
  Session session(frame_configuration(Variant::rgb));
  number(*session.color);
  const int row_bytes = session.color->row_bytes;
  KT_Shared_Image image(2, 2, KT_Image_Format::rgb32, 8, nullptr, false);
  image->keep_window_size = 1;
  const KT_DCI_Point start{12, 21, 0}, end{12, 21, 0};
  const KT_Image_Format format = KT_Image_Format::rgb32;
  session.actions().call<KT_Action::Get_Image>(session.rendition, &start, &end, &format, &image);
  ASSERT_TRUE(image->width == 6 && image->height == 4 && image->row_bytes == row_bytes);
  EXPECT_EQ(image->keep_window_size, 1);
  // Row 1 in memory order is picture row 2; by the greater right end the run is
  // max(end 12, frame width - 1) - start 12 + 1 pixels long.
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 6; ++x) {
      EXPECT_EQ(image->row<std::uint32_t>(y)[x], y == 2 && x == 2 ? 22U : 0U) << x << ", " << y;
    }
  }
  const KT_Shared_Image before = image;
  session.actions().call<KT_Action::Get_Image>(session.rendition, &start, &end, &format, &image);
  EXPECT_EQ(image, before);
}

TEST(Frame_Buffer, PutsDepthCutAtTheRightEdge) {
  Session session(frame_configuration(Variant::rgb_alpha_z));
  session.clear(0);
  const std::uint16_t source[] = {1, 2, 3, 4, 99, 5, 6, 7, 8, 99};
  const KT_DCI_Point start{13, 22, 0}, end{16, 21, 0};
  session.actions().call<KT_Action::Put_Depth>(session.rendition, &start, &end, 10, source);
  EXPECT_TRUE(shows(*session.depth, {"......", "...123", "...567", "......"},
                    {{'1', 1}, {'2', 2}, {'3', 3}, {'5', 5}, {'6', 6}, {'7', 7}}));
  const auto before = session.depth->pixels();
  KT_Shared_Image image;
  read_back(session, true, {10, 15, 20, 23}, 7, image);
  session.depth->fill(0);
  const KT_DCI_Point whole_start{10, 23, 0}, whole_end{15, 20, 0};
  session.actions().call<KT_Action::Put_Depth>(
      session.rendition, &whole_start, &whole_end, 12,
      reinterpret_cast<std::uint16_t*>(image->scan_lines[0]));
  EXPECT_TRUE(same_pixels(session.depth->pixels(), before, 6));
}

TEST(Frame_Buffer, PresentsWithTheFlip) {
  Session session(frame_configuration(Variant::rgb));
  struct Presented {
    KT_DCI_Point start, end;
    const void* image;
    int x, y;
  } got{};
  session.actions().bind<KT_Action::Present_Image>(
      &got, [](void* object, const KT_DCI_Point* start, const KT_DCI_Point* end,
               const KT_Shared_Image* image, int x, int y) {
        *static_cast<Presented*>(object) = {*start, *end, image->get(), x, y};
      });
  session.base().update({1, 4, 0, 2});
  EXPECT_EQ(got.start, (KT_DCI_Point{1, 2, 0}));
  EXPECT_EQ(got.end, (KT_DCI_Point{4, 0, 0}));
  EXPECT_EQ(got.image, session.color.get());
  EXPECT_EQ(got.x, 11);
  EXPECT_EQ(got.y, 4 + 20 - 2 - 1);
}

}  // namespace
