// What a host application calls beside the contract: modules, renditions, palettes, and the
// account of primitives that a general routine could not draw.
#pragma once

#include <string>

#include "host/framework.h"

/// A loaded renderer module. Renderers must be released before their module is unloaded.
class KORVEL_EXPORT KT_Renderer_Module {
 public:
  KT_Renderer_Module() = default;
  KT_Renderer_Module(const KT_Renderer_Module&) = delete;
  KT_Renderer_Module& operator=(const KT_Renderer_Module&) = delete;
  ~KT_Renderer_Module();

  /// Loads the module at `path`. On failure returns false and says in `error` what is wrong with
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

/// The palette of the 6 by 6 by 6 colour cube at indices 0 to 215 and greys behind it.
KORVEL_EXPORT KT_Palette KD_Cube_Palette();

/// Calls of general routines that were not drawn, since the start or the last reset.
KORVEL_EXPORT unsigned KD_Undrawn_Count();
KORVEL_EXPORT void KD_Reset_Undrawn_Count();
