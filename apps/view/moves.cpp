// Mouse moves in window pixels, y down, to changes of the camera.
#include "apps/view/moves.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr double degrees_a_pixel = 0.5;
constexpr double steps_to_double = 6;

double few_digits(double value) {
  return std::round(value * 1e6) / 1e6;
}

double whole_turn_less(double degrees) {
  return std::remainder(degrees, 360);
}

double kept_near(double part) {
  return few_digits(std::clamp(part, -farthest_pan, farthest_pan));
}

double shorter_side(const Size& window) {
  return std::min(window.width, window.height);
}

}  // namespace

void orbit(Camera_Options& camera, Window_Point way) {
  camera.azimuth = few_digits(whole_turn_less(camera.azimuth - degrees_a_pixel * way.x));
  camera.elevation =
      few_digits(std::clamp(camera.elevation + degrees_a_pixel * way.y, -90.0, 90.0));
}

void pan(Camera_Options& camera, Window_Point way, const Size& window) {
  camera.pan_x = kept_near(camera.pan_x + way.x / shorter_side(window));
  camera.pan_y = kept_near(camera.pan_y - way.y / shorter_side(window));
}

void zoom_at(Camera_Options& camera, double steps, Window_Point mouse, const Size& window) {
  const double before = camera.zoom;
  const double wanted = before * std::exp2(steps / steps_to_double);
  camera.zoom = few_digits(std::clamp(wanted, least_zoom, greatest_zoom));
  const double x = (mouse.x - window.width / 2.0) / shorter_side(window);
  const double y = (window.height / 2.0 - mouse.y) / shorter_side(window);
  const double growth = camera.zoom / before;
  camera.pan_x = kept_near(x - (x - camera.pan_x) * growth);
  camera.pan_y = kept_near(y - (y - camera.pan_y) * growth);
}

}  // namespace kv
