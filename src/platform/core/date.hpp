#pragma once
// A date and time as the classic runtime keeps it: days since 30 December 1899 with the time
// of day as the fraction.

#include <compare>
#include <cstdint>

namespace qr {

struct Date {
    double serial = 0.0;

    /// From a calendar date and time (local, no time zone arithmetic). A date that does not
    /// exist, a year outside 100..9999 or a time outside 00:00:00..23:59:59 raises Invalid
    /// procedure call.
    static Date fromParts(int year, int month, int day, int hour = 0, int minute = 0,
                          int second = 0);
    /// From seconds since 1970-01-01 00:00 UTC, taken as the wall-clock time in UTC.
    static Date fromUnixSeconds(std::int64_t seconds);

    struct Parts {
        int year, month, day, hour, minute, second;
    };
    /// Calendar date and time of day, rounded to the second (a serial that is not a date
    /// raises Overflow).
    Parts parts() const;

    auto operator<=>(const Date&) const = default;
};

} // namespace qr
