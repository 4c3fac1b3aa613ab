// The options of the Z-buffer renderer, by which a host sets it up beside `KT_Renderer_Options`:
//
//   KT_Option_Table& table = renderer->option_table();
//   table.find(KT_String(KT_Z_Buffer_Option::use_mask))->set(KT_Option_Value(true));
//   renderer->establish();
//
// `establish` reads the options; of those that it does not read the names alone matter.
#pragma once

#include <cstdint>

class KT_Renderer_Data;

/// The names, by kind of value; in brackets what the value is until somebody sets it.
struct KT_Z_Buffer_Option {
  // Pointers (null).

  /// The image to draw into, set as a counted object. `establish` sets the image that it makes
  /// where the one given does not fit the window; after a null the renderer keeps its own.
  static constexpr const wchar_t* color_buffer = L"Color Buffer";
  /// The masks, shared by the renderers that are built from one another. Set by the renderer.
  static constexpr const wchar_t* mask_cache = L"Mask Cache";
  /// `KT_Set_Z_Buffer_Write` and `KT_Set_Z_Buffer_Test`, to be called. Set by the renderer.
  static constexpr const wchar_t* zbuffer_write = L"ZBuffer Write";
  static constexpr const wchar_t* zbuffer_test = L"ZBuffer Test";

  // Bools.

  static constexpr const wchar_t* use_mask = L"Use Mask";            ///< complex clips (false)
  static constexpr const wchar_t* enable_tiling = L"Enable Tiling";  ///< `2DD` actions (false)
  /// Merge control for all renditions, whatever their drawing mode (false).
  static constexpr const wchar_t* force_merge = L"Force Merge Control On";

  // Three ints: red, green and blue of the colour that merge control replaces (255 each).
  static constexpr const wchar_t* merge_background = L"Merge Control Background Color";

  // Advertised, not read. Pointer (null), ints (0, 0, 2147483647).
  static constexpr const wchar_t* depth_buffer = L"Depth Buffer";
  static constexpr const wchar_t* margin = L"Margin";
  static constexpr const wchar_t* shadow_quality = L"Shadow Mapping Quality";
  static constexpr const wchar_t* max_active_lights = L"Max Active Lights";
  // Advertised, not read. Bools (true), then (false).
  static constexpr const wchar_t* try_mmx = L"Try MMX";
  static constexpr const wchar_t* draftmark = L"Supports Advanced Draftmark Rendering";
  static constexpr const wchar_t* no_pvn_images = L"No PVN Image Support";
  static constexpr const wchar_t* clip_phase = L"Clip Phase";
  static constexpr const wchar_t* antialiased_lines = L"Supports Antialiased Lines";
  static constexpr const wchar_t* gooch_shader = L"Supports Gooch Shader";
  static constexpr const wchar_t* shadow_shader = L"Supports Shadow Mapping Shader";
};

/// Whether drawing writes depth: 0 is no. What "ZBuffer Write" points to, a function.
using KT_Set_Z_Buffer_Write = void(KT_Renderer_Data* renderer, std::uint8_t write);
/// Which depth passes, by `*mode`: 1 less than the stored, 5 greater, any other value less or
/// equal. What "ZBuffer Test" points to, a function.
using KT_Set_Z_Buffer_Test = void(KT_Renderer_Data* renderer, const unsigned* mode);
