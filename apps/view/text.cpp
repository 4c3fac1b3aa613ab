// Panels are drawn with the largest letters with which they fit the window.
#include "apps/view/text.h"

#include <algorithm>

namespace kv {
namespace {

constexpr int largest_letters = 14, smallest_letters = 6;
constexpr int margin = 8;
constexpr SDL_Color paper{20, 24, 28, 200};
constexpr SDL_Color ink{240, 242, 244, 255};

int longest_width(TTF_Font* font, const Text_Lines& lines) {
  int longest = 0;
  for (const std::string& line : lines) {
    int width = 0;
    TTF_SizeUTF8(font, line.c_str(), &width, nullptr);
    longest = std::max(longest, width);
  }
  return longest;
}

int total_height(TTF_Font* font, const Text_Lines& lines) {
  return TTF_FontLineSkip(font) * static_cast<int>(lines.size());
}

}  // namespace

Text_Painter::Text_Painter() {
  if (TTF_Init() == 0) font_ = TTF_OpenFont(KV_FONT, largest_letters);
}

Text_Painter::~Text_Painter() {
  if (font_) TTF_CloseFont(font_);
  if (TTF_WasInit()) TTF_Quit();
}

void Text_Painter::choose_size(const SDL_Surface* target, const Text_Lines& lines) {
  for (int size = largest_letters; size >= smallest_letters; --size) {
    TTF_SetFontSize(font_, size);
    if (longest_width(font_, lines) + 4 * margin <= target->w &&
        total_height(font_, lines) + 4 * margin <= target->h)
      return;
  }
}

Surface Text_Painter::ground(const Text_Lines& lines) const {
  Surface surface(SDL_CreateRGBSurfaceWithFormat(0, longest_width(font_, lines) + 2 * margin,
                                                 total_height(font_, lines) + 2 * margin, 32,
                                                 SDL_PIXELFORMAT_ARGB8888));
  if (surface)
    SDL_FillRect(surface.get(), nullptr,
                 SDL_MapRGBA(surface->format, paper.r, paper.g, paper.b, paper.a));
  return surface;
}

void Text_Painter::panel(SDL_Surface* target, Panel_Place place, const Text_Lines& lines) {
  if (!font_ || lines.empty()) return;
  choose_size(target, lines);
  const Surface panel = ground(lines);
  if (!panel) return;
  SDL_Rect spot{margin, margin, 0, 0};
  for (const std::string& line : lines) {
    const Surface text(line.empty() ? nullptr : TTF_RenderUTF8_Blended(font_, line.c_str(), ink));
    SDL_Rect at = spot;
    if (text) SDL_BlitSurface(text.get(), nullptr, panel.get(), &at);
    spot.y += TTF_FontLineSkip(font_);
  }
  SDL_Rect to{margin, margin, 0, 0};
  if (place == Panel_Place::middle)
    to = {(target->w - panel->w) / 2, (target->h - panel->h) / 2, 0, 0};
  if (place == Panel_Place::left_bottom) to.y = target->h - panel->h - margin;
  SDL_BlitSurface(panel.get(), nullptr, target, &to);
}

}  // namespace kv
