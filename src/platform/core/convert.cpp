#include "platform/core/convert.hpp"

#include "platform/core/decimal_digits.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"

#include <charconv>
#include <cmath>
#include <limits>

namespace qr {
namespace {

using detail::DecimalDigits;
using detail::scanNumberText;

constexpr int kDoubleDigits = 15; // significant digits the runtime writes for a Double
constexpr int kSingleDigits = 7;  // and for a Single

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

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        char x = a[i] >= 'A' && a[i] <= 'Z' ? char(a[i] - 'A' + 'a') : a[i];
        if (x != b[i]) {
            return false;
        }
    }
    return true;
}

// The runtime's number text: `significant` digits at most, trailing zeros dropped, exponent
// form ("1.5E+15", "1E-05") when the exponent is below -4 or not below the digit count.
std::string numberText(double value, int significant, bool leadingZero) {
    if (!std::isfinite(value)) {
        throw Error::overflow();
    }
    DecimalDigits d = DecimalDigits::fromDouble(value, significant);
    if (d.isZero()) {
        return "0";
    }
    std::string out;
    out.reserve(32);
    if (d.negative) {
        out += '-';
    }
    int exponent = d.pointPos - 1;
    if (exponent < -4 || exponent >= significant) {
        out += d.digits[0];
        if (d.count > 1) {
            out += '.';
            out.append(d.digits + 1, d.digits + d.count);
        }
        out += exponent < 0 ? "E-" : "E+";
        int magnitude = std::abs(exponent);
        if (magnitude < 10) {
            out += '0';
        }
        out += std::to_string(magnitude);
        return out;
    }
    if (d.pointPos <= 0) {
        if (leadingZero) {
            out += '0';
        }
        out += '.';
        out.append(static_cast<std::size_t>(-d.pointPos), '0');
        out.append(d.digits, d.digits + d.count);
        return out;
    }
    for (int i = 0; i < d.pointPos; ++i) {
        out += i < d.count ? d.digits[i] : '0';
    }
    if (d.count > d.pointPos) {
        out += '.';
        out.append(d.digits + d.pointPos, d.digits + d.count);
    }
    return out;
}

double requireNumber(std::string_view text) {
    auto number = numberFromText(text);
    if (!number) {
        throw Error::typeMismatch();
    }
    return *number;
}

template <typename Int> Int roundToInteger(double value) {
    double rounded = std::nearbyint(value); // the default mode: halves to even
    if (!(rounded >= static_cast<double>(std::numeric_limits<Int>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<Int>::max()))) {
        throw Error::overflow();
    }
    return static_cast<Int>(rounded);
}

template <typename Int> Int currencyToInteger(Currency amount) {
    std::int64_t ticks = amount.ticks();
    std::int64_t whole = ticks / Currency::kScale;
    std::int64_t rest = ticks % Currency::kScale;
    std::int64_t half = Currency::kScale / 2;
    if (rest > half || (rest == half && whole % 2 != 0)) {
        ++whole;
    } else if (rest < -half || (rest == -half && whole % 2 != 0)) {
        --whole;
    }
    if (whole < std::numeric_limits<Int>::min() || whole > std::numeric_limits<Int>::max()) {
        throw Error::overflow();
    }
    return static_cast<Int>(whole);
}

template <typename Int> Int toIntegral(const Variant& value) {
    switch (value.type()) {
    case VarType::Empty:
        return 0;
    case VarType::Null:
        throw Error::invalidUseOfNull();
    case VarType::Boolean:
        return value.asBoolean() ? Int(-1) : Int(0);
    case VarType::Integer:
        return roundToInteger<Int>(value.asInteger());
    case VarType::Long:
        return roundToInteger<Int>(value.asLong());
    case VarType::Single:
        return roundToInteger<Int>(value.asSingle());
    case VarType::Double:
        return roundToInteger<Int>(value.asDouble());
    case VarType::Currency:
        return currencyToInteger<Int>(value.asCurrency());
    case VarType::Date:
        return roundToInteger<Int>(value.asDate().serial);
    case VarType::String:
        return roundToInteger<Int>(requireNumber(value.asString()));
    }
    throw Error::typeMismatch();
}

std::string dateText(Date date) {
    // As the runtime writes a date: the date alone at midnight, the time alone on day zero.
    const SystemFormats& formats = systemFormats();
    double day = std::trunc(date.serial);
    bool hasTime = date.serial != day;
    if (day == 0 && hasTime) {
        return formats.longTime(date);
    }
    if (!hasTime) {
        return formats.shortDate(date);
    }
    return formats.shortDate(date) + " " + formats.longTime(date);
}

} // namespace

bool toBoolean(const Variant& value) {
    switch (value.type()) {
    case VarType::Empty:
        return false;
    case VarType::Null:
        throw Error::invalidUseOfNull();
    case VarType::Boolean:
        return value.asBoolean();
    case VarType::Currency:
        return value.asCurrency().ticks() != 0;
    case VarType::String: {
        std::string_view text = trimBlanks(value.asString());
        if (equalsNoCase(text, "true")) {
            return true;
        }
        if (equalsNoCase(text, "false")) {
            return false;
        }
        return requireNumber(text) != 0.0;
    }
    default:
        return toDouble(value) != 0.0;
    }
}

std::int16_t toInteger(const Variant& value) {
    return toIntegral<std::int16_t>(value);
}

std::int32_t toLong(const Variant& value) {
    return toIntegral<std::int32_t>(value);
}

float toSingle(const Variant& value) {
    if (value.type() == VarType::Single) {
        return value.asSingle();
    }
    double number = toDouble(value);
    if (std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
        throw Error::overflow();
    }
    return static_cast<float>(number);
}

double toDouble(const Variant& value) {
    switch (value.type()) {
    case VarType::Empty:
        return 0.0;
    case VarType::Null:
        throw Error::invalidUseOfNull();
    case VarType::Boolean:
        return value.asBoolean() ? -1.0 : 0.0;
    case VarType::Integer:
        return value.asInteger();
    case VarType::Long:
        return value.asLong();
    case VarType::Single:
        return value.asSingle();
    case VarType::Double:
        return value.asDouble();
    case VarType::Currency:
        return value.asCurrency().toDouble();
    case VarType::Date:
        return value.asDate().serial;
    case VarType::String:
        return requireNumber(value.asString());
    }
    throw Error::typeMismatch();
}

Currency toCurrency(const Variant& value) {
    switch (value.type()) {
    case VarType::Currency:
        return value.asCurrency();
    case VarType::Integer:
        return Currency::fromTicks(std::int64_t(value.asInteger()) * Currency::kScale);
    case VarType::Long:
        return Currency::fromTicks(std::int64_t(value.asLong()) * Currency::kScale);
    case VarType::String: {
        // Read money text exactly, without passing through a double.
        auto digits = scanNumberText(value.asString());
        if (!digits) {
            throw Error::typeMismatch();
        }
        auto ticks = digits->toScaled(4);
        if (!ticks) {
            throw Error::overflow();
        }
        return Currency::fromTicks(*ticks);
    }
    default:
        return Currency::fromDouble(toDouble(value));
    }
}

std::string toText(const Variant& value) {
    switch (value.type()) {
    case VarType::Empty:
        return {};
    case VarType::Null:
        throw Error::invalidUseOfNull();
    case VarType::Boolean:
        return value.asBoolean() ? "True" : "False";
    case VarType::Integer:
        return std::to_string(value.asInteger());
    case VarType::Long:
        return std::to_string(value.asLong());
    case VarType::Single:
        return numberText(value.asSingle(), kSingleDigits, true);
    case VarType::Double:
        return numberText(value.asDouble(), kDoubleDigits, true);
    case VarType::Currency:
        return value.asCurrency().toDecimalText();
    case VarType::Date:
        return dateText(value.asDate());
    case VarType::String:
        return value.asString();
    }
    throw Error::typeMismatch();
}

std::optional<double> numberFromText(std::string_view text) {
    auto digits = scanNumberText(text);
    if (!digits) {
        return std::nullopt;
    }
    double number = digits->toDouble();
    if (!std::isfinite(number)) {
        throw Error::overflow();
    }
    return number;
}

std::string decimalText(double value, bool leadingBlank) {
    std::string text = numberText(value, kDoubleDigits, false);
    return leadingBlank && text[0] != '-' ? " " + text : text;
}

std::string decimalTextSingle(float value, bool leadingBlank) {
    std::string text = numberText(value, kSingleDigits, false);
    return leadingBlank && text[0] != '-' ? " " + text : text;
}

double roundHalfEven(double value, int digits) {
    if (digits < 0 || digits > 22) {
        throw Error::invalidCall();
    }
    if (!std::isfinite(value)) {
        return value;
    }
    double scale = std::pow(10.0, digits);
    double scaled = value * scale;
    // Past 2^52 every double is already a whole number at this scale.
    if (std::fabs(scaled) >= 4503599627370496.0) {
        return value;
    }
    return std::nearbyint(scaled) / scale;
}

} // namespace qr
