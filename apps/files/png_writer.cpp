// Writes 8-bit RGB, row by row, so that a picture need not be in memory as a whole.
#include "apps/files/png_writer.h"

#include <png.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <vector>

#include "apps/common/errors.h"

namespace kv {

// The library leaves its calls by a jump when they fail. Each call is made by a function that has
// nothing to destroy, and the words wait here until the jump is over.
struct Png_Writer::Body {
  png_structp png = nullptr;
  png_infop info = nullptr;
  std::FILE* stream;
  std::string words;

  explicit Body(std::FILE* its_stream) : stream(its_stream) {
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, on_error, on_warning);
    if (png) info = png_create_info_struct(png);
    if (!info) throw std::bad_alloc();
    png_set_write_fn(png, this, write, flush);
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  ~Body() { png_destroy_write_struct(&png, &info); }

  bool begin(png_uint_32 width, png_uint_32 height, png_textp texts, int text_count) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_user_limits(png, width, height);
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_text(png, info, texts, text_count);
    png_write_info(png, info);
    return true;
  }
  bool write_row(const std::uint8_t* pixels) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_write_row(png, pixels);
    return true;
  }
  bool end() {
    if (setjmp(png_jmpbuf(png))) return false;
    png_write_end(png, nullptr);
    return true;
  }
  void check(bool done) const {
    if (!done) throw std::runtime_error(words);
  }

 private:
  [[noreturn]] static void on_error(png_structp png, png_const_charp words) {
    auto& body = *static_cast<Body*>(png_get_error_ptr(png));
    if (body.words.empty()) body.words = words;
    png_longjmp(png, 1);
  }
  static void on_warning(png_structp, png_const_charp) {}
  static void write(png_structp png, png_bytep bytes, png_size_t count) {
    auto& body = *static_cast<Body*>(png_get_io_ptr(png));
    errno = 0;
    if (std::fwrite(bytes, 1, count, body.stream) == count) return;
    body.words = system_words(errno);
    png_error(png, "");
  }
  static void flush(png_structp) {}
};

Png_Writer::Png_Writer(std::FILE* stream, const Size& size, const Png_Notes& notes)
    : body_(std::make_unique<Body>(stream)) {
  std::vector<png_text> texts;
  for (const auto& [key, words] : notes) {
    png_text text{};
    text.compression = PNG_TEXT_COMPRESSION_NONE;
    text.key = const_cast<char*>(key.c_str());  // the library copies both
    text.text = const_cast<char*>(words.c_str());
    texts.push_back(text);
  }
  body_->check(body_->begin(static_cast<png_uint_32>(size.width),
                            static_cast<png_uint_32>(size.height), texts.data(),
                            static_cast<int>(texts.size())));
}

Png_Writer::~Png_Writer() = default;

void Png_Writer::row(const std::uint8_t* pixels) {
  body_->check(body_->write_row(pixels));
}

void Png_Writer::finish() {
  body_->check(body_->end());
}

}  // namespace kv
