// Temporary arrays of a call: up to 64 elements lie on the stack, longer ones are allocated for
// the call and released on every way out.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

namespace zbuffer {

template <class Element, std::size_t on_stack = 64>
class Scratch {
  static_assert(std::is_trivially_destructible_v<Element>);

 public:
  /// `count` elements without a value; a negative count gives none.
  explicit Scratch(std::ptrdiff_t count) : data_(reinterpret_cast<Element*>(stack_)) {
    if (count > static_cast<std::ptrdiff_t>(on_stack)) {
      heap_.reset(new std::byte[static_cast<std::size_t>(count) * sizeof(Element)]);
      data_ = reinterpret_cast<Element*>(heap_.get());
    }
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  Element* data() { return data_; }
  Element& operator[](std::ptrdiff_t i) { return data_[i]; }

 private:
  alignas(Element) std::byte stack_[on_stack * sizeof(Element)];
  std::unique_ptr<std::byte[]> heap_;
  Element* data_;
};

}  // namespace zbuffer
