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

} // namespace
} // namespace qr
