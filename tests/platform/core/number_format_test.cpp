// The number format patterns of the reports, written as the classic Format wrote them.
#include "error_number.hpp"
#include "platform/core/number_format.hpp"
#include "platform/core/system_formats.hpp"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace qr {
namespace {

using test::errorNumberOf;

struct Case {
    const char* pattern;
    double value;
    const char* text;
};

void expectFormats(const Case* begin, const Case* end) {
    for (const Case* c = begin; c != end; ++c) {
        EXPECT_EQ(NumberFormat::parse(c->pattern).format(c->value), c->text)
            << c->pattern << " with " << c->value;
        EXPECT_EQ(formatNumber(c->value, c->pattern), c->text) << c->pattern << " (cached)";
    }
}

TEST(NumberFormat, AreaPatternsShowNoDigitBeforeThePointBelowOne) {
    const Case cases[] = {
        {"##,###.00", 0.5, ".50"},
        {"##,###.00", 0.0, ".00"},
        {"##,###.00", 1234.5, "1,234.50"},
        {"##,###.00", 12345.678, "12,345.68"},
        {"##,###.00", 1234567.891, "1,234,567.89"},
        {"##,###.00", -0.5, "-.50"},
        {"###,###.00", 0.5, ".50"},
        {"###,###.00", 0.0, ".00"},
        {"###,###.00", 450.75, "450.75"},
        {"###,###.00", 310.5, "310.50"},
        {"###,###.00", 1234567.5, "1,234,567.50"},
        {"##,##0.00", 0.5, "0.50"},
        {"##,##0.00", 12345.5, "12,345.50"},
        {"#,##0.00", 0.5, "0.50"},
        {"#,##0.00", 0.0, "0.00"},
        {"#,##0.00", 7.5, "7.50"},
        {"#,##0.00", 1234.5, "1,234.50"},
        {"#,##0", 3.0, "3"},
        {"#,##0", 0.0, "0"},
        {"#,##0", 1234.5, "1,235"},
        {"#,##0", 2.5, "3"},
        {"#,##0", -2.5, "-3"},
        {"#,##0", 1234567.0, "1,234,567"},
    };
    expectFormats(std::begin(cases), std::end(cases));
}

TEST(NumberFormat, MoneyPatternsPutTheMinusBeforeTheDollar) {
    const Case cases[] = {
        {"$###,###.00", 0.0, "$.00"},
        {"$###,###.00", 0.5, "$.50"},
        {"$###,###.00", 1234.5, "$1,234.50"},
        {"$###,###.00", 1234567.5, "$1,234,567.50"},
        {"$###,###.00", -3.0, "-$3.00"},
        {"$###,###.00", -1234.5, "-$1,234.50"},
        {"$###,###.00", 575.0, "$575.00"},
        {"$###,###.00", 1260.5, "$1,260.50"},
        {"$###,###.00", 2.12, "$2.12"},
        {"$###,###.00", 0.125, "$.13"}, // halves away from zero on the decimal value
        {"$###,###.00", 0.375, "$.38"},
        {"$###,###.00", 2.675, "$2.68"}, // 2.67499.. in binary, 2.675 at 15 digits
        {"$###,###.00", 1.005, "$1.01"},
        {"$###,###.00", 100000.07, "$100,000.07"},
        {"$###,###.00", -0.001, "-$.00"},
        {"$###,###,###.00", 0.0, "$.00"},
        {"$###,###,###.00", 0.5, "$.50"},
        {"$###,###,###.00", 1234.5, "$1,234.50"},
        {"$###,###,###.00", 1234567890.5, "$1,234,567,890.50"},
        {"$###,###,###.00", 1234567890123.5, "$1,234,567,890,123.50"},
        {"$###,###,###.00", -3.0, "-$3.00"},
        {"$##,###.00", 0.0, "$.00"},
        {"$##,###.00", 125.0, "$125.00"},
        {"$#,##0.00", 0.0, "$0.00"},
        {"$#,##0.00", 0.5, "$0.50"},
        {"$#,##0.00", 1234.5, "$1,234.50"},
        {"$#,##0.00", -3.0, "-$3.00"},
        {"$###,##0.00", 0.0, "$0.00"},
        {"$###,##0.00", 0.07, "$0.07"},
        {"$###,##0.00", 98765.4321, "$98,765.43"},
        {"$###,###,##0.00", 0.0, "$0.00"},
        {"$###,###,##0.00", 12345678.9, "$12,345,678.90"},
    };
    expectFormats(std::begin(cases), std::end(cases));
}

TEST(NumberFormat, OptionalDecimalsPercentAndTheInchMark) {
    const Case cases[] = {
        {"#,##0.00##", 1.5, "1.50"},
        {"#,##0.00##", 1.234, "1.234"},
        {"#,##0.00##", 1.23456, "1.2346"},
        {"#,##0.00##", 0.0, "0.00"},
        {"#,##0.00##", 1234.00001, "1,234.00"},
        {"#,##0.0000", 1.5, "1.5000"},
        {"#,##0.0000", 0.00005, "0.0001"},
        {"0%", 0.25, "25%"},
        {"0%", 0.125, "13%"},
        {"0%", 0.285, "29%"},
        {"0%", 1.0, "100%"},
        {"0%", 0.0, "0%"},
        {"0%", -0.5, "-50%"},
        {"0.#####\"", 0.25, "0.25\""},
        {"0.#####\"", 1.0, "1.\""},
        {"0.#####\"", 0.123456, "0.12346\""},
        {"0.#####\"", 0.1875, "0.1875\""},
        {"0.#####\"", 0.0, "0.\""},
        {"\"Page  3 of  \"#", 12.0, "Page  3 of  12"},
        {"\"Page  12 of  \"#", 140.0, "Page  12 of  140"},
        {"#", 0.0, ""},
    };
    expectFormats(std::begin(cases), std::end(cases));
}

TEST(NumberFormat, SectionsLiteralsScalingAndExponents) {
    const Case cases[] = {
        {"0.00;(0.00);\"zero\"", 5.0, "5.00"},
        {"0.00;(0.00);\"zero\"", -3.0, "(3.00)"},
        {"0.00;(0.00);\"zero\"", 0.0, "zero"},
        {"0.00;(0.00)", 0.0, "0.00"},
        {"0.00;;", -3.0, "-3.00"},
        {"0.00;;", 0.0, "0.00"},
        {"###-####", 5551234.0, "555-1234"},
        {"0.00 \"sq ft\"", 12.5, "12.50 sq ft"},
        {"0.00 sq ft", 12.5, "12.50 sq ft"},
        {"0.00\\%", 0.5, "0.50%"},
        {"\\#0", 7.0, "#7"},
        {".00", 12.5, "12.50"},
        {"#,##0,", 1234567.0, "1,235"},
        {"0,.0", 1234567.0, "1234.6"},
        {"0.00E+00", 1234.5, "1.23E+03"},
        {"0.00E+00", 0.000123, "1.23E-04"},
        {"0.00E+00", 0.0, "0.00E+00"},
        {"0.00E+00", 9.999, "1.00E+01"},
        {"0.00E+00", -1234.5, "-1.23E+03"},
        {"0.0e-0", 1234.0, "1.2e3"},
        {"0.0e-0", 0.012, "1.2e-2"},
        {"00.0E+0", 1234.0, "12.3E+2"},
        {"Fixed", 1234.567, "1234.57"},
        {"Standard", 1234.567, "1,234.57"},
        {"Percent", 0.1234, "12.34%"},
        {"Scientific", 1234.5, "1.23E+03"},
        {"Yes/No", 2.0, "Yes"},
        {"Yes/No", 0.0, "No"},
        {"On/Off", 0.0, "Off"},
        {"True/False", -1.0, "True"},
        {"", 0.5, "0.5"},
        {"General Number", 1234.5, "1234.5"},
        {"0", 1e20, "100000000000000000000"},
    };
    expectFormats(std::begin(cases), std::end(cases));
}

TEST(NumberFormat, VariantsKeepTheirOwnPrecision) {
    struct VariantCase {
        Variant value;
        const char* pattern;
        const char* text;
    };
    const VariantCase cases[] = {
        // A Single running total of $100,000.07 has lost its cents.
        {Variant(100000.07f), "$###,###.00", "$100,000.10"},
        {Variant(" 100000.1"), "$###,###.00", "$100,000.10"},
        {Variant(100000.07), "$###,###.00", "$100,000.07"},
        {Variant(Currency::fromTicks(12345000)), "$###,###.00", "$1,234.50"},
        {Variant(Currency::fromTicks(10050)), "$###,###.00", "$1.01"},
        {Variant(std::int16_t(12)), "#,##0", "12"},
        {Variant(1234567), "#,##0", "1,234,567"},
        {Variant(true), "0", "-1"},
        {Variant("$1,234.5"), "#,##0.00", "1,234.50"},
        {Variant("door glass"), "#,##0.00", "door glass"},
        {Variant(""), "#,##0.00", ""},
        {Variant(Date{45296.5}), "0.00", "45296.50"},
        {Variant::null(), "$###,###.00", ""},
        {Variant(), "$###,###.00", ""},
        {Variant::null(), "0;-0;\"zero\";\"none\"", "none"},
        {Variant(0.25f), "", "0.25"},
        {Variant(Currency::fromTicks(125000)), "", "12.5"},
        {Variant("text"), "", "text"},
    };
    for (const VariantCase& c : cases) {
        EXPECT_EQ(NumberFormat::parse(c.pattern).format(c.value), c.text)
            << c.pattern << " with a " << typeName(c.value.type());
        EXPECT_EQ(formatValue(c.value, c.pattern), c.text) << c.pattern << " (cached)";
    }
}

TEST(NumberFormat, NamedCurrencyIsTheSystemCurrency) {
    SystemFormats saved = systemFormats();
    setSystemFormats(SystemFormats("en_US"));
    EXPECT_EQ(formatNumber(-1234.5, "Currency"), "-$1,234.50");
    EXPECT_EQ(formatValue(Variant(Currency::fromTicks(10050)), "currency"), "$1.01");
    // Its Excel form is the system's currency format too, as the locale stands when asked.
    const NumberFormat currency = NumberFormat::parse("Currency");
    EXPECT_EQ(currency.excelPattern(), "$#,##0.00");
    setSystemFormats(SystemFormats("de_DE"));
    EXPECT_EQ(currency.excelPattern(), SystemFormats("de_DE").currencyExcelPattern());
    setSystemFormats(saved);
}

TEST(NumberFormat, RefusesPatternsItCannotApply) {
    const char* bad[] = {".", "0\\", "0.00E+", "0;0;0;0;0", ";0.00"};
    for (const char* pattern : bad) {
        std::string description;
        try {
            NumberFormat::parse(pattern);
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 999);
            EXPECT_EQ(e.source(), "NumberFormat");
            description = e.description();
        }
        EXPECT_NE(description.find(std::string("\"") + pattern + "\""), std::string::npos)
            << "the error names the pattern " << pattern << ": " << description;
    }
    EXPECT_EQ(errorNumberOf([] { formatNumber(1.0 / 0.0, "0.00"); }), 6);
    EXPECT_EQ(errorNumberOf([] { formatNumber(std::nan(""), "0.00"); }), 6);
}

TEST(NumberFormat, ExcelPatternsSayTheSameInExcelsSyntax) {
    struct ExcelCase {
        const char* pattern;
        const char* excel;
    };
    const ExcelCase cases[] = {
        {"##,###.00", "##,###.00"},
        {"$###,###.00", "$###,###.00"},
        {"$#,##0.00", "$#,##0.00"},
        {"#,##0.00##", "#,##0.00##"},
        {"0%", "0%"},
        {"0.#####\"", "0.#####\\\""},
        {"\"Page  3 of  \"#", "\"Page  3 of  \"#"},
        {"0.00 sq ft", "0.00 \\s\\q \\f\\t"},
        {"0.00\\%", "0.00\\%"},
        {"0.00;;", "0.00;-0.00;0.00"},
        {"0;(0);\"zero\";\"none\"", "0;(0);\"zero\""},
        {"0.00E+00", "0.00E+00"},
        {"", "General"},
        {"Fixed", "0.00"},
        {"Yes/No", "\"Yes\";\"Yes\";\"No\""},
    };
    for (const ExcelCase& c : cases) {
        EXPECT_EQ(NumberFormat::parse(c.pattern).excelPattern(), c.excel) << c.pattern;
    }
}

TEST(NumberFormat, CopiesShareOneParseAndTheCacheSurvivesManyPatterns) {
    NumberFormat area = NumberFormat::parse("###,###.00");
    NumberFormat copy = area;
    EXPECT_EQ(copy.pattern(), "###,###.00");
    EXPECT_EQ(copy.format(0.5), ".50");
    NumberFormat general;
    EXPECT_EQ(general.format(0.5), "0.5");
    EXPECT_EQ(general.excelPattern(), "General");
    // One page-count pattern per page: far more patterns than the cache keeps.
    for (int page = 1; page <= 1500; ++page) {
        std::string pattern = "\"Page  " + std::to_string(page) + " of  \"#";
        ASSERT_EQ(formatNumber(1500, pattern), "Page  " + std::to_string(page) + " of  1500");
    }
    EXPECT_EQ(formatNumber(0.5, "##,###.00"), ".50");
}

} // namespace
} // namespace qr
