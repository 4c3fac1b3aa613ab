// Pictures by what is seen in them: a letter for the hue at each place.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "tests/apps/program.h"

namespace {

const Words all = {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z", "mapped", "mapped-z"};
const Words direct = {"rgb", "rgb-z", "rgb-alpha", "rgb-alpha-z"};
// All but rgb-alpha-z, whose faces the module draws whole, whatever the clip.
const Words clipped = {"rgb", "rgb-z", "rgb-alpha", "mapped", "mapped-z"};
const Words one = {"rgb-z"};
const std::string samples = "/usr/share/assimp/models/";
constexpr const char* quarters = "30,30 70,30 30,70 70,70";

// Dithered colours show in the mean of some pixels.
std::string hues(const Decoded& picture, const std::string& places) {
  std::string letters;
  for (const std::string& place : split(places)) {
    unsigned x = 0, y = 0;
    std::sscanf(place.c_str(), "%u,%u", &x, &y);
    std::array<int, 3> sum{};
    for (std::uint32_t i = 0; i < 64; ++i)
      for (std::size_t c = 0; c < 3; ++c) sum[c] += picture.at(x - 4 + i % 8, y - 4 + i / 8)[c];
    for (int& channel : sum) channel /= 64;
    letters += hue(sum);
  }
  return letters;
}

int differing_pixels(const Decoded& a, const Decoded& b) {
  int differing = 0;
  for (std::uint32_t i = 0; i < a.width * a.height; ++i)
    differing += a.at(i % a.width, i / a.width) != b.at(i % a.width, i / a.width);
  return differing;
}

class Pictures : public Program {
 protected:
  // A square upright before the viewer, its texture from `from` on, `times` both ways.
  void write_square(const std::string& name, const std::string& map, double times = 1,
                    double from = 0) const {
    std::ostringstream text;
    text << "mtllib " << name << ".mtl\nusemtl skin\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";
    for (const auto& [s, t] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
      text << "vt " << from + s * times << " " << from + t * times << "\n";
    write(name + ".obj", text.str() + "f 1/1 2/2 3/3 4/4\n");
    write(name + ".mtl", "newmtl skin\nKd 1 1 1\nmap_Kd " + map + "\n");
  }
  void write_red(const std::string& name, const std::string& text) const {
    write(name, "mtllib cube.mtl\nusemtl red\n" + text);
  }
  void SetUp() override {
    write_cube();
    write_red("ell.obj",  // of one face: the top right quarter is missing
              "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 1 1 0\nv 1 2 0\nv 0 2 0\nf 1 2 3 4 5 6\n");
    write_red("quad.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n");
    write_sheets();
    write_points("points.bin");
    write_gltf("triangle.gltf", "points.bin");
    // A frame with a hole, its left lower corner cut off.
    write("shape.txt", "# a frame\n10,10 90,10 90,90 40,90 10,60\n\n30 30 70 30 70 70 30 70\n");
    write("paper.png", png_of("kkrbkkwwgmww", 6, 30));
    write("clear.png", png_of("..gg", 2, 30));
    write("tex.png", png_of("rgbm", 2, 16));
    write("odd.png", png_of("rgbm", 2, 37));
    // Two by two texels from the bottom up, blue first.
    write("tex.tga", std::string("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\2\0\30\0", 18) +
                         std::string("\xff\0\0\xff\0\xff\0\0\xff\0\xff\0", 12));
    std::filesystem::create_directory(path("Textures"));
    write("Textures/my skin.png", png_of("rgbm", 2));
    write_square("square", "tex.png");
    write_square("odd", "odd.png");
    write_square("tga", "tex.tga");
    write_square("case", "C:\\art\\My Skin.PNG");
    write_looks();
    write_square("clamped", "-clamp on tex.png", 4, -1.5);
    write_holes();
  }
  // Squares of one material each, facets in colours, points and lines.
  void write_looks() const {
    write("half.png", png_of("kwkw", 2, 16));
    for (const auto& [name, look] :
         {std::pair<std::string, std::string>{"glass", "Kd 1 0 0\nd 0.25"},
          {"lamp", "Kd 0 0 0\nKe 0 1 0"},
          {"glow", "Kd 0 0 0\nmap_Kd half.png\nmap_Ke tex.png"},
          {"moved", "Kd 1 1 1\nmap_Kd -o 0.5 0 -s 1 1 1 tex.png"},
          {"cut", "Kd 1 1 1\nmap_d half.png"}}) {
      write_square(name, "unused.png");
      write(name + ".mtl", "newmtl skin\n" + look + "\n");
    }
    std::string blend = content_of(path("triangle.gltf"));
    blend.replace(blend.find("0.01, 1]}"), 9, "0.01, 0.25]}, \"alphaMode\": \"BLEND\"");
    write("glass.gltf", blend);
    constexpr std::uint16_t object = 0x8000, red = 31, green = 31 << 5, blue = 31 << 10;
    write_stl("facets.stl", "COLOR=\xff", {object, green, blue});
    write_stl("marked.stl", "", {object, object | blue, object | red});
    std::string head = "ply\nformat ascii 1.0\nelement vertex 4\n";
    for (const char* axis : {"x", "y", "z"}) head += std::string("property float ") + axis + "\n";
    for (const char* c : {"red", "green", "blue"})
      head += std::string("property uchar ") + c + "\n";
    write("dots.ply", head +
                          "end_header\n0 0 0 255 0 0\n1 0 0 0 255 0\n1 1 0 0 0 255\n"
                          "0 1 0 255 0 255\n");
    write("loop.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nl 1 2 3 4 1\n");
  }
  // Triangles side by side, the right angle of each at its left below.
  void write_stl(const std::string& name, std::string header,
                 const std::vector<std::uint16_t>& words) const {
    const auto bytes = [](auto number) {
      return std::string(reinterpret_cast<const char*>(&number), sizeof number);
    };
    header.resize(80, '\0');
    if (header[0] == 'C') header[9] = '\xff';  // opaque
    std::string file = header + bytes(static_cast<std::uint32_t>(words.size()));
    float x = 0;
    for (const std::uint16_t word : words) {
      for (const float number : {0.f, 0.f, 1.f, x, 0.f, 0.f, x + 1, 0.f, 0.f, x, 3.f, 0.f})
        file += bytes(number);
      file += bytes(word);
      ++x;
    }
    write(name, file);
  }
  // A square whose texture cuts out two quarters; its first row is at t of 0.
  void write_holes() const {
    write("holes.gltf", R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
      "nodes": [{"mesh": 0}], "meshes": [{"primitives": [{"indices": 2, "material": 0,
        "attributes": {"POSITION": 0, "TEXCOORD_0": 1}}]}],
      "materials": [{"alphaMode": "MASK",
                     "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}}],
      "textures": [{"source": 0}], "images": [{"uri": "my%20holes.png"}],
      "accessors": [
        {"bufferView": 0, "componentType": 5126, "count": 4, "type": "VEC3", "min": [0, 0, 0],
         "max": [1, 1, 0]},
        {"bufferView": 1, "componentType": 5126, "count": 4, "type": "VEC2"},
        {"bufferView": 2, "componentType": 5125, "count": 6, "type": "SCALAR"}],
      "bufferViews": [{"buffer": 0, "byteLength": 48}, {"buffer": 0, "byteOffset": 48,
        "byteLength": 32}, {"buffer": 0, "byteOffset": 80, "byteLength": 24}],
      "buffers": [{"uri": "holes.bin", "byteLength": 104}]})");
    const float numbers[20] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 1, 1, 1, 1, 0, 0, 0};
    const std::uint32_t corners[6] = {0, 1, 2, 0, 2, 3};
    write("holes.bin", std::string(reinterpret_cast<const char*>(numbers), sizeof numbers) +
                           std::string(reinterpret_cast<const char*>(corners), sizeof corners));
    write("my holes.png", png_of("r..m", 2, 16));
  }
};

TEST_F(Pictures, show_the_right_hues) {
  const std::string by_texture = "--texture=nearest --texture=linear";
  const std::string by_all = by_texture + " --perspective-correct --mode=flat --ortho --tile=64";
  const struct {
    const char* line;
    std::string ways;  // each added to the line in its turn
    Words variants;
    const char *places, *seen;
  } rows[] = {
      {"cube.obj", "--azimuth=30 --mode=flat --ortho --distance=0", direct, "50,50", "r"},
      {"sheet.ply --background=#0000ff", "--ortho", one, "50,80 5,5 95,95", "rbb"},
      {"sheet.stl --background=#0000ff --up=y", "--ortho", one, "50,80 5,5 95,5", "wbb"},
      {"sheet.stl --background=#0000ff --elevation=90", "--ortho", one, "50,80 5,5 95,5", "wbb"},
      {"sheet.obj --background=#0000ff --up=-y", "--ortho", one, "50,20 5,95 95,95", "rbb"},
      {"glass.obj --background=#0000ff", "--mode=shaded --mode=flat --polygons", direct, "50,50",
       "b"},
      {"glass.gltf --background=#0000ff", "--mode=shaded --mode=flat", direct, "50,50", "b"},
      {"lamp.obj", "--mode=shaded --mode=flat", all, "50,50", "g"},
      {"glow.obj", "--mode=shaded --mode=flat", all, quarters, "rgbm"},
      {"moved.obj", "--texture=nearest", all, quarters, "grmb"},
      {"cut.obj --background=#00ff00", "--texture=nearest", direct, quarters, "gwgw"},
      {"facets.stl --up=y", "--mode=shaded --mode=flat", one, "10,85 44,85 77,85", "rgb"},
      {"marked.stl --up=y", "--mode=shaded --mode=flat", one, "10,85 44,85 77,85", "wrb"},
      {"dots.ply --point-size=30",
       "--mode=shaded --mode=wireframe --mode=hidden-line --mode=points", all,
       "8,92 92,92 92,8 8,8", "rgbm"},
      {"loop.obj --line-width=12 --background=#0000ff",
       "--mode=shaded --mode=wireframe --mode=points", all, "50,5 5,50 50,50", "wwb"},
      {"triangle.gltf --background=#0000ff", "--ortho", one, "50,80 5,5 95,5", "rbb"},
      {"sheet.obj", "--ortho", one, "20,90 20,20 50,20", "rwr"},
      {"square.obj", by_all, all, quarters, "rgbm"},
      {"square.obj", "--no-textures", one, quarters, "wwww"},
      {"odd.obj", by_texture, one, quarters, "rgbm"},
      {"tga.obj", by_texture, one, quarters, "rgbm"},
      {"case.obj", by_texture, one, quarters, "rgbm"},
      {"clamped.obj", "--texture=nearest", all, quarters, "rgbm"},
      {"holes.gltf --background=#00ff00", by_texture, all, quarters, "rggm"},
      {"ell.obj", "--polygons", all, quarters, "rwrr"},
      {"quad.obj --polygons", "--mode=shaded --tile=64", all, quarters, "rrrr"},
      {"cube.obj --polygons --distance=0", "--azimuth=30", one, "5,5 50,50 95,95", "rrr"},
      {"quad.obj --zoom=3 --size=100x80 --clip=shape.txt", "--mode=shaded --mode=flat --tile=48",
       clipped, "20,17 84,40 50,64 50,40 5,5 15,72 95,75", "rrrwwww"},
      {"cube.obj --zoom=.3 --background=paper.png",  // of which the middle is seen
       "--mode=shaded --clip=circle --opacity=1 --tile=64", all, "5,5 95,5 5,95 95,95 50,50",
       "rbgmr"},
      {"cube.obj --zoom=.3 --background=clear.png", "--ortho", one, "5,5 5,95", "wg"},
  };
  for (const auto& row : rows)
    for (const std::string& way : split(row.ways))
      for (const std::string& variant : row.variants) {
        const std::string line = std::string(row.line) + " " + way + " --variant=" + variant;
        EXPECT_EQ(hues(draw(line), row.places), row.seen) << line;
      }
  write("MY SKIN.png", png_of("bbbb", 2));
  EXPECT_EQ(hues(draw("case.obj"), quarters), "bbbb") << "beside the model comes first";
}

// However faces are cut at the near plane and sorted, they are the same ones.
TEST_F(Pictures, show_the_same_faces_by_all_ways_of_drawing) {
  for (const char* camera : {"--azimuth=30", "--azimuth=20 --elevation=10 --distance=0.2"})
    for (const char* other : {" --polygons", " --variant=rgb", " --variant=rgb --polygons"}) {
      const std::string line = std::string("cube.obj --mode=flat ") + camera;
      const Decoded one_way = draw(line), other_way = draw(line + other);
      EXPECT_LT(differing_pixels(one_way, other_way), 150) << line << other;
    }
}

// Edges are those of faces; triangles would have more.
TEST_F(Pictures, of_polygons_have_no_edges_inside) {
  for (const char* mode : {" --mode=wireframe", " --mode=hidden-line"})
    for (const auto& [model, y] : {std::pair("ell.obj", 55u), {"quad.obj", 10u}}) {
      SCOPED_TRACE(model + std::string(mode));
      const Decoded picture = draw(std::string(model) + " --polygons" + mode);
      int inside = 0, around = 0;
      for (std::uint32_t x = 8; x < 48; ++x)
        for (std::uint32_t row = y; row < 90; ++row)
          inside += picture.at(x, row) != picture.at(0, 0);
      for (std::uint32_t i = 0; i < 100; ++i) around += picture.at(30, i) != picture.at(0, 0);
      EXPECT_EQ(inside, 0);
      EXPECT_EQ(around, 2);
    }
}

TEST_F(Pictures, of_samples_show_their_textures) {
  const std::string model = samples + "glTF2/textureTransform/TextureTransformTest.gltf";
  if (!std::filesystem::exists(model)) GTEST_SKIP() << "the models are not installed";
  for (const char* name : {"OBJ/spider.obj", "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb",
                           "glTF2/BoxTextured-glTF-Embedded/BoxTextured.gltf"}) {
    const Decoded textured = draw(samples + name), plain = draw(samples + name + " --no-textures");
    EXPECT_GT(differing_pixels(textured, plain), 700) << name;
  }
  // Squares with moved, turned and scaled textures; each arrow's tip touches its mark.
  const Decoded picture = draw(model + " --size=700x500");
  EXPECT_EQ(hues(picture, "40,40 260,40"), "gb");
  EXPECT_EQ(picture.at(480, 40)[0], 0);
  for (const auto& [x, y] : {std::pair(95u, 410u), {330u, 330u}, {543u, 370u}})
    EXPECT_EQ(hue(picture.at(x, y)), 'k') << x << " " << y;
}

// More texels than a renderer can count: still each repeat in its place.
TEST_F(Pictures, show_repeats_of_coordinates_far_out) {
  write("tex.png", png_of("rb", 2, 2048));
  write_square("many", "tex.png", 10);
  const Decoded many = draw("many.obj --size=400x100");
  int changes = 0;
  for (std::uint32_t x = 155; x < 245; ++x)
    changes += hue(many.at(x, 50)) != hue(many.at(x + 1, 50));
  EXPECT_NEAR(changes, 19, 1);
}

// One warning for each file that cannot be had, and a checker in a texture's place.
TEST_F(Pictures, show_what_is_left_without_files_that_cannot_be_read) {
  write("../secret.mtl", "newmtl skin\nKd 0 1 0\nroot:x:0\n");
  write("../tex.png", png_of("gggg", 2, 16));
  std::filesystem::create_symlink("../secret.mtl", path("link.mtl"));
  std::filesystem::create_symlink("../tex.png", path("link.png"));
  write("cut.png", png_of("rgbm", 2, 50).substr(0, 60));
  const std::string outside = "lies outside the model's folder and is not read";
  const auto expect_warning = [&](const std::string& model, const std::string& what,
                                  const char* seen) {
    SCOPED_TRACE(what);
    const Outcome outcome = shell("[ -p pipe ] || mkfifo pipe; timeout 20 \"$KVDRAW\" " + model +
                                  " -o out.png --size=100x100 --azimuth=0 --elevation=0");
    EXPECT_EQ(outcome.exit_code, 0);
    EXPECT_EQ(outcome.errors, "kvdraw: " + model + ": warning: " + what + "\n");
    EXPECT_EQ(hues(decode(path("out.png")), "50,50"), seen);
  };
  for (const std::string& name : {std::string("../secret.mtl"), path("../secret.mtl"),
                                  std::string("link.mtl"), std::string("../../../etc/passwd")}) {
    write("m.obj", "mtllib " + name + "\nusemtl skin\nv 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n");
    expect_warning("m.obj", "file '" + name + "' " + outside, "w");
  }
  write("m.obj", "mtllib pipe\nv 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n");
  expect_warning("m.obj", "file 'pipe' is not a regular file and is not read", "w");
  const std::string checker = "; a checker stands in its place";
  for (const auto& [name, what] :
       {std::pair<std::string, std::string>{"gone.png", "is not found beside the model"},
        {"link.png", outside},
        {"/dev/zero", outside},
        {"pipe", "is not a regular file and is not read"}}) {
    write_square("t", name);
    expect_warning("t.obj", "texture '" + name + "' " + what + checker, "m");
  }
  write_square("t", "cut.png");
  const Outcome outcome = run("t.obj --info");
  EXPECT_NE(outcome.output.find("texture 'cut.png' is damaged"), std::string::npos);
}

// Lines win over the face that they border, whatever its slope and their width.
TEST_F(Pictures, of_hidden_lines_hide_no_edge_behind_its_own_face) {
  for (const char* view : {" --azimuth=84 --elevation=3", " --azimuth=30 --elevation=80", ""})
    for (const char* width : {" --line-width=1", " --line-width=5"}) {
      const std::string line = std::string("quad.obj --ortho") + width + view;
      const Decoded hidden = draw(line + " --mode=hidden-line");
      const Decoded wire = draw(line + " --mode=wireframe");
      int missing = 0;
      for (std::uint32_t i = 0; i < 10000; ++i)
        missing += (wire.at(i % 100, i / 100) != wire.at(0, 0)) !=
                   (hidden.at(i % 100, i / 100) != hidden.at(0, 0));
      EXPECT_EQ(missing, 0) << line;
    }
}

// A drum has no edge along its side, but is seen with one on the left and one on the right.
TEST_F(Pictures, of_features_show_outlines) {
  std::ostringstream drum;
  for (int i = 0; i < 24; ++i)
    for (const int y : {0, 2})
      drum << "v " << std::cos(i * 0.2618) << " " << y << " " << std::sin(i * 0.2618) << "\n";
  for (int i = 0; i < 24; ++i) {
    const int a = 2 * i + 1, b = (2 * i + 2) % 48 + 1;
    drum << "f " << a << " " << a + 1 << " " << b + 1 << " " << b << "\n";
  }
  write("drum.obj", drum.str());
  for (const char* mode : {" --mode=wireframe", " --mode=hidden-line"}) {
    const Decoded picture = draw(std::string("drum.obj --ortho --wire=feature") + mode);
    int crossed = 0;
    for (std::uint32_t x = 0; x < 100; ++x) crossed += picture.at(x, 50) != picture.at(0, 0);
    EXPECT_TRUE(crossed >= 2 && crossed <= 4) << mode << " " << crossed;
  }
}

// The module maps in the plane: large faces at a slant go another way by themselves.
TEST_F(Pictures, of_slanted_textures_are_in_perspective) {
  const std::string line = "square.obj --azimuth=75 --distance=0.6 --size=200x200";
  EXPECT_EQ(differing_pixels(draw(line), draw(line + " --perspective-correct")), 0);
}

TEST_F(Pictures, of_models_with_a_stray_vertex_frame_the_rest) {
  write("far.obj", content_of(path("cube.obj")) + "v 1e5 2e5 3e4\nf 1 2 9\n");
  const std::string line = "far.obj -o out.png --size=100x100 --azimuth=0 --elevation=0";
  Outcome outcome = run(line);
  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_NE(outcome.errors.find("warning: 1 of 27 vertices lie far away"), std::string::npos);
  EXPECT_EQ(hues(decode(path("out.png")), "50,50 20,80"), "rr");
  EXPECT_EQ(run(line + " --strict").exit_code, 1);
  for (const auto& [way, why] :
       {std::pair<std::string, std::string>{"--pan=5,0", "lies outside the picture"},
        {"--pan=5,0 --tile=64", "lies outside the picture"},
        {"--opacity=0", "fully transparent"},
        {"--clip=off.txt", "covers no pixel"},
        {"--clip=off.txt --background=paper.png", "covers no pixel"}}) {
    write("off.txt", "0,0 1,0 1,1\n");
    outcome = run("cube.obj --zoom=0.5 --strict -o out.png " + way);
    EXPECT_EQ(outcome.exit_code, 1) << way;
    EXPECT_NE(outcome.errors.find(why), std::string::npos) << outcome.errors;
  }
}

// Switches whose effect is seen in the picture alone: with each of them it is another one.
TEST_F(Pictures, are_others_with_each_switch) {
  write_red("box.obj",  // of three lengths
            "v 0 0 0\nv 1 0 0\nv 1 2 0\nv 0 2 0\nv 0 0 3\nv 1 0 3\nv 1 2 3\nv 0 2 3\nf 4 3 2 1\n"
            "f 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n");
  for (const auto& [base, more] : {std::pair<std::string, std::string>{"", "--pan=0.1,-0.2"},
                                   {"", "--up=z"},
                                   {"", "--zoom=1.5"},
                                   {"", "--elevation=70"},
                                   {"", "--framing=steady"},
                                   {"", "--pattern=66"},
                                   {"--variant=rgb-alpha-z", "--opacity=0.4"},
                                   {"--variant=mapped-z", "--palette=cube3"},
                                   {"--variant=rgb --mode=flat", "--merge"},
                                   {"", "--edges"},
                                   {"--mode=wireframe", "--wire=feature"},
                                   {"--mode=wireframe --variant=rgb", "--antialias"},
                                   {"--mode=wireframe", "--line-width=5"},
                                   {"--mode=wireframe", "--line-pattern=2"},
                                   {"--mode=wireframe --line-width=3", "--outline"}}) {
    const std::string line = "box.obj --azimuth=30 " + base + " ";
    EXPECT_TRUE(draw(line).bytes != draw(line + more).bytes) << more;
  }
}

TEST_F(Pictures, show_what_lies_behind_translucent_faces) {
  write("two.mtl", "newmtl red\nKd 1 0 0\nnewmtl green\nKd 0 1 0\n");
  write("two.obj",
        "mtllib two.mtl\nv -1 -1 1\nv 1 -1 1\nv 0 1 1\nv -1 -1 -1\nv 1 -1 -1\nv 0 1 -1\n"
        "usemtl red\nf 1 2 3\nusemtl green\nf 4 5 6\n");
  for (const std::string azimuth : {"20", "200"}) {
    const auto pixel =
        draw("two.obj --opacity=0.5 --background=#000000 --azimuth=" + azimuth).at(50, 50);
    EXPECT_TRUE(pixel[0] > 40 && pixel[1] > 40) << azimuth;
  }
}

}  // namespace
