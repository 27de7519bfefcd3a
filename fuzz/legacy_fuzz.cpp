// The legacy conversions and the number-format engine. The first byte picks what the rest is
// fed to; the formats get a number made from eight bytes and a pattern from what follows.

#include "fuzz/fuzz_input.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/currency.hpp"
#include "platform/core/number_format.hpp"

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qr;
    if (size < 1)
        return 0;
    const std::uint8_t selector = data[0];
    ++data;
    --size;
    if (selector % 2 == 0) {
        // Text as the host or a database hands it over.
        const Variant text{std::string(fuzz::textOf(data, size))};
        fuzz::refusalsAllowed([&] { (void)toBoolean(text); });
        fuzz::refusalsAllowed([&] { (void)toInteger(text); });
        fuzz::refusalsAllowed([&] { (void)toLong(text); });
        fuzz::refusalsAllowed([&] { (void)toSingle(text); });
        fuzz::refusalsAllowed([&] { (void)toDouble(text); });
        fuzz::refusalsAllowed([&] { (void)toCurrency(text); });
        fuzz::refusalsAllowed([&] { (void)toText(text); });
        fuzz::refusalsAllowed([&] { (void)numberFromText(fuzz::textOf(data, size)); });
        return 0;
    }
    double number = 0;
    if (size >= sizeof number) {
        std::memcpy(&number, data, sizeof number);
        data += sizeof number;
        size -= sizeof number;
    }
    const std::string_view pattern = fuzz::textOf(data, size);
    fuzz::refusalsAllowed([&] { (void)formatNumber(number, pattern); });
    fuzz::refusalsAllowed([&] { (void)formatValue(Variant(number), pattern); });
    fuzz::refusalsAllowed([&] { (void)formatValue(Variant(Currency::fromDouble(number)), pattern); });
    fuzz::refusalsAllowed([&] { (void)decimalText(number, selector & 2); });
    fuzz::refusalsAllowed([&] { (void)roundHalfEven(number, selector % 16); });
    return 0;
}
