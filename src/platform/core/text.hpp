#pragma once
// Small text helpers the whole component shares. Letters are ASCII only: the texts compared this
// way (request names, keywords, field and font names, connection-string keys) are ASCII, and a
// byte of a UTF-8 sequence is never changed.

#include <string>
#include <string_view>

namespace qr {

inline constexpr std::string_view kWhitespace = " \t\r\n";

/// `text` with its ASCII capitals made small.
std::string lowerCase(std::string_view text);

/// `text` without the leading and trailing characters of `characters` (blanks by default; the
/// request parser trims spaces only, as the legacy Trim does).
std::string_view trimmed(std::string_view text, std::string_view characters = kWhitespace);

/// Whether `text` holds nothing but the characters of `characters`.
bool isBlank(std::string_view text, std::string_view characters = kWhitespace);

/// Case-blind (ASCII) equality.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

/// Whether `text` starts with `prefix`, compared case-blind (ASCII).
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);

/// Whether `text` is well-formed UTF-8: no stray or missing continuation bytes, no overlong
/// forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

} // namespace qr
