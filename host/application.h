// What a host application calls beside the contract: modules, renditions, palettes, materials, the
// numbers that the general routines give a meaning to, and the account of primitives that none of
// them could draw.
#pragma once

#include <string>

#include "host/framework.h"
#include "host/z_buffer_options.h"

/// A loaded renderer module. Renderers must be released before their module is unloaded.
class KORVEL_EXPORT KT_Renderer_Module {
 public:
  KT_Renderer_Module() = default;
  KT_Renderer_Module(const KT_Renderer_Module&) = delete;
  KT_Renderer_Module& operator=(const KT_Renderer_Module&) = delete;
  ~KT_Renderer_Module();

  /// Loads the module at `path`. On failure returns false and puts into `error` what is wrong with
  /// which file.
  bool load(const std::string& path, std::string& error);
  void unload();

  /// A new renderer, or a null handle when the module gives none. The module must be loaded.
  KT_Handle<KT_Renderer_Data> make_renderer(const KT_Renderer_Data* source) const;

 private:
  void* library_ = nullptr;
  KT_Renderer_Data* (*factory_)(const KT_Renderer_Data*) = nullptr;
};

/// A rendition with all records present: solid white faces, thin solid lines, a hard clip of
/// `window`, depth test on, a default material.
KORVEL_EXPORT KT_Rendition KD_Default_Rendition(const KT_Int_Rectangle& window);

/// The palette of the 6 by 6 by 6 colour cube at indices 0 to 215 and greys after it.
KORVEL_EXPORT KT_Palette KD_Cube_Palette();

/// Values of `KT_Texture_Source_Data::wrap_s` and `wrap_t`: what there is beyond the image.
/// Renderers may draw `none` and `tile` themselves.
struct KT_Texture_Wrap {
  static constexpr std::uint32_t none = 0;
  static constexpr std::uint32_t clamp = 1;  ///< the texels of its border go on
  static constexpr std::uint32_t tile = 2;
  static constexpr std::uint32_t mirror = 3;  ///< tiles that face each other
};

/// A material with a texture of 32-bit texels. `modulate`: texels are multiplied by the colours of
/// points. `standard_only`: the general routines draw it, with smooth texels.
///
/// In perspective (`KT_Misc_Attributes::perspective_bit`) the extra floats of a textured action are
/// the points' w, the fourth coordinate before its division, all above 0.
KORVEL_EXPORT KT_Handle<KT_Material_Object> KD_Textured_Material(const KT_Shared_Image& image,
                                                                 std::uint32_t wrap_s,
                                                                 std::uint32_t wrap_t,
                                                                 bool modulate, bool standard_only);

/// A material whose polylines are drawn with an outline of `width` pixels on either side.
/// `core_color` is the colour between the outlines of lines of more than one pixel.
KORVEL_EXPORT KT_Handle<KT_Material_Object> KD_Outlined_Material(std::int32_t width,
                                                                 const KT_RGB32& outline_color,
                                                                 const KT_RGB32& core_color);

/// Values of `KT_Line_Attributes` for wide lines. `line_end_style_a` is the style of the first
/// point's end, `line_end_style_b` of the last one's; the ends of dashes are flat. Wide lines are
/// solid, unless `line_flag_a` is set: then they take the face pattern. `line_pattern`: 1 dashed,
/// 2 dotted, 3 dash-dot, 4 dash-dot-dot, 5 long dashes, 6 sparse dots, 7 long and short dashes,
/// 8 one long and two short.
struct KT_Line_Style {
  static constexpr std::int32_t mitred_corner = 0;  ///< bevelled where very sharp
  static constexpr std::int32_t bevelled_corner = 1;
  static constexpr std::int32_t round_corner = 2;

  static constexpr std::int32_t flat_end = 0;
  static constexpr std::int32_t square_end = 1;  ///< reaches half the width beyond the point
  static constexpr std::int32_t round_end = 2;
};

/// Values of `KT_Marker_Attributes::marker_symbol`: pictures of 9 by 9 pixels. The same plus
/// `filled` is the filled form.
struct KT_Marker_Symbol {
  static constexpr std::int32_t single_pixel = 0;
  static constexpr std::int32_t dot = 1;
  static constexpr std::int32_t plus = 2;
  static constexpr std::int32_t cross = 3;
  static constexpr std::int32_t circle = 4;
  static constexpr std::int32_t square = 5;
  static constexpr std::int32_t diamond = 6;
  static constexpr std::int32_t triangle = 7;
  static constexpr std::int32_t star = 8;
  static constexpr std::int32_t filled = 8;
};

/// Calls of general routines that were not drawn, since the start or the last reset.
KORVEL_EXPORT unsigned KD_Undrawn_Count();
KORVEL_EXPORT void KD_Reset_Undrawn_Count();
