// The system's date, time and currency formats, and the clock that report headings show.
#include "error_number.hpp"
#include "platform/core/system_formats.hpp"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace qr {
namespace {

using test::errorNumberOf;

// Sets an environment variable for one test and puts the old value back.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name)) {
            m_old = old;
        }
        set(value);
    }
    ~ScopedEnv() { set(m_old ? m_old->c_str() : nullptr); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

  private:
    void set(const char* value) {
        if (value) {
            ::setenv(m_name, value, 1);
        } else {
            ::unsetenv(m_name);
        }
    }
    const char* m_name;
    std::optional<std::string> m_old;
};

TEST(SystemFormats, DatesAndTimesFollowTheLocale) {
    struct Case {
        const char* locale;
        const char* date;
        const char* time;
        const char* timeWithSeconds;
    };
    const Case cases[] = {
        {"en_US", "1/5/2024", "3:04 PM", "3:04:05 PM"},
        {"en_US.UTF-8", "1/5/2024", "3:04 PM", "3:04:05 PM"},
        {"de_DE", "05.01.2024", "15:04", "15:04:05"},
        {"en_GB", "05/01/2024", "15:04", "15:04:05"},
        {"C", "1/5/2024", "3:04 PM", "3:04:05 PM"},
    };
    Date date = Date::fromParts(2024, 1, 5, 15, 4, 5);
    for (const Case& c : cases) {
        SystemFormats formats(c.locale);
        EXPECT_EQ(formats.shortDate(date), c.date) << c.locale;
        EXPECT_EQ(formats.shortTime(date), c.time) << c.locale;
        EXPECT_EQ(formats.longTime(date), c.timeWithSeconds) << c.locale;
    }
    EXPECT_EQ(SystemFormats("en_US").shortDate(Date::fromParts(1999, 12, 31)), "12/31/1999");
}

TEST(SystemFormats, CurrencyUsesTheLocaleWithAMinusInFront) {
    SystemFormats us("en_US");
    struct Case {
        std::int64_t ticks;
        const char* text;
    };
    const Case cases[] = {
        {12345000, "$1,234.50"}, {-30000, "-$3.00"}, {0, "$0.00"},
        {10050, "$1.01"},        {-10, "$0.00"},     {12345678901230000, "$1,234,567,890,123.00"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(us.currency(Currency::fromTicks(c.ticks)), c.text) << c.ticks;
    }
    EXPECT_EQ(us.currency(2.675), "$2.68"); // rounded on the decimal value
    EXPECT_EQ(us.currency(-1234.5), "-$1,234.50");
    EXPECT_EQ(SystemFormats("de_DE").currency(-1234.5), "-1.234,50\u00a0€");
    EXPECT_EQ(SystemFormats("ja_JP").currency(1234.5), "￥1,235");
    // The same formats in Excel's syntax, for numbers written to a workbook.
    EXPECT_EQ(us.currencyExcelPattern(), "$#,##0.00");
    EXPECT_EQ(SystemFormats("de_DE").currencyExcelPattern(), "#,##0.00\"\u00a0€\"");
    EXPECT_EQ(SystemFormats("ja_JP").currencyExcelPattern(), "\"￥\"#,##0");
    EXPECT_EQ(errorNumberOf([&] { us.currency(1.0 / 0.0); }), 6);
}

TEST(SystemFormats, LocaleComesFromTheEnvironmentUnlessNamed) {
    {
        ScopedEnv all("LC_ALL", "de_DE.UTF-8");
        EXPECT_EQ(SystemFormats().localeName(), "de_DE");
    }
    {
        ScopedEnv all("LC_ALL", nullptr);
        ScopedEnv lang("LANG", "en_GB.UTF-8");
        EXPECT_EQ(SystemFormats().localeName(), "en_GB");
    }
    {
        ScopedEnv all("LC_ALL", "C.UTF-8");
        EXPECT_EQ(SystemFormats().localeName(), "en_US");
    }
    {
        ScopedEnv all("LC_ALL", nullptr);
        ScopedEnv lang("LANG", nullptr);
        EXPECT_EQ(SystemFormats().localeName(), "en_US");
    }
    EXPECT_EQ(SystemFormats("de_DE").localeName(), "de_DE");
    EXPECT_EQ(errorNumberOf([] { SystemFormats("xx_YY"); }), 999);
}

TEST(SystemFormats, ProcessWideFormatsCanBeReplaced) {
    SystemFormats saved = systemFormats();
    setSystemFormats(SystemFormats("de_DE"));
    EXPECT_EQ(systemFormats().localeName(), "de_DE");
    setSystemFormats(SystemFormats("en_US"));
    EXPECT_EQ(systemFormats().currency(Currency::fromTicks(-30000)), "-$3.00");
    setSystemFormats(saved);
}

TEST(Clock, PinnedThenSourceDateEpochThenSystemClock) {
    ScopedEnv epoch("SOURCE_DATE_EPOCH", "1704467045");
    Date::Parts p = Clock::now().parts();
    EXPECT_EQ(p.year, 2024);
    EXPECT_EQ(p.month, 1);
    EXPECT_EQ(p.day, 5);
    EXPECT_EQ(p.hour, 15);
    EXPECT_EQ(p.second, 5);

    Clock::pin(Date::fromParts(2001, 2, 3, 4, 5, 6));
    EXPECT_EQ(Clock::now(), Date::fromParts(2001, 2, 3, 4, 5, 6));
    Clock::unpin();
    EXPECT_EQ(Clock::now().parts().year, 2024);

    {
        ScopedEnv bad("SOURCE_DATE_EPOCH", "yesterday");
        EXPECT_EQ(errorNumberOf([] { Clock::now(); }), 999);
    }
    {
        ScopedEnv none("SOURCE_DATE_EPOCH", nullptr);
        EXPECT_GE(Clock::now().parts().year, 2024);
    }
}

} // namespace
} // namespace qr
