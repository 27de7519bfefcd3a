#pragma once
// A number as a short run of decimal digits and the position of the decimal point. The text
// conversions, the money type and the number formats all work on this form, so that a value
// is rounded on its decimal digits (as the classic runtime did) and never re-read from a
// double along the way. Internal to the core library.

#include <cstdint>
#include <optional>
#include <string_view>

namespace qr::detail {

struct DecimalDigits {
    static constexpr int kMaxDigits = 40;

    bool negative = false;
    /// Significant digits kept in `digits`; 0 means the value is zero.
    int count = 0;
    /// value = 0.d1 d2 ... dn x 10^pointPos, so pointPos is the number of integer digits.
    int pointPos = 0;
    /// A non-zero digit was dropped beyond kMaxDigits (only for very long text).
    bool sticky = false;
    char digits[kMaxDigits] = {};

    bool isZero() const { return count == 0; }

    /// The double written with `significant` significant digits (15 for Double, 7 for
    /// Single), as the runtime's number-to-text conversion sees it. Requires a finite value.
    static DecimalDigits fromDouble(double value, int significant);
    /// An integer count of 10^-scale units, exactly (Currency: scale 4).
    static DecimalDigits fromScaled(std::int64_t units, int scale);
    /// Plain decimal text: optional sign, digits with an optional point, optional exponent
    /// (e/E/d/D). Empty when the text is anything else.
    static std::optional<DecimalDigits> parse(std::string_view text);

    /// Round to `decimals` places after the point, halves away from zero.
    void roundHalfAway(int decimals);
    /// Round to `decimals` places after the point, halves to the even neighbour.
    void roundHalfEven(int decimals);
    /// Digit at integer power `power` of ten (0 for units, -1 for tenths); '0' outside.
    char digitAt(int power) const;
    /// The value times 10^scale as an integer, rounded half to even; empty on 64-bit
    /// overflow.
    std::optional<std::int64_t> toScaled(int scale) const;
    /// The value as the nearest double.
    double toDouble() const;

  private:
    void normalize();
    void roundAt(int decimals, bool halfEven);
};

/// Number text as the runtime's numeric conversion reads it, down to exact decimal digits:
/// blanks around, parentheses or a sign for negatives, a "$" before or after the sign, ","
/// grouping between digits of the integer part, a point, an exponent. Empty when the text
/// is not a number.
std::optional<DecimalDigits> scanNumberText(std::string_view text);

} // namespace qr::detail
