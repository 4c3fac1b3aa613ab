// Gates: the depth test of a pixel and what a pass writes, as types that a call chooses once.
#pragma once

#include "module/core/fixed_point.h"
#include "module/core/software_z_buffer.h"

namespace zbuffer {

enum class Depth_Test : std::uint8_t { less_equal, less, greater };
enum class Depth_Write : std::uint8_t { on_pass, never };

/// No depth: every pixel passes.
struct No_Gate {
  static constexpr bool tests = false;
};

/// The comparison of a new depth with the stored one, both unsigned 16 bits.
template <Depth_Test test, Depth_Write write>
struct Depth_Gate {
  static constexpr bool tests = true;

  static constexpr bool passes(std::uint16_t depth, std::uint16_t stored) {
    if constexpr (test == Depth_Test::less) return depth < stored;
    if constexpr (test == Depth_Test::greater) return depth > stored;
    return depth <= stored;
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
using Plain_Depth_Gate = Depth_Gate<Depth_Test::less_equal, Depth_Write::on_pass>;

/// How a routine takes one of the two depth settings.
enum class Depth_Setting : std::uint8_t { fixed, by_setting };

/// Calls `draw(gate)` with the gate for the renderer's settings, as far as they are honoured;
/// the fixed forms are less-or-equal and a write on every pass.
template <Depth_Setting test, Depth_Setting write, class Draw>
void with_depth_gate(const Software_Z_Buffer& renderer, Draw draw) {
  const auto with_test = [&](auto chosen) {
    constexpr Depth_Test compare = decltype(chosen)::value;
    if constexpr (write == Depth_Setting::by_setting) {
      if (renderer.zbuffer_write == 0) return draw(Depth_Gate<compare, Depth_Write::never>{});
    }
    draw(Depth_Gate<compare, Depth_Write::on_pass>{});
  };
  if constexpr (test == Depth_Setting::by_setting) {
    if (renderer.zbuffer_test == 1) {
      return with_test(std::integral_constant<Depth_Test, Depth_Test::less>{});
    }
    if (renderer.zbuffer_test == 5) {
      return with_test(std::integral_constant<Depth_Test, Depth_Test::greater>{});
    }
  }
  with_test(std::integral_constant<Depth_Test, Depth_Test::less_equal>{});
}

}  // namespace zbuffer
