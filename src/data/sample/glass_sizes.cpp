#include "data/sample/glass_sizes.hpp"

#include "platform/core/error.hpp"

#include <charconv>
#include <numeric>

namespace qr::data::sample {
namespace {

[[noreturn]] void badSize(std::string_view size) {
    throw Error::component("GlassSizes", "Invalid glass size: " + std::string(size));
}

int number(std::string_view text, std::string_view whole) {
    if (text.empty() || text[0] < '0' || text[0] > '9')
        badSize(whole);
    int value = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || text.empty())
        badSize(whole);
    return value;
}

int fraction(std::string_view text, std::string_view whole) {
    const auto slash = text.find('/');
    if (slash == std::string_view::npos)
        badSize(whole);
    const int numerator = number(text.substr(0, slash), whole);
    const int denominator = number(text.substr(slash + 1), whole);
    if (denominator <= 0 || 16 % denominator != 0 || numerator >= denominator)
        badSize(whole);
    return numerator * (16 / denominator);
}

} // namespace

int sixteenthsOf(std::string_view size) {
    const auto space = size.find(' ');
    if (space != std::string_view::npos)
        return number(size.substr(0, space), size) * 16 + fraction(size.substr(space + 1), size);
    if (size.find('/') != std::string_view::npos)
        return fraction(size, size);
    return number(size, size) * 16;
}

std::string inchesText(int sixteenths) {
    const int whole = sixteenths / 16;
    const int rest = sixteenths % 16;
    if (rest == 0)
        return std::to_string(whole);
    const int divisor = std::gcd(rest, 16);
    std::string fractionText = std::to_string(rest / divisor) + "/" + std::to_string(16 / divisor);
    return whole == 0 ? fractionText : std::to_string(whole) + " " + fractionText;
}

int blockInches(int sixteenths) {
    const int inches = (sixteenths + 15) / 16;
    return inches % 2 == 0 ? inches : inches + 1;
}

} // namespace qr::data::sample
