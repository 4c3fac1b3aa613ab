// kvdraw gallery: contact sheets of everything that a module draws, one a family of primitives.
//
//   primitive A                primitive B           Each block holds the ways of drawing from left
//           solid patterned ...        solid ...     to right, and the variants of a renderer from
//   rgb     [   ] [   ]        rgb     [   ]         top to bottom.
//   rgb-z   [   ] [   ]        rgb-z   [   ]

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "apps/commands/command_line.h"
#include "apps/commands/commands.h"
#include "apps/commands/gallery_cell.h"
#include "apps/commands/label.h"
#include "apps/common/errors.h"
#include "apps/common/progress.h"
#include "apps/draw/default_module.h"
#include "apps/files/picture_file.h"

namespace kv {
namespace {

struct Named_Treatment {
  Treatment treatment;
  std::string_view name;
};
constexpr Named_Treatment treatments[] = {
    {Treatment::solid, "solid"},        {Treatment::patterned, "patterned"},
    {Treatment::masked, "masked"},      {Treatment::merged, "merged"},
    {Treatment::depth_tested, "depth"}, {Treatment::alpha, "alpha"},
    {Treatment::clipped, "clipped"}};
constexpr int treatment_count = static_cast<int>(std::size(treatments));

struct Named_Variant {
  Variant variant;
  std::string_view name;
};
constexpr Named_Variant variants[] = {{Variant::rgb, "rgb"},
                                      {Variant::rgb_z, "rgb-z"},
                                      {Variant::rgb_alpha, "rgb-alpha"},
                                      {Variant::rgb_alpha_z, "rgb-alpha-z"},
                                      {Variant::mapped, "mapped"},
                                      {Variant::mapped_z, "mapped-z"}};
constexpr int variant_count = static_cast<int>(std::size(variants));

constexpr KT_RGB32 paper{232, 230, 228, 255}, ink{40, 30, 20, 255}, absent{214, 211, 208, 255};
constexpr int gap = 6, margin = 14, name_width = 74;
constexpr int cell_step = cell_side + gap;
constexpr int block_width = name_width + treatment_count * cell_step + 2 * margin;
constexpr int block_height = 2 * label_height + variant_count * cell_step + 2 * margin;
constexpr int blocks_a_row = 2;

class Sheet {
 public:
  Sheet(const Family& family, std::string module_path, Progress& progress)
      : primitives_(family.primitives()),
        module_path_(std::move(module_path)),
        progress_(progress),
        picture_(blocks_a_row * block_width, rows() * block_height) {
    fill(picture_, 0, 0, picture_.width, picture_.height, paper);
  }

  const Picture& draw() {
    for (int i = 0; i < static_cast<int>(primitives_.size()); ++i)
      draw_block(primitives_[static_cast<std::size_t>(i)], i % blocks_a_row * block_width + margin,
                 i / blocks_a_row * block_height + margin);
    return picture_;
  }

 private:
  int rows() const {
    return (static_cast<int>(primitives_.size()) + blocks_a_row - 1) / blocks_a_row;
  }

  void label(int left, int top, std::string_view text) {
    draw_label(picture_, left, top, std::string(text), ink);
  }

  void draw_block(const Primitive& primitive, int left, int top) {
    label(left, top, primitive.name);
    const int first_column = left + name_width, first_row = top + 2 * label_height;
    for (int column = 0; column < treatment_count; ++column)
      label(first_column + column * cell_step, top + label_height, treatments[column].name);
    for (int row = 0; row < variant_count; ++row) {
      const int y = first_row + row * cell_step;
      label(left, y + cell_side / 2, variants[row].name);
      for (int column = 0; column < treatment_count; ++column)
        draw_cell_at(first_column + column * cell_step, y, primitive,
                     {module_path_, variants[row].variant, treatments[column].treatment});
    }
  }

  void draw_cell_at(int left, int top, const Primitive& primitive, const Gallery_Cell& cell) {
    if (applies(cell.variant, cell.treatment)) {
      const Picture content = draw_cell(primitive, cell);
      for (int y = 0; y < content.height; ++y)
        std::copy_n(content.row(y), 3 * content.width, picture_.row(top + y) + 3 * left);
    } else {
      fill(picture_, left, top, cell_side, cell_side, absent);
    }
    progress_.step();
  }

  std::span<const Primitive> primitives_;
  std::string module_path_;
  Progress& progress_;
  Picture picture_;
};

int cell_count() {
  int count = 0;
  for (const Family& family : gallery_families)
    count += static_cast<int>(family.primitives().size()) * treatment_count * variant_count;
  return count;
}

void make_folder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error)
    throw Failure(Exit_Code::output, path, error.message(), "name another folder after -o");
}

}  // namespace

int gallery_command(int argc, char** argv) {
  std::string folder, module_path = default_module();
  CLI::App app("Draws every primitive in every way, as contact sheets in PNG, one a family.",
               "kvdraw gallery");
  app.add_option("-o,--output", folder, "folder for the sheets; made if missing")
      ->required()
      ->type_name("DIR");
  app.add_option("--module", module_path, "renderer module to draw with")->type_name("FILE");
  if (!parse_command_line(app, argc, argv)) return 0;
  make_folder(folder);
  Progress progress("cell", cell_count());
  for (const Family& family : gallery_families) {
    const std::filesystem::path path =
        std::filesystem::path(folder) / (std::string(family.name) + ".png");
    write_picture_file(path.string(), Sheet(family, module_path, progress).draw());
  }
  return 0;
}

}  // namespace kv
