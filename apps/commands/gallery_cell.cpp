// One cell of a contact sheet: a session of its own, drawn into by the primitive's own calls.
#include "apps/commands/gallery_cell.h"

#include "apps/draw/drawing.h"
#include "apps/draw/host_session.h"

namespace kv {
namespace {

constexpr int pattern = 66;  // a hatch
constexpr std::uint8_t half_transparent = 128;
enum Hue : int { warm, cool, grey };

Drawing drawing_for(Treatment treatment) {
  Drawing drawing;
  if (treatment == Treatment::patterned) drawing.pattern = pattern;
  if (treatment == Treatment::masked) drawing.clip = Clip::circle();
  drawing.merge = treatment == Treatment::merged;
  return drawing;
}

class Cell_Painter {
 public:
  Cell_Painter(const Primitive& primitive, Treatment treatment, KT_Renderer_Data& renderer,
               const KT_Rendition& rendition)
      : primitive_(primitive), treatment_(treatment), renderer_(renderer), rendition_(rendition) {}

  void paint() {
    // The framework's routines look colours up in it, also for an image of indices.
    if (!renderer_.options().palette()) renderer_.options().set_palette(KD_Cube_Palette());
    switch (treatment_) {
      case Treatment::merged:
        draw({8, 8, 76}, {warm});
        return draw({22, 16, 76}, {cool});
      case Treatment::depth_tested: {
        Brush backdrop = brush({}, {grey});
        draw_backdrop(backdrop, 0, 1, 0, 0.6f);
        return draw({}, {warm});
      }
      case Treatment::masked:  // beyond the circle all around
        return draw({-0.1f * cell_side, -0.1f * cell_side, 1.2f * cell_side}, {warm});
      case Treatment::alpha:
        return draw_before_bars();
      case Treatment::clipped:
        return draw({-0.25f * cell_side, -0.35f * cell_side, 1.6f * cell_side}, {warm});
      default:
        return draw({}, {warm});
    }
  }

 private:
  Brush brush(const Brush::Place& place, const Brush::Paint& paint) {
    return Brush(renderer_, rendition_, place, paint);
  }
  void draw(const Brush::Place& place, const Brush::Paint& paint) {
    Brush own = brush(place, paint);
    primitive_.draw(own);
  }
  void draw_before_bars() {
    Brush bars = brush({}, {grey});
    bars.rendition.edit(&KT_Rendition_Data::display_context).depth_enabled = 0;
    for (float left = 0; left < 1; left += 0.25f) draw_backdrop(bars, left, left + 0.1f, 0, 1);
    Brush own = brush({}, {warm, half_transparent});
    own.add_option(KT_Advanced_Options::alpha_bit);
    primitive_.draw(own);
  }

  const Primitive& primitive_;
  Treatment treatment_;
  KT_Renderer_Data& renderer_;
  const KT_Rendition& rendition_;
};

}  // namespace

Picture draw_cell(const Primitive& primitive, const Gallery_Cell& cell) {
  Host_Session session(cell.module_path, cell.variant, {cell_side, cell_side},
                       drawing_for(cell.treatment), Color{1, 1, 1, 1});
  session.draw_by_hand([&](KT_Renderer_Data& renderer, const KT_Rendition& rendition) {
    Cell_Painter(primitive, cell.treatment, renderer, rendition).paint();
  });
  return session.read_picture();
}

}  // namespace kv
