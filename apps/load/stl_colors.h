// The colours that writers of binary STL put into its header and beside each facet.
#pragma once

#include <filesystem>
#include <vector>

#include "apps/common/color.h"

namespace kv {

// One a facet, in the order of the file; empty for a file that is not binary STL.
std::vector<Color> read_stl_colors(const std::filesystem::path& path);

}  // namespace kv
