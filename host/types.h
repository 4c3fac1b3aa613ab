// Plain values of the contract: points, colours, rectangles, enumerations.
//
// Device coordinates have y pointing up. Rectangles are inclusive on all four sides.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

/// Marks what libkorvel12 exports. It and the modules are built with hidden visibility.
#define KORVEL_EXPORT __attribute__((visibility("default")))

/// A colour of 32 bits: bytes blue, green, red, alpha from the lowest address on.
struct alignas(4) KT_RGB32 {
  std::uint8_t blue = 0;
  std::uint8_t green = 0;
  std::uint8_t red = 0;
  std::uint8_t alpha = 0;

  /// The four bytes as one word, alpha in the highest byte.
  constexpr std::uint32_t word() const { return std::bit_cast<std::uint32_t>(*this); }
  static constexpr KT_RGB32 from_word(std::uint32_t word) { return std::bit_cast<KT_RGB32>(word); }

  friend constexpr bool operator==(const KT_RGB32&, const KT_RGB32&) = default;
};
static_assert(sizeof(KT_RGB32) == 4);

struct KT_Int_XY {
  std::int32_t x = 0;
  std::int32_t y = 0;
  friend constexpr bool operator==(const KT_Int_XY&, const KT_Int_XY&) = default;
};

struct KT_Int_RGB {
  std::int32_t red = 0;
  std::int32_t green = 0;
  std::int32_t blue = 0;
};

/// Device rectangle; all four bounds inclusive, top is the largest y.
struct KT_Int_Rectangle {
  std::int32_t left = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;
  std::int32_t top = 0;
  friend constexpr bool operator==(const KT_Int_Rectangle&, const KT_Int_Rectangle&) = default;
};

/// Point of the `2D` and `DC` actions, in device coordinates; z is a depth, 0 (near) to 65535.
struct KT_Point {
  float x = 0;
  float y = 0;
  float z = 0;
};

/// Point of the `2DI` and `DCI` actions, whole pixels; z is a depth, 0 (near) to 65535.
struct KT_DCI_Point {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t z = 0;
  friend constexpr bool operator==(const KT_DCI_Point&, const KT_DCI_Point&) = default;
};

/// Point of the `2DD` actions; may lie very far from the window.
struct KT_Point_D {
  double x = 0;
  double y = 0;
  double z = 0;
};

/// One record of texture coordinates: s, t and a third component, in units of the whole image.
struct KT_Parameter {
  float s = 0;
  float t = 0;
  float r = 0;
};

struct KT_Vector {
  float x = 0;
  float y = 0;
  float z = 0;

  /// Scales to length 1; a vector of length 0 stays.
  KORVEL_EXPORT void normalize();
};

/// Pixel format of a `KT_Shared_Image`. Any 32-bit value may arrive; only these have a meaning.
enum class KT_Image_Format : std::uint32_t {
  none = 0,
  mapped = 1,       ///< 8 bits a pixel, a palette index
  rgb32 = 2,        ///< `KT_RGB32`
  depth = 3,        ///< 16 bits unsigned, 65535 is farthest
  renderer_own = 7  ///< of a read-back: the renderer's own format
};

enum class KT_Color_System : std::int32_t { mapped = 0, direct = 1 };

/// The 32 bits of `advanced_options`.
struct KT_Advanced_Options {
  static constexpr std::uint32_t antialias_bit = 2;     ///< antialiased polylines
  static constexpr std::uint32_t opaque_image_bit = 4;  ///< images ignore their alpha
  static constexpr std::uint32_t alpha_bit = 8;         ///< blend colours that carry alpha
  static constexpr std::uint32_t edge_bit = 32;         ///< polytriangles are drawn as edges

  std::uint32_t bits = 0;
};

/// Further arguments of an RGB32 image; only the framework's standard routine reads them.
struct KT_Packing;
/// Describes a document to the picture operations; opaque to renderers.
struct KT_Document_Info;
/// A heap of the framework; null selects the default heap.
struct KorvelHeap;
