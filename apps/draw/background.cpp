// Clearing, the background picture, and reading back. Buffers have y upward, pictures downward.
#include "apps/draw/background.h"

#include "apps/draw/texture_materials.h"
#include "apps/load/image_scale.h"

namespace kv {
namespace {

// The module makes the image itself: what stays null was not read.
KT_Shared_Image frame_buffer_of(const Canvas& canvas, KT_Image_Format format) {
  const KT_Int_XY origin = canvas.frame.origin;
  const Size& size = canvas.configuration.size;
  const KT_DCI_Point left_top{origin.x, origin.y + size.height - 1, 0};
  const KT_DCI_Point right_bottom{origin.x + size.width - 1, origin.y, 0};
  KT_Shared_Image image;
  canvas.renderer.call<KT_Action::Get_Image>(canvas.rendition, &left_top, &right_bottom, &format,
                                             &image);
  if (!image || image->format != format || image->width != size.width ||
      image->height != size.height)
    canvas.renderer.fail("the module hands back no picture");
  return image;
}

void append(std::uint8_t*& byte, const KT_RGB32& color) {
  *byte++ = color.red;
  *byte++ = color.green;
  *byte++ = color.blue;
}

}  // namespace

// The whole window, whatever the faces' pattern.
void clear(const Canvas& canvas) {
  KT_Rendition solid = canvas.rendition;
  solid.edit(&KT_Rendition_Data::face_attributes).face_pattern = KT_Face_Attributes::solid;
  canvas.renderer.call<KT_Action::Clear_Color>(solid);
  if (canvas.configuration.variant.depth) canvas.renderer.call<KT_Action::Clear_Depth>(solid);
}

// In a rendition of its own: colours and clips are the model's.
void draw_background(const Canvas& canvas, const Image& background) {
  if (background.texels.empty()) return;
  constexpr int farthest = 65535;
  const KT_Int_Rectangle& part = canvas.frame.part;
  const KT_Shared_Image pixels = shared_image(covering(background, canvas.frame.picture, part));
  KT_Rendition rendition = KD_Default_Rendition(part);
  rendition.edit(&KT_Rendition_Data::display_context).depth_enabled =
      canvas.configuration.variant.depth ? 1 : 0;
  const KT_DCI_Point left_top{part.left, part.top, farthest};
  const KT_DCI_Point right_bottom{part.right, part.bottom, farthest};
  canvas.renderer.call<KT_Action::Draw_DCI_RGB32_Image>(
      rendition, &left_top, &right_bottom, pixels->row_bytes,
      reinterpret_cast<const KT_RGB32*>(pixels->scan_lines[0]), 0, nullptr);
}

Picture read_back(const Canvas& canvas) {
  const KT_Palette& palette = canvas.configuration.palette;
  const KT_Shared_Image image =
      frame_buffer_of(canvas, palette ? KT_Image_Format::mapped : KT_Image_Format::rgb32);
  const KT_Int_Rectangle& part = canvas.frame.part;
  const int left = part.left - canvas.frame.origin.x, top = part.top - canvas.frame.origin.y;
  Picture picture(part.right - part.left + 1, part.top - part.bottom + 1);
  for (int y = 0; y < picture.height; ++y) {
    const std::uint8_t* const row = image->rows[top - y];
    std::uint8_t* byte = picture.row(y);
    for (int x = left; x < left + picture.width; ++x)
      append(byte,
             palette ? palette->entries[row[x]].color : reinterpret_cast<const KT_RGB32*>(row)[x]);
  }
  return picture;
}

}  // namespace kv
