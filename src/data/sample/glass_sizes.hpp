#pragma once
// Glass sizes as the host writes them: whole inches and a fraction down to sixteenths
// ("48 1/4", "120 15/16", "36"), and the block sizes a lite is priced by.

#include <string>
#include <string_view>

namespace qr::data::sample {

/// A size text ("48 1/4", "36", "5/8") in sixteenths of an inch; raises Error for other text
/// or a fraction finer than sixteenths.
int sixteenthsOf(std::string_view size);

/// Sixteenths of an inch as size text, the fraction reduced ("48 1/4", "120 15/16", "36").
std::string inchesText(int sixteenths);

/// The block size of one side: the size rounded up to the next even inch, as glass is priced
/// (48 1/4 prices as 50, 50 as 50).
int blockInches(int sixteenths);

} // namespace qr::data::sample
