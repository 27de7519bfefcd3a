#include "platform/core/date.hpp"

#include "platform/core/error.hpp"

#include <cmath>
#include <string>

namespace qr {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// Day number of 30 December 1899 counted from 1 January 1970.
constexpr std::int64_t kSerialEpochFromUnix = -25569;

// Days from 1970-01-01 to a proleptic Gregorian date (the usual era-based algorithm).
constexpr std::int64_t daysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2 ? 1 : 0;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

struct Civil {
    int year, month, day;
};

constexpr Civil civilFromDays(std::int64_t z) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    const std::int64_t y = static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2 ? 1 : 0);
    return {static_cast<int>(y), static_cast<int>(m), static_cast<int>(d)};
}

constexpr bool isLeap(int y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int daysInMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : kDays[month - 1];
}

// The runtime's serial keeps the day in the integer part and the time of day as a positive
// fraction on either side of the epoch: -1.25 is 29 December 1899, 06:00.
Date fromDaysAndSeconds(std::int64_t serialDay, std::int64_t secondOfDay) {
    double fraction = static_cast<double>(secondOfDay) / kSecondsPerDay;
    double day = static_cast<double>(serialDay);
    return Date{serialDay >= 0 ? day + fraction : day - fraction};
}

} // namespace

Date Date::fromParts(int year, int month, int day, int hour, int minute, int second) {
    // The runtime's dates run from the year 100 to 9999.
    bool valid = year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
                 day <= daysInMonth(year, month) && hour >= 0 && hour <= 23 && minute >= 0 &&
                 minute <= 59 && second >= 0 && second <= 59;
    if (!valid) {
        throw Error::invalidCall();
    }
    std::int64_t serialDay =
        daysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) -
        kSerialEpochFromUnix;
    return fromDaysAndSeconds(serialDay, hour * 3600 + minute * 60 + second);
}

Date Date::fromUnixSeconds(std::int64_t seconds) {
    std::int64_t unixDay = seconds / kSecondsPerDay;
    std::int64_t secondOfDay = seconds % kSecondsPerDay;
    if (secondOfDay < 0) {
        secondOfDay += kSecondsPerDay;
        --unixDay;
    }
    return fromDaysAndSeconds(unixDay - kSerialEpochFromUnix, secondOfDay);
}

Date::Parts Date::parts() const {
    if (!std::isfinite(serial) || std::fabs(serial) > 3e6) {
        throw Error::overflow();
    }
    double wholeDay = std::trunc(serial);
    // Times are shown to the second; round, and let a time of 24:00 become the next day.
    auto secondOfDay =
        static_cast<std::int64_t>(std::llround(std::fabs(serial - wholeDay) * kSecondsPerDay));
    auto day = static_cast<std::int64_t>(wholeDay);
    if (secondOfDay >= kSecondsPerDay) {
        secondOfDay -= kSecondsPerDay;
        ++day;
    }
    Civil civil = civilFromDays(day + kSerialEpochFromUnix);
    auto s = static_cast<int>(secondOfDay);
    return {civil.year, civil.month, civil.day, s / 3600, s / 60 % 60, s % 60};
}

} // namespace qr
