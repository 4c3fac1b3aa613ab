// The configuration pass: routines by variant, images by window size, mask cache, merge colours.

#include "module/bindings.h"
#include "module/core/software_z_buffer.h"
#include "module/tiling/bind.h"

using zbuffer::Variant;

namespace {

KT_Image_Format color_format(KT_Color_System system) {
  return system == KT_Color_System::direct ? KT_Image_Format::rgb32 : KT_Image_Format::mapped;
}

// A colour system other than the two known ones accepts an image of any format.
bool color_format_fits(KT_Color_System system, KT_Image_Format format) {
  const bool known = system == KT_Color_System::direct || system == KT_Color_System::mapped;
  return !known || format == color_format(system);
}

bool size_fits(const KT_Shared_Image& image, KT_Int_XY size) {
  return image->width == size.x && image->height == size.y;
}

}  // namespace

int Software_Z_Buffer::establish() {
  const KT_Renderer_Options& current = current_options;
  const bool direct = current.color_system() == KT_Color_System::direct;
  missing_images.fill(~0u);  // as it stays when an exception ends this
  variant = zbuffer::variant_for(current.buffer_depth() >= 1, direct, current.alpha_blending());

  zbuffer::bind_actions(*this, variant);
  if (current_option_set[enable_tiling]->value->as_bool())
    zbuffer::tiling::bind_tiling_actions(*this);

  device_origin = current.local_coordinates() ? KT_Int_XY{0, 0} : current.window_origin();
  const KT_Palette& palette = current.palette();
  if (palette && palette->color_cube) color_cube = *palette->color_cube;

  establish_color_image();
  establish_depth_image();
  window_extent = current.window_size();
  establish_missing_images();
  establish_mask_cache();
  establish_merge_colors();
  force_merge = current_option_set[force_merge_control_on]->value->as_bool();
  return 0;
}

void Software_Z_Buffer::establish_color_image() {
  KT_Option& option = *current_option_set[color_buffer];
  if (void* given = option.value->pointer()) {
    color_image.reset(static_cast<KT_Shared_Image_Data*>(given));
  }
  const KT_Color_System system = current_options.color_system();
  const KT_Int_XY size = current_options.window_size();
  if (color_image && color_format_fits(system, color_image->format) &&
      size_fits(color_image, size)) {
    return;
  }
  const KT_Image_Format format = color_format(system);
  actions.call<KT_Action::Create_Frame_Buffer>(size.x, size.y, &format, &color_image);
  option.set(KT_Option_Value(static_cast<const KT_Counted*>(color_image.get())));
}

void Software_Z_Buffer::establish_depth_image() {
  if (current_options.buffer_depth() < 1) {
    depth_image.release();
    return;
  }
  const KT_Int_XY size = current_options.window_size();
  if (depth_image && depth_image->format == KT_Image_Format::depth &&
      size_fits(depth_image, size)) {
    return;
  }
  const KT_Image_Format format = KT_Image_Format::depth;
  actions.call<KT_Action::Create_Frame_Buffer>(size.x, size.y, &format, &depth_image);
}

void Software_Z_Buffer::establish_missing_images() {
  const auto missing = [](bool is) { return is ? ~0u : 0u; };
  missing_images[zbuffer::variant_count] = missing(!depth_image);
  for (const Variant other : zbuffer::all_variants) {
    const bool drawable =
        color_image && is_mapped(other) == is_mapped(variant) && (!has_depth(other) || depth_image);
    missing_images[static_cast<std::size_t>(index_of(other))] = missing(!drawable);
  }
}

void Software_Z_Buffer::establish_mask_cache() {
  if (!current_option_set[use_mask]->value->as_bool()) {
    mask_cache.release();  // the shared option keeps its own reference
    return;
  }
  if (void* shared = current_option_set[mask_cache_option]->value->pointer()) {
    mask_cache.reset(static_cast<Mask_Cache_Data*>(shared));
  } else {
    mask_cache.reset(new Mask_Cache_Data);
    renderer_options[mask_cache_option]->set(
        KT_Option_Value(static_cast<const KT_Counted*>(mask_cache.get())));
    update_current_options();
  }
  mask_cache->clear();  // the sizes that the masks were made for may be stale
}

namespace {

// One channel of the search for the substitute index: it walks back and forth between the ends
// of its range.
struct Walking_Channel {
  std::uint8_t value;
  int step;

  explicit Walking_Channel(std::uint8_t start) : value(start), step(start > 250 ? -5 : 5) {}

  void walk() {
    if (value > 250) step = -5;
    if (value < 5) step = 5;
    value = static_cast<std::uint8_t>(value + step);
  }
};

// The palette index nearest to the key that differs from it; after 103 rounds the key itself.
std::uint8_t substitute_index(const KT_Palette& palette, std::uint8_t key) {
  const KT_RGB32 start = palette->entries[key].color;
  Walking_Channel red(start.red);
  Walking_Channel green(start.green);
  Walking_Channel blue(start.blue);
  std::uint8_t found = key;
  for (int counter = 0; found == key && counter < 512; counter += 5) {
    red.walk();
    green.walk();
    blue.walk();
    found = static_cast<std::uint8_t>(
        palette.closest_match(KT_RGB32{blue.value, green.value, red.value, 255}, false));
  }
  return found;
}

}  // namespace

void Software_Z_Buffer::establish_merge_colors() {
  const std::int32_t* key = current_option_set[merge_control_background_color]->value->as_ints();
  const auto red = static_cast<std::uint8_t>(key[0]);
  const auto green = static_cast<std::uint8_t>(key[1]);
  const auto blue = static_cast<std::uint8_t>(key[2]);
  merge_background_color = {blue, green, red, 255};
  const auto blue_beside = static_cast<std::uint8_t>(blue == 0 ? 1 : blue - 1);
  merge_substitute_color = {blue_beside, green, red, 255};

  const KT_Palette& palette = current_options.palette();
  if (!palette) return;  // nothing to search: the indices stay
  merge_background_index =
      static_cast<std::uint8_t>(palette.closest_match(merge_background_color, false));
  merge_substitute_index = substitute_index(palette, merge_background_index);
}
