// Palettes: the nearest entry to a colour, found by trying all and remembered.
#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

#include "host/color.h"

/// Earlier results, directly mapped. A slot is one word, a colour and its index together, so
/// that a palette may be used from several threads and a slot is right whoever wrote it.
struct KT_Palette_Data::Memo {
  static constexpr int slot_bits = 12;
  static constexpr std::size_t slot_count = std::size_t{1} << slot_bits;

  std::uint32_t owner_id;  // content of the palette that the results hold for
  std::array<std::atomic<std::uint32_t>, slot_count> slots;

  explicit Memo(std::uint32_t id) { forget(id); }

  static constexpr std::size_t slot_of(std::uint32_t rgb) {
    return (rgb * 0x9E3779B1U) >> (32 - slot_bits);
  }

  // Empty slots hold a colour that belongs elsewhere, which no question can match.
  void forget(std::uint32_t id) {
    static_assert(slot_of(0) == 0 && slot_of(1) != 0);
    owner_id = id;
    for (auto& slot : slots) slot.store(0, std::memory_order_relaxed);
    slots[0].store(1U << 8, std::memory_order_relaxed);
  }
};

namespace {

int nearest_entry(const KT_Palette_Data& palette, const KT_RGB32& color) {
  // Distance and index in one number: the least of them is the nearest of lowest index.
  std::uint32_t best = UINT32_MAX;
  for (std::int32_t n = 0; n < palette.entry_count; ++n) {
    const KT_RGB32 entry = palette.entries[n].color;
    const int red = entry.red - color.red;
    const int green = entry.green - color.green;
    const int blue = entry.blue - color.blue;
    const auto distance = static_cast<std::uint32_t>(red * red + green * green + blue * blue);
    best = std::min(best, distance << 8 | static_cast<std::uint32_t>(n));
  }
  return static_cast<int>(best & 255);
}

}  // namespace

KT_Palette_Data::KT_Palette_Data(const KT_RGB32* colors, std::int32_t count,
                                 const KT_Color_Cube* cube) {
  if (count < 1 || count > 256) throw std::invalid_argument("a palette has 1 to 256 colours");
  auto own_entries = std::make_unique<KT_Palette_Entry[]>(static_cast<std::size_t>(count));
  for (std::int32_t n = 0; n < count; ++n) own_entries[static_cast<std::size_t>(n)] = {colors[n]};
  auto own_cube = cube != nullptr ? std::make_unique<KT_Color_Cube>(*cube) : nullptr;
  memo_ = new Memo(id);
  entries = own_entries.release();
  entry_count = count;
  color_cube = own_cube.release();
}

KT_Palette_Data::KT_Palette_Data(const KT_Palette_Data& source) : KT_Counted(source) {
  const auto count = static_cast<std::size_t>(source.entry_count);
  auto own_entries = std::make_unique<KT_Palette_Entry[]>(count);
  std::copy_n(source.entries, count, own_entries.get());
  auto own_cube = source.color_cube ? std::make_unique<KT_Color_Cube>(*source.color_cube) : nullptr;
  memo_ = new Memo(id);
  entries = own_entries.release();
  entry_count = source.entry_count;
  color_cube = own_cube.release();
}

KT_Palette_Data::~KT_Palette_Data() {
  delete memo_;
  delete color_cube;
  delete[] entries;
}

KT_Palette_Data* KT_Palette_Data::clone() const {
  return new KT_Palette_Data(*this);
}

KT_Palette::KT_Palette(const KT_RGB32* colors, std::int32_t count, const KT_Color_Cube* cube)
    : KT_Handle(new KT_Palette_Data(colors, count, cube)) {}

int KT_Palette::closest_match(const KT_RGB32& color, bool) const {
  const KT_Palette_Data& palette = *get();
  KT_Palette_Data::Memo& memo = *palette.memo_;
  if (memo.owner_id != palette.id) memo.forget(palette.id);

  const std::uint32_t rgb = color.word() & 0xFFFFFF;
  std::atomic<std::uint32_t>& slot = memo.slots[KT_Palette_Data::Memo::slot_of(rgb)];
  const std::uint32_t known = slot.load(std::memory_order_relaxed);
  if (known >> 8 == rgb) return static_cast<int>(known & 255);

  const int index = nearest_entry(palette, color);
  slot.store(rgb << 8 | static_cast<std::uint32_t>(index), std::memory_order_relaxed);
  return index;
}
