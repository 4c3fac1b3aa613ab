// Clears, reads back, writes and presents random rectangles of the frame images with a renderer
// module and, byte by byte, with plain loops, and compares. A test's number is its seed.
#include <algorithm>
#include <cstring>
#include <sstream>

#include "tests/differential/batch.h"
#include "tests/differential/setting.h"

namespace {

using fuzz::image_difference;
using fuzz::Random;
using fuzz::Scene;
using fuzz::Setting;
using Rectangle = KT_Int_Rectangle;

std::vector<Rectangle> pattern_fills;

}  // namespace

// Stands in front of the framework's routine of the same name.
void KD_Span_DC_Rectangle(KT_Renderer_Data*, const KT_Rendition&, int left, int right, int bottom,
                          int top) {
  pattern_fills.push_back({left, right, bottom, top});
}

namespace {

/// One call and what is wrong with it.
struct Trial {
  Setting& setting;
  Random random;
  std::ostringstream log;
  std::string found;

  const Scene& scene() const { return setting.scene; }
  const KT_Action_Table& actions() const { return setting.renderer->actions; }
  KT_Int_XY origin() const { return setting.state.origin; }
  int width() const { return scene().size.x; }
  int height() const { return scene().size.y; }

  /// A rectangle in device coordinates, inside the frame or, with `reach`, also around it.
  Rectangle rectangle(int reach) {
    const auto pair = [&](int low, int high, int& a, int& b) {
      a = random.range(low - reach, high + reach);
      b = random.range(low - reach, high + reach);
      if (a > b && !random.once_in(6)) std::swap(a, b);
      if (random.once_in(3)) a = low;
      if (random.once_in(3)) b = high;
    };
    Rectangle r;
    pair(origin().x, origin().x + width() - 1, r.left, r.right);
    pair(origin().y, origin().y + height() - 1, r.bottom, r.top);
    log << "x " << r.left - origin().x << ".." << r.right - origin().x << " y "
        << r.bottom - origin().y << ".." << r.top - origin().y << " ";
    return r;
  }
  static bool empty(const Rectangle& r) { return r.left > r.right || r.bottom > r.top; }

  /// Fills a rectangle of buffer coordinates; full width takes the padding along.
  static void fill(model::Plane& p, int x0, int x1, int y0, int y1, std::uint32_t value, int size) {
    for (int y = y0; y <= y1; ++y) {
      std::uint8_t* row = p.bytes.data() + std::ptrdiff_t{p.height - 1 - y} * p.row_bytes;
      const bool full = x0 == 0 && x1 == p.width - 1;
      for (int i = x0 * size; i < (full ? p.row_bytes : (x1 + 1) * size); ++i)
        row[i] = static_cast<std::uint8_t>(value >> (8 * (i % size)));
    }
  }

  void clear(bool depth) {
    const Rectangle hard = rectangle(depth ? 0 : random.pick({0, 5, 200}));
    KT_Rendition rendition = scene().rendition;
    rendition.edit(&KT_Rendition_Data::display_context).hard_clip = hard;
    auto& material = rendition.edit(&KT_Rendition_Data::material);
    material.window_color =
        KT_RGB32::from_word(static_cast<std::uint32_t>(random.range(0, 1 << 30)));
    material.window_index = static_cast<std::uint8_t>(random.range(0, 255));
    auto& face = rendition.edit(&KT_Rendition_Data::face_attributes);
    face.face_pattern = random.once_in(5) ? random.pick({0, 74, 80}) : 64;
    int x0 = hard.left - origin().x, x1 = hard.right - origin().x;
    int y0 = hard.bottom - origin().y, y1 = hard.top - origin().y;
    if (depth) {
      actions().call<KT_Action::Clear_Depth>(rendition);
      if (setting.depth && !empty(hard)) fill(setting.state.depth, x0, x1, y0, y1, 0xFFFF, 2);
      return;
    }
    actions().call<KT_Action::Clear_Color>(rendition);
    if (face.face_pattern != 64) {
      if (pattern_fills != std::vector<Rectangle>{hard}) found += "  wrong pattern fill\n";
      return;
    }
    if (!pattern_fills.empty()) found += "  pattern fill of a solid background\n";
    if (empty(hard)) return;
    x0 = std::max(x0, 0);
    y0 = std::max(y0, 0);
    x1 = std::min(x1, width() - 1);
    y1 = std::min(y1, height() - 1);
    if (x1 < 0 || y1 < 0) return;
    const bool mapped = model::is_mapped(scene().variant);
    fill(setting.state.color, x0, x1, y0, y1,
         mapped ? material.window_index : material.window_color.word(), mapped ? 1 : 4);
  }

  void put_depth() {
    const Rectangle r = rectangle(0);
    const int right = r.right + (random.once_in(3) ? random.range(0, 9) : 0);
    const int stride = std::max(1, right - r.left + 1) * 2 + random.range(0, 3) * 2;
    std::vector<std::uint16_t> pixels(
        static_cast<std::size_t>(stride / 2 * std::max(1, r.top - r.bottom + 1)));
    for (auto& z : pixels) z = static_cast<std::uint16_t>(random.range(0, 65535));
    const KT_DCI_Point start{r.left, r.top, 0}, end{right, r.bottom, 0};
    actions().call<KT_Action::Put_Depth>(scene().rendition, &start, &end, stride, pixels.data());
    const int last = std::min(right, origin().x + width() - 1);
    for (int y = r.top; y >= r.bottom; --y)
      for (int x = r.left; x <= last; ++x)
        setting.state.depth.at<std::uint16_t>(x - origin().x, y - origin().y) =
            pixels[static_cast<std::size_t>((r.top - y) * (stride / 2) + x - r.left)];
  }

  /// An image such as an earlier call may have left in the handle, with random bytes.
  KT_Shared_Image old_target(int w, int h, KT_Image_Format format, int row_bytes) {
    KT_Shared_Image image(w, h, format, row_bytes, nullptr, false);
    for (int i = 0; i < h * row_bytes; ++i)
      image->scan_lines[0][i] = static_cast<std::uint8_t>(random.range(0, 255));
    return image;
  }

  void read_back(bool depth) {
    const bool direct = !depth && !model::is_mapped(scene().variant);
    const int size = depth ? 2 : direct ? 4 : 1;
    const KT_Image_Format own = depth    ? KT_Image_Format::depth
                                : direct ? KT_Image_Format::rgb32
                                         : KT_Image_Format::mapped;
    const KT_Image_Format format = random.once_in(4)
                                       ? static_cast<KT_Image_Format>(random.range(0, 8))
                                       : random.pick({own, KT_Image_Format::renderer_own});
    const bool accepted = format == own || format == KT_Image_Format::renderer_own;
    const Rectangle r = rectangle(direct ? random.pick({0, 5, 200}) : 0);
    const int w = r.right - r.left + 1, h = r.top - r.bottom + 1;
    if (w < 1 || h < 1) return;
    const bool whole = direct && random.once_in(2);
    const model::Plane& source = depth ? setting.state.depth : setting.state.color;
    const int target_w = whole ? width() : w, target_h = whole ? height() : h;
    const int target_row = whole ? source.row_bytes : w * size;
    KT_Shared_Image target;
    const bool fits = random.once_in(2);
    if (fits)
      target = old_target(target_w, target_h, own, target_row);
    else if (whole || random.once_in(2))
      target = old_target(target_w + random.range(0, 1), target_h + 1, own, target_row + size);
    if (target) target->keep_window_size = whole;
    const KT_Shared_Image before = target;
    model::Plane expected =
        fits ? model::Plane(target)
             : model::Plane(KT_Shared_Image(target_w, target_h, own, target_row, nullptr, false));
    const KT_DCI_Point start{r.left, r.top, 0}, end{r.right, r.bottom, 0};
    log << "format " << static_cast<unsigned>(format) << (whole ? " keeps window size" : "")
        << (fits ? " reuse" : "");
    if (depth)
      actions().call<KT_Action::Get_Depth>(scene().rendition, &start, &end, &format, &target);
    else
      actions().call<KT_Action::Get_Image>(scene().rendition, &start, &end, &format, &target);
    if (!accepted) {
      if (target) found += "  an image of a format that is not accepted\n";
      return;
    }
    if (!target || target->width != target_w || target->height != target_h ||
        target->format != own || target->row_bytes != target_row ||
        (target->keep_window_size != 0) != whole || fits != (target == before)) {
      found += "  the wrong target image\n";
      return;
    }
    int x = r.left - origin().x, top = r.top - origin().y;
    int n = whole ? (std::max(r.right, width() - 1) - r.left) * size + size : w * size;
    if (direct && !whole) n -= std::max(0, x + w - width()) * size;
    if (direct && x < 0) {
      n += x * size;
      x = 0;
    }
    if (direct && top >= target_h) top = target_h - 1;
    const int bottom = direct ? std::max(r.bottom - origin().y, 0) : r.bottom - origin().y;
    const auto copy = [&](int from, int to) {
      for (int i = 0; i < n; ++i)
        if (from + i < source.row_bytes * source.height)
          expected.bytes[static_cast<std::size_t>(to + i)] =
              source.bytes[static_cast<std::size_t>(from + i)];
    };
    int to = 0;
    for (int row = top; row >= bottom; --row, to += w * size) {
      const int at = (whole ? row : height() - 1 - row) * source.row_bytes + x * size;
      if (row < height()) copy(at, whole ? at : to);
    }
    found += image_difference("target", target, expected);
  }

  void update() {
    struct Presented {
      KT_DCI_Point start, end;
      const KT_Shared_Image_Data* image = nullptr;
      int x = 0, y = 0;
    } got;
    setting.renderer->actions.bind<KT_Action::Present_Image>(
        &got, [](void* object, const KT_DCI_Point* start, const KT_DCI_Point* end,
                 const KT_Shared_Image* image, int x, int y) {
          *static_cast<Presented*>(object) = {*start, *end, image->get(), x, y};
        });
    const Rectangle r = rectangle(3);
    setting.renderer->update(r);
    const bool right = got.start == KT_DCI_Point{r.left, r.top, 0} &&
                       got.end == KT_DCI_Point{r.right, r.bottom, 0} &&
                       got.image == setting.color.get() && got.x == origin().x + r.left &&
                       got.y == height() + origin().y - r.top - 1;
    if (!right) found += "  wrong presentation\n";
  }

  void run() {
    const bool depth = static_cast<bool>(setting.depth);
    switch (random.range(0, depth ? 6 : 3)) {
      case 0:
        log << "Clear_Color ", clear(false);
        break;
      case 1:
        log << "Get_Image ", read_back(false);
        break;
      case 2:
        log << "update ", update();
        break;
      case 3:
      case 4:
        log << "Clear_Depth ", clear(true);
        break;
      case 5:
        log << "Get_Depth ", read_back(true);
        break;
      default:
        log << "Put_Depth ", put_depth();
    }
    found += image_difference("color", setting.color, setting.state.color) +
             image_difference("depth", setting.depth, setting.state.depth);
  }
};

class Test {
 public:
  explicit Test(std::uint64_t seed) : scene_(seed), seed_(seed) {}
  std::string title() const {
    return scene_.variant_name() + " frame " + std::to_string(scene_.size.x) + "x" +
           std::to_string(scene_.size.y);
  }
  std::string describe() const { return title() + "\n"; }
  std::string run(const KT_Renderer_Module& module) const {
    Setting setting(module, scene_);
    pattern_fills.clear();
    Trial trial{setting, Random(~seed_), {}, {}};
    trial.run();
    return trial.found.empty() ? "" : "  " + trial.log.str() + "\n" + trial.found;
  }

 private:
  Scene scene_;
  std::uint64_t seed_;
};

}  // namespace

int main(int argc, char** argv) {
  return fuzz::run_batch<Test>(argc, argv, FUZZ_MODULE);
}
