// Renditions: every attribute of a primitive, in records that are shared and copied on write.
#pragma once

#include "host/color.h"
#include "host/contour.h"
#include "host/material.h"
#include "host/matrix.h"

/// Gives a plain record its place among the counted ones.
template <class Derived>
class KORVEL_EXPORT KT_Attributes : public KT_Counted {
 public:
  KT_Counted* clone() const override { return new Derived(static_cast<const Derived&>(*this)); }
};

class KORVEL_EXPORT KT_Display_Context : public KT_Attributes<KT_Display_Context> {
 public:
  std::int32_t extent_left = 0;    ///< of the window, device coordinates; negative: the complex
  std::int32_t extent_bottom = 0;  ///< clip is read through `shifted_complex_clip`
  KT_Int_Rectangle hard_clip;      ///< device coordinates, inclusive
  KT_Contour_Set complex_clip;     ///< null: none
  std::uint8_t depth_enabled = 0;  ///< non-zero: the primitive takes part in the depth test
  KT_Matrix device_matrix;         ///< of the view
};

class KORVEL_EXPORT KT_Material : public KT_Attributes<KT_Material> {
 public:
  KT_RGB32 color;
  std::uint32_t color_index = 0;     ///< palette index of `color`, low byte
  KT_RGB32 contrast_color;           ///< second colour of face patterns
  std::uint32_t contrast_index = 0;  ///< palette index of `contrast_color`, low byte
  KT_RGB32 window_color;             ///< clear colour
  std::uint8_t window_index = 0;     ///< palette index of `window_color`
  KT_Handle<KT_Material_Object> basic_material;
  KT_Handle<KT_Material_Object> textured_material;
  void* lighting = nullptr;  ///< only tested against null; not owned
};

class KORVEL_EXPORT KT_Line_Attributes : public KT_Attributes<KT_Line_Attributes> {
 public:
  std::int32_t line_pattern = 0;  ///< 0: solid
  std::int32_t line_weight = 0;   ///< pixels; 1 or less is a thin line
  std::int32_t line_end_style_a = 0;
  std::int32_t line_end_style_b = 0;
  std::int32_t line_corner_style = 0;
  std::uint8_t line_flag_a = 0;
  std::uint8_t line_flag_b = 0;
};

/// A pattern of bits, least significant bit of a byte leftmost, row 0 at the bottom.
struct KT_User_Pattern {
  const std::uint8_t* pattern_bits = nullptr;
  std::int32_t pattern_width = 0;   ///< pixels
  std::int32_t pattern_height = 0;  ///< pixels
  std::int32_t pattern_row_bytes = 0;
};

class KORVEL_EXPORT KT_Face_Attributes : public KT_Attributes<KT_Face_Attributes> {
 public:
  static constexpr std::int32_t hollow = 0;
  static constexpr std::int32_t solid = 64;
  static constexpr std::int32_t user = 74;
  static constexpr std::int32_t first_standard = 75;  ///< from here on the general routines draw

  std::int32_t face_pattern = solid;
  const KT_User_Pattern* user_pattern = nullptr;  ///< for `user`; not owned
  std::int32_t face_depth_offset = 0;             ///< added to each vertex z of a face
};

class KORVEL_EXPORT KT_Marker_Attributes : public KT_Attributes<KT_Marker_Attributes> {
 public:
  std::int32_t marker_symbol = 0;  ///< 0: a single dot
};

class KORVEL_EXPORT KT_Misc_Attributes : public KT_Attributes<KT_Misc_Attributes> {
 public:
  static constexpr std::int32_t merge_mode = 20;          ///< of `drawing_mode`
  static constexpr std::uint32_t opaque_pattern_bit = 1;  ///< set bits take the contrast colour
  static constexpr std::uint32_t inverted_pattern_bit = 2;
  static constexpr std::uint32_t perspective_bit = 1;  ///< of `texture_options`

  KT_Int_XY pattern_origin;  ///< of face patterns, in buffer coordinates
  std::int32_t drawing_mode = 0;
  std::uint32_t pattern_options = 0;
  std::uint32_t texture_options = 0;
  std::int32_t texture_mode = 0;
  KT_Advanced_Options advanced_options;
};

class KORVEL_EXPORT KT_Rendition_Data : public KT_Attributes<KT_Rendition_Data> {
 public:
  KT_Handle<KT_Display_Context> display_context;
  KT_Handle<KT_Material> material;
  KT_Handle<KT_Line_Attributes> line_attributes;
  KT_Handle<KT_Face_Attributes> face_attributes;
  KT_Handle<KT_Marker_Attributes> marker_attributes;
  KT_Handle<KT_Counted> framework_attributes;  ///< the framework's own
  KT_Handle<KT_Misc_Attributes> misc_attributes;
};

/// Handle on a rendition. Each setter writes through copy on write, so that other holders of
/// the same records see nothing. The bool of the setters is passed false.
class KORVEL_EXPORT KT_Rendition : public KT_Handle<KT_Rendition_Data> {
 public:
  KT_Rendition() = default;
  explicit KT_Rendition(KT_Rendition_Data* data) : KT_Handle(data) {}

  void set_color(const KT_RGB32& color, bool);
  void set_contrast_color(const KT_RGB32& color, bool);
  void set_hard_clip_unrestricted(const KT_Int_Rectangle& rectangle, bool);
  void set_advanced_options(const KT_Advanced_Options& options, bool);

  /// The complex clip moved by the window's offset, a record (and id) of its own.
  const KT_Contour_Set& shifted_complex_clip() const;

  /// Writable access to one attribute record, as in `edit(&KT_Rendition_Data::material)`.
  template <class Record>
  Record& edit(KT_Handle<Record> KT_Rendition_Data::*which) {
    return (writable().*which).writable();
  }
};
