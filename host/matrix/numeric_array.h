#pragma once

#include "host/matrix/span.h"
#include "host/matrix/tx_array.h"

namespace matrix::detail
{
// A numeric array of the given dimensions with all elements 0. At least two dimensions are kept:
// missing ones count as 1 ({} is 1x1, {3} is 3x1). Throws std::invalid_argument for a class other
// than txDOUBLE_CLASS or an unknown complexity, std::length_error if the element count overflows.
array_ptr do_create_numeric(span<const unsigned long> dimensions, txClassID classID, txComplexity complexity);
} // namespace matrix::detail
