// Outcodes of points against a rectangle. Renderers need them once a strip, so this is made
// for speed: no branch depends on a point, and four whole-pixel points are done at a time.
#include "host/clip.h"

#include <cstring>

#include "stand_in/outcode.h"

namespace stand_in {
namespace {

/// What has been seen of a list of points.
struct Tally {
  unsigned any = 0;
  unsigned common = ~0U;

  int verdict(int count) const {
    if (any == 0) return count;
    return common != 0 ? 0 : -1;
  }
};

using Four_Ints = std::int32_t __attribute__((vector_size(16)));
using Four_Shorts = short __attribute__((vector_size(8)));

struct Four_Places {
  Four_Ints x;
  Four_Ints y;
};

/// Brings x and y of four points, which lie twelve words in a row, side by side.
Four_Places four_places(const KT_DCI_Point* points) {
  Four_Ints words[3];
  std::memcpy(words, points, sizeof words);
  const Four_Ints x = __builtin_shufflevector(words[0], words[1], 0, 3, 6, 6);
  const Four_Ints y = __builtin_shufflevector(words[0], words[1], 1, 4, 7, 7);
  return {__builtin_shufflevector(x, words[2], 0, 1, 2, 5),
          __builtin_shufflevector(y, words[2], 0, 1, 2, 6)};
}

/// Outcodes of `fours` times four points. The rectangle comes by value: for all the compiler
/// knows, writing the codes could change it.
Tally take_fours(const KT_Int_Rectangle rectangle, int fours, const KT_DCI_Point* points,
                 short* codes) {
  Four_Ints any = {};
  Four_Ints common = ~any;
  for (int n = 0; n < 4 * fours; n += 4) {
    const Four_Places at = four_places(points + n);
    // A comparison that holds has all bits set.
    const Four_Ints code = ((at.x < rectangle.left) & static_cast<int>(beyond_left)) |
                           ((at.y > rectangle.top) & static_cast<int>(beyond_top)) |
                           ((at.x > rectangle.right) & static_cast<int>(beyond_right)) |
                           ((at.y < rectangle.bottom) & static_cast<int>(beyond_bottom));
    any |= code;
    common &= code;
    const Four_Shorts narrow = __builtin_convertvector(code, Four_Shorts);
    std::memcpy(codes + n, &narrow, sizeof narrow);
  }
  return {static_cast<unsigned>(any[0] | any[1] | any[2] | any[3]),
          static_cast<unsigned>(common[0] & common[1] & common[2] & common[3])};
}

template <class Point>
Tally take_singly(const KT_Int_Rectangle& rectangle, int count, const Point* points, short* codes,
                  Tally tally) {
  for (int n = 0; n < count; ++n) {
    const unsigned code = outcode(rectangle, points[n]);
    tally.any |= code;
    tally.common &= code;
    codes[n] = static_cast<short>(code);
  }
  return tally;
}

}  // namespace
}  // namespace stand_in

int KD_Clip(const KT_Int_Rectangle& rectangle, int count, const KT_DCI_Point* points,
            short* codes) {
  using namespace stand_in;
  if (count <= 0) return 0;
  if (count < 4) return take_singly(rectangle, count, points, codes, {}).verdict(count);
  const int in_fours = count & ~3;
  const Tally tally = take_fours(rectangle, count / 4, points, codes);
  return take_singly(rectangle, count - in_fours, points + in_fours, codes + in_fours, tally)
      .verdict(count);
}

int KD_Clip(const KT_Int_Rectangle& rectangle, int count, const KT_Point_D* points, short* codes) {
  if (count <= 0) return 0;
  return stand_in::take_singly(rectangle, count, points, codes, {}).verdict(count);
}
