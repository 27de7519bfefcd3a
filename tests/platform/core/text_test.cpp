#include "platform/core/text.hpp"

#include <gtest/gtest.h>

namespace qr {
namespace {

TEST(Text, LowerCaseChangesAsciiCapitalsOnly) {
    EXPECT_EQ(lowerCase("ARMarkup2 Été"), "armarkup2 Été");
    EXPECT_EQ(lowerCase(""), "");
}

TEST(Text, TrimmedTakesOnlyTheGivenCharacters) {
    struct Case {
        const char* text;
        const char* characters;
        const char* expected;
    } cases[] = {
        {"  a b  ", " ", "a b"},     {"\t a \r\n", " \t\r\n", "a"},
        {"\t a \t", " ", "\t a \t"}, // the request parser trims spaces only
        {"    ", " ", ""},           {"", " ", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(trimmed(c.text, c.characters), c.expected) << c.text;
    EXPECT_TRUE(isBlank(" \t\r\n"));
    EXPECT_FALSE(isBlank(" x "));
}

TEST(Text, CaseBlindComparisons) {
    EXPECT_TRUE(equalsIgnoringCase("SQLite:", "sqlite:"));
    EXPECT_FALSE(equalsIgnoringCase("sqlite", "sqlite:"));
    EXPECT_TRUE(startsWithIgnoringCase("ODBC:DSN=x", "odbc:"));
    EXPECT_FALSE(startsWithIgnoringCase("odb", "odbc:"));
    EXPECT_FALSE(startsWithIgnoringCase("odbc;", "odbc:"));
}

TEST(Text, Utf8IsValidOnlyWhenWellFormed) {
    using namespace std::string_literals;
    struct Case {
        std::string text;
        bool valid;
    } cases[] = {
        {"", true},
        {"Plain ASCII text longer than eight bytes", true},
        {"1\" Insulated \xC3\xA9t\xC3\xA9", true},                // é, at and across 8-byte steps
        {"\xE2\x82\xAC \xF0\x9F\x98\x80 \xF4\x8F\xBF\xBF", true}, // €, an emoji, U+10FFFF
        {"nul\0inside"s, true},
        {"caf\xC3", false},               // cut short at the end
        {"caf\xC3 and more text", false}, // lead byte followed by ASCII
        {"stray \x80 continuation", false},
        {"\xC0\x80", false},         // overlong NUL
        {"\xE0\x80\xAF", false},     // overlong slash
        {"\xED\xA0\x80", false},     // a surrogate
        {"\xF4\x90\x80\x80", false}, // above U+10FFFF
        {"\xF5\x80\x80\x80", false},
        {"\xE2\x82 euro missing a byte", false},
        {"eight ok\xFF", false}, // a bad byte right after an ASCII step
    };
    for (const auto& c : cases)
        EXPECT_EQ(isValidUtf8(c.text), c.valid) << c.text;
}

} // namespace
} // namespace qr
