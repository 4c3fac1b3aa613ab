// A renderer of the module under test on guarded frame images, from loading to unloading.
#pragma once

#include "host/application.h"
#include "module/core/software_z_buffer.h"
#include "tests/support/heap.h"
#include "tests/support/picture.h"

namespace support {

/// The renderer's configurations.
enum class Variant { rgb_alpha, rgb, mapped, mapped_z, rgb_alpha_z, rgb_z };
inline constexpr Variant all_variants[] = {Variant::rgb_alpha,   Variant::rgb,
                                           Variant::mapped,      Variant::mapped_z,
                                           Variant::rgb_alpha_z, Variant::rgb_z};
constexpr bool is_mapped(Variant variant) {
  return variant == Variant::mapped || variant == Variant::mapped_z;
}
constexpr bool has_depth(Variant variant) {
  return variant >= Variant::mapped_z;
}
constexpr bool is_alpha(Variant variant) {
  return variant == Variant::rgb_alpha || variant == Variant::rgb_alpha_z;
}
const char* name_of(Variant variant);

struct Configuration {
  Variant variant = Variant::rgb;
  KT_Int_XY size{12, 8};
  KT_Int_XY origin{};
  bool use_mask = false;
  KT_Palette palette = KD_Cube_Palette();
  int padding = 3;                           ///< guard pixels after each row
  const KT_Renderer_Data* source = nullptr;  ///< the renderer it is built from
};

/// The kind of points that a routine takes a list of.
template <class Routine>
struct Point_Of;
template <class Point, class... Rest>
struct Point_Of<void(KT_Renderer_Data*, const KT_Rendition&, int, const Point*, Rest...)> {
  using Type = Point;
};

class Session {
 public:
  explicit Session(const Configuration& configuration = {});
  Session(const Session&) = delete;
  ~Session();  ///< fails the test when a guard band was written on

 private:
  KT_Renderer_Module module_;
  KT_Handle<KT_Renderer_Data> handle_;
  int padding_;

 public:
  KT_Handle<Guarded_Image> color;  ///< given through the option "Color Buffer"
  KT_Handle<Guarded_Image> depth;  ///< null in a variant without depth
  KT_Rendition rendition;
  int frame_buffers_made = 0;

  /// For its fields; its operations are called through the base, as a host does.
  Software_Z_Buffer& renderer() const { return static_cast<Software_Z_Buffer&>(*handle_); }
  KT_Action_Table& actions() const { return handle_->actions; }
  KT_Renderer_Options& options() const { return handle_->options(); }
  int establish() const { return handle_->establish(); }
  KT_Option& option(const wchar_t* name) const;

  KT_Display_Context& display() { return rendition.edit(&KT_Rendition_Data::display_context); }
  KT_Material& material() { return rendition.edit(&KT_Rendition_Data::material); }
  KT_Face_Attributes& face() { return rendition.edit(&KT_Rendition_Data::face_attributes); }
  KT_Misc_Attributes& misc() { return rendition.edit(&KT_Rendition_Data::misc_attributes); }

  /// Calls an action of a list of points, which are turned into those that it takes; returns how
  /// often the call allocated.
  template <KT_Action action, class... Rest>
  long call(const std::vector<KT_DCI_Point>& points, Rest... rest) const {
    using Point = typename Point_Of<korvel::Routine_Of<action>>::Type;
    using Place = decltype(Point::x);
    std::vector<Point> taken;
    for (const auto& [x, y, z] : points) {
      taken.push_back({static_cast<Place>(x), static_cast<Place>(y), static_cast<Place>(z)});
    }
    const long before = heap::allocated();
    actions().call<action>(rendition, static_cast<int>(taken.size()), taken.data(), rest...);
    return heap::allocated() - before;
  }

  /// Makes every pixel untouched: a colour of alpha 77 or index 238, and `depth_value`.
  void clear(std::uint32_t depth_value = 0xFFFF);
  /// '#': pixels of the rendition's colour.
  Legend legend() const;

 private:
  static void create_frame_buffer(void* object, int width, int height,
                                  const KT_Image_Format* format, KT_Shared_Image* image);
};

enum class Kind { flat, colorized, gouraud };
enum class Layer { float_any, float_inside, int_any, int_inside };  // 2D DC 2DI DCI
inline constexpr Kind all_kinds[] = {Kind::flat, Kind::colorized, Kind::gouraud};
inline constexpr Layer all_layers[] = {Layer::float_any, Layer::float_inside, Layer::int_any,
                                       Layer::int_inside};
constexpr bool takes_floats(Layer layer) {
  return layer <= Layer::float_inside;
}
constexpr bool clips(Layer layer) {
  return layer == Layer::float_any || layer == Layer::int_any;
}

struct Strip {
  std::vector<KT_DCI_Point> points;
  std::vector<KT_RGB32> colors;  ///< a triangle, or of Gouraud strips a point
};
/// A strip with the same colour everywhere.
Strip strip_of(std::vector<KT_DCI_Point> points, KT_RGB32 color = {30, 60, 90, 255});

/// Calls the action of that layer, of four in the layers' order.
template <KT_Action float_any, KT_Action float_inside, KT_Action int_any, KT_Action int_inside,
          class... Rest>
long call_by_layer(const Session& session, Layer layer, const std::vector<KT_DCI_Point>& points,
                   Rest... rest) {
  if (layer == Layer::float_any) return session.call<float_any>(points, rest...);
  if (layer == Layer::float_inside) return session.call<float_inside>(points, rest...);
  if (layer == Layer::int_any) return session.call<int_any>(points, rest...);
  return session.call<int_inside>(points, rest...);
}
/// Draws a strip by the action of that layer and kind; returns how often the call allocated.
long draw(const Session& session, Layer layer, Kind kind, const Strip& strip);

/// A closed contour in device coordinates.
KT_Contour_Set contour(const std::vector<KT_Point>& points);

}  // namespace support
