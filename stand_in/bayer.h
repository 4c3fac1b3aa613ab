// The order in which the cells of an 8 by 8 tile are filled by ordered dither.
#pragma once

namespace stand_in {

/// Rank of the cell in its tile, 0 to 63, each once; the cells of the lowest n ranks are spread
/// as evenly as n cells can be.
constexpr int bayer_rank(int x, int y) {
  int rank = 0;
  for (int bit = 0; bit < 3; ++bit) {
    const int of_x = (x >> bit) & 1;
    const int of_y = (y >> bit) & 1;
    rank = rank * 4 + (of_x ^ of_y) * 2 + of_y;
  }
  return rank;
}

}  // namespace stand_in
