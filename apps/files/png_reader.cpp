// The library leaves its calls by a jump when they fail. Each call is made by a function that has
// nothing to destroy; its outcome becomes an exception outside.
#include "apps/files/png_reader.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>
#include <vector>

#include "apps/common/errors.h"

namespace kv {
namespace {

struct Close {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Close>;

Stream open_picture(const std::string& path) {
  Stream stream(std::fopen(path.c_str(), "rbe"));
  if (!stream) throw std::runtime_error(system_words(errno));
  std::uint8_t signature[8];
  const std::size_t got = std::fread(signature, 1, sizeof signature, stream.get());
  if (std::ferror(stream.get())) throw std::runtime_error(system_words(errno));
  if (got < sizeof signature || png_sig_cmp(signature, 0, sizeof signature) != 0)
    throw std::runtime_error("this is no PNG picture");
  return stream;
}

}  // namespace

struct Png_Reader::Body {
  static constexpr png_uint_32 longest_side = 1 << 20;

  Stream stream;
  png_structp png = nullptr;
  png_infop info = nullptr;
  bool interlaced = false;
  std::vector<std::uint8_t> whole;  // of an interlaced picture
  std::size_t rows_given = 0;
  std::string words;

  explicit Body(Stream its_stream) : stream(std::move(its_stream)) {
    png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, on_error, on_warning);
    if (png) info = png_create_info_struct(png);
    if (!info) throw std::bad_alloc();
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  ~Body() { png_destroy_read_struct(&png, &info, nullptr); }

  bool begin(Png_Pixels pixels) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_user_limits(png, longest_side, longest_side);
    png_init_io(png, stream.get());
    png_set_sig_bytes(png, 8);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    if (pixels == Png_Pixels::rgb)
      png_set_strip_alpha(png);
    else
      png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    interlaced = png_set_interlace_handling(png) > 1;
    png_read_update_info(png, info);
    return true;
  }
  bool read_row(std::uint8_t* pixels) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_row(png, pixels, nullptr);
    return true;
  }
  bool read_whole(png_bytepp rows) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_image(png, rows);
    return true;
  }
  void deinterlace() {
    const std::size_t row_bytes = png_get_rowbytes(png, info);
    whole.resize(row_bytes * png_get_image_height(png, info));
    std::vector<png_bytep> rows;
    for (std::size_t at = 0; at < whole.size(); at += row_bytes) rows.push_back(&whole[at]);
    check(read_whole(rows.data()));
  }
  void check(bool done) const {
    if (!done) throw std::runtime_error(words);
  }

 private:
  [[noreturn]] static void on_error(png_structp png, png_const_charp words) {
    static_cast<Body*>(png_get_error_ptr(png))->words = words;
    png_longjmp(png, 1);
  }
  static void on_warning(png_structp, png_const_charp) {}
};

Png_Reader::Png_Reader(const std::string& path, Png_Pixels pixels)
    : body_(std::make_unique<Body>(open_picture(path))) {
  body_->check(body_->begin(pixels));
}

Png_Reader::~Png_Reader() = default;

Size Png_Reader::size() const {
  return {static_cast<int>(png_get_image_width(body_->png, body_->info)),
          static_cast<int>(png_get_image_height(body_->png, body_->info))};
}

std::size_t Png_Reader::row_bytes() const {
  return png_get_rowbytes(body_->png, body_->info);
}

std::string Png_Reader::note(const std::string& key) const {
  png_textp texts = nullptr;
  const int count = png_get_text(body_->png, body_->info, &texts, nullptr);
  for (int i = 0; i < count; ++i)
    if (key == texts[i].key && texts[i].text) return texts[i].text;
  return {};
}

void Png_Reader::row(std::uint8_t* pixels) {
  if (!body_->interlaced) return body_->check(body_->read_row(pixels));
  if (body_->whole.empty()) body_->deinterlace();
  std::memcpy(pixels, &body_->whole[row_bytes() * body_->rows_given++], row_bytes());
}

}  // namespace kv
