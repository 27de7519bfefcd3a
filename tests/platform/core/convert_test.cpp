// The classic conversions: what each kind of value turns into, and where it fails.
#include "error_number.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/decimal_digits.hpp"
#include "platform/core/system_formats.hpp"

#include <bit>
#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <optional>
#include <random>

namespace qr {
namespace {

using test::errorNumberOf;

constexpr int kNone = 0;
constexpr int kTypeMismatch = 13;
constexpr int kOverflow = 6;
constexpr int kNull = 94;

TEST(Convert, ToBooleanReadsWordsAndNumbers) {
    struct Case {
        Variant value;
        bool expected;
        int error;
    };
    const Case cases[] = {
        {Variant("true"), true, kNone},
        {Variant("TRUE"), true, kNone},
        {Variant(" False "), false, kNone},
        {Variant("fAlSe"), false, kNone},
        {Variant("0"), false, kNone},
        {Variant("-1"), true, kNone},
        {Variant("0.0"), false, kNone},
        {Variant(" 2.5"), true, kNone},
        {Variant(0.0), false, kNone},
        {Variant(0.001), true, kNone},
        {Variant(std::int16_t(-1)), true, kNone},
        {Variant(Currency()), false, kNone},
        {Variant(Currency::fromTicks(1)), true, kNone},
        {Variant(), false, kNone},
        {Variant(true), true, kNone},
        {Variant("yes"), false, kTypeMismatch},
        {Variant(""), false, kTypeMismatch},
        {Variant::null(), false, kNull},
    };
    for (const Case& c : cases) {
        bool result = false;
        EXPECT_EQ(errorNumberOf([&] { result = toBoolean(c.value); }), c.error)
            << toText(Variant(typeName(c.value.type())));
        if (c.error == kNone) {
            EXPECT_EQ(result, c.expected) << typeName(c.value.type());
        }
    }
}

TEST(Convert, ToIntegerRoundsHalvesToEvenAndOverflowsPast16Bits) {
    struct Case {
        Variant value;
        int expected;
        int error;
    };
    const Case cases[] = {
        {Variant(2.5), 2, kNone},
        {Variant(3.5), 4, kNone},
        {Variant(-2.5), -2, kNone},
        {Variant(-3.5), -4, kNone},
        {Variant(2.4999), 2, kNone},
        {Variant(2.5f), 2, kNone},
        {Variant(32767.4), 32767, kNone},
        {Variant(32767.5), 0, kOverflow},
        {Variant(-32768.5), -32768, kNone},
        {Variant(-32768.6), 0, kOverflow},
        {Variant(40000), 0, kOverflow},
        {Variant(Currency::fromTicks(25000)), 2, kNone},
        {Variant(Currency::fromTicks(35000)), 4, kNone},
        {Variant(Currency::fromTicks(-25000)), -2, kNone},
        {Variant(Currency::fromTicks(25001)), 3, kNone},
        {Variant("2.5"), 2, kNone},
        {Variant("$1,234"), 1234, kNone},
        {Variant(" 12 "), 12, kNone},
        {Variant(true), -1, kNone},
        {Variant(), 0, kNone},
        {Variant(Date{45296.5}), 45296, kOverflow},
        {Variant(std::nan("")), 0, kOverflow},
        {Variant("abc"), 0, kTypeMismatch},
        {Variant::null(), 0, kNull},
    };
    for (const Case& c : cases) {
        int result = 0;
        EXPECT_EQ(errorNumberOf([&] { result = toInteger(c.value); }), c.error)
            << typeName(c.value.type()) << " -> " << c.expected;
        if (c.error == kNone) {
            EXPECT_EQ(result, c.expected);
        }
    }
}

TEST(Convert, ToLongUsesThe32BitRange) {
    EXPECT_EQ(toLong(Variant(2147483646.5)), 2147483646);
    EXPECT_EQ(toLong(Variant(Date{45296.5})), 45296);
    EXPECT_EQ(toLong(Variant("-70000")), -70000);
    EXPECT_EQ(errorNumberOf([] { toLong(Variant(2147483647.5)); }), kOverflow);
    EXPECT_EQ(errorNumberOf([] { toLong(Variant(Currency::fromDouble(3e9))); }), kOverflow);
}

TEST(Convert, ToSingleKeepsSinglePrecision) {
    float total = 0;
    for (double elevationTotal : {60000.03, 40000.04}) {
        total += toSingle(Variant(elevationTotal));
    }
    // A hundred thousand dollars and seven cents no longer fits in a Single.
    EXPECT_EQ(total, 100000.0703125f);
    EXPECT_EQ(toText(Variant(total)), "100000.1");
    EXPECT_EQ(decimalText(total, true), " 100000.1");
    EXPECT_EQ(toSingle(Variant("$1,234.5")), 1234.5f);
    EXPECT_EQ(toSingle(Variant(Currency::fromTicks(5))), 0.0005f);
    EXPECT_EQ(errorNumberOf([] { toSingle(Variant(1e39)); }), kOverflow);
    EXPECT_EQ(errorNumberOf([] { toSingle(Variant::null()); }), kNull);
}

TEST(Convert, ToDoubleAndToCurrencyFromEveryKind) {
    struct Case {
        Variant value;
        double asDouble;
        std::int64_t ticks;
    };
    const Case cases[] = {
        {Variant(), 0.0, 0},
        {Variant(true), -1.0, -10000},
        {Variant(std::int16_t(-7)), -7.0, -70000},
        {Variant(123456), 123456.0, 1234560000},
        {Variant(0.25f), 0.25, 2500},
        {Variant(1.23456), 1.23456, 12346},
        {Variant(Currency::fromTicks(12345)), 1.2345, 12345},
        {Variant(Date{45296.5}), 45296.5, 452965000},
        {Variant("$1,234.56"), 1234.56, 12345600},
        {Variant("(3.5)"), -3.5, -35000},
        {Variant("0.00025"), 0.00025, 2},
    };
    for (const Case& c : cases) {
        EXPECT_DOUBLE_EQ(toDouble(c.value), c.asDouble) << typeName(c.value.type());
        EXPECT_EQ(toCurrency(c.value).ticks(), c.ticks) << typeName(c.value.type());
    }
    EXPECT_EQ(errorNumberOf([] { toDouble(Variant("12 apples")); }), kTypeMismatch);
    EXPECT_EQ(errorNumberOf([] { toCurrency(Variant("12 apples")); }), kTypeMismatch);
    EXPECT_EQ(errorNumberOf([] { toCurrency(Variant::null()); }), kNull);
    EXPECT_EQ(errorNumberOf([] { toCurrency(Variant("1e20")); }), kOverflow);
    // Money text is read without a double: no binary error at the 17th digit.
    EXPECT_EQ(toCurrency(Variant("92233720368547.7001")).ticks(), 922337203685477001);
}

TEST(Convert, ToTextWritesNumbersAsTheRuntimeDid) {
    struct Case {
        Variant value;
        const char* text;
    };
    const Case cases[] = {
        {Variant(0.5), "0.5"},
        {Variant(12.0), "12"},
        {Variant(-3.25), "-3.25"},
        {Variant(0.1 + 0.2), "0.3"},
        {Variant(1.0 / 3.0), "0.333333333333333"},
        {Variant(2.0 / 3.0), "0.666666666666667"},
        {Variant(123456789012345.0), "123456789012345"},
        {Variant(1e15), "1E+15"},
        {Variant(-1.5e15), "-1.5E+15"},
        {Variant(0.0001), "0.0001"},
        {Variant(0.00001), "1E-05"},
        {Variant(1.25e-10), "1.25E-10"},
        {Variant(-0.0), "0"},
        {Variant(100000.07f), "100000.1"},
        {Variant(0.1f), "0.1"},
        {Variant(12345678.0f), "1.234568E+07"},
        {Variant(std::int16_t(-5)), "-5"},
        {Variant(2147483647), "2147483647"},
        {Variant(Currency::fromTicks(125000)), "12.5"},
        {Variant(true), "True"},
        {Variant(false), "False"},
        {Variant(), ""},
        {Variant("as is "), "as is "},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(toText(c.value), c.text) << typeName(c.value.type());
    }
    EXPECT_EQ(errorNumberOf([] { toText(Variant::null()); }), kNull);
}

TEST(Convert, ToTextWritesDatesInTheSystemFormats) {
    SystemFormats saved = systemFormats();
    setSystemFormats(SystemFormats("en_US"));
    EXPECT_EQ(toText(Variant(Date::fromParts(2024, 1, 5))), "1/5/2024");
    EXPECT_EQ(toText(Variant(Date::fromParts(2024, 1, 5, 15, 4, 5))), "1/5/2024 3:04:05 PM");
    EXPECT_EQ(toText(Variant(Date{0.5})), "12:00:00 PM");
    setSystemFormats(SystemFormats("de_DE"));
    EXPECT_EQ(toText(Variant(Date::fromParts(2024, 1, 5, 15, 4, 5))), "05.01.2024 15:04:05");
    setSystemFormats(saved);
}

TEST(Convert, NumberFromTextAcceptsSignsDollarsGroupingAndExponents) {
    struct Case {
        const char* text;
        std::optional<double> number;
    };
    const Case cases[] = {
        {"12", 12.0},
        {"  12  ", 12.0},
        {"-3.25", -3.25},
        {"+3.25", 3.25},
        {"$1,234.50", 1234.5},
        {"$100,000.10", 100000.1},
        {"-$3.00", -3.0},
        {"$-3", -3.0},
        {"$ 3", 3.0},
        {"(3.00)", -3.0},
        {"($1,000)", -1000.0},
        {" 100000.1", 100000.1},
        {"1,234,567", 1234567.0},
        {"1e3", 1000.0},
        {"1.5D2", 150.0},
        {"2.5E-3", 0.0025},
        {".5", 0.5},
        {"1.", 1.0},
        {"-0", 0.0},
        {"", std::nullopt},
        {"   ", std::nullopt},
        {"abc", std::nullopt},
        {"12%", std::nullopt},
        {"1.2.3", std::nullopt},
        {"$", std::nullopt},
        {"--3", std::nullopt},
        {"-$-3", std::nullopt},
        {"1e", std::nullopt},
        {",5", std::nullopt},
        {"1,", std::nullopt},
        {"1.5,0", std::nullopt},
        {"(3", std::nullopt},
        {"true", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(numberFromText(c.text), c.number) << '"' << c.text << '"';
    }
    EXPECT_EQ(errorNumberOf([] { numberFromText("1e999"); }), kOverflow);
    EXPECT_EQ(numberFromText("1e-999"), 0.0);
}

TEST(Convert, DecimalTextIsTheRuntimesStr) {
    struct Case {
        double value;
        bool leadingBlank;
        const char* text;
    };
    const Case cases[] = {
        {0.5, true, " .5"},
        {0.5, false, ".5"},
        {-0.25, true, "-.25"},
        {12.0, true, " 12"},
        {12.0, false, "12"},
        {0.0, true, " 0"},
        {-3.0, true, "-3"},
        {1234.5, true, " 1234.5"},
        {0.0825, true, " .0825"},
        {450.75, true, " 450.75"},
        {1e15, true, " 1E+15"},
        {0.1 + 0.2, false, ".3"},
        {-1234567.891, false, "-1234567.891"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(decimalText(c.value, c.leadingBlank), c.text) << c.value;
    }
    EXPECT_EQ(decimalText(3, true), " 3");
    EXPECT_EQ(decimalText(2.1f, true), " 2.1"); // a Single, not 2.09999990463257
    EXPECT_EQ(decimalText(static_cast<double>(2.1f), true), " 2.09999990463257");
}

TEST(Convert, RoundHalfEvenIsTheRuntimesRound) {
    struct Case {
        double value;
        int digits;
        double rounded;
    };
    const Case cases[] = {
        {2.125, 2, 2.12},  {2.375, 2, 2.38}, {0.125, 2, 0.12},    {0.375, 2, 0.38},
        {2.5, 0, 2.0},     {3.5, 0, 4.0},    {-2.5, 0, -2.0},     {-2.375, 2, -2.38},
        {0.285, 2, 0.28},  {1.005, 2, 1.0},  {450.75, 2, 450.75}, {1.23456, 4, 1.2346},
        {1e300, 2, 1e300}, {0.0, 2, 0.0},
    };
    for (const Case& c : cases) {
        EXPECT_DOUBLE_EQ(roundHalfEven(c.value, c.digits), c.rounded)
            << c.value << " at " << c.digits;
    }
    // The per-square-foot figure is rounded, then held as a Single.
    float perFoot = static_cast<float>(roundHalfEven(9562.5 / 4500.0, 2));
    EXPECT_EQ(decimalText(perFoot, true), " 2.12");
    EXPECT_EQ(errorNumberOf([] { roundHalfEven(1.5, -1); }), 5);
}

TEST(Convert, DoubleDigitsAreTheExactValueRoundedToTheAskedDigits) {
    // The digits of the exact binary value rounded to `significant` digits, trailing zeros
    // dropped, and the decimal exponent.
    auto rounded = [](double value, int significant) {
        char buf[64];
        auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(value),
                                 std::chars_format::scientific, significant - 1);
        std::string text(buf, res.ptr);
        std::string digits;
        for (char c : text.substr(0, text.find('e')))
            if (c != '.')
                digits += c;
        digits.erase(digits.find_last_not_of('0') + 1);
        return digits + " e" + std::to_string(std::stoi(text.substr(text.find('e') + 1)) + 1);
    };
    auto actual = [](double value, int significant) {
        const auto d = detail::DecimalDigits::fromDouble(value, significant);
        return std::string(d.digits, d.digits + d.count) + " e" + std::to_string(d.pointPos);
    };
    std::vector<double> values = {0.1 + 0.2,
                                  9.9999999999999995,
                                  0.95,
                                  999999999999999.5,
                                  1e15 - 1,
                                  123456789012345.6,
                                  2.675,
                                  1.0000000000000002,
                                  5e-324,
                                  2.2250738585072014e-308,
                                  1e-310,
                                  1.7976931348623157e308,
                                  12.5,
                                  450.75,
                                  4.0 + 36 * 0.75,
                                  0.3,
                                  1e23,
                                  8.589973e9};
    std::mt19937_64 random(20261126);
    for (int i = 0; i < 20000; ++i) {
        values.push_back(std::bit_cast<double>(random()));                  // any bits
        values.push_back(static_cast<double>(random() % 10000000) / 100.0); // prices
        values.push_back((4.0 + (random() % 37) * 0.75) * (random() % 5 + 1) *
                         (12.5 + random() % 11) / 3.0); // areas and totals
    }
    for (double value : values) {
        if (!std::isfinite(value) || value == 0.0)
            continue;
        for (int significant : {15, 7, 1, 6, 14})
            ASSERT_EQ(actual(value, significant), rounded(value, significant))
                << std::hexfloat << value << " to " << significant << " digits";
    }
}

} // namespace
} // namespace qr
