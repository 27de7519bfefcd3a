#pragma once
// The system's short date, short time and currency formats, and the clock report headings
// show. Both are injectable so tests pin them: the locale comes from LC_ALL/LANG by default,
// and SOURCE_DATE_EPOCH, when set, fixes the clock.

#include "platform/core/currency.hpp"
#include "platform/core/date.hpp"

#include <memory>
#include <string>

namespace qr {

class SystemFormats {
  public:
    /// A locale by name ("en_US", "de_DE", "en_US.UTF-8"); empty means the process's locale
    /// (LC_ALL, else LANG). "C", "POSIX" and an unset or unknown environment locale mean
    /// en_US, the host's home settings; an unknown explicit name raises Error 999.
    explicit SystemFormats(const std::string& localeName = {});
    ~SystemFormats();
    SystemFormats(const SystemFormats&);
    SystemFormats& operator=(const SystemFormats&);

    /// The locale's short date, with the year in four digits as the classic system showed it
    /// ("1/5/2024" in en_US, "05.01.2024" in de_DE).
    std::string shortDate(Date date) const;
    /// The locale's short time ("3:04 PM" in en_US, "15:04" in de_DE).
    std::string shortTime(Date date) const;
    /// The short time with seconds ("3:04:05 PM"): the time in the general text of a date.
    std::string longTime(Date date) const;
    /// The system currency format, e.g. "$1,234.50" or "-$3.00" in en_US: the locale's
    /// symbol, grouping and number of decimals (rounded half away from zero on the decimal
    /// value), and a minus sign in front of a negative amount rather than parentheses.
    std::string currency(Currency amount) const;
    std::string currency(double amount) const;
    /// The currency format in Excel's number-format syntax, for numbers written to a
    /// workbook: "$#,##0.00" in en_US, the symbol quoted after the amount in de_DE.
    std::string currencyExcelPattern() const;
    /// The locale's name as resolved ("en_US").
    std::string localeName() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The clock: now() is the pinned date when pinned, else SOURCE_DATE_EPOCH (seconds since
/// 1970, shown as UTC wall-clock time) when that is set, else the system clock in local
/// time. A SOURCE_DATE_EPOCH that is not a whole number raises Error 999 naming it. Pinning
/// holds for the whole process.
class Clock {
  public:
    static Date now();
    static void pin(Date date);
    static void unpin();
};

/// The process-wide formats (thread-safe to read; replace only in tests and at start-up).
const SystemFormats& systemFormats();
void setSystemFormats(const SystemFormats& formats);

} // namespace qr
