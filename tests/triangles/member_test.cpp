// Where like members of the family differ: who honours the depth settings, and what becomes of a
// colour's alpha, each as a table over all members.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

struct Member {
  Variant variant;
  Kind kind;
  bool near_flat, clipped, masked, patterned;
  bool shaded() const { return kind == Kind::gouraud && !near_flat; }
};

std::ostream& operator<<(std::ostream& out, const Member& m) {
  return out << describe(m.variant, m.clipped ? Layer::int_any : Layer::int_inside, m.kind)
             << (m.near_flat ? " near-flat" : "") << (m.masked ? " masked" : "")
             << (m.patterned ? " patterned" : "");
}

template <class Test>
void for_each_member(std::initializer_list<Variant> variants, Test test) {
  for (const Variant variant : variants) {
    for (int bits = 0; bits < 8; ++bits) {
      const bool clipped = bits & 1, masked = bits & 2, patterned = bits & 4;
      if (masked && variant == Variant::rgb_alpha_z) continue;  // it never asks for a mask
      for (const Kind kind : all_kinds) test({variant, kind, false, clipped, masked, patterned});
      test({variant, Kind::gouraud, true, clipped, masked, patterned});
    }
  }
}

/// Draws a triangle by one member and looks at a pixel of its lowest row, where all values are
/// those of points 0 and 1.
class Member_Session : public Session {
 public:
  explicit Member_Session(const Member& member)
      : Session({.variant = member.variant, .use_mask = member.masked}), member_(member) {
    if (member.masked) display().complex_clip = contour({{-9, -9, 0}, {50, -9, 0}, {0, 50, 0}});
    if (member.clipped) display().hard_clip.left = 1;
    if (member.patterned) face().face_pattern = 74;
    face().user_pattern = &pattern_;
  }

  /// With `contrast` the pattern is all set bits, in the contrast colour; else all clear.
  void draw_it(KT_RGB32 drawn, int z, bool contrast = false) {
    material().color = drawn;
    pattern_bits_ = contrast ? 0xFF : 0;
    misc().pattern_options = contrast ? 1 : 0;
    Strip strip = strip_of({{0, 0, z}, {10, 0, z}, {0, 7, z}}, drawn);
    if (member_.shaded()) strip.colors[2].green ^= 0x80;
    draw(*this, member_.clipped ? Layer::int_any : Layer::int_inside, member_.kind, strip);
  }
  bool drawn() const { return color->touched(4, 0); }
  std::uint32_t pixel() const { return color->at(4, 0); }

 private:
  const Member& member_;
  std::uint8_t pattern_bits_ = 0;
  const KT_User_Pattern pattern_{&pattern_bits_, 8, 1, 1};
};

TEST(Members, HonourTheDepthSettingsByTable) {
  for_each_member({Variant::mapped_z, Variant::rgb_alpha_z, Variant::rgb_z}, [](const Member& m) {
    SCOPED_TRACE(testing::Message() << m);
    const bool may_honour = !m.shaded() && !m.masked;
    const bool honours_test = may_honour && m.variant == Variant::rgb_z;
    const bool honours_write =
        may_honour && m.variant != Variant::mapped_z && !(m.clipped && m.patterned);
    Member_Session session(m);
    const auto passes = [&](unsigned test, int z) {
      session.set_depth_test(test);
      session.clear(1000);
      session.draw_it({30, 60, 90, 255}, z);
      EXPECT_EQ(session.depth->touched(4, 0), session.drawn() && z != 1000);
      return session.drawn();
    };
    for (const unsigned plain : {0U, 2U, 3U, 4U, 6U}) {
      EXPECT_TRUE(passes(plain, 999) && passes(plain, 1000) && !passes(plain, 1001)) << plain;
    }
    EXPECT_TRUE(passes(1, 999) && !passes(1, 1001));
    EXPECT_EQ(passes(1, 1000), !honours_test);
    EXPECT_EQ(passes(5, 999), !honours_test);
    EXPECT_EQ(passes(5, 1000), !honours_test);
    EXPECT_EQ(passes(5, 1001), honours_test);

    session.set_depth_test(2);
    session.set_depth_write(0);
    session.clear(1000);
    session.draw_it({30, 60, 90, 255}, 500);
    EXPECT_TRUE(session.drawn());
    EXPECT_EQ(session.depth->at(4, 0), honours_write ? 1000U : 500U);
  });
}

enum class Rule { store, blend, by_alpha, by_alpha_keeping };

/// A colour over a pixel by `rule`.
KT_RGB32 mixed(Rule rule, KT_RGB32 s, KT_RGB32 p) {
  if (rule == Rule::store || (rule != Rule::blend && s.alpha == 255)) return s;
  if (rule != Rule::blend && s.alpha == 0) return p;
  const auto channel = [&](int over, int under) {
    return static_cast<std::uint8_t>((over * s.alpha + under * (255 - s.alpha)) / 255);
  };
  return {channel(s.blue, p.blue), channel(s.green, p.green), channel(s.red, p.red),
          rule == Rule::by_alpha_keeping ? p.alpha : std::uint8_t{255}};
}

TEST(Members, TreatAlphaByTable) {
  for_each_member({Variant::rgb_alpha, Variant::rgb_alpha_z}, [](const Member& m) {
    SCOPED_TRACE(testing::Message() << m);
    const Rule rule = m.masked                  ? Rule::by_alpha_keeping
                      : m.clipped || m.shaded() ? Rule::by_alpha
                                                : Rule::blend;
    // The scan of `RGB_Alpha` alone stores the contrast colour as it is.
    const bool scan = m.variant == Variant::rgb_alpha && !m.clipped && !m.masked;
    const Rule contrast_rule = scan ? Rule::store : rule;
    // That scan draws nothing at all when its one colour has alpha 0.
    const bool one_color = m.kind == Kind::flat || m.near_flat;
    Member_Session session(m);
    const KT_RGB32 under = KT_RGB32::from_word(session.color->untouched());
    for (const int a : {0, 1, 128, 254, 255}) {
      const KT_RGB32 color{30, 60, 190, static_cast<std::uint8_t>(a)};
      session.clear();
      session.draw_it(color, 9);
      const bool nothing = a == 0 && scan && one_color;
      EXPECT_EQ(session.pixel(), (nothing ? under : mixed(rule, color, under)).word()) << a;
      EXPECT_TRUE(!session.depth || session.depth->touched(4, 0));
      if (!m.patterned) continue;
      session.clear();
      session.material().contrast_color = color;
      session.draw_it({1, 2, 3, 255}, 9, true);
      EXPECT_EQ(session.pixel(), mixed(contrast_rule, color, under).word()) << a << " contrast";
    }
  });
}

}  // namespace
