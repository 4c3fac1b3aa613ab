// The list of clip masks, most recently used first. `select_mask` always leaves the wanted mask at
// the head; the last mask of a full cache is rasterized anew.
#include "module/pixels/mask.h"

#include <memory>

namespace zbuffer {
namespace {

void unlink(Mask_Cache_Data& cache, Frame_Buffer_Mask& mask) {
  (mask.previous ? mask.previous->next : cache.head) = mask.next;
  (mask.next ? mask.next->previous : cache.tail) = mask.previous;
}

void link_at_head(Mask_Cache_Data& cache, Frame_Buffer_Mask& mask) {
  mask.previous = nullptr;
  mask.next = cache.head;
  (cache.head ? cache.head->previous : cache.tail) = &mask;
  cache.head = &mask;
}

Frame_Buffer_Mask* find(const Mask_Cache_Data& cache, const KT_Contour_Set& clip, int width,
                        int height) {
  Frame_Buffer_Mask* mask = cache.head;
  while (mask && !is_mask_of(*mask, clip, width, height)) mask = mask->next;
  return mask;
}

}  // namespace

bool select_mask(Mask_Cache_Data& cache, const KT_Contour_Set& clip, int width, int height, int x,
                 int y) {
  if (Frame_Buffer_Mask* known = find(cache, clip, width, height)) {
    unlink(cache, *known);
    link_at_head(cache, *known);
    return true;
  }
  if (cache.count >= cache.capacity) {
    Frame_Buffer_Mask& reused = *cache.tail;
    reused.establish_configuration(width, height, x, y);
    reused.clear_and_rasterize_mask(clip);
    unlink(cache, reused);
    link_at_head(cache, reused);
    return true;
  }
  auto made = std::make_unique<Frame_Buffer_Mask>();
  made->establish_configuration(width, height, x, y);
  made->clear_and_rasterize_mask(clip);
  link_at_head(cache, *made.release());
  ++cache.count;
  return true;
}

}  // namespace zbuffer
