// Both heaps with a watch on them, the framework's and the language's: the test program's own
// allocation routines come before the libraries', for calls of the module too.
#pragma once

#include <climits>

namespace heap {

long allocated();  ///< blocks that the two heaps gave since the start
long live();       ///< of all, the blocks that have not come back

/// How the framework's heap refuses; the language's always throws.
enum class Refusal { by_null, by_exception };

/// While it lives, allocations after the next `granted` ones are refused: all, or as many as said.
class Exhausted {
 public:
  Exhausted(int granted, Refusal how, long refusals = LONG_MAX);
  Exhausted(const Exhausted&) = delete;
  ~Exhausted();
  bool refused() const;  ///< whether there has been one to refuse
};

}  // namespace heap
