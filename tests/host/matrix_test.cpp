#include "host/matrix/numeric_array.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

using matrix::detail::do_create_numeric;

TEST(NumericArray, CreatesZeroedDoubleArray)
{
    const unsigned long dims[] = {2, 3};
    matrix::array_ptr array = do_create_numeric(matrix::span<const unsigned long>(dims, 2), txDOUBLE_CLASS, txREAL);
    ASSERT_TRUE(array);
    EXPECT_EQ(matrix::dimensions(array.get()), (std::vector<unsigned long>{2, 3}));
    ASSERT_EQ(matrix::numberOfElements(array.get()), 6u);
    EXPECT_EQ(matrix::classID(array.get()), txDOUBLE_CLASS);
    EXPECT_EQ(matrix::imagData(array.get()), nullptr);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(matrix::realData(array.get())[i], 0.0);

    matrix::realData(array.get())[5] = 9222.0;
    txArray_tag* released = array.release();
    EXPECT_EQ(matrix::realData(static_cast<const txArray_tag*>(released))[5], 9222.0);
    matrix::destroyArray(released);
    matrix::destroyArray(nullptr);
}

TEST(NumericArray, ShapesAndRefusals)
{
    const std::vector<unsigned long> column{4};
    EXPECT_EQ(matrix::dimensions(do_create_numeric(column, txDOUBLE_CLASS, txREAL).get()),
              (std::vector<unsigned long>{4, 1}));
    EXPECT_EQ(matrix::numberOfElements(do_create_numeric({}, txDOUBLE_CLASS, txREAL).get()), 1u);
    const std::vector<unsigned long> empty{3, 0};
    EXPECT_EQ(matrix::numberOfElements(do_create_numeric(empty, txDOUBLE_CLASS, txREAL).get()), 0u);

    const auto complex = do_create_numeric(column, txDOUBLE_CLASS, txCOMPLEX);
    EXPECT_EQ(matrix::complexity(complex.get()), txCOMPLEX);
    ASSERT_NE(matrix::imagData(complex.get()), nullptr);
    EXPECT_EQ(matrix::imagData(complex.get())[3], 0.0);

    EXPECT_THROW(do_create_numeric(column, txClassID(7), txREAL), std::invalid_argument);
    EXPECT_THROW(do_create_numeric(column, txDOUBLE_CLASS, txComplexity(2)), std::invalid_argument);
    const std::vector<unsigned long> huge{1ul << 40, 1ul << 40};
    EXPECT_THROW(do_create_numeric(huge, txDOUBLE_CLASS, txREAL), std::length_error);
}
