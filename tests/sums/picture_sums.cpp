// Checksums of random calls, one for each action in each variant. They are the same whatever the
// compiler, its options and the processor.
//
// A call's sum is over the bytes of the frame images and of what was read back.
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>

#include "tests/differential/setting.h"

extern "C" KT_Renderer_Data* KD_Renderer(const KT_Renderer_Data*);

/// Polygons as fans, in place of the tessellator, which is a library of the system.
void KT_Contour_Set_Data::triangulate(Triangle_Callback callback, void* context) const {
  for (const auto& contour : contours)
    for (std::size_t n = 2; n < contour.size(); ++n)
      callback(&contour[0], &contour[n - 1], &contour[n], context);
}

namespace {

using Sum = std::uint64_t;
using Table = std::map<std::string, Sum>;  ///< by family, variant and action
const std::pair<const char*, fuzz::Make_Trial*> families[] = {
    {"triangles", fuzz::make_triangles}, {"textures", fuzz::make_textures},
    {"lines", fuzz::make_lines},         {"small", fuzz::make_small},
    {"frame", fuzz::make_frame_buffer},  {"tiling", fuzz::make_tiling}};

/// FNV-1a by words; the shift carries high bits down, which multiplication does not.
void add(Sum& sum, Sum word) {
  sum = (sum ^ word) * 0x100000001B3u;
  sum ^= sum >> 32;
}
void add(Sum& sum, const KT_Shared_Image& image) {
  const auto bytes = static_cast<std::size_t>(image ? image->height * image->row_bytes : 0);
  for (std::size_t i = 0; i < bytes; i += 8) {
    Sum word = 0;
    std::memcpy(&word, image->scan_lines[0] + i, std::min<std::size_t>(8, bytes - i));
    add(sum, word);
  }
}

Sum sum_of(fuzz::Trial& trial) {
  fuzz::events.clear();
  fuzz::Setting setting(KT_Handle<KT_Renderer_Data>(KD_Renderer(nullptr)), trial.scene);
  trial.draw_module(setting);
  Sum sum = 0xCBF29CE484222325u;
  add(sum, setting.color);
  add(sum, setting.depth);
  for (const KT_Shared_Image& image : trial.read_back) add(sum, image);
  return sum;
}

Table draw(Sum count, bool prints_calls) {
  Table table;
  for (const auto& [family, make] : families)
    for (Sum seed = 1; seed <= count; ++seed) {
      const std::unique_ptr<fuzz::Trial> trial = make(seed);
      const std::string title = trial->title(), variant = trial->scene.variant_name();
      const std::string row = family + (" " + variant) + " " + title.substr(0, title.find(' '));
      const Sum sum = sum_of(*trial);
      if (prints_calls)
        std::cout << row << " seed " << std::dec << seed << " " << std::hex << sum << "\n";
      add(table[row], sum);
    }
  return table;
}

/// Prints the rows that differ from the table of a file.
int compare(Table got, const char* path) {
  std::ifstream file(path);
  std::string family, variant, action;
  std::size_t differing = 0, count = 0;
  for (Sum sum; file >> family >> variant >> action >> std::hex >> sum; ++count) {
    const auto drawn = got.extract(family + " " + variant + " " + action);
    if (!drawn.empty() && drawn.mapped() == sum) continue;
    ++differing;
    std::cout << family << " " << variant << " " << action << " expected " << std::hex << sum
              << " got " << (drawn.empty() ? 0 : drawn.mapped()) << "\n";
  }
  for (const auto& row : got) std::cout << row.first << " expected nothing\n";
  std::cout << std::dec << count << " sums, " << differing + got.size() << " differ\n";
  return differing + got.size() != 0 || count == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string option = argc > 1 ? argv[1] : "";
  const bool compares = option == "--compare" && argc == 3, calls = option == "--calls";
  if (argc > 1 && !compares && (!calls || argc > 3))
    return std::cerr << argv[0] << " [--compare TABLE | --calls [COUNT OF EACH FAMILY]]\n", 2;
  const Table table = draw(calls && argc == 3 ? std::stoull(argv[2]) : 10000, calls);
  if (compares) return compare(table, argv[2]);
  for (const auto& [row, sum] : table)
    if (!calls) std::cout << row << " " << std::hex << sum << "\n";
}
