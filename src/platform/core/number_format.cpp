#include "platform/core/number_format.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/decimal_digits.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qr {
namespace {

using detail::DecimalDigits;

constexpr const char* kSource = "NumberFormat";
constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;

enum class TokenKind : std::uint8_t { Literal, IntegerDigit, Point, FractionDigit, Exponent };

struct Token {
    TokenKind kind;
    char symbol = 0;        // '0' or '#' for digits; 'E' or 'e' for the exponent
    bool forceSign = false; // exponent written "E+": a plus sign for positive exponents
    std::string text;       // literal text
};

// One section of a pattern (positive; negative; zero; Null).
struct Section {
    std::string source; // the section's own text, for the Excel form
    std::vector<Token> tokens;
    int integerPlaceholders = 0;
    int minIntegerDigits = 0; // placeholders from the first '0' to the point
    int fractionPlaceholders = 0;
    int minFractionDigits = 0; // up to the last '0' after the point
    int exponentDigits = 0;    // '0's after E+ / E-
    int percent = 0;           // each "%" multiplies by 100
    int thousandsScale = 0;    // each "," right before the point divides by 1000
    bool grouping = false;
    bool hasPoint = false;
    bool scientific = false;
    bool hasLiteral = false;

    bool empty() const { return source.empty(); }
    bool hasDigits() const { return integerPlaceholders + fractionPlaceholders > 0; }
};

enum class FormatKind { General, Pattern, SystemCurrency, YesNo, TrueFalse, OnOff };

[[noreturn]] void refuse(std::string_view pattern, const std::string& why) {
    throw Error::component(kSource,
                           "Invalid number format \"" + std::string(pattern) + "\": " + why);
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) {
            return false;
        }
    }
    return true;
}

// Split on ";" outside quotes and escapes.
std::vector<std::string> splitSections(std::string_view pattern) {
    std::vector<std::string> sections(1);
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        char c = pattern[i];
        if (c == '"') {
            std::size_t close = pattern.find('"', i + 1);
            if (close != std::string_view::npos) {
                sections.back().append(pattern.substr(i, close - i + 1));
                i = close;
                continue;
            }
        } else if (c == '\\' && i + 1 < pattern.size()) {
            sections.back().append(pattern.substr(i, 2));
            ++i;
            continue;
        } else if (c == ';') {
            sections.emplace_back();
            continue;
        }
        sections.back() += c;
    }
    return sections;
}

class SectionParser {
  public:
    SectionParser(std::string_view pattern, std::string text) : m_pattern(pattern) {
        m_section.source = std::move(text);
    }

    Section parse() {
        const std::string& s = m_section.source;
        for (std::size_t i = 0; i < s.size(); ++i) {
            char c = s[i];
            if (c == '"') {
                std::size_t close = s.find('"', i + 1);
                // A lone quote (the inch mark of `0.#####"`) prints as itself.
                literal(close == std::string::npos ? std::string(1, '"')
                                                   : s.substr(i + 1, close - i - 1));
                i = close == std::string::npos ? i : close;
            } else if (c == '\\') {
                if (i + 1 == s.size()) {
                    refuse(m_pattern, "it ends with a lone backslash");
                }
                literal(std::string(1, s[++i]));
            } else if (c == '0' || c == '#') {
                digit(c);
            } else if (c == '.' && !m_section.hasPoint && !m_section.scientific) {
                endIntegerPart();
                m_section.hasPoint = true;
                m_section.tokens.push_back({TokenKind::Point});
            } else if (c == ',' && !m_section.hasPoint && !m_section.scientific &&
                       m_section.integerPlaceholders > 0) {
                ++m_pendingCommas;
            } else if ((c == 'E' || c == 'e') && i + 1 < s.size() &&
                       (s[i + 1] == '+' || s[i + 1] == '-') && m_section.hasDigits()) {
                exponent(c, s[++i] == '+');
            } else if (c == '%') {
                ++m_section.percent;
                literal("%");
            } else {
                literal(std::string(1, c));
            }
        }
        endIntegerPart();
        if (m_section.scientific && m_section.exponentDigits == 0) {
            refuse(m_pattern, "the exponent has no digit placeholder");
        }
        if (!m_section.hasDigits() && !m_section.hasLiteral) {
            refuse(m_pattern, "it has no digit placeholder and no literal text");
        }
        return std::move(m_section);
    }

  private:
    void literal(std::string text) {
        m_section.hasLiteral = true;
        if (!m_section.tokens.empty() && m_section.tokens.back().kind == TokenKind::Literal) {
            m_section.tokens.back().text += text;
        } else {
            m_section.tokens.push_back({TokenKind::Literal, 0, false, std::move(text)});
        }
    }

    void digit(char symbol) {
        Section& s = m_section;
        if (s.scientific && s.tokens.back().kind != TokenKind::Literal) {
            s.exponentDigits += symbol == '0' ? 1 : 0;
            s.exponentDigits = std::max(s.exponentDigits, 1);
            return;
        }
        if (s.scientific) {
            literal(std::string(1, symbol)); // digits after the exponent's text
            return;
        }
        if (s.hasPoint) {
            ++s.fractionPlaceholders;
            if (symbol == '0') {
                s.minFractionDigits = s.fractionPlaceholders;
            }
            s.tokens.push_back({TokenKind::FractionDigit, symbol});
            return;
        }
        // A comma between two integer placeholders asks for thousands grouping.
        s.grouping = s.grouping || m_pendingCommas > 0;
        m_pendingCommas = 0;
        ++s.integerPlaceholders;
        if (symbol == '0' && m_firstZero < 0) {
            m_firstZero = s.integerPlaceholders - 1;
        }
        s.tokens.push_back({TokenKind::IntegerDigit, symbol});
    }

    void exponent(char symbol, bool forceSign) {
        endIntegerPart();
        m_section.scientific = true;
        m_section.tokens.push_back({TokenKind::Exponent, symbol, forceSign});
    }

    // Commas left over at the end of the integer part scale by a thousand each.
    void endIntegerPart() {
        m_section.thousandsScale += m_pendingCommas;
        m_pendingCommas = 0;
        if (m_firstZero >= 0) {
            m_section.minIntegerDigits = m_section.integerPlaceholders - m_firstZero;
        }
    }

    std::string_view m_pattern;
    Section m_section;
    int m_pendingCommas = 0;
    int m_firstZero = -1;
};

// Writes one number under one section; all the work is on stack digits and the result.
class SectionWriter {
  public:
    SectionWriter(const Section& section, std::string& out) : m_s(section), m_out(out) {}

    void write(DecimalDigits d) {
        d.negative = false;
        if (!d.isZero()) {
            d.pointPos += 2 * m_s.percent - 3 * m_s.thousandsScale;
        }
        int exponent = 0;
        if (m_s.scientific) {
            exponent = scientificExponent(d);
        } else {
            d.roundHalfAway(m_s.fractionPlaceholders);
        }
        m_digits = &d;
        m_integerDigits = d.isZero() ? 0 : std::max(d.pointPos, 0);
        m_leadingZeros = std::max(m_s.minIntegerDigits - m_integerDigits, 0);
        m_shownFraction = m_s.minFractionDigits;
        for (int j = m_s.fractionPlaceholders; j > m_shownFraction; --j) {
            if (d.digitAt(-j) != '0') {
                m_shownFraction = j;
            }
        }
        emitTokens(exponent);
    }

  private:
    // Scale the digits so that the mantissa fills the integer placeholders; returns the
    // exponent to print.
    int scientificExponent(DecimalDigits& d) const {
        if (d.isZero()) {
            return 0;
        }
        int integerDigits = std::max(m_s.integerPlaceholders, 1);
        int exponent = d.pointPos - integerDigits;
        d.pointPos = integerDigits;
        d.roundHalfAway(m_s.fractionPlaceholders);
        if (d.pointPos > integerDigits) { // 9.99 rounded up to 10.0
            d.pointPos = integerDigits;
            ++exponent;
        }
        return exponent;
    }

    int totalIntegerDigits() const { return m_integerDigits + m_leadingZeros; }

    // Digit i (from the left) of the integer part, leading zeros included.
    char integerDigit(int i) const {
        if (i < m_leadingZeros) {
            return '0';
        }
        return m_digits->digitAt(m_integerDigits - 1 - (i - m_leadingZeros));
    }

    void putIntegerDigits(int from, int to) {
        int total = totalIntegerDigits();
        for (int i = from; i < to; ++i) {
            if (m_s.grouping && i > 0 && (total - i) % 3 == 0) {
                m_out += ',';
            }
            m_out += integerDigit(i);
        }
    }

    void emitTokens(int exponent) {
        int total = totalIntegerDigits();
        int excess = total - m_s.integerPlaceholders; // digits beyond the placeholders
        int integerIndex = 0;
        int fractionIndex = 0;
        for (const Token& t : m_s.tokens) {
            switch (t.kind) {
            case TokenKind::Literal:
                m_out += t.text;
                break;
            case TokenKind::IntegerDigit: {
                // The first placeholder takes every digit the pattern has no room for.
                int position = integerIndex + excess;
                int from = integerIndex == 0 ? 0 : position;
                if (position >= 0) {
                    putIntegerDigits(std::max(from, 0), position + 1);
                }
                ++integerIndex;
                break;
            }
            case TokenKind::Point:
                if (m_s.integerPlaceholders == 0) {
                    putIntegerDigits(0, total); // ".00" still shows the whole part
                }
                m_out += '.';
                break;
            case TokenKind::FractionDigit:
                if (fractionIndex < m_shownFraction) {
                    m_out += m_digits->digitAt(-(fractionIndex + 1));
                }
                ++fractionIndex;
                break;
            case TokenKind::Exponent:
                writeExponent(t, exponent);
                break;
            }
        }
    }

    void writeExponent(const Token& t, int exponent) {
        m_out += t.symbol;
        if (exponent < 0) {
            m_out += '-';
        } else if (t.forceSign) {
            m_out += '+';
        }
        std::string digits = std::to_string(std::abs(exponent));
        if (static_cast<int>(digits.size()) < m_s.exponentDigits) {
            m_out.append(m_s.exponentDigits - digits.size(), '0');
        }
        m_out += digits;
    }

    const Section& m_s;
    std::string& m_out;
    const DecimalDigits* m_digits = nullptr;
    int m_integerDigits = 0;
    int m_leadingZeros = 0;
    int m_shownFraction = 0;
};

// Excel shows these without quotes; every other character of literal text gets a backslash.
bool excelSafe(char c) {
    static constexpr std::string_view kSafe = "$-+():!^&'~{}<>= ";
    return kSafe.find(c) != std::string_view::npos;
}

std::string excelSection(const std::string& source) {
    std::string out;
    bool seenPlaceholder = false;
    bool seenPoint = false;
    for (std::size_t i = 0; i < source.size(); ++i) {
        char c = source[i];
        if (c == '"') {
            std::size_t close = source.find('"', i + 1);
            if (close == std::string::npos) {
                out += "\\\"";
            } else {
                out.append(source, i, close - i + 1);
                i = close;
            }
        } else if (c == '\\' && i + 1 < source.size()) {
            out.append(source, i, 2);
            ++i;
        } else if (c == '0' || c == '#' || c == '%' || (c == '.' && !seenPoint) ||
                   (c == ',' && seenPlaceholder)) {
            seenPlaceholder = seenPlaceholder || c == '0' || c == '#';
            seenPoint = seenPoint || c == '.';
            out += c;
        } else if ((c == 'E' || c == 'e') && i + 1 < source.size() &&
                   (source[i + 1] == '+' || source[i + 1] == '-') && seenPlaceholder) {
            out.append(source, i, 2);
            ++i;
        } else if (excelSafe(c)) {
            out += c;
        } else {
            out += '\\';
            out += c;
        }
    }
    return out;
}

const char* namedPattern(std::string_view name) {
    struct Named {
        const char* name;
        const char* pattern;
    };
    static constexpr Named kNamed[] = {
        {"Fixed", "0.00"},
        {"Standard", "#,##0.00"},
        {"Percent", "0.00%"},
        {"Scientific", "0.00E+00"},
    };
    for (const Named& n : kNamed) {
        if (equalsNoCase(name, n.name)) {
            return n.pattern;
        }
    }
    return nullptr;
}

} // namespace

struct NumberFormat::Parsed {
    FormatKind kind = FormatKind::Pattern;
    std::vector<Section> sections;
    std::string excel;

    // The section a value is written with, and whether the writer adds the minus sign.
    const Section& sectionFor(const DecimalDigits& d, bool& addMinus) const {
        addMinus = false;
        if (d.isZero() && sections.size() >= 3 && !sections[2].empty()) {
            return sections[2];
        }
        if (d.negative && sections.size() >= 2 && !sections[1].empty()) {
            return sections[1];
        }
        addMinus = d.negative;
        return sections[0];
    }

    std::string write(const DecimalDigits& d) const {
        bool addMinus = false;
        const Section& section = sectionFor(d, addMinus);
        std::string out;
        // The runtime puts the minus sign in front of everything, "$" included: "-$3.00",
        // and keeps it when the value rounds to zero ("-.00").
        if (addMinus) {
            out += '-';
        }
        SectionWriter(section, out).write(d);
        return out;
    }

    std::string writeNull() const {
        std::string out;
        if (sections.size() >= 4) {
            for (const Token& t : sections[3].tokens) {
                if (t.kind == TokenKind::Literal) {
                    out += t.text;
                }
            }
        }
        return out;
    }
};

NumberFormat::NumberFormat() {
    static const std::shared_ptr<const Parsed> kGeneral = [] {
        auto general = std::make_shared<Parsed>();
        general->kind = FormatKind::General;
        general->excel = "General";
        return general;
    }();
    m_parsed = kGeneral;
}

NumberFormat NumberFormat::parse(std::string_view pattern) {
    auto parsed = std::make_shared<Parsed>();
    std::string_view effective = pattern;
    if (pattern.empty() || equalsNoCase(pattern, "General Number")) {
        parsed->kind = FormatKind::General;
        parsed->excel = "General";
    } else if (equalsNoCase(pattern, "Currency")) {
        parsed->kind = FormatKind::SystemCurrency; // its Excel form follows the locale
    } else if (equalsNoCase(pattern, "Yes/No") || equalsNoCase(pattern, "True/False") ||
               equalsNoCase(pattern, "On/Off")) {
        char first = pattern[0] | 0x20;
        parsed->kind = first == 'y'   ? FormatKind::YesNo
                       : first == 't' ? FormatKind::TrueFalse
                                      : FormatKind::OnOff;
        static constexpr const char* kExcel[] = {
            "\"Yes\";\"Yes\";\"No\"", "\"True\";\"True\";\"False\"", "\"On\";\"On\";\"Off\""};
        parsed->excel = kExcel[first == 'y' ? 0 : first == 't' ? 1 : 2];
    } else {
        if (const char* named = namedPattern(pattern)) {
            effective = named;
        }
        std::vector<std::string> texts = splitSections(effective);
        if (texts.size() > 4) {
            refuse(pattern, "it has more than four sections");
        }
        if (texts[0].empty()) {
            refuse(pattern, "its first section is empty");
        }
        for (std::string& text : texts) {
            if (text.empty()) {
                parsed->sections.emplace_back(); // falls back to the first section
            } else {
                parsed->sections.push_back(SectionParser(pattern, std::move(text)).parse());
            }
        }
        // Excel has no Null section, and an empty Excel section would print nothing.
        std::string first = excelSection(parsed->sections[0].source);
        for (std::size_t i = 0; i < parsed->sections.size() && i < 3; ++i) {
            const Section& s = parsed->sections[i];
            parsed->excel += i > 0 ? ";" : "";
            parsed->excel += s.empty() ? (i == 1 ? "-" + first : first) : excelSection(s.source);
        }
    }
    NumberFormat format;
    format.m_pattern = std::string(pattern);
    format.m_parsed = std::move(parsed);
    return format;
}

namespace {

std::string writeNamed(FormatKind kind, bool nonZero) {
    switch (kind) {
    case FormatKind::YesNo:
        return nonZero ? "Yes" : "No";
    case FormatKind::TrueFalse:
        return nonZero ? "True" : "False";
    default:
        return nonZero ? "On" : "Off";
    }
}

} // namespace

std::string NumberFormat::format(double value) const {
    if (!std::isfinite(value)) {
        throw Error::overflow(kSource);
    }
    switch (m_parsed->kind) {
    case FormatKind::General:
        return toText(Variant(value));
    case FormatKind::SystemCurrency:
        return systemFormats().currency(value);
    case FormatKind::Pattern:
        return m_parsed->write(DecimalDigits::fromDouble(value, kDoubleDigits));
    default:
        return writeNamed(m_parsed->kind, value != 0.0);
    }
}

namespace {

/// The decimal digits a format works on for a number held at its own precision (Single,
/// Currency, whole numbers, Booleans, number text); empty for the other kinds of value.
std::optional<DecimalDigits> exactDigits(const Variant& value) {
    switch (value.type()) {
    case VarType::String:
        return detail::scanNumberText(value.asString());
    case VarType::Single:
        if (!std::isfinite(value.asSingle())) {
            throw Error::overflow(kSource);
        }
        return DecimalDigits::fromDouble(value.asSingle(), kSingleDigits);
    case VarType::Currency:
        return DecimalDigits::fromScaled(value.asCurrency().ticks(), 4);
    case VarType::Integer:
    case VarType::Long:
    case VarType::Boolean:
        return DecimalDigits::fromScaled(toLong(value), 0);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<double> shownNumber(const Variant& value) {
    switch (value.type()) {
    case VarType::Double:
        if (!std::isfinite(value.asDouble())) {
            throw Error::overflow(kSource);
        }
        return DecimalDigits::fromDouble(value.asDouble(), kDoubleDigits).toDouble();
    case VarType::String:
    case VarType::Single:
    case VarType::Currency:
    case VarType::Integer:
    case VarType::Long:
        if (auto digits = exactDigits(value)) {
            return digits->toDouble();
        }
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

std::string NumberFormat::format(const Variant& value) const {
    DecimalDigits digits;
    switch (value.type()) {
    case VarType::Null:
        return m_parsed->writeNull();
    case VarType::Empty:
        return {};
    case VarType::String:
    case VarType::Single:
    case VarType::Currency:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Boolean: {
        auto exact = exactDigits(value);
        if (!exact) {
            return value.asString(); // text that is not a number passes unchanged
        }
        digits = *exact;
        break;
    }
    default:
        return format(toDouble(value)); // Double, and a Date as its serial number
    }
    switch (m_parsed->kind) {
    case FormatKind::General:
        return value.type() == VarType::String ? value.asString() : toText(value);
    case FormatKind::SystemCurrency:
        return value.type() == VarType::Currency ? systemFormats().currency(value.asCurrency())
                                                 : systemFormats().currency(digits.toDouble());
    case FormatKind::Pattern:
        return m_parsed->write(digits);
    default:
        return writeNamed(m_parsed->kind, !digits.isZero());
    }
}

std::string NumberFormat::excelPattern() const {
    if (m_parsed->kind == FormatKind::SystemCurrency) {
        return systemFormats().currencyExcelPattern();
    }
    return m_parsed->excel;
}

namespace {

// Parsed patterns of this thread. Page footers make one pattern per page number, so the
// cache is emptied when it grows past a bound instead of growing with the report.
const NumberFormat& cachedFormat(std::string_view pattern) {
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const {
            return std::hash<std::string_view>{}(s);
        }
    };
    constexpr std::size_t kMaxCached = 512;
    thread_local std::unordered_map<std::string, NumberFormat, Hash, std::equal_to<>> cache;
    auto found = cache.find(pattern);
    if (found != cache.end()) {
        return found->second;
    }
    NumberFormat parsed = NumberFormat::parse(pattern);
    if (cache.size() >= kMaxCached) {
        cache.clear();
    }
    return cache.emplace(std::string(pattern), std::move(parsed)).first->second;
}

} // namespace

std::string formatNumber(double value, std::string_view pattern) {
    return cachedFormat(pattern).format(value);
}

std::string formatValue(const Variant& value, std::string_view pattern) {
    return cachedFormat(pattern).format(value);
}

} // namespace qr
