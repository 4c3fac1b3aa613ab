// The smallest host: loads a renderer module, draws one strip of triangles, writes it as PNG.
//
//   draw_strip OUT.png [MODULE]
//
// Device coordinates have y pointing up; (0, 0) is the bottom left pixel.

#include <png.h>

#include <cstdio>
#include <string>

#include "host/application.h"

namespace {

constexpr int width = 640, height = 480;

int fail(const std::string& what) {
  std::fprintf(stderr, "draw_strip: error: %s\n", what.c_str());
  return 1;
}

// Direct colours with 16 bits of depth. The renderer chooses its routines and makes its images.
bool configure(KT_Renderer_Data& renderer) {
  KT_Renderer_Options& options = renderer.options();
  options.set_color_system(KT_Color_System::direct);
  options.set_buffer_depth(16);
  options.set_window({0, 0}, {width, height});
  return renderer.establish_all() == 0;
}

// Triangle i of a strip has the corners i, i + 1 and i + 2: here, four in a zigzag.
void draw(KT_Renderer_Data& renderer, KT_Rendition rendition) {
  const KT_Point points[] = {{60, 60, 100},   {60, 420, 100}, {230, 60, 200},
                             {320, 420, 300}, {410, 60, 200}, {580, 420, 100}};
  const KT_RGB32 colors[] = {{40, 40, 230, 255},  {40, 200, 240, 255}, {60, 200, 60, 255},
                             {220, 180, 40, 255}, {230, 60, 60, 255},  {200, 60, 200, 255}};
  rendition.edit(&KT_Rendition_Data::material).window_color = {255, 255, 255, 255};

  renderer.begin_picture_all(nullptr);
  renderer.actions.call<KT_Action::Clear_Color>(rendition);
  renderer.actions.call<KT_Action::Clear_Depth>(rendition);
  renderer.actions.call<KT_Action::Draw_2D_Gouraud_Polytriangle>(rendition, 6, points, colors);
  renderer.end_picture_all();
}

KT_Shared_Image read_back(KT_Renderer_Data& renderer, const KT_Rendition& rendition) {
  const KT_DCI_Point left_top{0, height - 1, 0}, right_bottom{width - 1, 0, 0};
  const KT_Image_Format format = KT_Image_Format::rgb32;
  KT_Shared_Image picture;
  renderer.actions.call<KT_Action::Get_Image>(rendition, &left_top, &right_bottom, &format,
                                              &picture);
  return picture;
}

bool write_png(const KT_Shared_Image& picture, const char* path) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = width;
  png.height = height;
  png.format = PNG_FORMAT_BGRA;
  return png_image_write_to_file(&png, path, 0, picture->scan_lines[0], picture->row_bytes,
                                 nullptr) != 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return fail("usage: draw_strip OUT.png [MODULE]");
  // The module outlives what it makes.
  KT_Renderer_Module module;
  std::string error;
  if (!module.load(argc > 2 ? argv[2] : MODULE, error)) return fail(error);
  const KT_Handle<KT_Renderer_Data> renderer = module.make_renderer(nullptr);
  if (!renderer || !configure(*renderer)) return fail("the module makes no renderer");

  const KT_Rendition rendition = KD_Default_Rendition({0, width - 1, 0, height - 1});
  draw(*renderer, rendition);
  const KT_Shared_Image picture = read_back(*renderer, rendition);
  if (!picture) return fail("the module hands back no picture");
  if (!write_png(picture, argv[1])) return fail(std::string(argv[1]) + " was not written");
  return 0;
}
