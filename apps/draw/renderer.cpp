// The life of a renderer. Its frame buffers are made here and not by the framework, which could not
// tell of a lack of memory.
#include "apps/draw/renderer.h"

#include <cstdint>
#include <new>

#include "apps/common/errors.h"

namespace kv {
namespace {

// What the framework says of a module, without the name that the message begins with anyway.
std::string without_name(const std::string& error, const std::string& path) {
  const std::string name = "'" + path + "': ";
  const std::size_t found = error.find(name);
  return found == std::string::npos ? error : error.substr(found + name.size());
}

std::int32_t bytes_a_pixel(KT_Image_Format format) {
  switch (format) {
    case KT_Image_Format::mapped:
      return 1;
    case KT_Image_Format::depth:
      return 2;
    default:
      return 4;
  }
}

}  // namespace

Renderer::Renderer(const std::string& module_path) : module_path_(module_path) {
  std::string error;
  if (!module_.load(module_path_, error))
    fail(without_name(error, module_path_), "--module names another");
  data_ = module_.make_renderer(nullptr);
  if (!data_) fail("the module makes no renderer");
  data_->actions.bind<KT_Action::Create_Frame_Buffer>(this, create_frame_buffer);
}

KT_Option& Renderer::option(const wchar_t* name) const {
  if (KT_Option* const found = data_->option_table().find(KT_String(name))) return *found;
  std::string plain;
  for (const wchar_t* c = name; *c; ++c) plain += static_cast<char>(*c);
  fail("the module has no option '" + plain + "'");
}

void Renderer::establish() {
  if (data_->establish_all() != 0) fail("the module refuses the configuration");
  if (out_of_memory_) throw std::bad_alloc();  // nothing may be drawn without its buffers
}

void Renderer::create_frame_buffer(void* renderer, int width, int height,
                                   const KT_Image_Format* format, KT_Shared_Image* image) {
  image->release();  // first, so that the old and the new one need not fit at once
  try {
    // Multiples of 8, so that dithers are the same in every row and in buffers of every width.
    const std::int32_t row_bytes = (width * bytes_a_pixel(*format) + 7) / 8 * 8;
    *image = KT_Shared_Image(width, height, *format, row_bytes, nullptr, false);
  } catch (const std::bad_alloc&) {
    static_cast<Renderer*>(renderer)->out_of_memory_ = true;
  }
}

void Renderer::fail(const std::string& what, const std::string& hint) const {
  throw Failure(Exit_Code::module, module_path_, what, hint);
}

}  // namespace kv
