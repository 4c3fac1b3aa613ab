// What of a picture is drawn on, beside its rectangle.
#pragma once

#include <string>
#include <vector>

#include "apps/common/option_text.h"
#include "host/contour.h"

namespace kv {

// A circle in the middle, or polygons; what lies in an odd number of polygons is inside.
struct Clip {
  // A place in hundredths of the picture, x from its left, y from its top.
  struct Place {
    double x = 0, y = 0;
  };
  using Polygon = std::vector<Place>;

  std::string word;  // as on the command line: "circle" or the name of a file; empty: no clip
  std::vector<Polygon> polygons{};  // of a file

  explicit operator bool() const { return !word.empty(); }
  KT_Contour_Set contours_in(const Size& picture) const;

  static Clip circle() { return {"circle"}; }
  // A polygon a line, in the words of an SVG's `points`: "x,y x,y x,y ..."; lines that begin with #
  // are passed over. Throws a Failure of Exit_Code::input that names the line at fault.
  static Clip from_file(const std::string& path);
};

}  // namespace kv
