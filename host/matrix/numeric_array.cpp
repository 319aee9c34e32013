#include "host/matrix/numeric_array.h"

#include <limits>
#include <stdexcept>

struct txArray_tag
{
    std::vector<unsigned long> dimensions;
    txClassID classID;
    txComplexity complexity;
    std::vector<double> real;
    std::vector<double> imag;
};

namespace matrix
{
void destroyArray(txArray_tag* array)
{
    delete array;
}

const std::vector<unsigned long>& dimensions(const txArray_tag* array)
{
    return array->dimensions;
}

std::size_t numberOfElements(const txArray_tag* array)
{
    return array->real.size();
}

txClassID classID(const txArray_tag* array)
{
    return array->classID;
}

txComplexity complexity(const txArray_tag* array)
{
    return array->complexity;
}

double* realData(txArray_tag* array)
{
    return array->real.data();
}

const double* realData(const txArray_tag* array)
{
    return array->real.data();
}

double* imagData(txArray_tag* array)
{
    return array->complexity == txCOMPLEX ? array->imag.data() : nullptr;
}

namespace detail
{
array_ptr do_create_numeric(span<const unsigned long> dimensions, txClassID classID, txComplexity complexity)
{
    if (classID != txDOUBLE_CLASS)
        throw std::invalid_argument("only double arrays can be created");
    if (complexity != txREAL && complexity != txCOMPLEX)
        throw std::invalid_argument("unknown complexity");

    std::vector<unsigned long> dims(dimensions.begin(), dimensions.end());
    if (dims.size() < 2)
        dims.resize(2, 1);
    std::size_t count = 1;
    for (unsigned long d : dims)
    {
        if (d != 0 && count > std::numeric_limits<std::size_t>::max() / sizeof(double) / d)
            throw std::length_error("array too large");
        count *= d;
    }

    array_ptr array(new txArray_tag{std::move(dims), classID, complexity, {}, {}});
    array->real.assign(count, 0.0);
    if (complexity == txCOMPLEX)
        array->imag.assign(count, 0.0);
    return array;
}
} // namespace detail
} // namespace matrix
