// Error, Currency, Date and Variant: the value types every other part of the system carries.
#include "error_number.hpp"
#include "platform/core/currency.hpp"
#include "platform/core/date.hpp"
#include "platform/core/error.hpp"
#include "platform/core/variant.hpp"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace qr {
namespace {

using test::errorNumberOf;

TEST(Error, RuntimeErrorsCarryTheClassicNumbersAndTexts) {
    struct Case {
        Error error;
        int number;
        const char* description;
    };
    const Case cases[] = {
        {Error::typeMismatch(), 13, "Type mismatch"},
        {Error::overflow(), 6, "Overflow"},
        {Error::invalidUseOfNull(), 94, "Invalid use of Null"},
        {Error::objectNotSet(), 91, "Object variable or With block variable not set"},
        {Error::subscriptOutOfRange(), 9, "Subscript out of range"},
        {Error::invalidCall(), 5, "Invalid procedure call or argument"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.error.number(), c.number) << c.description;
        EXPECT_EQ(c.error.description(), c.description);
        EXPECT_STREQ(c.error.what(), c.description);
        EXPECT_EQ(c.error.source(), "PrintReports");
    }
    Error own = Error::component("QuarvexReports.PrintService", "Job name is missing");
    EXPECT_EQ(own.number(), 999);
    EXPECT_EQ(own.source(), "QuarvexReports.PrintService");
    EXPECT_EQ(Error::overflow("FinalGlassAR").source(), "FinalGlassAR");
}

TEST(Currency, ParsesDecimalTextExactlyAndRoundsHalvesToEven) {
    struct Case {
        const char* text;
        std::int64_t ticks;
    };
    const Case cases[] = {
        {"12", 120000},
        {"-1234.5678", -12345678},
        {"0.1", 1000},
        {"+7.25", 72500},
        {".5", 5000},
        {"0.00025", 2},
        {"0.00035", 4},
        {"-0.00025", -2},
        {"0.000251", 3},
        {"1.5e2", 1500000},
        {"2.5E-3", 25},
        {"000123.4500", 1234500},
        {"922337203685477.5807", std::numeric_limits<std::int64_t>::max()},
        {"-922337203685477.5808", std::numeric_limits<std::int64_t>::min()},
    };
    for (const Case& c : cases) {
        auto parsed = Currency::parseDecimal(c.text);
        ASSERT_TRUE(parsed.has_value()) << c.text;
        EXPECT_EQ(parsed->ticks(), c.ticks) << c.text;
    }
    for (const char* bad : {"", "abc", "1.2.3", "$5", "1,000", " 5", "5 ", "-", ".", "1e"}) {
        EXPECT_FALSE(Currency::parseDecimal(bad).has_value()) << bad;
    }
    EXPECT_EQ(errorNumberOf([] { Currency::parseDecimal("922337203685477.5808"); }), 6);
}

TEST(Currency, DecimalTextKeepsOnlyTheDigitsThatMatter) {
    struct Case {
        std::int64_t ticks;
        const char* text;
    };
    const Case cases[] = {
        {125000, "12.5"},
        {-30000, "-3"},
        {1, "0.0001"},
        {0, "0"},
        {-5, "-0.0005"},
        {12345678, "1234.5678"},
        {std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Currency::fromTicks(c.ticks).toDecimalText(), c.text);
    }
}

TEST(Currency, FromDoubleRoundsAtTheFourthDecimalAndRefusesWhatDoesNotFit) {
    EXPECT_EQ(Currency::fromDouble(1.23456).ticks(), 12346);
    EXPECT_EQ(Currency::fromDouble(-1.23456).ticks(), -12346);
    EXPECT_EQ(Currency::fromDouble(0.1).ticks(), 1000);
    EXPECT_EQ(Currency::fromDouble(0.00025).ticks(), 2); // 2.5 ticks: to the even neighbour
    EXPECT_EQ(Currency::fromDouble(0.00035).ticks(), 4);
    EXPECT_EQ(errorNumberOf([] { Currency::fromDouble(1e16); }), 6);
    EXPECT_EQ(errorNumberOf([] { Currency::fromDouble(std::nan("")); }), 6);
}

TEST(Currency, SumsAreExactWhereDoublesDrift) {
    Currency total;
    double drifting = 0;
    for (int i = 0; i < 100000; ++i) {
        total += Currency::fromDouble(0.07);
        drifting += 0.07;
    }
    EXPECT_EQ(total, Currency::fromTicks(7000 * Currency::kScale));
    EXPECT_NE(drifting, 7000.0);
    EXPECT_EQ((Currency::fromDouble(0.3) - Currency::fromDouble(0.1)).ticks(), 2000);

    Currency top = Currency::fromTicks(std::numeric_limits<std::int64_t>::max());
    Currency bottom = Currency::fromTicks(std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(errorNumberOf([&] { (void)(top + Currency::fromTicks(1)); }), 6);
    EXPECT_EQ(errorNumberOf([&] { (void)(bottom - Currency::fromTicks(1)); }), 6);
    EXPECT_LT(Currency::fromTicks(-1), Currency());
}

TEST(Date, SerialsCountDaysFromTheLastDaysOf1899) {
    struct Case {
        int year, month, day, hour, minute, second;
        double serial;
    };
    const Case cases[] = {
        {1899, 12, 30, 0, 0, 0, 0.0},    {1899, 12, 31, 0, 0, 0, 1.0},
        {1900, 1, 1, 0, 0, 0, 2.0},      {1900, 3, 1, 0, 0, 0, 61.0},
        {1970, 1, 1, 0, 0, 0, 25569.0},  {2024, 1, 5, 0, 0, 0, 45296.0},
        {2024, 1, 5, 12, 0, 0, 45296.5}, {2024, 2, 29, 18, 0, 0, 45351.75},
        {1899, 12, 29, 6, 0, 0, -1.25}, // before the epoch the time still counts forward
        {100, 1, 1, 0, 0, 0, -657434.0}, {9999, 12, 31, 0, 0, 0, 2958465.0},
    };
    for (const Case& c : cases) {
        Date date = Date::fromParts(c.year, c.month, c.day, c.hour, c.minute, c.second);
        EXPECT_DOUBLE_EQ(date.serial, c.serial) << c.year << "-" << c.month << "-" << c.day;
        Date::Parts p = date.parts();
        EXPECT_EQ(p.year, c.year);
        EXPECT_EQ(p.month, c.month);
        EXPECT_EQ(p.day, c.day);
        EXPECT_EQ(p.hour, c.hour);
        EXPECT_EQ(p.minute, c.minute);
        EXPECT_EQ(p.second, c.second);
    }
}

TEST(Date, RefusesDatesThatDoNotExist) {
    struct Case {
        int year, month, day, hour, minute, second;
    };
    const Case cases[] = {
        {2023, 2, 29, 0, 0, 0}, {1900, 2, 29, 0, 0, 0}, {2024, 4, 31, 0, 0, 0},
        {2024, 13, 1, 0, 0, 0}, {2024, 0, 1, 0, 0, 0},  {99, 12, 31, 0, 0, 0},
        {10000, 1, 1, 0, 0, 0}, {2024, 1, 1, 24, 0, 0}, {2024, 1, 1, 0, 60, 0},
        {2024, 1, 1, 0, 0, -1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(errorNumberOf(
                      [&] { Date::fromParts(c.year, c.month, c.day, c.hour, c.minute, c.second); }),
                  5)
            << c.year << "-" << c.month << "-" << c.day << " " << c.hour << ":" << c.minute;
    }
}

TEST(Date, UnixSecondsAndRoundingToTheSecond) {
    EXPECT_DOUBLE_EQ(Date::fromUnixSeconds(0).serial, 25569.0);
    EXPECT_DOUBLE_EQ(Date::fromUnixSeconds(86400 + 21600).serial, 25570.25);
    EXPECT_DOUBLE_EQ(Date::fromUnixSeconds(-21600).serial, 25568.75);
    Date::Parts p = Date::fromUnixSeconds(1704467045).parts(); // 2024-01-05 15:04:05 UTC
    EXPECT_EQ(p.year, 2024);
    EXPECT_EQ(p.day, 5);
    EXPECT_EQ(p.hour, 15);
    EXPECT_EQ(p.minute, 4);
    EXPECT_EQ(p.second, 5);

    Date::Parts carried = Date{45296.9999999}.parts(); // 23:59:59.99 shows as the next day
    EXPECT_EQ(carried.day, 6);
    EXPECT_EQ(carried.hour, 0);
    EXPECT_EQ(errorNumberOf([] { Date{std::nan("")}.parts(); }), 6);
}

TEST(Variant, KnowsItsTypeAndHandsOutOnlyThatType) {
    struct Case {
        Variant value;
        VarType type;
        const char* name;
        bool numeric;
    };
    const Case cases[] = {
        {Variant(), VarType::Empty, "Empty", false},
        {Variant::null(), VarType::Null, "Null", false},
        {Variant(true), VarType::Boolean, "Boolean", false},
        {Variant(std::int16_t(5)), VarType::Integer, "Integer", true},
        {Variant(5), VarType::Long, "Long", true},
        {Variant(2.5f), VarType::Single, "Single", true},
        {Variant(2.5), VarType::Double, "Double", true},
        {Variant(Currency::fromTicks(25000)), VarType::Currency, "Currency", true},
        {Variant(Date{45296.0}), VarType::Date, "Date", false},
        {Variant("text"), VarType::String, "String", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.value.type(), c.type) << c.name;
        EXPECT_STREQ(typeName(c.value.type()), c.name);
        EXPECT_EQ(c.value.isNumeric(), c.numeric) << c.name;
        EXPECT_EQ(c.value.isEmpty(), c.type == VarType::Empty);
        EXPECT_EQ(c.value.isNull(), c.type == VarType::Null);
        // Exactly one direct accessor works; the others are Type mismatch.
        int working = 0;
        for (int number :
             {errorNumberOf([&] { c.value.asBoolean(); }),
              errorNumberOf([&] { c.value.asInteger(); }), errorNumberOf([&] { c.value.asLong(); }),
              errorNumberOf([&] { c.value.asSingle(); }),
              errorNumberOf([&] { c.value.asDouble(); }),
              errorNumberOf([&] { c.value.asCurrency(); }),
              errorNumberOf([&] { c.value.asDate(); }),
              errorNumberOf([&] { c.value.asString(); })}) {
            EXPECT_TRUE(number == 0 || number == 13);
            working += number == 0;
        }
        bool holdsValue = c.type != VarType::Empty && c.type != VarType::Null;
        EXPECT_EQ(working, holdsValue ? 1 : 0) << c.name;
    }
}

TEST(Variant, EqualityIsIdentityOfTypeAndValue) {
    EXPECT_EQ(Variant::null(), Variant::null());
    EXPECT_NE(Variant::null(), Variant());
    EXPECT_NE(Variant(1), Variant(1.0));
    EXPECT_NE(Variant(std::int16_t(1)), Variant(1));
    EXPECT_EQ(Variant("a"), Variant(std::string("a")));
    EXPECT_EQ(Variant(2.5).asDouble(), 2.5);
    EXPECT_EQ(Variant("abc").asString(), "abc");
}

} // namespace
} // namespace qr
