// Draws random polytriangle calls with a renderer module and with the reference model, and
// compares the images byte by byte. A test's number is its seed.
#include <sstream>

#include "tests/differential/batch.h"
#include "tests/differential/setting.h"

namespace {

using fuzz::image_difference;
using fuzz::Scene;
using fuzz::Setting;
using model::Kind;
using model::Layer;

/// A call that reached one of the general routines.
struct Standard_Call {
  KT_Action action{};
  int count = 0;
  const void* points = nullptr;
  std::vector<KT_RGB32> colors;
  bool single_color = false;
};
std::vector<Standard_Call> standard_calls;

std::vector<KT_RGB32> copied(const KT_RGB32* colors, int count) {
  return {colors, colors + count};
}

}  // namespace

// These stand in front of the framework's routines of the same names.
#define RECORD_PLAIN(name, Point)                                            \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int count, \
                          const Point* points) {                             \
    standard_calls.push_back({KT_Action::name, count, points, {}, false});   \
  }
#define RECORD_COLORIZED(name, Point)                                                             \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points, \
                          const KT_RGB32* colors, bool single_color) {                            \
    standard_calls.push_back({KT_Action::name, count, points,                                     \
                              copied(colors, single_color ? 1 : count - 2), single_color});       \
  }
#define RECORD_GOURAUD(name, Point)                                                               \
  void KD_Standard_##name(KT_Renderer_Data*, const KT_Rendition&, int count, const Point* points, \
                          const KT_RGB32* colors) {                                               \
    standard_calls.push_back({KT_Action::name, count, points, copied(colors, count), false});     \
  }
RECORD_PLAIN(Draw_2D_Polytriangle, KT_Point)
RECORD_PLAIN(Draw_DC_Polytriangle, KT_Point)
RECORD_PLAIN(Draw_2DI_Polytriangle, KT_DCI_Point)
RECORD_PLAIN(Draw_DCI_Polytriangle, KT_DCI_Point)
RECORD_COLORIZED(Draw_2D_Colorized_Polytriangle, KT_Point)
RECORD_COLORIZED(Draw_DC_Colorized_Polytriangle, KT_Point)
RECORD_COLORIZED(Draw_2DI_Colorized_Polytriangle, KT_DCI_Point)
RECORD_COLORIZED(Draw_DCI_Colorized_Polytriangle, KT_DCI_Point)
RECORD_GOURAUD(Draw_2D_Gouraud_Polytriangle, KT_Point)
RECORD_GOURAUD(Draw_DC_Gouraud_Polytriangle, KT_Point)
RECORD_GOURAUD(Draw_2DI_Gouraud_Polytriangle, KT_DCI_Point)
RECORD_GOURAUD(Draw_DCI_Gouraud_Polytriangle, KT_DCI_Point)

namespace {

void draw(const Setting& setting) {
  const Scene& scene = setting.scene;
  const model::Call& c = scene.call;
  const auto by_kind =
      [&]<KT_Action flat, KT_Action colorized, KT_Action gouraud>(const auto* points) {
        const KT_Action_Table& actions = setting.renderer->actions;
        const KT_Rendition& r = scene.rendition;
        if (c.kind == Kind::flat)
          actions.call<flat>(r, c.count(), points);
        else if (c.kind == Kind::colorized)
          actions.call<colorized>(r, c.count(), points, c.colors.data(), c.single_color);
        else
          actions.call<gouraud>(r, c.count(), points, c.colors.data());
      };
  using enum KT_Action;
  switch (c.layer) {
    case Layer::p2d:
      by_kind.operator()<Draw_2D_Polytriangle, Draw_2D_Colorized_Polytriangle,
                         Draw_2D_Gouraud_Polytriangle>(c.floats.data());
      break;
    case Layer::dc:
      by_kind.operator()<Draw_DC_Polytriangle, Draw_DC_Colorized_Polytriangle,
                         Draw_DC_Gouraud_Polytriangle>(c.floats.data());
      break;
    case Layer::p2di:
      by_kind.operator()<Draw_2DI_Polytriangle, Draw_2DI_Colorized_Polytriangle,
                         Draw_2DI_Gouraud_Polytriangle>(c.points.data());
      break;
    case Layer::dci:
      by_kind.operator()<Draw_DCI_Polytriangle, Draw_DCI_Colorized_Polytriangle,
                         Draw_DCI_Gouraud_Polytriangle>(c.points.data());
      break;
  }
}

/// What the standard routines got against what the model says they get.
std::string standard_difference(const Scene& scene, const model::Outcome& outcome) {
  const model::Call& c = scene.call;
  if (!outcome.standard)
    return standard_calls.empty() ? std::string() : "  a standard routine drew unasked\n";
  if (standard_calls.size() != 1) return "  no standard routine, or several, drew\n";
  static constexpr KT_Action actions[4][3] = {
      {KT_Action::Draw_2D_Polytriangle, KT_Action::Draw_2D_Colorized_Polytriangle,
       KT_Action::Draw_2D_Gouraud_Polytriangle},
      {KT_Action::Draw_DC_Polytriangle, KT_Action::Draw_DC_Colorized_Polytriangle,
       KT_Action::Draw_DC_Gouraud_Polytriangle},
      {KT_Action::Draw_2DI_Polytriangle, KT_Action::Draw_2DI_Colorized_Polytriangle,
       KT_Action::Draw_2DI_Gouraud_Polytriangle},
      {KT_Action::Draw_DCI_Polytriangle, KT_Action::Draw_DCI_Colorized_Polytriangle,
       KT_Action::Draw_DCI_Gouraud_Polytriangle}};
  const Standard_Call& got = standard_calls.front();
  const KT_Action wanted = actions[static_cast<int>(c.layer)][static_cast<int>(outcome.kind)];
  const void* const points = c.floats.empty() ? static_cast<const void*>(c.points.data())
                                              : static_cast<const void*>(c.floats.data());
  std::vector<KT_RGB32> colors;
  if (outcome.flat_color)
    colors = {*outcome.flat_color};
  else if (outcome.kind == Kind::gouraud)
    colors = c.colors;
  else if (outcome.kind == Kind::colorized)
    colors = copied(c.colors.data(), c.single_color ? 1 : c.count() - 2);
  const bool single = outcome.flat_color || c.single_color;
  const bool same = got.action == wanted && got.count == c.count() && got.points == points &&
                    got.colors == colors && got.single_color == single;
  return same ? std::string() : "  the standard routine got other arguments\n";
}

int table_calls = 0;

/// Counts the calls of an action and lets them through.
template <KT_Action action, class Routine = korvel::Routine_Of<action>>
struct Counted;
template <KT_Action action, class... Arguments>
struct Counted<action, void(KT_Renderer_Data*, Arguments...)> {
  static inline void (*behind)(KT_Renderer_Data*, Arguments...) = nullptr;
  static void install(KT_Renderer_Data* renderer) {
    behind = reinterpret_cast<decltype(behind)>(renderer->actions[action].function);
    renderer->actions.bind<action>(renderer, [](KT_Renderer_Data* object, Arguments... arguments) {
      ++table_calls;
      behind(object, arguments...);
    });
  }
};

class Test {
 public:
  explicit Test(std::uint64_t seed) : scene_(seed) {}
  std::string title() const {
    return scene_.variant_name() + " " + scene_.action() + " (" + scene_.features() + ")";
  }
  std::string describe() const { return scene_.describe(); }
  std::string run(const KT_Renderer_Module& module) const;

 private:
  Scene scene_;
};

std::string Test::run(const KT_Renderer_Module& module) const {
  const Scene& scene = scene_;
  Setting setting(module, scene);
  standard_calls.clear();
  const model::Outcome outcome = model::draw(setting.state, scene.rendition, scene.call);
  Counted<KT_Action::Draw_DCI_Colorized_Polytriangle>::install(setting.renderer.get());
  Counted<KT_Action::Draw_DCI_Gouraud_Polytriangle>::install(setting.renderer.get());
  table_calls = scene.call.layer == Layer::dci && scene.call.kind != Kind::flat ? -1 : 0;
  draw(setting);
  if (outcome.edges) return {};
  const bool dispatched = setting.state.mask || table_calls == (outcome.through_table ? 1 : 0);
  return (dispatched ? "" : "  the wrong calls went through the action table\n") +
         image_difference("color", setting.color, setting.state.color) +
         image_difference("depth", setting.depth, setting.state.depth) +
         standard_difference(scene, outcome);
}

}  // namespace

int main(int argc, char** argv) {
  return fuzz::run_batch<Test>(argc, argv, FUZZ_MODULE);
}
