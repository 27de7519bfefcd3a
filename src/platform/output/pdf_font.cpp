#include "platform/output/pdf_font.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace qr::output::pdf {

namespace {

constexpr std::uint32_t kTrueTypeVersion = 0x00010000;
constexpr std::uint32_t kAppleTrueType = 0x74727565; // 'true'
constexpr std::uint32_t kCffVersion = 0x4F54544F;    // 'OTTO'
constexpr std::uint32_t kCollection = 0x74746366;    // 'ttcf'

// Composite glyph flags.
constexpr std::uint16_t kArgsAreWords = 0x0001;
constexpr std::uint16_t kHasScale = 0x0008;
constexpr std::uint16_t kMoreComponents = 0x0020;
constexpr std::uint16_t kHasXYScale = 0x0040;
constexpr std::uint16_t kHasTwoByTwo = 0x0080;

std::uint16_t u16(std::string_view data, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(data[at]) << 8 |
                                      static_cast<unsigned char>(data[at + 1]));
}
std::int16_t s16(std::string_view data, std::size_t at) {
    return static_cast<std::int16_t>(u16(data, at));
}
std::uint32_t u32(std::string_view data, std::size_t at) {
    return static_cast<std::uint32_t>(u16(data, at)) << 16 | u16(data, at + 2);
}
void put16(std::string& out, std::uint16_t value) {
    out += static_cast<char>(value >> 8);
    out += static_cast<char>(value & 0xFF);
}
void put32(std::string& out, std::uint32_t value) {
    put16(out, static_cast<std::uint16_t>(value >> 16));
    put16(out, static_cast<std::uint16_t>(value & 0xFFFF));
}
void set32(std::string& out, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        out[at + i] = static_cast<char>(value >> (24 - 8 * i));
}

std::uint32_t checksum(std::string_view table) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < table.size(); i += 4) {
        std::uint32_t word = 0;
        for (std::size_t k = 0; k < 4; ++k)
            word = word << 8 | (i + k < table.size() ? static_cast<unsigned char>(table[i + k]) : 0);
        sum += word;
    }
    return sum;
}

/// An sfnt file of `tables` (tag -> bytes, in tag order), its head table's checksum
/// adjustment filled in.
std::string buildFont(const std::map<std::string, std::string>& tables) {
    const auto count = static_cast<std::uint16_t>(tables.size());
    std::uint16_t power = 1, log = 0;
    while (power * 2 <= count) {
        power = static_cast<std::uint16_t>(power * 2);
        ++log;
    }
    std::string out;
    put32(out, kTrueTypeVersion);
    put16(out, count);
    put16(out, static_cast<std::uint16_t>(power * 16));
    put16(out, log);
    put16(out, static_cast<std::uint16_t>(count * 16 - power * 16));
    std::uint32_t offset = 12 + 16 * static_cast<std::uint32_t>(count);
    std::size_t headAt = 0;
    for (const auto& [tag, bytes] : tables) {
        out += tag;
        put32(out, checksum(bytes));
        put32(out, offset);
        put32(out, static_cast<std::uint32_t>(bytes.size()));
        if (tag == "head")
            headAt = offset;
        offset += static_cast<std::uint32_t>((bytes.size() + 3) & ~std::size_t(3));
    }
    for (const auto& [tag, bytes] : tables) {
        out += bytes;
        out.append((4 - bytes.size() % 4) % 4, '\0');
    }
    if (headAt != 0)
        set32(out, headAt + 8, 0xB1B0AFBA - checksum(out));
    return out;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string data{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in.good() && !in.eof()) {
        throw Error(errc::kComponent, kFontsSource,
                    "The font file \"" + path + "\" could not be read.");
    }
    return data;
}

/// A PostScript name as a PDF name may hold it: printable ASCII without delimiters.
std::string cleanName(std::string_view name) {
    std::string out;
    for (const char c : name) {
        if (c > 32 && c < 127 && std::string_view("()<>[]{}/%#").find(c) == std::string_view::npos)
            out += c;
    }
    return out;
}

/// Six capital letters from the glyphs a subset holds, the tag PDF puts before a subset's
/// name: the same glyphs give the same tag, so the same document gives the same bytes.
std::string subsetTag(const std::string& name, const std::map<std::uint16_t, char32_t>& glyphs) {
    std::uint64_t hash = 1469598103934665603ULL;
    const auto mix = [&](std::uint64_t value) { hash = (hash ^ value) * 1099511628211ULL; };
    for (const char c : name)
        mix(static_cast<unsigned char>(c));
    for (const auto& [glyph, character] : glyphs)
        mix(glyph);
    std::string tag;
    for (int i = 0; i < 6; ++i) {
        tag += static_cast<char>('A' + hash % 26);
        hash /= 26;
    }
    return tag;
}

/// The glyph-to-character map viewers use to extract text.
std::string toUnicodeMap(const std::map<std::uint16_t, char32_t>& characters) {
    std::string out = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
                      "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    std::vector<std::pair<std::uint16_t, char32_t>> mapped;
    for (const auto& entry : characters) {
        if (entry.second != 0)
            mapped.push_back(entry);
    }
    char text[40];
    for (std::size_t start = 0; start < mapped.size(); start += 100) {
        const std::size_t end = std::min(mapped.size(), start + 100);
        appendInteger(out, static_cast<long long>(end - start));
        out += " beginbfchar\n";
        for (std::size_t i = start; i < end; ++i) {
            const char32_t c = mapped[i].second;
            if (c >= 0x10000) {
                std::snprintf(text, sizeof text, "<%04X> <%04X%04X>\n", mapped[i].first,
                              static_cast<unsigned>(0xD800 + ((c - 0x10000) >> 10)),
                              static_cast<unsigned>(0xDC00 + ((c - 0x10000) & 0x3FF)));
            } else {
                std::snprintf(text, sizeof text, "<%04X> <%04X>\n", mapped[i].first,
                              static_cast<unsigned>(c));
            }
            out += text;
        }
        out += "endbfchar\n";
    }
    out += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    return out;
}

} // namespace

// ---- FontProgram ---------------------------------------------------------------------------

FontProgram::FontProgram(const std::string& path, int index) : m_path(path) {
    m_data = readFile(path);
    const std::string_view data = m_data;
    std::size_t base = 0;
    if (data.size() >= 12 && u32(data, 0) == kCollection) {
        const std::uint32_t faces = u32(data, 8);
        if (index < 0 || static_cast<std::uint32_t>(index) >= faces ||
            data.size() < 16 + 4 * static_cast<std::size_t>(faces))
            malformed("no face " + std::to_string(index) + " in the collection");
        base = u32(data, 12 + 4 * static_cast<std::size_t>(index));
    }
    if (data.size() < base + 12)
        malformed("too short for a font file");
    m_version = u32(data, base);
    if (m_version != kTrueTypeVersion && m_version != kAppleTrueType && m_version != kCffVersion)
        malformed("not a TrueType or OpenType font");
    const std::uint16_t count = u16(data, base + 4);
    if (data.size() < base + 12 + 16 * static_cast<std::size_t>(count))
        malformed("its table directory is cut short");
    for (std::uint16_t i = 0; i < count; ++i) {
        const std::size_t record = base + 12 + 16 * static_cast<std::size_t>(i);
        Table table{u32(data, record + 8), u32(data, record + 12)};
        if (static_cast<std::uint64_t>(table.offset) + table.length > data.size())
            malformed("table " + std::string(data.substr(record, 4)) + " lies outside the file");
        m_tables.emplace(std::string(data.substr(record, 4)), table);
    }
    for (const char* required : {"head", "hhea", "maxp"}) {
        if (!find(required))
            malformed(std::string("no ") + required + " table");
    }
    if (bytes(*find("head")).size() < 54 || bytes(*find("hhea")).size() < 36 ||
        bytes(*find("maxp")).size() < 6)
        malformed("a header table is cut short");
}

void FontProgram::malformed(const std::string& what) const {
    throw Error(errc::kComponent, kFontsSource,
                "The font file \"" + m_path + "\" cannot be embedded in a PDF: " + what + ".");
}

const FontProgram::Table* FontProgram::find(const char* tag) const {
    const auto found = m_tables.find(tag);
    return found == m_tables.end() ? nullptr : &found->second;
}

std::string_view FontProgram::bytes(const Table& table) const {
    return std::string_view(m_data).substr(table.offset, table.length);
}

bool FontProgram::hasTrueTypeOutlines() const {
    return m_version != kCffVersion && find("glyf") && find("loca");
}

std::string FontProgram::postScriptName() const {
    const Table* table = find("name");
    if (!table)
        return {};
    const std::string_view name = bytes(*table);
    if (name.size() < 6)
        return {};
    const std::size_t count = u16(name, 2);
    const std::size_t strings = u16(name, 4);
    for (std::size_t i = 0; i < count && 6 + 12 * (i + 1) <= name.size(); ++i) {
        const std::size_t record = 6 + 12 * i;
        const std::uint16_t platform = u16(name, record);
        if (u16(name, record + 6) != 6 || (platform != 1 && platform != 3))
            continue;
        const std::size_t length = u16(name, record + 8);
        const std::size_t at = strings + u16(name, record + 10);
        if (at + length > name.size())
            continue;
        std::string text;
        const std::size_t step = platform == 3 ? 2 : 1; // Windows names are UTF-16BE
        for (std::size_t k = step - 1; k < length; k += step)
            text += name[at + k];
        text = cleanName(text);
        if (!text.empty())
            return text;
    }
    return {};
}

FontProgram::Metrics FontProgram::metrics() const {
    const std::string_view head = bytes(*find("head"));
    const std::string_view hhea = bytes(*find("hhea"));
    const double units = u16(head, 18) > 0 ? u16(head, 18) : 1000;
    const auto scale = [&](double value) { return std::round(value * 1000 / units); };
    Metrics m;
    m.left = scale(s16(head, 36));
    m.bottom = scale(s16(head, 38));
    m.right = scale(s16(head, 40));
    m.top = scale(s16(head, 42));
    m.ascent = scale(s16(hhea, 4));
    m.descent = scale(s16(hhea, 6));
    m.capHeight = m.ascent;
    if (const Table* os2 = find("OS/2"); os2 && os2->length >= 90 && u16(bytes(*os2), 0) >= 2)
        m.capHeight = scale(s16(bytes(*os2), 88));
    if (const Table* post = find("post"); post && post->length >= 8)
        m.italicAngle = static_cast<std::int32_t>(u32(bytes(*post), 4)) / 65536.0;
    return m;
}

std::string FontProgram::subset(const std::set<std::uint16_t>& glyphs) const {
    const std::string_view head = bytes(*find("head"));
    const std::string_view loca = bytes(*find("loca"));
    const std::string_view glyf = bytes(*find("glyf"));
    const std::size_t count = u16(bytes(*find("maxp")), 4);
    const bool longOffsets = s16(head, 50) != 0;
    if (loca.size() < (count + 1) * (longOffsets ? 4 : 2))
        malformed("its glyph index is cut short");
    const auto offsetOf = [&](std::size_t glyph) -> std::size_t {
        return longOffsets ? u32(loca, 4 * glyph) : 2 * std::size_t(u16(loca, 2 * glyph));
    };
    const auto outline = [&](std::size_t glyph) -> std::string_view {
        const std::size_t start = offsetOf(glyph), end = offsetOf(glyph + 1);
        if (start > end || end > glyf.size())
            malformed("glyph " + std::to_string(glyph) + " lies outside its table");
        return glyf.substr(start, end - start);
    };

    // The glyphs shown and, for composite glyphs, the glyphs they are made of.
    std::vector<bool> kept(count, false);
    std::vector<std::size_t> pending{0};
    for (const std::uint16_t g : glyphs)
        pending.push_back(g);
    while (!pending.empty()) {
        const std::size_t glyph = pending.back();
        pending.pop_back();
        if (glyph >= count || kept[glyph])
            continue;
        kept[glyph] = true;
        const std::string_view data = outline(glyph);
        if (data.size() < 10 || s16(data, 0) >= 0)
            continue;
        std::size_t at = 10;
        std::uint16_t flags = kMoreComponents;
        while ((flags & kMoreComponents) && at + 4 <= data.size()) {
            flags = u16(data, at);
            pending.push_back(u16(data, at + 2));
            at += 4 + ((flags & kArgsAreWords) ? 4 : 2);
            if (flags & kHasScale)
                at += 2;
            else if (flags & kHasXYScale)
                at += 4;
            else if (flags & kHasTwoByTwo)
                at += 8;
        }
    }

    std::string newGlyf, newLoca;
    for (std::size_t glyph = 0; glyph < count; ++glyph) {
        put32(newLoca, static_cast<std::uint32_t>(newGlyf.size()));
        if (kept[glyph]) {
            newGlyf.append(outline(glyph));
            newGlyf.append((4 - newGlyf.size() % 4) % 4, '\0');
        }
    }
    put32(newLoca, static_cast<std::uint32_t>(newGlyf.size()));

    std::map<std::string, std::string> tables;
    for (const char* tag : {"cvt ", "fpgm", "prep", "hhea", "hmtx", "maxp"}) {
        if (const Table* table = find(tag))
            tables.emplace(tag, std::string(bytes(*table)));
    }
    std::string newHead(head);
    set32(newHead, 8, 0);     // the checksum adjustment, filled in for the new file
    newHead[50] = 0;          // long glyph offsets
    newHead[51] = 1;
    tables.emplace("head", std::move(newHead));
    tables.emplace("loca", std::move(newLoca));
    tables.emplace("glyf", std::move(newGlyf));
    return buildFont(tables);
}

std::string FontProgram::whole() const {
    std::map<std::string, std::string> tables;
    for (const auto& [tag, table] : m_tables)
        tables.emplace(tag, std::string(bytes(table)));
    std::string font = buildFont(tables);
    set32(font, 0, m_version); // CFF fonts keep their 'OTTO'
    return font;
}

// ---- EmbeddedFont --------------------------------------------------------------------------

EmbeddedFont::EmbeddedFont(const FontFace& face, int objectNumber)
    : m_face(&face), m_objectNumber(objectNumber) {}

double EmbeddedFont::note(std::uint16_t glyph, char32_t character, double width) {
    if (glyph >= m_widths.size())
        m_widths.resize(static_cast<std::size_t>(glyph) + 1, -1);
    // Widths go into the file with three decimals; the text is placed with that value.
    if (m_widths[glyph] < 0)
        m_widths[glyph] = std::max(0.0, std::round(width * 1000) / 1000);
    m_characters.emplace(glyph, character);
    return m_widths[glyph];
}

void EmbeddedFont::write(ObjectWriter& writer) const {
    const FontProgram program(m_face->file, m_face->index);
    std::string name = program.postScriptName();
    if (name.empty()) {
        name = cleanName(m_face->family);
        if (m_face->bold || m_face->italic)
            name += std::string("-") + (m_face->bold ? "Bold" : "") + (m_face->italic ? "Italic" : "");
    }
    const bool trueType = program.hasTrueTypeOutlines();
    if (trueType)
        name = subsetTag(name, m_characters) + "+" + name;

    const int descendant = writer.reserve();
    const int descriptor = writer.reserve();
    const int file = writer.reserve();
    const int unicode = writer.reserve();

    std::string body = "<< /Type /Font /Subtype /Type0 /BaseFont /" + name +
                       " /Encoding /Identity-H /DescendantFonts [";
    appendInteger(body, descendant);
    body += " 0 R] /ToUnicode ";
    appendInteger(body, unicode);
    body += " 0 R >>";
    writer.object(m_objectNumber, body);

    // Widths of the glyphs shown, consecutive glyphs in one list: "first [w w w]".
    body = "<< /Type /Font /Subtype /";
    body += trueType ? "CIDFontType2" : "CIDFontType0";
    body += " /BaseFont /" + name +
            " /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >>"
            " /FontDescriptor ";
    appendInteger(body, descriptor);
    body += " 0 R";
    if (trueType)
        body += " /CIDToGIDMap /Identity";
    body += " /DW 0 /W [";
    for (std::size_t glyph = 0; glyph < m_widths.size();) {
        if (m_widths[glyph] < 0) {
            ++glyph;
            continue;
        }
        appendInteger(body, static_cast<long long>(glyph));
        body += " [";
        for (bool first = true; glyph < m_widths.size() && m_widths[glyph] >= 0; ++glyph) {
            if (!first)
                body += ' ';
            appendNumber(body, m_widths[glyph], 3);
            first = false;
        }
        body += "] ";
    }
    body += "] >>";
    writer.object(descendant, body);

    const FontProgram::Metrics m = program.metrics();
    body = "<< /Type /FontDescriptor /FontName /" + name + " /Flags ";
    // Symbolic (glyphs are chosen by number, not by a standard encoding), italic when slanted.
    appendInteger(body, 4 + (m_face->italic || m.italicAngle != 0 ? 64 : 0));
    body += " /FontBBox [";
    for (const double value : {m.left, m.bottom, m.right, m.top}) {
        appendNumber(body, value, 0);
        body += ' ';
    }
    body += "] /ItalicAngle ";
    appendNumber(body, m.italicAngle, 2);
    body += " /Ascent ";
    appendNumber(body, m.ascent, 0);
    body += " /Descent ";
    appendNumber(body, m.descent, 0);
    body += " /CapHeight ";
    appendNumber(body, m.capHeight, 0);
    body += " /StemV ";
    appendInteger(body, m_face->bold ? 140 : 80);
    body += trueType ? " /FontFile2 " : " /FontFile3 ";
    appendInteger(body, file);
    body += " 0 R >>";
    writer.object(descriptor, body);

    std::string fontFile;
    std::string dictionary;
    if (trueType) {
        std::set<std::uint16_t> shown;
        for (const auto& [glyph, character] : m_characters)
            shown.insert(glyph);
        fontFile = program.subset(shown);
        dictionary = "/Length1 ";
        appendInteger(dictionary, static_cast<long long>(fontFile.size()));
    } else {
        fontFile = program.whole();
        dictionary = "/Subtype /OpenType";
    }
    writer.stream(file, dictionary, fontFile);
    writer.stream(unicode, "", toUnicodeMap(m_characters));
}

} // namespace qr::output::pdf
