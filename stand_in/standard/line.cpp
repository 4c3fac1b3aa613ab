// Places and colours between two vertices of a polyline, in double precision.
#include "stand_in/standard/line.h"

#include "stand_in/rounding.h"

namespace stand_in {
namespace {

double between(double from, double to, double part) {
  return from + (to - from) * part;
}

}  // namespace

KT_RGB32 mixed(KT_RGB32 from, KT_RGB32 to, double part) {
  return {round_to_byte(between(from.blue, to.blue, part)),
          round_to_byte(between(from.green, to.green, part)),
          round_to_byte(between(from.red, to.red, part)),
          round_to_byte(between(from.alpha, to.alpha, part))};
}

Vertex mixed(const Vertex& from, const Vertex& to, double part, Coloring coloring) {
  const bool shaded = coloring == Coloring::by_point;
  return {between(from.x, to.x, part), between(from.y, to.y, part), between(from.z, to.z, part),
          shaded ? mixed(from.color, to.color, part) : from.color};
}

}  // namespace stand_in
