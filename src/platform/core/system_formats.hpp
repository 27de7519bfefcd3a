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
    /// A locale by name ("en_US", "de_DE"); empty means the process's locale (LC_ALL, LANG).
    explicit SystemFormats(const std::string& localeName = {});
    ~SystemFormats();
    SystemFormats(const SystemFormats&);
    SystemFormats& operator=(const SystemFormats&);

    std::string shortDate(Date date) const;
    std::string shortTime(Date date) const;
    /// The system currency format, e.g. "$1,234.50" or "-$3.00" in en_US.
    std::string currency(Currency amount) const;
    std::string currency(double amount) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The clock: now() is SOURCE_DATE_EPOCH when that is set, the system clock otherwise;
/// tests may pin it.
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
