// Draws random strips of flat, colorized and Gouraud triangles.
#include "tests/differential/model_triangles.h"
#include "tests/differential/setting.h"

namespace fuzz {
namespace {

using model::Kind;
using model::Layer;

/// Writes down the calls of an action and lets them through.
template <KT_Action action, class Routine = korvel::Routine_Of<action>>
struct Watched;
template <KT_Action action, class... Arguments>
struct Watched<action, void(KT_Renderer_Data*, Arguments...)> {
  static inline void (*routine)(KT_Renderer_Data*, Arguments...) = nullptr;
  static void install(KT_Renderer_Data* renderer) {
    routine = reinterpret_cast<decltype(routine)>(renderer->actions[action].function);
    renderer->actions.bind<action>(renderer, [](KT_Renderer_Data* object, Arguments... arguments) {
      events.push_back(model::line("through the table", model::name_of(action)));
      routine(object, arguments...);
    });
  }
};

struct Triangles : Trial {
  model::Strip_Call call;

  explicit Triangles(std::uint64_t seed) : Trial(seed) {
    call.kind = static_cast<Kind>(random.range(0, 2));
    const Layer layer = random.pick(
        {Layer::p2d, Layer::dc, Layer::p2di, Layer::p2di, Layer::p2di, Layer::dci, Layer::dci});
    const int count = random.once_in(6) ? random.range(2, 70) : random.range(3, 7);
    const bool edges = (scene.rendition->misc_attributes->advanced_options.bits & 32) != 0;
    call.points = random_strip(random, layer, count, scene.hard_clip(), !edges);
    const bool guarded = scene.variant == model::rgb_alpha && layer == Layer::dci &&
                         call.kind != Kind::gouraud && scene.is_solid() && !scene.use_mask;
    if (guarded && random.once_in(3))
      for (KT_DCI_Point& p : call.points.points) p.y += random.range(-9, 9);
    call.colors.assign(scene.colors.begin(), scene.colors.begin() + count);
    call.single_color = call.kind == Kind::colorized && random.once_in(2);
    for (const KT_DCI_Point& p : call.points.whole()) scene.depths.push_back(p.z);
  }

  std::string title() const override {
    return model::name_of(model::action_of(call.kind, call.points.layer));
  }
  std::string story() const override {
    return model::line("points", call.points.floats, call.points.points, "\ncolors", call.colors,
                       "single", call.single_color, "\n");
  }

  model::Events draw_model(Setting& setting) override {
    return model::draw_strip(setting.state, scene.rendition, call);
  }
  void watch(Setting& setting) override {
    if (setting.state.mask || call.points.layer == Layer::dci) return;
    Watched<KT_Action::Draw_DCI_Colorized_Polytriangle>::install(setting.renderer.get());
    Watched<KT_Action::Draw_DCI_Gouraud_Polytriangle>::install(setting.renderer.get());
  }
  void draw_module(Setting& setting) override {
    const KT_Action action = model::action_of(call.kind, call.points.layer);
    const auto draw = [&](const auto& points) {
      call_action(*setting.renderer, action, call.kind, scene.rendition, call.points.count(),
                  points.data(), call.colors.data(), call.single_color);
    };
    call.points.floats.empty() ? draw(call.points.points) : draw(call.points.floats);
  }
};

}  // namespace

std::unique_ptr<Trial> make_triangles(std::uint64_t seed) {
  return std::make_unique<Triangles>(seed);
}

}  // namespace fuzz
