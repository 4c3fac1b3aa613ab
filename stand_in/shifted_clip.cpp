// Complex clips of windows that begin left of or below the device's origin.
#include <list>
#include <mutex>

#include "host/rendition.h"

namespace {

/// The clip of a window that begins at a negative coordinate is given relative to the window's
/// bottom left corner; this is which clip was moved, and how far.
struct Shift {
  std::uint32_t source_id = 0;
  std::int32_t x = 0;
  std::int32_t y = 0;
  friend bool operator==(const Shift&, const Shift&) = default;
};

struct Shifted_Clip {
  Shift shift;
  KT_Contour_Set clip;
};

KT_Contour_Set moved(const KT_Contour_Set& source, const Shift& shift) {
  KT_Contour_Set result;
  result.reset(source->clone());
  for (auto& contour : result->contours) {
    for (KT_Point& point : contour) {
      point.x += static_cast<float>(shift.x);
      point.y += static_cast<float>(shift.y);
    }
  }
  return result;
}

/// The clips moved last, most recent first. The same clip must come out as the same record for
/// all renditions that have it, as masks are kept by the record's id.
class Recent_Shifts {
 public:
  KT_Contour_Set find_or_move(const KT_Contour_Set& source, const Shift& shift) {
    const std::lock_guard lock(mutex_);
    for (auto entry = recent_.begin(); entry != recent_.end(); ++entry) {
      if (entry->shift == shift) {
        recent_.splice(recent_.begin(), recent_, entry);
        return entry->clip;
      }
    }
    recent_.push_front({shift, moved(source, shift)});
    if (recent_.size() > capacity) recent_.pop_back();
    return recent_.front().clip;
  }

 private:
  static constexpr std::size_t capacity = 32;

  std::mutex mutex_;
  std::list<Shifted_Clip> recent_;
};

}  // namespace

// The result stays good until the thread needs another clip.
const KT_Contour_Set& KT_Rendition::shifted_complex_clip() const {
  static Recent_Shifts recent_shifts;
  thread_local Shifted_Clip latest;

  const KT_Display_Context& context = *get()->display_context;
  if (!context.complex_clip) return context.complex_clip;
  const Shift shift = {context.complex_clip->id, context.extent_left, context.extent_bottom};
  if (!latest.clip || latest.shift != shift) {
    latest = {shift, recent_shifts.find_or_move(context.complex_clip, shift)};
  }
  return latest.clip;
}
