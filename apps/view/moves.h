// How the mouse moves the camera. What comes out is rounded to few digits, so that a camera can be
// written on a command line without loss.
#pragma once

#include "apps/common/option_text.h"
#include "apps/scene/camera.h"

namespace kv {

// A place or a way in the window in pixels, y down.
struct Window_Point {
  int x = 0, y = 0;
};

// Turns the model as if it was dragged by this way.
void orbit(Camera_Options& camera, Window_Point way);
// The picture follows the mouse.
void pan(Camera_Options& camera, Window_Point way, const Size& window);
// By steps of a mouse wheel; what is under the mouse stays there.
void zoom_at(Camera_Options& camera, double steps, Window_Point mouse, const Size& window);

}  // namespace kv
