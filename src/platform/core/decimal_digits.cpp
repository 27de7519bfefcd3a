#include "platform/core/decimal_digits.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>

namespace qr::detail {

void DecimalDigits::normalize() {
    int lead = 0;
    while (lead < count && digits[lead] == '0') {
        ++lead;
    }
    if (lead > 0) {
        std::copy(digits + lead, digits + count, digits);
        count -= lead;
        pointPos -= lead;
    }
    while (count > 0 && digits[count - 1] == '0') {
        --count;
    }
    if (count == 0) {
        pointPos = 0;
        sticky = false;
    }
}

namespace {

constexpr double kPowersOfTen[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};

/// The digits of a value that is a decimal of at most eight places and `significant` digits,
/// as near as a double gets to it (a price, a quantity, a size in sixteenths). That decimal
/// is then the value rounded to `significant` digits: the value lies within half a unit in
/// its last binary place of it, and for 15 digits or fewer any other decimal of that many
/// digits is more than four such units away. False for any other value.
bool shortDecimal(double magnitude, int significant, DecimalDigits& d) {
    if (significant > std::numeric_limits<double>::digits10)
        return false;
    for (int places = 0; places < static_cast<int>(std::size(kPowersOfTen)); ++places) {
        const double scaled = magnitude * kPowersOfTen[places];
        if (!(scaled < 9007199254740992.0)) // 2^53: past it a double holds no more units
            return false;
        const double units = std::nearbyint(scaled);
        // Both exact, so the division is the double nearest to the decimal.
        if (units == 0 || units / kPowersOfTen[places] != magnitude)
            continue;
        char text[24];
        const char* end =
            std::to_chars(text, text + sizeof text, static_cast<std::uint64_t>(units)).ptr;
        const auto length = static_cast<int>(end - text);
        int count = length;
        while (count > 1 && text[count - 1] == '0')
            --count;
        if (count > significant)
            return false;
        std::copy(text, text + count, d.digits);
        d.count = count;
        d.pointPos = length - places;
        return true;
    }
    return false;
}

} // namespace

DecimalDigits DecimalDigits::fromDouble(double value, int significant) {
    DecimalDigits d;
    if (value == 0.0) {
        return d;
    }
    d.negative = value < 0;
    if (shortDecimal(std::fabs(value), significant, d)) {
        return d;
    }
    // "d.ddddde+XX": to_chars rounds the exact binary value to the asked digits.
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::scientific,
                             significant - 1);
    const char* p = buf;
    for (; p < res.ptr && *p != 'e'; ++p) {
        if (*p != '.' && d.count < kMaxDigits) {
            d.digits[d.count++] = *p;
        }
    }
    int exponent = 0;
    std::from_chars(p + (p[1] == '+' ? 2 : 1), res.ptr, exponent);
    d.pointPos = exponent + 1;
    d.normalize();
    return d;
}

DecimalDigits DecimalDigits::fromScaled(std::int64_t units, int scale) {
    DecimalDigits d;
    d.negative = units < 0;
    // Magnitude as unsigned so the most negative value does not overflow.
    std::uint64_t magnitude =
        d.negative ? std::uint64_t(0) - static_cast<std::uint64_t>(units) : std::uint64_t(units);
    char buf[24];
    auto res = std::to_chars(buf, buf + sizeof buf, magnitude);
    d.count = static_cast<int>(res.ptr - buf);
    std::copy(buf, res.ptr, d.digits);
    d.pointPos = d.count - scale;
    d.normalize();
    return d;
}

std::optional<DecimalDigits> DecimalDigits::parse(std::string_view text) {
    DecimalDigits d;
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
        d.negative = text[i] == '-';
        ++i;
    }
    bool anyDigit = false;
    bool seenPoint = false;
    int integerDigits = 0; // integer digits from the first significant one
    int zeroShift = 0;     // zeros between the point and the first significant digit
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (c == '.' && !seenPoint) {
            seenPoint = true;
            continue;
        }
        if (c < '0' || c > '9') {
            break;
        }
        anyDigit = true;
        if (d.count == 0 && c == '0') {
            zeroShift -= seenPoint ? 1 : 0; // leading zeros carry no digit
            continue;
        }
        if (!seenPoint) {
            ++integerDigits;
        }
        if (d.count < kMaxDigits) {
            d.digits[d.count++] = c;
        } else if (c != '0') {
            d.sticky = true;
        }
    }
    if (!anyDigit) {
        return std::nullopt;
    }
    // Digits dropped past kMaxDigits in the integer part still count for the point.
    d.pointPos = integerDigits + zeroShift;
    if (i < text.size()) {
        char c = text[i];
        if (c != 'e' && c != 'E' && c != 'd' && c != 'D') {
            return std::nullopt;
        }
        ++i;
        bool expNegative = false;
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
            expNegative = text[i] == '-';
            ++i;
        }
        if (i == text.size()) {
            return std::nullopt;
        }
        long exponent = 0;
        for (; i < text.size(); ++i) {
            if (text[i] < '0' || text[i] > '9') {
                return std::nullopt;
            }
            exponent = std::min(exponent * 10 + (text[i] - '0'), 100000L);
        }
        d.pointPos += static_cast<int>(expNegative ? -exponent : exponent);
    }
    d.normalize();
    return d;
}

void DecimalDigits::roundAt(int decimals, bool halfEven) {
    if (count == 0) {
        return;
    }
    int keep = pointPos + decimals; // digits that stay
    if (keep >= count) {
        return;
    }
    if (keep < 0) {
        count = 0;
        normalize();
        return;
    }
    char first = digits[keep];
    bool up = first > '5';
    if (first == '5') {
        bool beyond = sticky;
        for (int i = keep + 1; i < count && !beyond; ++i) {
            beyond = digits[i] != '0';
        }
        bool previousOdd = keep > 0 && (digits[keep - 1] - '0') % 2 == 1;
        up = !halfEven || beyond || previousOdd;
    }
    count = keep;
    sticky = false;
    if (up) {
        int i = count - 1;
        for (; i >= 0 && digits[i] == '9'; --i) {
            digits[i] = '0';
        }
        if (i >= 0) {
            ++digits[i];
        } else {
            // All nines (or nothing kept): the value gains a digit in front.
            std::copy_backward(digits, digits + count, digits + count + 1);
            digits[0] = '1';
            ++count;
            ++pointPos;
        }
    }
    normalize();
}

void DecimalDigits::roundHalfAway(int decimals) {
    roundAt(decimals, false);
}

void DecimalDigits::roundHalfEven(int decimals) {
    roundAt(decimals, true);
}

char DecimalDigits::digitAt(int power) const {
    int index = pointPos - 1 - power;
    return index >= 0 && index < count ? digits[index] : '0';
}

std::optional<std::int64_t> DecimalDigits::toScaled(int scale) const {
    DecimalDigits r = *this;
    r.roundHalfEven(scale);
    if (r.count == 0) {
        return std::int64_t(0);
    }
    int total = r.pointPos + scale; // integer digits of the scaled value
    if (total > 19) {
        return std::nullopt;
    }
    std::uint64_t magnitude = 0;
    for (int i = 0; i < total; ++i) {
        std::uint64_t digit = i < r.count ? std::uint64_t(r.digits[i] - '0') : 0;
        if (__builtin_mul_overflow(magnitude, 10u, &magnitude) ||
            __builtin_add_overflow(magnitude, digit, &magnitude)) {
            return std::nullopt;
        }
    }
    constexpr std::uint64_t kMaxPositive = std::numeric_limits<std::int64_t>::max();
    if (magnitude > kMaxPositive + (r.negative ? 1 : 0)) {
        return std::nullopt;
    }
    return r.negative ? static_cast<std::int64_t>(std::uint64_t(0) - magnitude)
                      : static_cast<std::int64_t>(magnitude);
}

double DecimalDigits::toDouble() const {
    if (count == 0) {
        return negative ? -0.0 : 0.0;
    }
    char buf[kMaxDigits + 16];
    std::copy(digits, digits + count, buf);
    char* end = buf + count;
    *end++ = 'e';
    end = std::to_chars(end, buf + sizeof buf, pointPos - count).ptr;
    double value = 0;
    auto res = std::from_chars(buf, end, value);
    if (res.ec == std::errc::result_out_of_range) {
        value = pointPos > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace

std::optional<DecimalDigits> scanNumberText(std::string_view text) {
    text = trimBlanks(text);
    bool negative = false;
    if (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
        negative = true;
        text = trimBlanks(text.substr(1, text.size() - 2));
    }
    bool signSeen = negative;
    bool dollarSeen = false;
    while (!text.empty()) {
        char c = text.front();
        if ((c == '-' || c == '+') && !signSeen) {
            signSeen = true;
            negative = c == '-';
        } else if (c == '$' && !dollarSeen) {
            dollarSeen = true;
        } else {
            break;
        }
        text = trimBlanks(text.substr(1));
    }
    // Drop grouping commas (only between digits of the integer part).
    char clean[128];
    std::size_t n = 0;
    bool inFraction = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == ',' && !inFraction && n > 0 && clean[n - 1] >= '0' && clean[n - 1] <= '9' &&
            i + 1 < text.size() && text[i + 1] >= '0' && text[i + 1] <= '9') {
            continue;
        }
        if (n == sizeof clean) {
            return std::nullopt;
        }
        inFraction = inFraction || c == '.' || c == 'e' || c == 'E' || c == 'd' || c == 'D';
        clean[n++] = c;
    }
    if (n == 0 || clean[0] == '-' || clean[0] == '+') {
        return std::nullopt;
    }
    auto digits = DecimalDigits::parse(std::string_view(clean, n));
    if (digits) {
        digits->negative = negative && !digits->isZero();
    }
    return digits;
}

} // namespace qr::detail
