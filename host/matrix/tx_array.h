#pragma once

#include <cstddef>
#include <memory>
#include <vector>

// The host's array type, opaque to users: create arrays with matrix::detail::do_create_numeric and
// reach their contents through the functions of namespace matrix.
struct txArray_tag;

// Element class of an array; the host's numbering. Only double arrays are made here.
enum txClassID : int
{
    txUNKNOWN_CLASS = 0,
    txDOUBLE_CLASS = 6,
};

enum txComplexity : int
{
    txREAL = 0,
    txCOMPLEX = 1,
};

namespace matrix
{
// Frees an array; null is ignored.
void destroyArray(txArray_tag* array);

struct array_deleter
{
    void operator()(txArray_tag* array) const { destroyArray(array); }
};

// Owner of an array; release() hands it to the host, which frees it with destroyArray.
using array_ptr = std::unique_ptr<txArray_tag, array_deleter>;

const std::vector<unsigned long>& dimensions(const txArray_tag* array);
std::size_t numberOfElements(const txArray_tag* array);
txClassID classID(const txArray_tag* array);
txComplexity complexity(const txArray_tag* array);

// The elements in column-major order; imagData is null for a real array.
double* realData(txArray_tag* array);
const double* realData(const txArray_tag* array);
double* imagData(txArray_tag* array);
} // namespace matrix
