// Where like members of the family differ: who honours the depth settings, and what becomes of a
// colour's alpha. Each test is a table over all members.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace {

using namespace support;

// Point 0 at the left bottom; on the lowest row all values are those of points 0 and 1.
const std::vector<KT_DCI_Point> corners = {{0, 0, 0}, {10, 0, 0}, {0, 7, 0}};
constexpr int probe_x = 4, probe_y = 0;

struct Member {
  Variant variant;
  Kind kind;
  bool near_flat, clipped, masked, patterned;
};

std::string describe(const Member& m) {
  std::string text = name_of(m.variant);
  text += m.kind == Kind::flat ? " flat" : m.kind == Kind::colorized ? " colorized" : " Gouraud";
  if (m.near_flat) text += " near-flat";
  if (m.clipped) text += " clipped";
  if (m.masked) text += " masked";
  if (m.patterned) text += " patterned";
  return text;
}

template <class Test>
void for_each_member(std::initializer_list<Variant> variants, Test test) {
  for (const Variant variant : variants) {
    for (int bits = 0; bits < 8; ++bits) {
      const bool clipped = bits & 1, masked = bits & 2, patterned = bits & 4;
      if (masked && variant == Variant::rgb_alpha_z) continue;  // it never asks for a mask
      for (const Kind kind : all_kinds) {
        test(Member{variant, kind, false, clipped, masked, patterned});
      }
      test(Member{variant, Kind::gouraud, true, clipped, masked, patterned});
    }
  }
}

/// Draws the triangle by that member in a colour, at a depth.
class Member_Session : public Session {
 public:
  explicit Member_Session(const Member& member)
      : Session({.variant = member.variant, .use_mask = member.masked}), member_(member) {
    if (member.masked)
      display().complex_clip = contour({{-9, -9, 0}, {50, -9, 0}, {50, 50, 0}, {-9, 50, 0}});
    if (member.clipped) display().hard_clip.left = 1;
    // A pattern that leaves the probe alone, or that draws it in the contrast colour.
    if (member.patterned) face().face_pattern = 74;
    face().user_pattern = &pattern_;
  }

  void draw_it(KT_RGB32 drawn, int z, bool contrast = false) {
    material().color = drawn;
    pattern_bits_ = contrast ? 0xFF : 0;
    misc().pattern_options = contrast ? 1 : 0;
    Strip strip = strip_of(corners, drawn);
    if (member_.kind == Kind::gouraud && !member_.near_flat) strip.colors[2].green ^= 0x80;
    strip.single_color = member_.kind == Kind::colorized && single_color;
    for (KT_DCI_Point& p : strip.points) p.z = z;
    draw(*this, member_.clipped ? Layer::int_any : Layer::int_inside, member_.kind, strip);
  }

  bool single_color = true;

 private:
  const Member& member_;
  std::uint8_t pattern_bits_ = 0;
  const KT_User_Pattern pattern_{&pattern_bits_, 8, 1, 1};
};

TEST(Members, HonourTheDepthSettingsByTable) {
  constexpr KT_RGB32 color{30, 60, 90, 255};
  for_each_member({Variant::mapped_z, Variant::rgb_alpha_z, Variant::rgb_z}, [&](const Member& m) {
    SCOPED_TRACE(describe(m));
    const bool own_colors = m.kind == Kind::gouraud && !m.near_flat;
    const bool honours_test = m.variant == Variant::rgb_z && !own_colors && !m.masked;
    const bool honours_write =
        m.variant != Variant::mapped_z && !own_colors && !m.masked && !(m.clipped && m.patterned);
    Member_Session session(m);
    const auto passes = [&](unsigned test, int z) {
      session.set_depth_test(test);
      session.clear(1000);
      session.draw_it(color, z);
      const bool drawn = session.color->touched(probe_x, probe_y);
      EXPECT_EQ(session.depth->touched(probe_x, probe_y), drawn && z != 1000);
      return drawn;
    };
    for (const unsigned plain : {0U, 2U, 3U, 4U, 6U}) {
      EXPECT_TRUE(passes(plain, 999) && passes(plain, 1000) && !passes(plain, 1001)) << plain;
    }
    EXPECT_TRUE(passes(1, 999));
    EXPECT_EQ(passes(1, 1000), !honours_test);
    EXPECT_FALSE(passes(1, 1001));
    EXPECT_EQ(passes(5, 999), !honours_test);
    EXPECT_EQ(passes(5, 1000), !honours_test);
    EXPECT_EQ(passes(5, 1001), honours_test);

    session.set_depth_test(2);
    session.set_depth_write(0);
    session.clear(1000);
    session.draw_it(color, 500);
    EXPECT_TRUE(session.color->touched(probe_x, probe_y));
    EXPECT_EQ(session.depth->at(probe_x, probe_y), honours_write ? 1000U : 500U);
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

Rule ordinary_rule(const Member& m) {
  if (m.masked) return Rule::by_alpha_keeping;
  if (m.clipped || (m.kind == Kind::gouraud && !m.near_flat)) return Rule::by_alpha;
  return Rule::blend;
}

Rule contrast_rule(const Member& m) {
  if (m.masked) return Rule::by_alpha_keeping;
  if (m.clipped) return Rule::by_alpha;
  if (m.variant == Variant::rgb_alpha) return Rule::store;
  return ordinary_rule(m);
}

TEST(Members, TreatAlphaByTable) {
  for_each_member({Variant::rgb_alpha, Variant::rgb_alpha_z}, [&](const Member& m) {
    SCOPED_TRACE(describe(m));
    Member_Session session(m);
    const KT_RGB32 under = KT_RGB32::from_word(session.color->untouched());
    // The scan of one colour of alpha 0 draws nothing at all in `RGB_Alpha`.
    const bool returns_at_once =
        m.variant == Variant::rgb_alpha && !m.clipped && (m.kind == Kind::flat || m.near_flat);
    session.single_color = false;
    for (const int a : {0, 1, 128, 254, 255}) {
      const KT_RGB32 color{30, 60, 190, static_cast<std::uint8_t>(a)};
      session.clear();
      session.draw_it(color, 9);
      const KT_RGB32 expected =
          a == 0 && returns_at_once ? under : mixed(ordinary_rule(m), color, under);
      const auto got = KT_RGB32::from_word(session.color->at(probe_x, probe_y));
      EXPECT_EQ(got.word(), expected.word()) << std::hex << "alpha " << a;
      if (session.depth) {
        EXPECT_TRUE(session.depth->touched(probe_x, probe_y));
      }

      if (!m.patterned) continue;
      session.clear();
      session.material().contrast_color = color;
      session.draw_it({1, 2, 3, 255}, 9, true);
      EXPECT_EQ(session.color->at(probe_x, probe_y), mixed(contrast_rule(m), color, under).word())
          << "contrast colour of alpha " << a;
    }
  });
}

TEST(Members, OneColourOfAlphaZeroDrawsNothing) {
  const KT_RGB32 clear_color{30, 60, 190, 0};
  for (const Variant variant : {Variant::rgb_alpha, Variant::rgb_alpha_z}) {
    const Member member{variant, Kind::colorized, false, false, false, false};
    Member_Session session(member);
    session.draw_it(clear_color, 9);
    EXPECT_EQ(session.color->touched(probe_x, probe_y), variant == Variant::rgb_alpha_z);
    session.single_color = false;
    session.draw_it(clear_color, 9);
    EXPECT_EQ(session.color->at(probe_x, probe_y), 0xFF302010U);  // the alpha byte alone
  }
}

// Merging makes the first colour opaque; a later one keeps its alpha and is blended.
TEST(Members, MergingMakesTheFirstColourOpaque) {
  Session session({.variant = Variant::rgb_alpha, .size = {12, 8}, .force_merge = true});
  session.color->fill(0xFF0F0F0F);
  const Strip strip{{{0, 0, 0}, {8, 0, 0}, {0, 8, 0}, {8, 8, 0}},
                    {{0x3C, 0x3C, 0x3C, 9}, {100, 100, 100, 100}},
                    false};
  draw(session, Layer::int_inside, Kind::colorized, strip);
  EXPECT_EQ(session.color->at(1, 1), 0xFF0C0C0CU);
  const unsigned blended = (100 * 100 + 0x0F * 155) / 255;
  EXPECT_EQ(session.color->at(6, 6), 0xFF000000U | blended * 0x010101U);
}

}  // namespace
