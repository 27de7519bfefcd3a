#include "reports/common/fraction_formatter.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

struct Case {
    double inches;
    int width;
    int denominator;
    const char* text;
};

TEST(FractionFormatter, PrintsWholeInchesAndReducedFractions) {
    const Case cases[] = {
        {12.375, 0, 64, "12 3/8"},
        {0.5, 0, 64, "1/2"},
        {48, 0, 64, "48"},
        {0, 0, 64, "0"},
        {96.015625, 0, 64, "96 1/64"},
        {35.984375, 0, 64, "35 63/64"},
        {-2.25, 0, 64, "-2 1/4"},
        {-0.75, 0, 64, "-3/4"},
        // Rounded to the nearest 64th, carrying into the whole inches.
        {12.999, 0, 64, "13"},
        {12.008, 0, 64, "12 1/64"},
        {12.007, 0, 64, "12"},
        {-0.001, 0, 64, "0"},
        // Coarser steps on request; a step outside 1..64 is 64ths.
        {12.3, 0, 8, "12 1/4"},
        {12.3, 0, 0, "12 19/64"},
        {12.3, 0, 128, "12 19/64"},
        // Padding for fixed-pitch columns.
        {0.5, 6, 64, "   1/2"},
        {12.375, 3, 64, "12 3/8"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(qr::reports::FractionFormatter{}.ToFractionString(c.inches, c.width,
                                                                     c.denominator),
                  c.text)
            << c.inches << " width " << c.width << " in 1/" << c.denominator;
}

TEST(FractionFormatter, NonNumbersAndHugeLengthsDoNotOverflow) {
    const qr::reports::FractionFormatter formatter;
    EXPECT_EQ(formatter.ToFractionString(std::nan(""), 0, 64), "");
    EXPECT_EQ(formatter.ToFractionString(std::numeric_limits<double>::infinity(), 0, 64), "");
    EXPECT_FALSE(formatter.ToFractionString(1e300, 0, 64).empty());
    EXPECT_EQ(formatter.ToFractionString(-1e300, 0, 64).front(), '-');
}

} // namespace
