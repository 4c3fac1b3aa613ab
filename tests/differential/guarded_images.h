// The images of a batch lie amid pages that nothing may touch. A call that does ends the program,
// and its seed is printed.
#pragma once

#include <cstdint>

namespace fuzz {

/// To be called ahead of a call and its images. These begin at a guard and end at one in turn.
void guard_images_of(std::uint64_t seed);

}  // namespace fuzz
