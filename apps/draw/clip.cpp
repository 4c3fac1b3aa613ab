// Clips are stored in hundredths of the picture, y from the top, and become contours in device
// coordinates, y from the bottom.
#include "apps/draw/clip.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <numbers>

#include "apps/common/errors.h"

namespace kv {
namespace {

// Far beyond any picture, and well inside what a mask is made from.
constexpr double farthest = 1000;
constexpr std::size_t most_corners = 100000;

std::vector<KT_Point> circle_in(const Size& window) {
  constexpr int corners = 180;
  const double radius = std::min(window.width, window.height) / 2.0;
  std::vector<KT_Point> circle;
  for (int i = 0; i < corners; ++i) {
    const double angle = 2 * std::numbers::pi * i / corners;
    circle.push_back({static_cast<float>(window.width / 2.0 + radius * std::cos(angle)),
                      static_cast<float>(window.height / 2.0 + radius * std::sin(angle)), 0});
  }
  return circle;
}

// Device coordinates have y upward.
std::vector<KT_Point> placed_in(const Size& picture, const Clip::Polygon& polygon) {
  std::vector<KT_Point> points;
  for (const Clip::Place& place : polygon)
    points.push_back({static_cast<float>(place.x / 100 * picture.width),
                      static_cast<float>((1 - place.y / 100) * picture.height), 0});
  return points;
}

class Clip_Reader {
 public:
  explicit Clip_Reader(const std::string& path) : path_(path) {}

  std::vector<Clip::Polygon> read() {
    errno = 0;
    std::ifstream file(path_);
    if (!file) throw Failure(Exit_Code::input, path_, system_words(errno));
    std::vector<Clip::Polygon> polygons;
    std::size_t corners = 0;
    for (std::string line; std::getline(file, line);) {
      ++line_number_;
      if (line.find_first_not_of(" \t\r") == std::string::npos || line[0] == '#') continue;
      polygons.push_back(polygon_of(line));
      corners += polygons.back().size();
      if (corners > most_corners) fail("too many corners");
    }
    if (file.bad()) throw Failure(Exit_Code::input, path_, "it cannot be read");
    if (polygons.empty()) throw Failure(Exit_Code::input, path_, "it holds no polygon", hint);
    return polygons;
  }

 private:
  static constexpr const char* hint = "write a polygon a line, as in 10,10 90,10 50,90";

  [[noreturn]] void fail(const std::string& what) const {
    throw Failure(Exit_Code::input, path_, "line " + std::to_string(line_number_) + ": " + what,
                  hint);
  }

  // Numbers parted by commas or blanks, by twos.
  Clip::Polygon polygon_of(std::string line) const {
    std::replace(line.begin(), line.end(), ',', ' ');
    std::vector<double> numbers;
    const char* at = line.c_str();
    for (;;) {
      at += std::strspn(at, " \t\r");
      if (*at == '\0') break;
      char* end = nullptr;
      const double number = std::strtod(at, &end);
      if (end == at)
        fail("no number at '" + std::string(at, std::min<std::size_t>(std::strlen(at), 20)) + "'");
      if (!(std::abs(number) <= farthest)) fail("a place too far from the picture");
      numbers.push_back(number);
      at = end;
    }
    if (numbers.size() % 2 != 0) fail("a place without its y");
    if (numbers.size() < 6) fail("a polygon has three corners at least");
    Clip::Polygon polygon;
    for (std::size_t i = 0; i < numbers.size(); i += 2)
      polygon.push_back({numbers[i], numbers[i + 1]});
    return polygon;
  }

  const std::string& path_;
  int line_number_ = 0;
};

}  // namespace

KT_Contour_Set Clip::contours_in(const Size& picture) const {
  std::vector<std::vector<KT_Point>> contours;
  if (polygons.empty()) contours.push_back(circle_in(picture));
  for (const Polygon& polygon : polygons) contours.push_back(placed_in(picture, polygon));
  KT_Contour_Set set(static_cast<int>(contours[0].size()), contours[0].data(), false);
  set.writable().contours = std::move(contours);
  return set;
}

Clip Clip::from_file(const std::string& path) {
  return {path, Clip_Reader(path).read()};
}

}  // namespace kv
