// The parent's half of loading: runs the import in a child, checks what comes back, and says in one
// line what went wrong.
#include "apps/load/loader.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <utility>

#include "apps/common/errors.h"
#include "apps/common/progress.h"
#include "apps/load/child_process.h"
#include "apps/load/image_codec.h"
#include "apps/load/importer.h"
#include "apps/load/mesh_repair.h"
#include "apps/load/texture_importer.h"
#include "apps/load/validation.h"
#include "apps/load/wire.h"

namespace kv {
namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& what,
                         const std::string& hint = {}) {
  throw Failure(Exit_Code::input, path, what, hint);
}

std::string megabytes(std::size_t bytes) {
  return std::to_string(bytes >> 20) + " MB";
}

// What can be said without parsing, in words better than a parser's.
void check_file(const std::string& path, const std::string& kind, const Load_Limits& limits) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) refuse(path, system_words(errno));
  if (S_ISDIR(status.st_mode)) refuse(path, "this is a directory, not a " + kind);
  if (!S_ISREG(status.st_mode)) refuse(path, "this is not a regular file");
  if (status.st_size == 0) refuse(path, "the file is empty");
  if (static_cast<std::size_t>(status.st_size) > limits.memory_bytes)
    refuse(path, "the file is larger than the " + megabytes(limits.memory_bytes) + " allowed",
           "--load-memory raises the limit");
  const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) refuse(path, system_words(errno));
  close(file);
}

[[noreturn]] void refuse_crash(const std::string& path, int signal_number) {
  if (signal_number == SIGKILL) refuse(path, "the loader was stopped from outside");
  refuse(path, "the loader crashed on it (signal " + std::to_string(signal_number) + ")",
         "the file is damaged");
}

void check_end(const std::string& path, const Load_Limits& limits, const Child_Result& result) {
  std::ostringstream seconds;
  seconds << limits.seconds;
  switch (result.end) {
    case Child_End::answered:
      return;
    case Child_End::crashed:
      refuse_crash(path, result.signal);
    case Child_End::out_of_time:
      refuse(path, "loading took longer than the " + seconds.str() + " s allowed",
             "--load-seconds raises the limit");
    case Child_End::out_of_memory:
      refuse(path, "loading needs more than the " + megabytes(limits.memory_bytes) + " allowed",
             "--load-memory raises the limit");
    case Child_End::answer_too_long:
      refuse(path, "the model is too large", "--max-triangles raises the limit");
    case Child_End::broke_off:
      refuse(path, "the loader broke off", "the file is damaged");
  }
  refuse(path, "the loader ended in an unknown way");
}

// The longest answer the importer may send for this many triangles, with room for the small parts.
// A face of n corners counts as n - 2 triangles: there are at most three corners a triangle, each
// with a vertex and an index, and fewer faces.
std::size_t answer_bytes(std::size_t triangles) {
  constexpr std::size_t room = std::size_t{16} << 20;
  return triangles * 3 * (sizeof(Vertex) + 2 * sizeof(std::uint32_t)) +
         most_texels * sizeof(Texel) + room;
}

Loader_Answer run_loader(const std::string& path, const Load_Limits& limits, std::size_t most_bytes,
                         const Child_Job& job) {
  Progress progress("loading " + one_line(path));
  const Child_Limits child_limits{limits.seconds, limits.memory_bytes, most_bytes,
                                  [&] { progress.still_at_it(); }};
  const Child_Result result = run_in_child(child_limits, job);
  check_end(path, limits, result);
  Loader_Answer answer = decode_answer(result.answer);
  if (!answer.refusal.empty()) refuse(path, answer.refusal);
  return answer;
}

// What else may go wrong on the way is a failure of this file, too.
template <class Load>
auto loaded(const std::string& path, const std::string& kind, Load load) {
  try {
    return load();
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    refuse(path, "the " + kind + " does not fit into memory");
  } catch (const std::exception& error) {
    refuse(path, error.what(), "the file is damaged");
  }
}

void send_image(const std::string& path, const Child_Send& send) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> content(std::istreambuf_iterator<char>(file), {});
  try {
    const Image image = decode_image(std::as_bytes(std::span(content)), is_named_tga(path));
    send(encode_image_head());
    send(encode_image(image));
  } catch (const std::runtime_error& error) {
    send(encode_refusal(std::string("the picture ") + error.what() +
                        "; PNG, JPEG and TGA can be read"));
  }
}

}  // namespace

Model load_model(const std::string& path, const Load_Limits& limits, const Load_Choices& choices) {
  check_file(path, "model", limits);
  return loaded(path, "model", [&] {
    const auto import = [&](const Child_Send& send) {
      import_model(path, limits.triangles, choices, send);
    };
    Model model = run_loader(path, limits, answer_bytes(limits.triangles), import).model;
    check_model(model, limits.triangles);
    for (Mesh& mesh : model.meshes) repair_mesh(mesh);
    if (triangle_count(model) == 0 && model.loose.empty())
      refuse(path, "the model has no face, line or point", "there is nothing to draw");
    return model;
  });
}

Image load_image(const std::string& path, const Load_Limits& limits) {
  check_file(path, "picture", limits);
  constexpr std::size_t most_bytes = sizeof(Texel) * largest_image_side * largest_image_side + 1024;
  const auto decode = [&](const Child_Send& send) { send_image(path, send); };
  return loaded(path, "picture",
                [&] { return run_loader(path, limits, most_bytes, decode).image; });
}

}  // namespace kv
