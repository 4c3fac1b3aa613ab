// Textured models as the program draws them.
#include <fstream>

#include "tests/apps/decoded.h"
#include "tests/apps/program.h"

namespace {

const char* const variants[] = {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z", "mapped", "mapped-z"};
const std::string samples = "/usr/share/assimp/models/";

class Textured : public Program {
 protected:
  // A square upright before the viewer, its texture from 0 to `times` both ways.
  void write_square(const std::string& map, double times = 1, double from = 0) const {
    std::string text = "mtllib square.mtl\nusemtl skin\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";
    for (const auto& [s, t] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
      text +=
          "vt " + std::to_string(from + s * times) + " " + std::to_string(from + t * times) + "\n";
    write("square.obj", text + "f 1/1 2/2 3/3 4/4\n");
    write("square.mtl", "newmtl skin\nKd 1 1 1\nmap_Kd " + map + "\n");
  }

  // Draws from the front, without a word on standard error.
  Decoded draw(const std::string& model, const std::vector<std::string>& more,
               const std::string& size = "100x100") const {
    std::vector<std::string> arguments = {
        model,           "-o",     "out.png", "--module", RENDERER_MODULE, "--azimuth=0",
        "--elevation=0", "--size", size};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    return decode(path("out.png"));
  }

  // The middles of the picture's quarters, left before right and top before bottom. Dithered
  // colours show in the mean of some pixels.
  static std::string quarters(const Decoded& picture) {
    std::string hues;
    for (const std::uint32_t y : {26u, 66u})
      for (const std::uint32_t x : {26u, 66u}) {
        std::array<int, 3> sum{};
        for (std::uint32_t i = 0; i < 64; ++i)
          for (std::size_t c = 0; c < 3; ++c) sum[c] += picture.at(x + i % 8, y + i / 8)[c];
        for (int& channel : sum) channel /= 64;
        hues += hue(sum);
      }
    return hues;
  }
};

TEST_F(Textured, square_stands_upright_in_every_variant_and_by_every_routine) {
  write_square("tex.png");
  write("tex.png", png_of("rgbm", 2, 16));
  for (const char* variant : variants)
    for (const char* how : {"--texture=nearest", "--texture=linear", "--perspective-correct",
                            "--mode=flat", "--ortho", "--tile=64"}) {
      SCOPED_TRACE(std::string(variant) + " " + how);
      EXPECT_EQ(quarters(draw("square.obj", {"--variant", variant, how})), "rgbm");
    }
  EXPECT_EQ(quarters(draw("square.obj", {"--no-textures"})), "wwww");
}

TEST_F(Textured, image_may_have_any_size_and_be_a_tga) {
  write_square("tex.tga");
  // Two by two texels from the bottom up, blue first.
  std::string tga("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\2\0\30\0", 18);
  tga += std::string("\xff\0\0\xff\0\xff\0\0\xff\0\xff\0", 12);
  write("tex.tga", tga);
  EXPECT_EQ(quarters(draw("square.obj", {})), "rgbm");
  write_square("tex.png");
  write("tex.png", png_of("rgbm", 2, 37));
  EXPECT_EQ(quarters(draw("square.obj", {})), "rgbm");
}

TEST_F(Textured, samples_of_all_formats_show_their_textures_in_every_variant) {
  for (const char* model : {"OBJ/spider.obj", "glTF2/BoxTextured-glTF/BoxTextured.gltf",
                            "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb",
                            "glTF2/BoxTextured-glTF-Embedded/BoxTextured.gltf"}) {
    if (!std::filesystem::exists(samples + model)) GTEST_SKIP() << model << " is not installed";
    for (const char* variant : variants) {
      SCOPED_TRACE(std::string(model) + " " + variant);
      const Decoded textured = draw(samples + model, {"--variant", variant});
      const Decoded plain = draw(samples + model, {"--variant", variant, "--no-textures"});
      int differing = 0;
      for (std::uint32_t i = 0; i < 100 * 100; ++i)
        differing += textured.at(i % 100, i / 100) != plain.at(i % 100, i / 100);
      EXPECT_GT(differing, 700);
    }
  }
}

// Squares with moved, turned and scaled textures; each arrow's tip touches its mark.
TEST_F(Textured, gltf_transforms_lead_to_the_right_places) {
  const std::string model = samples + "glTF2/textureTransform/TextureTransformTest.gltf";
  if (!std::filesystem::exists(model)) GTEST_SKIP() << "the model is not installed";
  const Decoded picture = draw(model, {}, "700x500");
  EXPECT_EQ(hue(picture.at(40, 40)), 'g');
  EXPECT_EQ(hue(picture.at(260, 40)), 'b');
  EXPECT_EQ(picture.at(480, 40)[0], 0);
  EXPECT_EQ(hue(picture.at(95, 410)), 'k');
  EXPECT_EQ(hue(picture.at(330, 330)), 'k');
  EXPECT_EQ(hue(picture.at(543, 370)), 'k');
}

TEST_F(Textured, file_that_is_missing_or_damaged_is_one_warning_and_a_checker) {
  write("model.obj",
        "mtllib model.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nvt 0 0\nvt 1 0\nvt 0 1\n"
        "usemtl a\nf 1/1 2/2 3/3\nusemtl b\nf 2/1 4/2 3/3\nusemtl c\nf 1/1 2/2 4/3\n");
  write("model.mtl",
        "newmtl a\nmap_Kd gone.png\nnewmtl b\nmap_Kd gone.png\nnewmtl c\nmap_Kd cut.png\n");
  write("cut.png", png_of("rgbm", 2, 50).substr(0, 60));
  const Outcome outcome =
      run({"model.obj", "-o", "out.png", "--size", "100x100", "--module", RENDERER_MODULE});
  EXPECT_EQ(outcome.exit_code, 0);
  std::istringstream lines(outcome.errors);
  std::vector<std::string> warnings;
  for (std::string line; std::getline(lines, line);) warnings.push_back(line);
  ASSERT_EQ(warnings.size(), 2u) << outcome.errors;
  EXPECT_EQ(warnings[0].find("kvdraw: model.obj: warning: texture 'gone.png' is not found"), 0u);
  EXPECT_EQ(warnings[1].find("kvdraw: model.obj: warning: texture 'cut.png' is damaged"), 0u);
  const Decoded picture = decode(path("out.png"));
  int magenta = 0;
  for (std::uint32_t i = 0; i < 100 * 100; ++i) magenta += hue(picture.at(i % 100, i / 100)) == 'm';
  EXPECT_GT(magenta, 500);
}

TEST_F(Textured, file_is_found_by_its_base_name_in_whatever_case) {
  write_square("C:\\art\\My Skin.PNG");
  std::filesystem::create_directory(path("Textures"));
  write("Textures/my skin.png", png_of("rgbm", 2));
  EXPECT_EQ(quarters(draw("square.obj", {})), "rgbm");
  write("MY SKIN.png", png_of("bbbb", 2));
  EXPECT_EQ(quarters(draw("square.obj", {})), "bbbb") << "beside the model comes first";
}

TEST_F(Textured, coordinates_far_out_show_the_same_repeats) {
  write("tex.png", png_of("rgbm", 2, 512));
  write_square("tex.png", 2);
  const Decoded near = draw("square.obj", {});
  for (const double from : {-3.0, 700.0}) {
    write_square("tex.png", 2, from);
    EXPECT_EQ(draw("square.obj", {}).bytes, near.bytes) << from;
  }
  // More texels than a renderer can count: still each repeat in its place.
  write("tex.png", png_of("rb", 2, 2048));
  write_square("tex.png", 10);
  const Decoded many = draw("square.obj", {}, "400x100");
  int changes = 0;
  for (std::uint32_t x = 155; x < 245; ++x)
    changes += hue(many.at(x, 50)) != hue(many.at(x + 1, 50));
  EXPECT_NEAR(changes, 19, 1);
}

TEST_F(Textured, border_goes_on_where_the_material_clamps) {
  write("tex.png", png_of("rgbm", 2, 8));
  write_square("-clamp on tex.png", 4, -1.5);
  for (const char* variant : variants)
    EXPECT_EQ(quarters(draw("square.obj", {"--variant", variant})), "rgbm") << variant;
}

// What a texture cuts out lets the background be seen, whatever lies behind it in the strip order.
TEST_F(Textured, holes_show_what_is_behind) {
  write("square.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
    "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0}],
    "meshes": [{"primitives": [{"attributes": {"POSITION": 0, "TEXCOORD_0": 1}, "indices": 2,
                                "material": 0}]}],
    "materials": [{"alphaMode": "MASK",
                   "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}}],
    "textures": [{"source": 0}], "images": [{"uri": "my%20skin.png"}],
    "accessors": [{"bufferView": 0, "componentType": 5126, "count": 4, "type": "VEC3",
                   "min": [0, 0, 0], "max": [1, 1, 0]},
                  {"bufferView": 1, "componentType": 5126, "count": 4, "type": "VEC2"},
                  {"bufferView": 2, "componentType": 5125, "count": 6, "type": "SCALAR"}],
    "bufferViews": [{"buffer": 0, "byteLength": 48},
                    {"buffer": 0, "byteOffset": 48, "byteLength": 32},
                    {"buffer": 0, "byteOffset": 80, "byteLength": 24}],
    "buffers": [{"uri": "square.bin", "byteLength": 104}]})");
  // The texture's first row is at t of 0.
  const float numbers[20] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 1, 1, 1, 1, 0, 0, 0};
  const std::uint32_t corners[6] = {0, 1, 2, 0, 2, 3};
  write("square.bin", std::string(reinterpret_cast<const char*>(numbers), sizeof numbers) +
                          std::string(reinterpret_cast<const char*>(corners), sizeof corners));
  write("my skin.png", png_of("r..m", 2, 16));
  for (const char* variant : variants)
    for (const char* filter : {"--texture=nearest", "--texture=linear"}) {
      SCOPED_TRACE(std::string(variant) + " " + filter);
      EXPECT_EQ(
          quarters(draw("square.gltf", {"--variant", variant, filter, "--background", "#00ff00"})),
          "rggm");
    }
}

}  // namespace
