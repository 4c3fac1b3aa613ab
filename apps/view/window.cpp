// The module's image is copied into a surface of the window's size, y down, and text drawn over it.
#include "apps/view/window.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "apps/common/errors.h"

namespace kv {
namespace {

constexpr int smallest_side = 64;

// The lowest three bytes of a pixel are those of an RGB32 colour; the highest has no meaning.
constexpr Uint32 pixel_format = SDL_PIXELFORMAT_RGB888;

[[noreturn]] void fail(const std::string& what) {
  throw Failure(Exit_Code::output, {}, what + " (" + SDL_GetError() + ")");
}

std::array<std::uint32_t, 256> words_of(const KT_Palette& palette) {
  std::array<std::uint32_t, 256> words{};
  for (int i = 0; i < palette->entry_count; ++i)
    words[static_cast<std::size_t>(i)] = palette->entries[i].color.word();
  return words;
}

}  // namespace

View_Window::View_Window(const std::string& title, const Size& size) {
  SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) fail("there is no screen");
  window_ = SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                             size.width, size.height, SDL_WINDOW_RESIZABLE);
  if (!window_) fail("the screen gives no window");
  SDL_SetWindowMinimumSize(window_, smallest_side, smallest_side);
  text_ = std::make_unique<Text_Painter>();
}

View_Window::~View_Window() {
  text_.reset();
  SDL_DestroyWindow(window_);
  SDL_Quit();
}

Size View_Window::size() const {
  Size size;
  SDL_GetWindowSize(window_, &size.width, &size.height);
  return size;
}

void View_Window::take(const Size& size,
                       const std::function<void(const Host_Session::Window&)>& present) {
  if (!picture_ || picture_->w != size.width || picture_->h != size.height)
    picture_.reset(SDL_CreateRGBSurfaceWithFormat(0, size.width, size.height, 32, pixel_format));
  if (!picture_) throw std::bad_alloc();
  present([this](const Presented& presented) { copy(presented); });
}

void View_Window::copy(const Presented& presented) {
  const KT_Int_Rectangle& from = presented.rectangle;
  const auto width = static_cast<std::size_t>(from.right - from.left + 1);
  const bool mapped = presented.image->format == KT_Image_Format::mapped;
  const auto words = mapped ? words_of(presented.palette) : std::array<std::uint32_t, 256>{};
  for (int y = from.top; y >= from.bottom; --y) {
    const int target_y = presented.target_y + (from.top - y);
    auto* const line = static_cast<std::uint8_t*>(picture_->pixels) + target_y * picture_->pitch;
    auto* const to = reinterpret_cast<std::uint32_t*>(line) + presented.target_x;
    if (mapped) {
      const std::uint8_t* const row = presented.image->rows[y] + from.left;
      std::transform(row, row + width, to, [&](std::uint8_t index) { return words[index]; });
    } else {
      std::memcpy(to, presented.image->row<KT_RGB32>(y) + from.left, width * sizeof(KT_RGB32));
    }
  }
}

void View_Window::show(const Overlay& overlay) {
  SDL_Surface* const screen = SDL_GetWindowSurface(window_);
  if (!screen) fail("the window cannot be drawn");
  if (picture_) SDL_BlitSurface(picture_.get(), nullptr, screen, nullptr);
  text_->panel(screen, Panel_Place::left_top, overlay.readout);
  text_->panel(screen, Panel_Place::left_bottom, overlay.message);
  text_->panel(screen, Panel_Place::middle, overlay.help);
  SDL_UpdateWindowSurface(window_);
}

}  // namespace kv
