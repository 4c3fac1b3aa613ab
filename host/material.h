// Material objects: the kind, the texture and the light of a surface or a line.
#pragma once

#include "host/counted.h"
#include "host/image.h"

class KT_Rendition;

/// A texture as a material offers it.
class KORVEL_EXPORT KT_Texture_Source_Data : public KT_Counted {
 public:
  std::uint32_t wrap_s = 0;  ///< 0: nothing beyond the image, 2: the image repeats
  std::uint32_t wrap_t = 0;
  std::uint8_t standard_only = 0;  ///< non-zero: only the general routines may draw it
  std::uint8_t modulate = 0;       ///< non-zero: texels are multiplied by vertex colours

  ~KT_Texture_Source_Data() override;
  /// Writes a reference on the image into `result` and gives `result` back. Arguments are 0.
  virtual KT_Shared_Image& image(KT_Shared_Image& result, int, int, int) = 0;
};

using KT_Texture_Source = KT_Handle<KT_Texture_Source_Data>;

/// Result of `classify_points`.
struct KT_Point_Class {
  static constexpr std::int32_t outlined = 7;
  std::int32_t kind = 0;  ///< `outlined`: the polyline is drawn with an outline
};

class KORVEL_EXPORT KT_Material_Object : public KT_Counted {
 public:
  std::int32_t outline_width = 0;
  KT_RGB32 outline_color;
  KT_RGB32 core_color;
  float specular_color[3] = {};  ///< red, green, blue

  ~KT_Material_Object() override;
  virtual KT_Point_Class classify_points(int count, const KT_DCI_Point* points) = 0;
  /// Writes a reference on the texture (may be null) into `result` and gives `result` back.
  virtual KT_Texture_Source& texture(KT_Texture_Source& result, int, int, int) = 0;
  /// Light of a point with that vector under the rendition's colour and material: red, green,
  /// blue, 1 being full. The trailing arguments are 0, 0, 0, 1, 0.
  virtual void shade(float result[3], const KT_Rendition& rendition, const KT_Vector& vector, int,
                     int, int, int, int) = 0;
};

/// Handle on the framework's default material; the default constructor makes one.
class KORVEL_EXPORT KT_Basic_Material : public KT_Handle<KT_Material_Object> {
 public:
  KT_Basic_Material();
};

/// As `KT_Basic_Material`, for the textured companion; never `outlined`.
class KORVEL_EXPORT KT_Basic_Textured_Material : public KT_Handle<KT_Material_Object> {
 public:
  KT_Basic_Textured_Material();
};
