// Both heaps with a watch on them, the framework's and the language's: the test program's own
// allocation routines come before the libraries', for calls of the module too.
#pragma once

namespace heap {

long allocated();  ///< blocks that the two heaps gave since the start
long live();       ///< of all, the blocks that have not come back

/// How the framework's heap refuses; the language's always throws.
enum class Refusal { by_null, by_exception };

/// While it lives, all allocations after the next `granted` ones are refused.
class Exhausted {
 public:
  Exhausted(int granted, Refusal how);
  Exhausted(const Exhausted&) = delete;
  ~Exhausted();
};

}  // namespace heap
