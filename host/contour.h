// Contours and the clip masks that are rasterized from them.
#pragma once

#include <vector>

#include "host/counted.h"
#include "host/image.h"

class KORVEL_EXPORT KT_Contour_Set_Data : public KT_Counted {
 public:
  /// Closed contours in device coordinates; what lies inside an odd number of them is inside.
  std::vector<std::vector<KT_Point>> contours;

  using Triangle_Callback = void (*)(const KT_Point*, const KT_Point*, const KT_Point*, void*);

  ~KT_Contour_Set_Data() override;
  KT_Contour_Set_Data* clone() const override;

  /// Treats the contours as lying in the plane across `normal`; the third coordinate is carried.
  void force_projection(const KT_Vector& normal);
  /// Calls back once a triangle of the inside, with `context` as the last argument.
  void triangulate(Triangle_Callback callback, void* context) const;

 private:
  KT_Vector normal_{0, 0, 1};
};

///
/// A renderer makes the mask of a contour once, when it first draws under it, for the window's
/// origin. While a `2DD` action runs the origin is (0, 0): in a window elsewhere the mask of a
/// contour that is first drawn under there is made for (0, 0), and stays so.
class KORVEL_EXPORT KT_Contour_Set : public KT_Handle<KT_Contour_Set_Data> {
 public:
  KT_Contour_Set() = default;
  /// One closed contour of `count` points, copied. The last argument is passed false.
  KT_Contour_Set(int count, const KT_Point* points, bool);
};

/// How a polygon may be cut; the first word of the result is the rank.
struct KT_Polygon_Rank {
  std::int32_t rank = 0;  ///< 0: convex, may be cut as a strip from both ends
};

KORVEL_EXPORT KT_Polygon_Rank KD_Rank_Polygon(int count, const KT_Point* points);

/// One bit a pixel over the whole window, most significant bit first; a set bit hides the pixel.
/// A renderer makes and owns masks; the framework fills them.
class KORVEL_EXPORT Frame_Buffer_Mask : public KT_Object {
 public:
  KT_Shared_Image image;                  ///< `rows` is indexed by buffer row like a frame image's
  KT_Contour_Set source_contour;          ///< the framework's
  std::uint32_t contour_id = 0;           ///< id of the contour record the bits were made from
  KT_Handle<KT_Counted> second_handle;    ///< the framework's
  Frame_Buffer_Mask* next = nullptr;      ///< towards the least recently used
  Frame_Buffer_Mask* previous = nullptr;  ///< towards the most recently used

  Frame_Buffer_Mask() = default;
  ~Frame_Buffer_Mask() override = default;

  /// Sizes the mask to a window of `width` by `height` whose bottom left pixel is device (x, y).
  int establish_configuration(int width, int height, int x, int y);
  /// Clears the bits, rasterizes the contours and keeps their id: set bits outside.
  void clear_and_rasterize_mask(const KT_Contour_Set& contours);

 private:
  KT_Int_XY origin_;
};
