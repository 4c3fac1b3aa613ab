// Panels of text over a picture.
#pragma once

#include <SDL.h>
#include <SDL_ttf.h>

#include <memory>
#include <string>
#include <vector>

namespace kv {

struct Free_Surface {
  void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, Free_Surface>;

// Where in the window a panel lies.
enum class Panel_Place { left_top, middle, left_bottom };

using Text_Lines = std::vector<std::string>;

// Without a font nothing is written.
class Text_Painter {
 public:
  Text_Painter();
  ~Text_Painter();
  Text_Painter(const Text_Painter&) = delete;
  Text_Painter& operator=(const Text_Painter&) = delete;

  // Lines on a dark ground, in letters small enough for all of them to fit.
  void panel(SDL_Surface* target, Panel_Place place, const Text_Lines& lines);

 private:
  void choose_size(const SDL_Surface* target, const Text_Lines& lines);
  Surface ground(const Text_Lines& lines) const;

  TTF_Font* font_ = nullptr;
};

}  // namespace kv
