// The framework's heap with a watch on it: the test program's own allocation routines stand in
// front of the library's.
#pragma once

namespace watched_heap {

/// Allocations so far.
int allocations();
/// Blocks that were allocated and not released.
int live_blocks();

/// While it lives, allocations are refused after the next `granted` ones.
class Exhausted {
 public:
  explicit Exhausted(int granted);
  Exhausted(const Exhausted&) = delete;
  Exhausted& operator=(const Exhausted&) = delete;
  ~Exhausted();
};

}  // namespace watched_heap
