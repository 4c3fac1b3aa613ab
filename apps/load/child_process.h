// Runs a job that may crash, hang or eat all memory in a process of its own.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace kv {

// The address sanitizer reserves terabytes of addresses, which the memory limit would refuse.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool child_memory_is_limited = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool child_memory_is_limited = false;
#else
inline constexpr bool child_memory_is_limited = true;
#endif
#else
inline constexpr bool child_memory_is_limited = true;
#endif

struct Child_Limits {
  double seconds = 60;
  std::size_t memory_bytes = std::size_t{4} << 30;
  std::size_t answer_bytes = std::size_t{1} << 30;
  std::function<void()> while_waiting{};  // called now and then until the answer begins to come
};

enum class Child_End {
  answered,  // the job returned; `answer` is all it sent
  crashed,   // a signal ended it, see `signal`
  out_of_time,
  out_of_memory,  // an allocation failed
  answer_too_long,
  broke_off,  // it ended by itself in some other way
};

struct Child_Result {
  Child_End end = Child_End::broke_off;
  int signal = 0;
  std::vector<std::byte> answer;
};

// Sends bytes to the parent; ends the child when the parent no longer listens.
using Child_Send = std::function<void(std::span<const std::byte>)>;
using Child_Job = std::function<void(const Child_Send&)>;

// Forks, so call it while the process has one thread. The job's standard streams lead nowhere and
// it can write no file. Throws std::system_error when no child can be started.
Child_Result run_in_child(const Child_Limits& limits, const Child_Job& job);

}  // namespace kv
