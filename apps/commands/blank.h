// Pictures in which nothing of the model is seen.
#pragma once

#include <functional>
#include <string>

#include "apps/common/option_text.h"
#include "apps/draw/host_session.h"
#include "apps/files/picture.h"

namespace kv {

// Why nothing of the content can be seen in a picture of this size; empty when something may.
std::string blank_reason(const Content& content, const Drawing& drawing, const Size& size);

// The same of a picture that was drawn, on a plain colour or not. `empty` draws it without the
// model, and is called only when it is needed.
std::string blank_reason(const Content& content, const Drawing& drawing, const Picture& picture,
                         bool on_color, const std::function<Picture()>& empty);

}  // namespace kv
