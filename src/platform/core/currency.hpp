#pragma once
// Money as the host stores it: a 64-bit integer count of ten-thousandths. Addition is exact;
// conversion from double rounds half to even at the fourth decimal, as the classic runtime did.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qr {

class Currency {
  public:
    static constexpr std::int64_t kScale = 10000;

    constexpr Currency() = default;
    /// From a raw count of ten-thousandths.
    static constexpr Currency fromTicks(std::int64_t ticks) {
        Currency c;
        c.m_ticks = ticks;
        return c;
    }
    /// From a double, rounded half to even at four decimals; raises Overflow out of range.
    static Currency fromDouble(double value);
    /// Exact parse of decimal text such as "-1234.5678", "12", "0.1" (no grouping, no sign
    /// of currency); more than four decimals round half to even. Empty optional when the
    /// text is not a plain decimal number. Used to read money columns without a double.
    static std::optional<Currency> parseDecimal(std::string_view text);

    constexpr std::int64_t ticks() const { return m_ticks; }
    double toDouble() const { return static_cast<double>(m_ticks) / kScale; }
    /// Plain decimal text with the fewest digits that keep the value ("12.5", "-3", "0.0001").
    std::string toDecimalText() const;

    /// Exact sum and difference; raise Overflow on 64-bit overflow.
    Currency operator+(Currency other) const;
    Currency operator-(Currency other) const;
    Currency& operator+=(Currency other) { return *this = *this + other; }
    Currency& operator-=(Currency other) { return *this = *this - other; }

    constexpr auto operator<=>(const Currency&) const = default;

  private:
    std::int64_t m_ticks = 0;
};

} // namespace qr
