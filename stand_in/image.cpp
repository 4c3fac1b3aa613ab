// Images: one block a record, which holds both tables of row pointers and the pixels.
#include "host/image.h"

#include <cstring>
#include <new>

namespace {

constexpr std::size_t pixel_alignment = 64;

std::uint8_t* aligned(std::uint8_t* address) {
  const auto value = reinterpret_cast<std::uintptr_t>(address);
  return address + (0 - value) % pixel_alignment;
}

}  // namespace

KT_Shared_Image_Data::KT_Shared_Image_Data(std::int32_t its_width, std::int32_t its_height,
                                           KT_Image_Format its_format, std::int32_t its_row_bytes,
                                           const void* pixels)
    : width(its_width), height(its_height), row_bytes(its_row_bytes), format(its_format) {
  if (width < 0 || height < 0 || row_bytes < 0) throw std::bad_alloc();

  const std::size_t row_count = static_cast<std::size_t>(height);
  const std::size_t stride = static_cast<std::size_t>(row_bytes);
  const std::size_t table_bytes = 2 * row_count * sizeof(std::uint8_t*);
  const std::size_t pixel_bytes = row_count * stride;

  // The block is the only allocation, so that nothing is left behind when there is no room.
  void* block = KD_AllocateMemory(table_bytes + pixel_alignment + pixel_bytes, nullptr);
  if (block == nullptr) throw std::bad_alloc();

  scan_lines = static_cast<std::uint8_t**>(block);
  rows = scan_lines + row_count;
  std::uint8_t* first_row = aligned(static_cast<std::uint8_t*>(block) + table_bytes);
  for (std::size_t line = 0; line < row_count; ++line) {
    scan_lines[line] = first_row + line * stride;
    rows[row_count - 1 - line] = scan_lines[line];
  }
  if (pixels != nullptr) {
    std::memcpy(first_row, pixels, pixel_bytes);
  } else {
    std::memset(first_row, 0, pixel_bytes);
  }
}

KT_Shared_Image_Data::KT_Shared_Image_Data(const KT_Shared_Image_Data& source)
    : KT_Shared_Image_Data(source.width, source.height, source.format, source.row_bytes,
                           source.height > 0 ? source.scan_lines[0] : nullptr) {
  keep_window_size = source.keep_window_size;
}

KT_Shared_Image_Data::~KT_Shared_Image_Data() {
  KD_ReleaseMemory(scan_lines);
}

KT_Shared_Image_Data* KT_Shared_Image_Data::clone() const {
  return new KT_Shared_Image_Data(*this);
}

KT_Shared_Image::KT_Shared_Image(std::int32_t width, std::int32_t height, KT_Image_Format format,
                                 std::int32_t row_bytes, const void* pixels, bool)
    : KT_Handle(new KT_Shared_Image_Data(width, height, format, row_bytes, pixels)) {}
