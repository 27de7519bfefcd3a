#include "platform/core/currency.hpp"

#include "platform/core/decimal_digits.hpp"
#include "platform/core/error.hpp"

#include <charconv>
#include <cmath>

namespace qr {

Currency Currency::fromDouble(double value) {
    // As the runtime did: scale the binary value by 10,000 and round that to the even
    // neighbour (2.5 ticks become 2, 3.5 ticks 4).
    double scaled = std::nearbyint(value * static_cast<double>(kScale));
    if (!(scaled >= -9223372036854775808.0 && scaled < 9223372036854775808.0)) {
        throw Error::overflow();
    }
    return fromTicks(static_cast<std::int64_t>(scaled));
}

std::optional<Currency> Currency::parseDecimal(std::string_view text) {
    auto digits = detail::DecimalDigits::parse(text);
    if (!digits) {
        return std::nullopt;
    }
    auto ticks = digits->toScaled(4);
    if (!ticks) {
        throw Error::overflow();
    }
    return fromTicks(*ticks);
}

std::string Currency::toDecimalText() const {
    bool negative = m_ticks < 0;
    std::uint64_t magnitude =
        negative ? std::uint64_t(0) - static_cast<std::uint64_t>(m_ticks) : std::uint64_t(m_ticks);
    std::uint64_t whole = magnitude / kScale;
    std::uint64_t fraction = magnitude % kScale;
    char buf[32];
    char* p = buf;
    if (negative) {
        *p++ = '-';
    }
    p = std::to_chars(p, buf + sizeof buf, whole).ptr;
    if (fraction != 0) {
        *p++ = '.';
        for (std::uint64_t unit = kScale / 10; unit > 0 && fraction != 0; unit /= 10) {
            *p++ = static_cast<char>('0' + fraction / unit);
            fraction %= unit;
        }
    }
    return std::string(buf, p);
}

Currency Currency::operator+(Currency other) const {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(m_ticks, other.m_ticks, &sum)) {
        throw Error::overflow();
    }
    return fromTicks(sum);
}

Currency Currency::operator-(Currency other) const {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(m_ticks, other.m_ticks, &difference)) {
        throw Error::overflow();
    }
    return fromTicks(difference);
}

} // namespace qr
