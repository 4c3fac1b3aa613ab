// The loader process and what its parent believes of its answer.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <limits>
#include <stdexcept>

#include "apps/load/child_process.h"
#include "apps/load/validation.h"
#include "apps/load/wire.h"
#include "tests/apps/shapes.h"

namespace {

using namespace kv;
using testing::HasSubstr;

constexpr std::byte some_byte{42};

class Child_Process : public testing::Test {
 protected:
  // Whatever became of it, no child is left.
  void TearDown() override {
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
  }
};

TEST_F(Child_Process, sends_a_long_answer_or_none) {
  std::vector<std::byte> sent(3'000'000);
  for (std::size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<std::byte>(i * 7);
  const Child_Result result = run_in_child({}, [&](const Child_Send& send) {
    for (std::size_t i = 0; i < sent.size(); i += 500'000)
      send(std::span(sent).subspan(i, 500'000));
  });
  EXPECT_EQ(result.end, Child_End::answered);
  EXPECT_EQ(result.answer, sent);
  const Child_Result crash = run_in_child({}, [](const Child_Send& send) {
    send(std::span(&some_byte, 1));
    raise(SIGSEGV);
  });
  // A sanitizer may turn the signal into an exit of its own.
  EXPECT_TRUE(crash.end == Child_End::crashed || crash.end == Child_End::broke_off);
  EXPECT_TRUE(crash.answer.empty());
  EXPECT_EQ(run_in_child({}, [](const Child_Send&) { throw std::runtime_error("x"); }).end,
            Child_End::broke_off);
  EXPECT_EQ(run_in_child({}, [](const Child_Send&) { _exit(9); }).end, Child_End::broke_off);
}

TEST_F(Child_Process, ends_whatever_it_does) {
  const Child_Limits limits{0.3, std::size_t{1} << 30, 1000};
  const Child_Job hangs[] = {[](const Child_Send&) { sleep(1000); },
                             [](const Child_Send& send) {
                               send(std::span(&some_byte, 1));
                               sleep(1000);
                             },
                             [](const Child_Send&) {
                               for (int file = 3; file < 100; ++file)
                                 close(file);  // the answer ends, the process does not
                               sleep(1000);
                             },
                             [](const Child_Send&) {
                               for (volatile bool forever = true; forever;) continue;
                             }};
  for (const Child_Job& job : hangs) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run_in_child(limits, job).end, Child_End::out_of_time);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  }
  const Child_Job endless = [](const Child_Send& send) {
    const std::vector<std::byte> part(300);
    while (true) send(part);
  };
  EXPECT_EQ(run_in_child({10, std::size_t{1} << 30, 1000}, endless).end,
            Child_End::answer_too_long);
  if (!child_memory_is_limited) GTEST_SKIP() << "no memory limit in this build";
  const Child_Job hoarder = [](const Child_Send&) {
    std::vector<std::vector<char>> hoard;
    while (true) hoard.emplace_back(1 << 20);
  };
  EXPECT_EQ(run_in_child({10, std::size_t{256} << 20, 1000}, hoarder).end,
            Child_End::out_of_memory);
}

Bytes sample_answer() {
  Model model = shapes::box({}, {1, 2, 3});
  model.materials[0].texture = 0;
  Bytes bytes = encode_head({model.materials, {"a warning"}, 1, 2});
  const auto add = [&](const Bytes& part) { bytes.insert(bytes.end(), part.begin(), part.end()); };
  add(encode_image(Image(4, 2)));
  add(encode_mesh(model.meshes[0]));
  model.meshes[0].face_sizes = {4, 5, 27};
  add(encode_mesh(model.meshes[0]));
  return bytes;
}

// Wherever the sender breaks off or whatever word of it is damaged, there is an error or a model,
// and no length makes the reader allocate or read beyond what came.
TEST(Wire, trusts_no_byte) {
  const Bytes whole = sample_answer();
  const Model model = decode_answer(whole).model;
  EXPECT_EQ(model.meshes.at(1).face_sizes, (std::vector<std::uint32_t>{4, 5, 27}));
  EXPECT_EQ(model.warnings, std::vector<std::string>{"a warning"});
  EXPECT_EQ(model.textures.at(0).image.height, 2u);
  EXPECT_EQ(decode_answer(encode_refusal("because")).refusal, "because");
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_THROW(decode_answer(std::span(whole).first(size)), std::runtime_error) << size;
  Bytes longer = whole;
  longer.push_back(some_byte);
  EXPECT_THROW(decode_answer(longer), std::runtime_error);
  for (std::size_t at = 0; at + 4 <= whole.size(); at += 4)
    for (const std::byte value : {std::byte{0}, std::byte{1}, std::byte{0x7f}, std::byte{0xff}}) {
      Bytes damaged = whole;
      std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(at), 4, value);
      try {
        Model read = decode_answer(damaged).model;
        check_model(read, 1000);
        for (const Mesh& mesh : read.meshes)
          for (const std::uint32_t index : mesh.indices) ASSERT_LT(index, mesh.vertices.size());
      } catch (const std::runtime_error&) {
      }
    }
}

TEST(Validation, refuses_what_would_be_computed_with) {
  const auto expect_refused = [](auto spoil, const char* words) {
    Model model = shapes::box({}, {1, 1, 1});
    model.materials[0].texture = 0;
    model.textures = {{Image(4, 1), false}};
    EXPECT_NO_THROW(check_model(model, 12));
    spoil(model, model.meshes[0]);
    try {
      check_model(model, 12);
      ADD_FAILURE() << words;
    } catch (const std::runtime_error& error) {
      EXPECT_THAT(error.what(), HasSubstr(words));
    }
  };
  expect_refused([](Model&, Mesh& m) { m.indices.insert(m.indices.end(), {0, 1, 2}); }, "13 tri");
  expect_refused([](Model&, Mesh& m) { m.indices[35] = 8; }, "vertex 8 of 8");
  expect_refused([](Model&, Mesh& m) { m.indices.pop_back(); }, "middle of a face");
  expect_refused([](Model&, Mesh& m) { m.face_sizes = {30, 7}; }, "middle of a face");
  expect_refused([](Model&, Mesh& m) { m.face_sizes = {34, 2}; }, "fewer than three");
  expect_refused([](Model&, Mesh& m) { m.material = 1; }, "material");
  expect_refused([](Model& model, Mesh&) { model.textures.clear(); }, "does not exist");
  expect_refused([](Model& model, Mesh&) { model.textures[0].image = Image(4, 3); }, "sides");
  expect_refused(
      [](Model& model, Mesh&) { model.textures[0].image = Image(2 * largest_texture_side, 1); },
      "sides");
  for (const float number : {HUGE_VALF, -HUGE_VALF, std::nanf("")})
    expect_refused([&](Model&, Mesh& m) { m.vertices[3].position.y = number; }, "finite");
}

TEST(Validation, repairs_colours_and_drops_bad_normals) {
  Model model = shapes::box({}, {1, 1, 1});
  Mesh& mesh = model.meshes[0];
  for (Vertex& v : mesh.vertices) v.normal = {0, 0, 5};
  mesh.has_normals = true;
  mesh.vertices[0].color = {std::nanf(""), -3, 7, 0.5f};
  check_model(model, 1000);
  const Color& color = mesh.vertices[0].color;
  EXPECT_TRUE(color.red == 0 && color.green == 0 && color.blue == 1 &&
              mesh.vertices[1].normal.z == 1);
  for (const Vec3f normal : {Vec3f{0, 0, 0}, Vec3f{0, std::nanf(""), 1}}) {
    mesh.has_normals = true;
    mesh.vertices[5].normal = normal;
    check_model(model, 1000);
    EXPECT_FALSE(mesh.has_normals);
  }
}

}  // namespace
