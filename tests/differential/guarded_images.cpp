// Images as the framework makes them, in other memory: what is defined here comes before the
// framework's own, for colour, depth, textures, masks and read-backs alike.
//
//   | tables of rows | no access | pixels .............. | no access |
//
// Pages are used again for later images, so that no image costs a call to the system.
#include "tests/differential/guarded_images.h"

#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "host/image.h"

namespace {

const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
using Size = std::pair<std::size_t, std::size_t>;  // bytes of the tables and of the pixels
std::map<Size, std::vector<void*>> unused;
std::map<void*, Size> in_use;
std::string call;
bool next_begins_at_guard = false;

std::size_t whole_pages(std::size_t bytes) {
  return (bytes + page - 1) / page * page;
}

void* memory_of(Size size) {
  std::vector<void*>& ready = unused[size];
  if (ready.empty()) {
    const std::size_t bytes = size.first + size.second + 2 * page;
    void* made = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (made == MAP_FAILED) throw std::bad_alloc();
    mprotect(made, size.first, PROT_READ | PROT_WRITE);
    mprotect(static_cast<char*>(made) + size.first + page, size.second, PROT_READ | PROT_WRITE);
    ready.push_back(made);
  }
  void* const memory = ready.back();
  ready.pop_back();
  in_use[memory] = size;
  return memory;
}

void end_by_signal(int) {
  const bool written = write(STDOUT_FILENO, call.data(), call.size()) > 0;
  _exit(written ? 1 : 3);
}

}  // namespace

void fuzz::guard_images_of(std::uint64_t seed) {
  call = "seed " + std::to_string(seed) + " touches memory outside an image\n";
  next_begins_at_guard = seed % 2 != 0;
  std::signal(SIGSEGV, end_by_signal);
}

KT_Shared_Image_Data::KT_Shared_Image_Data(std::int32_t its_width, std::int32_t its_height,
                                           KT_Image_Format its_format, std::int32_t its_row_bytes,
                                           const void* pixels)
    : width(its_width), height(its_height), row_bytes(its_row_bytes), format(its_format) {
  const auto lines = static_cast<std::size_t>(height), stride = static_cast<std::size_t>(row_bytes);
  const std::size_t bytes = lines * stride;
  const Size size{whole_pages(2 * lines * sizeof *rows), whole_pages(bytes)};
  scan_lines = static_cast<std::uint8_t**>(memory_of(size));
  rows = scan_lines + lines;
  std::uint8_t* first = reinterpret_cast<std::uint8_t*>(scan_lines) + size.first + page;
  next_begins_at_guard = !next_begins_at_guard;
  if (next_begins_at_guard) first += size.second - bytes;
  for (std::size_t i = 0; i < lines; ++i) scan_lines[i] = rows[lines - 1 - i] = first + i * stride;
  if (pixels)
    std::memcpy(first, pixels, bytes);
  else
    std::memset(first, 0, bytes);
}

void KD_ReleaseMemory(void* block) {
  const auto found = in_use.find(block);
  if (found == in_use.end()) return std::free(block);
  unused[found->second].push_back(block);
  in_use.erase(found);
}
