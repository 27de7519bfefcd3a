#pragma once
// Lengths in inches as a glazier reads them off a tape: whole inches and a reduced fraction
// ("12 3/8", "1/2", "48"), rounded to the nearest fraction the caller allows (64ths on every
// report that prints lengths).

#include <string>

namespace qr::reports {

class FractionFormatter {
  public:
    /// `inches` rounded to the nearest 1/`denominator` (1 to 64; anything else is taken as 64)
    /// and printed as whole inches, a blank and the reduced fraction. A length under one inch
    /// prints the fraction alone ("1/2"), a whole length the number alone ("48", "0"). A
    /// negative length keeps its sign in front ("-2 1/4"); one that rounds to zero prints "0".
    /// `minimumWidth` pads the text with blanks on the left to at least that many characters
    /// (0: no padding), so right-aligned columns of lengths line up in fixed-pitch output.
    /// A value that is not a finite number prints as the empty string.
    std::string ToFractionString(double inches, int minimumWidth, int denominator) const;
};

} // namespace qr::reports
