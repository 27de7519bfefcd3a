#include "reports/common/fraction_formatter.hpp"

#include <cmath>
#include <cstdint>
#include <numeric>

namespace qr::reports {

std::string FractionFormatter::ToFractionString(double inches, int minimumWidth,
                                                int denominator) const {
    if (!std::isfinite(inches)) return {};
    if (denominator < 1 || denominator > 64) denominator = 64;
    // Work in whole units of 1/denominator so rounding happens once. Lengths beyond what a
    // 64-bit count of 64ths holds are not lengths of glass or metal; clamp rather than overflow.
    constexpr double kLimit = 9.0e15;
    double scaled = std::round(std::fabs(inches) * denominator);
    if (scaled > kLimit) scaled = kLimit;
    const auto units = static_cast<std::int64_t>(scaled);
    const std::int64_t whole = units / denominator;
    std::int64_t numerator = units % denominator;
    std::int64_t below = denominator;
    if (numerator != 0) {
        const std::int64_t divisor = std::gcd(numerator, below);
        numerator /= divisor;
        below /= divisor;
    }

    std::string text;
    if (units != 0 && inches < 0) text += '-';
    if (whole != 0 || numerator == 0) text += std::to_string(whole);
    if (numerator != 0) {
        if (whole != 0) text += ' ';
        text += std::to_string(numerator) + '/' + std::to_string(below);
    }
    if (minimumWidth > 0 && text.size() < static_cast<std::size_t>(minimumWidth))
        text.insert(0, static_cast<std::size_t>(minimumWidth) - text.size(), ' ');
    return text;
}

} // namespace qr::reports
