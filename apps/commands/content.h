// From a scene to what is handed to the module for one picture of it.
#pragma once

#include "apps/commands/options.h"
#include "apps/draw/host_session.h"
#include "apps/load/loader.h"
#include "apps/scene/camera.h"
#include "apps/scene/scene.h"

namespace kv {

// What of the model file is needed for the picture.
Load_Choices load_choices(const Options& options);

// May end the depths of `view` earlier, to leave room behind lines.
Content content_of(const Scene& scene, View& view, const Drawing& drawing);

}  // namespace kv
