// The depth test of a pixel and what a pass writes, as types that a call chooses once.
#pragma once

#include <type_traits>

#include "module/core/fixed_point.h"
#include "module/core/routine.h"
#include "module/core/software_z_buffer.h"

namespace zbuffer {

enum class Comparison : std::uint8_t { less_equal, less, greater };
enum class Depth_Write : std::uint8_t { on_pass, never };

/// Whether a new depth passes against the stored one. Spans compare 16 bits of both, single pixels
/// all 32 bits of the new one, with its sign.
template <class Number>
constexpr bool passes(Comparison comparison, Number depth, Number stored) {
  switch (comparison) {
    case Comparison::less:
      return depth < stored;
    case Comparison::greater:
      return depth > stored;
    case Comparison::less_equal:
      break;
  }
  return depth <= stored;
}

/// The renderer's settings. Any other test than 1 and 5 is less-or-equal.
inline Comparison comparison_setting(const Software_Z_Buffer& renderer) {
  return renderer.zbuffer_test == 1   ? Comparison::less
         : renderer.zbuffer_test == 5 ? Comparison::greater
                                      : Comparison::less_equal;
}
inline Depth_Write write_setting(const Software_Z_Buffer& renderer) {
  return renderer.zbuffer_write == 0 ? Depth_Write::never : Depth_Write::on_pass;
}

/// No depth: every pixel passes.
struct No_Depth_Test {
  static constexpr bool tests = false;
};

template <Comparison comparison, Depth_Write write>
struct Depth_Test {
  static constexpr bool tests = true;

  static constexpr bool passes(std::uint16_t depth, std::uint16_t stored) {
    return zbuffer::passes(comparison, depth, stored);
  }

  /// Tests a running depth at a depth pixel and writes what a pass writes.
  static bool try_pass(std::uint16_t* pixel, Word running) {
    const std::uint16_t depth = Depth::stored(running);
    const bool pass = passes(depth, *pixel);
    *pixel = written(pass, depth, *pixel);
    return pass;
  }

  /// What the depth pixel holds after the test.
  static constexpr std::uint16_t written(bool pass, std::uint16_t depth, std::uint16_t stored) {
    return write == Depth_Write::on_pass && pass ? depth : stored;
  }
};

/// The test that most routines use, whatever the settings.
using Plain_Depth_Test = Depth_Test<Comparison::less_equal, Depth_Write::on_pass>;

/// How a routine takes one of the two depth settings.
enum class Depth_Setting : std::uint8_t { fixed, by_setting };

/// How a routine takes both; fixed are less-or-equal and a write on every pass.
struct Depth_Rule {
  Depth_Setting test;
  Depth_Setting write;
};
inline constexpr Depth_Rule settings_ignored{Depth_Setting::fixed, Depth_Setting::fixed};
inline constexpr Depth_Rule settings_honoured{Depth_Setting::by_setting, Depth_Setting::by_setting};
inline constexpr Depth_Rule test_honoured{Depth_Setting::by_setting, Depth_Setting::fixed};
inline constexpr Depth_Rule write_honoured{Depth_Setting::fixed, Depth_Setting::by_setting};

/// Calls `draw(test)` with the depth test of a variant under `rule` and the renderer's settings.
template <Variant variant, Depth_Rule rule, class Draw>
void with_depth_test(const Software_Z_Buffer& renderer, Draw draw) {
  if constexpr (!has_depth(variant)) {
    draw(No_Depth_Test{});
  } else {
    const auto with_comparison = [&]<Comparison comparison>() {
      if constexpr (rule.write == Depth_Setting::by_setting) {
        if (write_setting(renderer) == Depth_Write::never) {
          return draw(Depth_Test<comparison, Depth_Write::never>{});
        }
      }
      draw(Depth_Test<comparison, Depth_Write::on_pass>{});
    };
    if constexpr (rule.test == Depth_Setting::by_setting) {
      switch (comparison_setting(renderer)) {
        case Comparison::less:
          return with_comparison.template operator()<Comparison::less>();
        case Comparison::greater:
          return with_comparison.template operator()<Comparison::greater>();
        case Comparison::less_equal:
          break;
      }
    }
    with_comparison.template operator()<Comparison::less_equal>();
  }
}

}  // namespace zbuffer
