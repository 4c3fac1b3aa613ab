// The binding table: nine groups of actions by six variants.
#include "module/bindings.h"

#include "module/core/bind.h"
#include "module/lines/bind.h"
#include "module/primitives/bind.h"
#include "module/textures/bind.h"
#include "module/triangles/bind.h"

namespace zbuffer {
namespace {

enum class Cell {
  own,       // the variant's own routine
  standard,  // the framework's general routine, bound directly
  kept,      // not touched: what an earlier configuration or the framework put there stays
  no_op      // a routine that does nothing
};

struct Row {
  void (*bind_own)(Software_Z_Buffer&, Variant);
  void (*bind_other)(Software_Z_Buffer&);  // for `standard` and `no_op`
  Cell cells[variant_count];
};

void bind_standard_rgb32_image(Software_Z_Buffer& renderer) {
  bind<KT_Action::Draw_DCI_RGB32_Image>(renderer, &KD_Standard_Draw_DCI_RGB32_Image);
}

void bind_standard_index8_image(Software_Z_Buffer& renderer) {
  bind<KT_Action::Draw_DCI_Index8_Image>(renderer, &KD_Standard_Draw_DCI_Index8_Image);
}

void clear_no_depth(KT_Renderer_Data*, const KT_Rendition&) {}

void bind_no_depth_clear(Software_Z_Buffer& renderer) {
  bind<KT_Action::Clear_Depth>(renderer, &clear_no_depth);
}

// Nothing is ever unbound: a renderer that goes from depth to none keeps its depth transfer and
// textured actions, and `Mapped_Z` keeps the polymarker of the configuration before it.
constexpr Cell own = Cell::own;
constexpr Cell standard = Cell::standard;
constexpr Cell kept = Cell::kept;
constexpr Cell no_op = Cell::no_op;
constexpr Row rows[] = {
    //                              RGB_Alpha RGB       Mapped    Mapped_Z  RGB_Alpha_Z RGB_Z
    {triangles::bind_polytriangles, nullptr, {own, own, own, own, own, own}},
    {textures::bind_textured_polytriangles, nullptr, {kept, kept, kept, own, own, own}},
    {lines::bind_polylines, nullptr, {own, own, own, own, own, own}},
    {primitives::bind_dots, nullptr, {own, own, own, own, own, own}},
    {primitives::bind_polymarkers, nullptr, {own, own, own, kept, own, own}},
    {primitives::bind_rgb32_images,
     bind_standard_rgb32_image,
     {own, own, standard, standard, own, own}},
    {primitives::bind_index8_images,
     bind_standard_index8_image,
     {standard, standard, own, own, standard, standard}},
    {primitives::bind_depth_clear, bind_no_depth_clear, {no_op, no_op, no_op, own, own, own}},
    {primitives::bind_depth_transfer, nullptr, {kept, kept, kept, own, own, own}},
};

}  // namespace

void bind_actions(Software_Z_Buffer& renderer, Variant variant) {
  primitives::bind_polygons(renderer);
  for (const Row& row : rows) {
    switch (row.cells[index_of(variant)]) {
      case Cell::own:
        row.bind_own(renderer, variant);
        break;
      case Cell::standard:
      case Cell::no_op:
        row.bind_other(renderer);
        break;
      case Cell::kept:
        break;
    }
  }
  primitives::bind_color_services(renderer, variant);
}

}  // namespace zbuffer
