// Clears, reads back, writes and presents random rectangles of the frame images.
#include "tests/differential/setting.h"

namespace fuzz {
namespace {

using model::line;
using Rectangle = KT_Int_Rectangle;

enum class What { clear_color, get_image, update, clear_depth, get_depth, put_depth };

std::string presented(const KT_DCI_Point& start, const KT_DCI_Point& end, const void* image, int x,
                      int y) {
  return line("presented", start, end, image, "at", x, y);
}

struct Frame : Trial {
  What what{};
  Rectangle device{}, r{};  ///< the rectangle in device and in buffer coordinates
  int right = 0;            ///< of a transfer, in device coordinates
  KT_Image_Format format{};
  bool keeps_window_size = false, fits = false;  ///< of the target that there is
  std::vector<std::uint16_t> depths;
  int stride = 0;

  explicit Frame(std::uint64_t seed) : Trial(seed) {
    const bool depth = model::has_depth(scene.variant);
    what = depth ? random.pick({What::clear_color, What::get_image, What::update, What::clear_depth,
                                What::clear_depth, What::get_depth, What::put_depth})
                 : static_cast<What>(random.range(0, 3));
    const int pattern = random.once_in(5) ? random.pick({0, 74, 80}) : 64;
    scene.rendition.edit(&KT_Rendition_Data::face_attributes).face_pattern = pattern;
    const bool far =
        (what == What::clear_color && pattern == 64) || (what == What::get_image && is_direct());
    make_rectangle(far ? random.pick({0, 5, 200}) : what == What::update ? 3 : 0);
    auto& material = scene.rendition.edit(&KT_Rendition_Data::material);
    material.window_color = scene.colors[0];
    material.window_index = random.byte();
    scene.rendition.edit(&KT_Rendition_Data::display_context).hard_clip = device;
    right = device.right + (what == What::put_depth && random.once_in(3) ? random.range(0, 9) : 0);
    stride = std::max(1, right - device.left + 1) * 2 + random.range(0, 3) * 2;
    depths.resize(static_cast<std::size_t>(stride / 2 * std::max(1, height())));
    for (auto& z : depths) z = static_cast<std::uint16_t>(random.word());
    format = random.once_in(4) ? static_cast<KT_Image_Format>(random.range(0, 8))
                               : random.pick({own_format(), KT_Image_Format::renderer_own});
    keeps_window_size = what == What::get_image && is_direct() && random.once_in(2);
    fits = random.once_in(2);
  }

  bool is_direct() const { return !model::is_mapped(scene.variant); }
  bool is_depth() const { return what >= What::clear_depth; }
  int pixel_bytes() const { return is_depth() ? 2 : is_direct() ? 4 : 1; }
  KT_Image_Format own_format() const {
    return is_depth()    ? KT_Image_Format::depth
           : is_direct() ? KT_Image_Format::rgb32
                         : KT_Image_Format::mapped;
  }
  int width() const { return r.right - r.left + 1; }
  int height() const { return r.top - r.bottom + 1; }

  /// A rectangle in the frame, or with `reach` also around it.
  void make_rectangle(int reach) {
    const auto pair = [&](int last, int& a, int& b) {
      a = random.range(-reach, last + reach);
      b = random.range(-reach, last + reach);
      if (a > b && !random.once_in(6)) std::swap(a, b);
      if (random.once_in(3)) a = 0;
      if (random.once_in(3)) b = last;
    };
    pair(scene.size.x - 1, r.left, r.right);
    pair(scene.size.y - 1, r.bottom, r.top);
    const KT_Int_XY o = scene.origin();
    device = {r.left + o.x, r.right + o.x, r.bottom + o.y, r.top + o.y};
  }

  std::string title() const override {
    static const char* const names[] = {"Clear_Color", "Get_Image", "update",
                                        "Clear_Depth", "Get_Depth", "Put_Depth"};
    return names[static_cast<int>(what)];
  }
  std::string story() const override {
    return line("rectangle", r, "right", right, "format", static_cast<unsigned>(format),
                "keeps window size", keeps_window_size, "fits", fits, "stride", stride, "\n");
  }

  model::Events draw_model(Setting& setting) override {
    const bool solid = scene.rendition->face_attributes->face_pattern == 64;
    const KT_Material& material = *scene.rendition->material;
    switch (what) {
      case What::clear_color:
        if (!solid) return {line("pattern fill", device)};
        fill(setting.state.color,
             is_direct() ? material.window_color.word() : material.window_index);
        return {};
      case What::clear_depth:
        if (setting.depth) fill(setting.state.depth, 0xFFFF);
        return {};
      case What::put_depth:
        for (int y = r.top; y >= r.bottom; --y)
          for (int x = r.left; x <= std::min(right - scene.origin().x, scene.size.x - 1); ++x)
            setting.state.depth.at<std::uint16_t>(x, y) =
                depths[static_cast<std::size_t>((r.top - y) * (stride / 2) + x - r.left)];
        return {};
      case What::update:
        return {presented({r.left, r.top, 0}, {r.right, r.bottom, 0}, setting.color.get(),
                          device.left, scene.size.y + scene.origin().y - r.top - 1)};
      default:
        return {};
    }
  }

  /// Fills the rectangle; full width takes the padding along.
  void fill(model::Plane& p, std::uint32_t value) const {
    if (r.left > r.right || r.bottom > r.top) return;
    const int x0 = std::max(r.left, 0), x1 = std::min(r.right, p.width - 1), size = pixel_bytes();
    if (x0 > x1) return;
    for (int y = std::max(r.bottom, 0); y <= std::min(r.top, p.height - 1); ++y) {
      const bool full = x0 == 0 && x1 == p.width - 1;
      for (int i = x0 * size; i < (full ? p.row_bytes : (x1 + 1) * size); ++i)
        p.bytes[static_cast<std::size_t>(p.row(y) + i)] =
            static_cast<std::uint8_t>(value >> (8 * (i % size)));
    }
  }

  void draw_module(Setting& setting) override {
    const KT_Action_Table& actions = setting.renderer->actions;
    const KT_Rendition& rendition = scene.rendition;
    const KT_DCI_Point start{device.left, device.top, 0}, end{right, device.bottom, 0};
    using enum KT_Action;
    switch (what) {
      case What::clear_color:
        return actions.call<Clear_Color>(rendition);
      case What::clear_depth:
        return actions.call<Clear_Depth>(rendition);
      case What::put_depth:
        return actions.call<Put_Depth>(rendition, &start, &end, stride, depths.data());
      case What::update:
        setting.renderer->actions.bind<Present_Image>(
            nullptr, [](void*, const KT_DCI_Point* from, const KT_DCI_Point* to,
                        const KT_Shared_Image* image, int x,
                        int y) { events.push_back(presented(*from, *to, image->get(), x, y)); });
        setting.renderer->update(r);
        return;
      case What::get_image:
      case What::get_depth:
        if (width() > 0 && height() > 0) read(setting, start, end);
    }
  }

  /// An image such as an earlier call may have left in the handle, with random bytes.
  KT_Shared_Image old_target(int w, int h, int row_bytes) {
    KT_Shared_Image image(w, h, own_format(), row_bytes, nullptr, false);
    for (int i = 0; i < h * row_bytes; ++i) image->scan_lines[0][i] = random.byte();
    image->keep_window_size = keeps_window_size;
    return image;
  }

  void read(Setting& setting, const KT_DCI_Point& start, const KT_DCI_Point& end) {
    const model::Plane& source = is_depth() ? setting.state.depth : setting.state.color;
    const int w = keeps_window_size ? scene.size.x : width();
    const int h = keeps_window_size ? scene.size.y : height();
    const int row_bytes = keeps_window_size ? source.row_bytes : w * pixel_bytes();
    KT_Shared_Image target;
    if (fits)
      target = old_target(w, h, row_bytes);
    else if (keeps_window_size || random.once_in(2))
      target = old_target(w + random.range(0, 1), h + 1, row_bytes + pixel_bytes());
    const KT_Shared_Image before = target;
    model::Plane expected(fits ? target
                               : KT_Shared_Image(w, h, own_format(), row_bytes, nullptr, false));
    const KT_Action_Table& actions = setting.renderer->actions;
    if (is_depth())
      actions.call<KT_Action::Get_Depth>(scene.rendition, &start, &end, &format, &target);
    else
      actions.call<KT_Action::Get_Image>(scene.rendition, &start, &end, &format, &target);
    read_back.push_back(target);
    if (format != own_format() && format != KT_Image_Format::renderer_own) {
      if (target) found += "  an image of a format that is not accepted\n";
      return;
    }
    if (!target || target->width != w || target->height != h || target->format != own_format() ||
        target->row_bytes != row_bytes || (target->keep_window_size != 0) != keeps_window_size ||
        fits != (target == before)) {
      found += "  the wrong target image\n";
      return;
    }
    copy(source, expected);
    found += image_difference("target", target, expected);
  }

  /// What a read-back leaves in its target. Only direct colour is cut to the frame, and a cut on
  /// the left shortens rows and does not move them. A kept target is written in memory order, its
  /// rows to the right end of the frame or of the rectangle.
  void copy(const model::Plane& source, model::Plane& target) const {
    const int size = pixel_bytes();
    const bool direct = own_format() == KT_Image_Format::rgb32;
    int count = width() - (direct ? std::max(0, r.left + width() - scene.size.x) : 0);
    // This is held against the width of the frame in device coordinates.
    if (keeps_window_size) count = std::max(device.right, scene.size.x - 1) - device.left + 1;
    if (direct) count += std::min(r.left, 0);
    const int x = direct ? std::max(r.left, 0) : r.left;
    const int top = direct ? std::min(r.top, target.height - 1) : r.top;
    for (int y = top, i = 0; y >= (direct ? std::max(r.bottom, 0) : r.bottom); --y, ++i) {
      if (y >= source.height) continue;
      const int from = (keeps_window_size ? y : source.height - 1 - y) * source.row_bytes;
      const int to = keeps_window_size ? from + x * size : i * target.row_bytes;
      for (int k = 0; k < count * size; ++k)
        if (from + x * size + k < source.row_bytes * source.height)
          target.bytes[static_cast<std::size_t>(to + k)] =
              source.bytes[static_cast<std::size_t>(from + x * size + k)];
    }
  }
};

}  // namespace

std::unique_ptr<Trial> make_frame_buffer(std::uint64_t seed) {
  return std::make_unique<Frame>(seed);
}

}  // namespace fuzz
