// Marker symbols, dot by dot: a marker is a small picture whose middle lies on its point. Through
// the renderer's own markers, or where it has none through its dots.
#include <array>
#include <string_view>
#include <vector>

#include "stand_in/standard/calls.h"

namespace stand_in {
namespace {

constexpr int size = 9;
constexpr int reach = size / 2;

/// Eight symbols side by side, as they look.
using Sheet = std::array<std::string_view, size>;

// Dot, plus, cross, circle, square, diamond, triangle, star.
constexpr Sheet hollow = {
    "......... ....#.... #.......# ...###... ######### ....#.... ....#.... ....#....",
    "......... ....#.... .#.....#. .##...##. #.......# ...#.#... ....#.... ....#....",
    "......... ....#.... ..#...#.. .#.....#. #.......# ..#...#.. ...#.#... ...#.#...",
    "...###... ....#.... ...#.#... #.......# #.......# .#.....#. ...#.#... ####.####",
    "...#.#... ######### ....#.... #.......# #.......# #.......# ..#...#.. .#.....#.",
    "...###... ....#.... ...#.#... #.......# #.......# .#.....#. ..#...#.. ..#...#..",
    "......... ....#.... ..#...#.. .#.....#. #.......# ..#...#.. .#.....#. .#..#..#.",
    "......... ....#.... .#.....#. .##...##. #.......# ...#.#... .#.....#. #.##.##.#",
    "......... ....#.... #.......# ...###... ######### ....#.... ######### ##.....##",
};
constexpr Sheet filled = {
    "......... ...###... ##.....## ...###... ######### ....#.... ....#.... ....#....",
    "......... ...###... ###...### .#######. ######### ...###... ....#.... ....#....",
    "......... ...###... .###.###. .#######. ######### ..#####.. ...###... ...###...",
    "...###... ######### ..#####.. ######### ######### .#######. ...###... #########",
    "...###... ######### ...###... ######### ######### ######### ..#####.. .#######.",
    "...###... ######### ..#####.. ######### ######### .#######. ..#####.. ..#####..",
    "......... ...###... .###.###. .#######. ######### ..#####.. .#######. .#######.",
    "......... ...###... ###...### .#######. ######### ...###... .#######. ####.####",
    "......... ...###... ##.....## ...###... ######### ....#.... ######### ##.....##",
};
constexpr int sheet_symbols = 8;
constexpr int symbol_count = 2 * sheet_symbols;

std::vector<KT_Int_XY> offsets_of(std::int32_t symbol) {
  if (symbol == 0) return {{0, 0}};
  const int number = (symbol % symbol_count + 2 * symbol_count - 1) % symbol_count;
  const Sheet& sheet = number < sheet_symbols ? hollow : filled;
  const int left = number % sheet_symbols * (size + 1);
  std::vector<KT_Int_XY> offsets;
  for (int line = 0; line < size; ++line) {
    for (int x = 0; x < size; ++x) {
      if (sheet[static_cast<std::size_t>(line)][static_cast<std::size_t>(left + x)] == '#') {
        offsets.push_back({x - reach, reach - line});
      }
    }
  }
  return offsets;
}

/// The pixels of a marker inside the clip.
std::vector<KT_DCI_Point> pixels_of(const KT_DCI_Point& middle,
                                    const std::vector<KT_Int_XY>& offsets,
                                    const KT_Int_Rectangle& clip) {
  std::vector<KT_DCI_Point> pixels;
  for (const KT_Int_XY& offset : offsets) {
    const std::int64_t x = std::int64_t{middle.x} + offset.x;
    const std::int64_t y = std::int64_t{middle.y} + offset.y;
    if (x < clip.left || x > clip.right || y < clip.bottom || y > clip.top) continue;
    pixels.push_back({static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), middle.z});
  }
  return pixels;
}

void draw_pixels(const KT_Renderer_Data& renderer, const KT_Rendition& rendition,
                 const std::vector<KT_DCI_Point>& pixels) {
  if (is_own<KT_Action::Draw_2DI_Polymarker>(renderer)) {
    return call_own<KT_Action::Draw_2DI_Polymarker>(renderer, rendition,
                                                    static_cast<int>(pixels.size()), pixels.data());
  }
  for (const KT_DCI_Point& pixel : pixels) {
    call<KT_Action::Draw_DCI_Dot>(renderer, rendition, &pixel, nullptr);
  }
}

}  // namespace
}  // namespace stand_in

void KD_Standard_Draw_2DI_Polymarker(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                     int count, const KT_DCI_Point* points) {
  if (count < 1) return;
  const auto offsets = stand_in::offsets_of(rendition->marker_attributes->marker_symbol);
  KT_Rendition dots = rendition;
  dots.edit(&KT_Rendition_Data::marker_attributes).marker_symbol = 0;
  const KT_Int_Rectangle clip = rendition->display_context->hard_clip;
  for (int n = 0; n < count; ++n) {
    const auto pixels = stand_in::pixels_of(points[n], offsets, clip);
    if (!pixels.empty()) stand_in::draw_pixels(*renderer, dots, pixels);
  }
}

// A dot is an image of one pixel.
void KD_Standard_Draw_DCI_Dot(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                              const KT_DCI_Point* point, const KT_RGB32* color) {
  if (stand_in::is_own<KT_Action::Draw_DCI_Dot>(*renderer)) {
    return stand_in::call_own<KT_Action::Draw_DCI_Dot>(*renderer, rendition, point, color);
  }
  const bool is_mapped = renderer->options().color_system() == KT_Color_System::mapped;
  if (color == nullptr && is_mapped) {
    const auto index = static_cast<std::uint8_t>(rendition->material->color_index);
    return stand_in::call<KT_Action::Draw_DCI_Index8_Image>(*renderer, rendition, point, point, 1,
                                                            &index);
  }
  const KT_RGB32 given = color != nullptr ? *color : rendition->material->color;
  stand_in::call<KT_Action::Draw_DCI_RGB32_Image>(*renderer, rendition, point, point, 4, &given, 0,
                                                  nullptr);
}
