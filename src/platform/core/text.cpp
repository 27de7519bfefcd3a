#include "platform/core/text.hpp"

#include <cstdint>
#include <cstring>

namespace qr {

namespace {

char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

std::string lowerCase(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = lowerAscii(c);
    return out;
}

std::string_view trimmed(std::string_view text, std::string_view characters) {
    const auto first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(characters);
    return text.substr(first, last - first + 1);
}

bool isBlank(std::string_view text, std::string_view characters) {
    return text.find_first_not_of(characters) == std::string_view::npos;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && startsWithIgnoringCase(a, b);
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size())
        return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (lowerAscii(text[i]) != lowerAscii(prefix[i]))
            return false;
    }
    return true;
}

bool isValidUtf8(std::string_view text) {
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const end = p + text.size();
    while (p < end) {
        // Plain ASCII eight bytes at a time: most text a database holds is nothing else.
        if (end - p >= 8) {
            std::uint64_t word;
            std::memcpy(&word, p, sizeof word);
            if ((word & 0x8080808080808080ull) == 0) {
                p += 8;
                continue;
            }
        }
        const unsigned char lead = *p;
        if (lead < 0x80) {
            ++p;
            continue;
        }
        // The length the lead byte announces, and the range its second byte must lie in
        // (narrower than 80..BF where that rules out overlong forms, surrogates and code
        // points above U+10FFFF).
        std::size_t length = 0;
        unsigned char low = 0x80, high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            if (lead == 0xE0)
                low = 0xA0;
            else if (lead == 0xED)
                high = 0x9F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            if (lead == 0xF0)
                low = 0x90;
            else if (lead == 0xF4)
                high = 0x8F;
        } else {
            return false;
        }
        if (static_cast<std::size_t>(end - p) < length || p[1] < low || p[1] > high)
            return false;
        for (std::size_t i = 2; i < length; ++i)
            if ((p[i] & 0xC0) != 0x80)
                return false;
        p += length;
    }
    return true;
}

} // namespace qr
