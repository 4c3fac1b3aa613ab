// Both heaps with a watch on them, the framework's and the language's: the test program's own
// allocation routines stand in front of the libraries', for calls of the module too.
#pragma once

#include <ostream>

namespace heap {

/// Blocks of the framework's heap and of the language's.
struct Blocks {
  long framework = 0;
  long language = 0;
  friend bool operator==(const Blocks&, const Blocks&) = default;
  friend Blocks operator-(const Blocks& a, const Blocks& b) {
    return {a.framework - b.framework, a.language - b.language};
  }
  friend std::ostream& operator<<(std::ostream& out, const Blocks& b) {
    return out << b.framework << " of the framework and " << b.language << " of the language";
  }
};

/// Blocks that were allocated since the start.
Blocks allocated();
/// Blocks that were allocated and not given back.
Blocks live();

/// How the framework's heap says no; the language's always throws.
enum class Refusal { by_null, by_exception };

/// While it lives, all allocations after the next `granted` ones are refused.
class Exhausted {
 public:
  Exhausted(int granted, Refusal how);
  Exhausted(const Exhausted&) = delete;
  Exhausted& operator=(const Exhausted&) = delete;
  ~Exhausted();
};

}  // namespace heap
