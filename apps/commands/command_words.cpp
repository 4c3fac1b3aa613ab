#include "apps/commands/command_words.h"

#include <charconv>
#include <cmath>

#include "apps/commands/option_words.h"

namespace kv {
namespace {

// The shortest text that is read as the same number.
std::string text_of(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string text_of(const Color& color) {
  std::string text = "#";
  for (const float part : {color.red, color.green, color.blue}) {
    const auto byte = static_cast<unsigned>(std::lround(part * 255));
    for (const unsigned digit : {byte >> 4, byte & 15}) text += "0123456789abcdef"[digit & 15];
  }
  return text;
}

// Adds options whose values differ from the usual ones.
class Words {
 public:
  Words(const Options& options, std::vector<std::string>& words)
      : options_(options), words_(words) {}

  template <class Value>
  void choice(const char* name, const std::map<std::string, Value>& words, const Value& value,
              const Value& usual) {
    if (!(value == usual)) add(name, words::word_for(words, value));
  }
  void number(const char* name, double value, double usual) {
    if (value != usual) add(name, text_of(value));
  }
  void flag(const char* name, bool value) {
    if (value) words_.push_back(name);
  }
  void add(const char* name, const std::string& value) {
    words_.insert(words_.end(), {name, value});
  }

  void add_camera() {
    const Camera_Options &camera = options_.camera, usual;
    number("--azimuth", camera.azimuth, usual.azimuth);
    number("--elevation", camera.elevation, usual.elevation);
    number("--zoom", camera.zoom, usual.zoom);
    number("--distance", camera.distance, usual.distance);
    if (camera.pan_x != 0 || camera.pan_y != 0)
      add("--pan", text_of(camera.pan_x) + "," + text_of(camera.pan_y));
    choice("--framing", words::framings, camera.framing, usual.framing);
    flag("--ortho", camera.orthographic);
    choice("--up", words::axes, camera.up, usual.up);
  }
  void add_faces() {
    const Drawing &drawing = options_.drawing, usual;
    choice("--palette", words::palettes, drawing.cube_steps, usual.cube_steps);
    if (drawing.pattern) add("--pattern", std::to_string(*drawing.pattern));
    number("--opacity", drawing.opacity, usual.opacity);
    flag("--polygons", drawing.polygons);
    flag("--merge", drawing.merge);
    flag("--edges", drawing.faces_as_edges);
    if (drawing.clip) add("--clip", drawing.clip.word);
    choice("--texture", words::texture_filters, drawing.textures.filter, usual.textures.filter);
    flag("--perspective-correct", drawing.textures.perspective_correct);
    flag("--no-textures", !options_.textures);
  }
  void add_lines() {
    const Line_Drawing &lines = options_.drawing.lines, usual;
    choice("--wire", words::edge_choices, lines.edges, usual.edges);
    flag("--antialias", lines.antialias);
    number("--line-width", lines.width, usual.width);
    number("--line-pattern", lines.pattern, usual.pattern);
    flag("--outline", lines.outline);
  }

 private:
  const Options& options_;
  std::vector<std::string>& words_;
};

}  // namespace

std::vector<std::string> command_words(const Options& options) {
  const Options usual;
  std::vector<std::string> list;
  Words words(options, list);
  words.add("--size",
            std::to_string(options.size.width) + "x" + std::to_string(options.size.height));
  words.choice("--variant", words::variants, options.variant, usual.variant);
  words.choice("--mode", words::styles, options.drawing.style, usual.drawing.style);
  words.add_camera();
  words.add_faces();
  words.add_lines();
  if (text_of(options.background) != text_of(usual.background))
    words.add("--background", text_of(options.background));
  if (!options.background_picture.empty()) words.add("--background", options.background_picture);
  return list;
}

std::string shell_line(const std::vector<std::string>& words) {
  constexpr auto plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_=+,./:@%";
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
      line += word;
      continue;
    }
    line += '\'';
    for (const char c : word) line += c == '\'' ? std::string("'\\''") : std::string(1, c);
    line += '\'';
  }
  return line;
}

}  // namespace kv
