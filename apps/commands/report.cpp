// Texts of --info and --stats: a line for each fact, its name first, then its value.
#include "apps/commands/report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>
#include <sstream>

#include "apps/common/option_text.h"

namespace kv {
namespace {

struct Bounds {
  Vec3 least{HUGE_VAL, HUGE_VAL, HUGE_VAL};
  Vec3 greatest{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};

  void include(const Vec3& p) {
    least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
    greatest = {std::max(greatest.x, p.x), std::max(greatest.y, p.y), std::max(greatest.z, p.z)};
  }
};

Bounds bounds_of(const Model& model) {
  Bounds bounds;
  for (const Mesh& mesh : model.meshes) {
    for (const Vertex& vertex : mesh.vertices) bounds.include(widen(vertex.position));
  }
  for (const Loose& loose : model.loose)
    for (const Vertex& vertex : loose.vertices) bounds.include(widen(vertex.position));
  return bounds;
}

std::string line(const char* name, const std::string& value) {
  std::string text = "  " + std::string(name);
  text.resize(std::max<std::size_t>(text.size() + 1, 14), ' ');
  return text + value + "\n";
}

std::string line(const char* name, std::size_t count) {
  return line(name, std::to_string(count));
}

std::string place_text(const Vec3& p) {
  std::ostringstream text;
  text << p.x << " " << p.y << " " << p.z;
  return text.str();
}

std::string description_of(const Material& material, const Model& model) {
  std::ostringstream text;
  text << text_of(material.diffuse);
  if (material.diffuse.alpha < 1) text << ", opacity " << material.diffuse.alpha;
  if (material.texture != no_texture) {
    const Image& image = model.textures[material.texture].image;
    text << ", texture " << material.texture + 1 << ", " << image.width << "x" << image.height;
  }
  return text.str();
}

}  // namespace

std::string info_of(const Model& model) {
  std::size_t vertices = 0, faces = 0;
  for (const Mesh& mesh : model.meshes) {
    vertices += mesh.vertices.size();
    faces += face_count(mesh);
  }
  std::size_t points = 0, lines = 0;
  for (const Loose& loose : model.loose) {
    points += loose.points.size();
    lines += loose.lines.size() / 2;
  }
  // Of the table of materials, those that a mesh, a line or a point has.
  std::set<std::uint32_t> used;
  for (const Mesh& mesh : model.meshes) used.insert(mesh.material);
  for (const Loose& loose : model.loose) used.insert(loose.material);
  const Bounds bounds = bounds_of(model);
  std::string text =
      line("meshes", model.meshes.size()) + line("vertices", vertices) + line("faces", faces) +
      line("triangles", triangle_count(model)) + (lines > 0 ? line("lines", lines) : "") +
      (points > 0 ? line("points", points) : "") + line("from", place_text(bounds.least)) +
      line("to", place_text(bounds.greatest)) + line("textures", model.textures.size()) +
      line("materials", used.size());
  for (const std::uint32_t material : used)
    text += line("", description_of(model.materials[material], model));
  for (const std::string& warning : model.warnings) text += line("warning", warning);
  return text;
}

void Stages::done(const char* stage) {
  const Clock::time_point now = Clock::now();
  milliseconds_.emplace_back(stage, std::chrono::duration<double, std::milli>(now - last_).count());
  last_ = now;
}

std::string Stages::text() const {
  std::string text;
  for (const auto& [stage, time] : milliseconds_) {
    char value[32];
    std::snprintf(value, sizeof value, "%.1f ms", time);
    text += line(stage, value);
  }
  return text;
}

std::string counts_of(const Content& content) {
  std::size_t triangles = 0;
  for (const Device_Strip& strip : content.faces.strips()) triangles += strip.point_count - 2;
  return line("strips", content.faces.strips().size()) + line("triangles", triangles) +
         line("lines", content.lines.size()) + line("dots", content.dots.size());
}

std::string covered_text(const Picture& picture, const Picture& empty) {
  std::size_t covered = 0;
  for (std::size_t i = 0; i < picture.pixels.size(); i += 3) {
    covered += !std::equal(&picture.pixels[i], &picture.pixels[i] + 3, &empty.pixels[i]);
  }
  return line("pixels", picture.pixels.size() / 3) + line("covered", covered);
}

}  // namespace kv
