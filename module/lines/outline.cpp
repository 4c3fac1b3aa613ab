// The renditions of the two passes of an outlined line.
#include "module/lines/outline.h"

#include "module/core/fixed_point.h"
#include "module/pixels/blend_255.h"

namespace zbuffer::lines {
namespace {

// Every change is made only where it is one: a record that stays as it is is not cloned.

template <class Record, class Field>
void set(KT_Rendition& rendition, KT_Handle<Record> KT_Rendition_Data::*which, Field Record::*field,
         const Field& value) {
  const Record& record = *((*rendition).*which);
  if (record.*field != value) rendition.edit(which).*field = value;
}

template <class Field>
void set_line(KT_Rendition& rendition, Field KT_Line_Attributes::*field, Field value) {
  set(rendition, &KT_Rendition_Data::line_attributes, field, value);
}

void set_face(KT_Rendition& rendition, std::int32_t KT_Face_Attributes::*field,
              std::int32_t value) {
  set(rendition, &KT_Rendition_Data::face_attributes, field, value);
}

void set_color(KT_Rendition& rendition, KT_RGB32 color) {
  if (rendition->material->color != color) rendition.set_color(color, false);
}

void set_advanced_bits(KT_Rendition& rendition, std::uint32_t bits) {
  if (rendition->misc_attributes->advanced_options.bits != bits) {
    rendition.set_advanced_options({bits}, false);
  }
}

const KT_Handle<KT_Material_Object>& default_outline_material() {
  static const KT_Basic_Textured_Material material;
  return material;
}

/// `under` and `over` by the alpha of `over`.
KT_RGB32 mixed(KT_RGB32 under, KT_RGB32 over) {
  const auto channel = [&](int u, int o) {
    return static_cast<std::uint8_t>(mixed_255<int>(o, over.alpha, u, 255 - over.alpha));
  };
  return {channel(under.blue, over.blue), channel(under.green, over.green),
          channel(under.red, over.red), 255};
}

}  // namespace

bool is_outlined(const KT_Rendition& rendition, int count, const KT_DCI_Point* points) {
  KT_Material_Object* material = rendition->material->basic_material.get();
  return material && material->classify_points(count, points).kind == KT_Point_Class::outlined;
}

void prepare_outline_rendition(KT_Rendition& temporary) {
  const KT_Handle<KT_Material_Object> outline = temporary->material->basic_material;
  KT_Material& material = temporary.edit(&KT_Rendition_Data::material);
  material.textured_material = default_outline_material();
  material.basic_material = material.textured_material;

  set_line(temporary, &KT_Line_Attributes::line_corner_style, 2);
  set_line(temporary, &KT_Line_Attributes::line_end_style_b, 2);
  set_line(temporary, &KT_Line_Attributes::line_end_style_a, 2);
  set_face(temporary, &KT_Face_Attributes::face_pattern, KT_Face_Attributes::solid);
  set_color(temporary, outline->outline_color);
  const std::int32_t weight = temporary->line_attributes->line_weight;
  set_line(temporary, &KT_Line_Attributes::line_weight,
           weight < 2 ? wrapped_sum(wrapped_sum(outline->outline_width, outline->outline_width), 2)
                      : wrapped_sum(weight, 5));
  if (outline->outline_color.alpha < 255) {
    set_advanced_bits(temporary, temporary->misc_attributes->advanced_options.bits |
                                     KT_Advanced_Options::alpha_bit);
  }
  set_line(temporary, &KT_Line_Attributes::line_flag_a, std::uint8_t{1});
  set_line(temporary, &KT_Line_Attributes::line_flag_b, std::uint8_t{1});
}

void prepare_core_rendition(const KT_Rendition& rendition, KT_Rendition& temporary) {
  constexpr std::uint32_t kept_bits = 0x7F7;
  constexpr std::int32_t mixed_pattern = 24;
  const KT_Material& material = *rendition->material;
  const KT_Face_Attributes& face = *rendition->face_attributes;
  const std::int32_t weight = rendition->line_attributes->line_weight;

  set_advanced_bits(temporary, temporary->misc_attributes->advanced_options.bits & kept_bits);
  if (weight <= 1) {
    set_line(temporary, &KT_Line_Attributes::line_weight, weight);
    set_color(temporary, material.color);
    return;
  }
  set_line(temporary, &KT_Line_Attributes::line_weight, wrapped_sum(weight, 1));
  if (face.face_pattern != mixed_pattern) {
    set_color(temporary, material.basic_material->core_color);
    return;
  }
  set_color(temporary, material.color);
  temporary.set_contrast_color(mixed(material.color, material.contrast_color), false);
  set_face(temporary, &KT_Face_Attributes::face_pattern, mixed_pattern);
  set(temporary, &KT_Rendition_Data::misc_attributes, &KT_Misc_Attributes::pattern_options,
      KT_Misc_Attributes::opaque_pattern_bit);
  set_face(temporary, &KT_Face_Attributes::face_depth_offset,
           wrapped_difference(face.face_depth_offset, 4));
}

}  // namespace zbuffer::lines
