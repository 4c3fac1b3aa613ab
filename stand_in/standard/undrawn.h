// The account of what the general routines could not draw.
#pragma once

namespace stand_in {

/// Counts a call of `routine` that drew nothing, and reports it on standard error the first time.
/// `routine` must be a literal.
void report_undrawn(const char* routine);

}  // namespace stand_in
