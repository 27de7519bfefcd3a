#include "platform/output/biff_records.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace qr::output::biff {

namespace {
constexpr std::size_t kChunk = std::size_t{1} << 16;
constexpr std::size_t kRecordHeader = 4;
constexpr char16_t kReplacement = 0xFFFD;
} // namespace

// --- RecordWriter ---------------------------------------------------------------------------

RecordWriter::RecordWriter(Sink sink)
    : m_sink(std::move(sink)), m_buffer(kChunk + kMaxRecordData + kRecordHeader) {}

void RecordWriter::begin(std::uint16_t type) {
    if (m_inRecord) {
        throw std::logic_error("BIFF record opened inside another record");
    }
    flushIfFull();
    m_open = m_used;
    u16(type);
    u16(0);
    m_inRecord = true;
}

void RecordWriter::grow(std::size_t size) {
    m_buffer.resize(std::max(m_buffer.size() * 2, m_used + size));
}

void RecordWriter::f64(double value) {
    putLittleEndian(take(8), std::bit_cast<std::uint64_t>(value), 8);
}

void RecordWriter::bytes(std::span<const std::uint8_t> data) {
    if (!data.empty()) {
        std::memcpy(take(data.size()), data.data(), data.size());
    }
}

void RecordWriter::end() {
    if (!m_inRecord) {
        throw std::logic_error("BIFF record closed without being opened");
    }
    std::size_t size = m_used - m_open - kRecordHeader;
    if (size > kMaxRecordData) {
        throw std::logic_error("BIFF record longer than 8,224 bytes");
    }
    m_buffer[m_open + 2] = static_cast<std::uint8_t>(size);
    m_buffer[m_open + 3] = static_cast<std::uint8_t>(size >> 8);
    m_inRecord = false;
}

void RecordWriter::record(std::uint16_t type, std::span<const std::uint8_t> data) {
    begin(type);
    bytes(data);
    end();
}

void RecordWriter::count(std::uint64_t size) {
    if (m_sink || m_inRecord) {
        throw std::logic_error("BIFF bytes counted but not written");
    }
    m_flushed += size;
}

void RecordWriter::flushIfFull() {
    if (m_used >= kChunk) {
        flush();
    }
}

void RecordWriter::flush() {
    if (m_inRecord) {
        throw std::logic_error("BIFF stream flushed inside a record");
    }
    if (m_used == 0) {
        return;
    }
    if (m_sink) {
        m_sink(std::span<const std::uint8_t>(m_buffer.data(), m_used));
    }
    m_flushed += m_used;
    m_used = 0;
}

// --- strings --------------------------------------------------------------------------------

namespace {

/// Decodes one UTF-8 sequence at `pos`; returns the code point (U+FFFD for a bad sequence)
/// and advances `pos` past it.
char32_t decodeUtf8(std::string_view text, std::size_t& pos) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = byte(pos);
    std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || pos + length > text.size()) {
        ++pos;
        return kReplacement;
    }
    char32_t code = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(pos + i) & 0xC0) != 0x80) {
            ++pos;
            return kReplacement;
        }
        code = (code << 6) | (byte(pos + i) & 0x3F);
    }
    bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        ++pos;
        return kReplacement;
    }
    pos += length;
    return code;
}

void writeChars(RecordWriter& out, const BiffString& text) {
    if (text.compressed) {
        for (char16_t unit : text.units) {
            out.u8(static_cast<std::uint8_t>(unit));
        }
    } else {
        for (char16_t unit : text.units) {
            out.u16(static_cast<std::uint16_t>(unit));
        }
    }
}

} // namespace

void toBiffString(std::string_view utf8, std::size_t maxUnits, BiffString& out) {
    out.units.clear();
    out.compressed = true;
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        auto lead = static_cast<unsigned char>(utf8[pos]);
        char32_t code = lead < 0x80 ? (++pos, lead) : decodeUtf8(utf8, pos);
        std::size_t need = code >= 0x10000 ? 2 : 1;
        if (out.units.size() + need > maxUnits) {
            break;
        }
        if (need == 2) {
            code -= 0x10000;
            out.units.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
            out.units.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            out.units.push_back(static_cast<char16_t>(code));
        }
        out.compressed = out.compressed && code < 0x100;
    }
}

void writeUnicodeString(RecordWriter& out, const BiffString& text) {
    out.u16(static_cast<std::uint16_t>(text.units.size()));
    out.u8(text.compressed ? 0 : 1);
    writeChars(out, text);
}

void writeShortUnicodeString(RecordWriter& out, const BiffString& text) {
    out.u8(static_cast<std::uint8_t>(text.units.size()));
    out.u8(text.compressed ? 0 : 1);
    writeChars(out, text);
}

std::size_t unicodeStringSize(const BiffString& text, bool wideLength) {
    return (wideLength ? 3 : 2) + text.units.size() * (text.compressed ? 1 : 2);
}

// --- shared strings -------------------------------------------------------------------------

namespace {

/// Builds the SST record and its CONTINUE records one at a time.
class SstRecords {
  public:
    explicit SstRecords(RecordWriter& out) : m_out(out) { m_data.reserve(kMaxRecordData); }

    std::size_t room() const { return kMaxRecordData - m_data.size(); }
    /// Stream position and record offset (counted from the record header) of the next byte.
    std::uint64_t nextPosition() const { return m_out.position() + kRecordHeader + m_data.size(); }
    std::uint16_t nextOffset() const {
        return static_cast<std::uint16_t>(kRecordHeader + m_data.size());
    }

    void u8(std::uint8_t value) { m_data.push_back(value); }
    void u16(std::uint16_t value) {
        m_data.push_back(static_cast<std::uint8_t>(value));
        m_data.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    void u32(std::uint32_t value) {
        u16(static_cast<std::uint16_t>(value));
        u16(static_cast<std::uint16_t>(value >> 16));
    }

    /// Ends the current record; what follows goes into a CONTINUE record.
    void next() {
        m_out.record(m_type, m_data);
        m_data.clear();
        m_type = record::kContinue;
    }

  private:
    RecordWriter& m_out;
    std::vector<std::uint8_t> m_data;
    std::uint16_t m_type = record::kSst;
};

struct BucketStart {
    std::uint64_t position;
    std::uint16_t offset;
};

void appendString(SstRecords& sst, const BiffString& text) {
    std::size_t charSize = text.compressed ? 1 : 2;
    std::uint8_t flags = text.compressed ? 0 : 1;
    sst.u16(static_cast<std::uint16_t>(text.units.size()));
    sst.u8(flags);
    std::size_t done = 0;
    while (done < text.units.size()) {
        std::size_t fit = sst.room() / charSize;
        if (fit == 0) {
            // The rest of the string continues in the next record, behind a fresh flags byte.
            sst.next();
            sst.u8(flags);
            continue;
        }
        std::size_t count = std::min(fit, text.units.size() - done);
        for (std::size_t i = done; i < done + count; ++i) {
            if (text.compressed) {
                sst.u8(static_cast<std::uint8_t>(text.units[i]));
            } else {
                sst.u16(static_cast<std::uint16_t>(text.units[i]));
            }
        }
        done += count;
    }
}

} // namespace

void writeSharedStrings(RecordWriter& out, const std::vector<std::string>& texts,
                        std::uint32_t uses) {
    // EXTSST holds at most 128 bucket starts, each bucket at least eight strings.
    std::size_t perBucket = std::max<std::size_t>(8, (texts.size() + 127) / 128);
    std::vector<BucketStart> buckets;
    SstRecords sst(out);
    sst.u32(uses);
    sst.u32(static_cast<std::uint32_t>(texts.size()));
    BiffString text;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        toBiffString(texts[i], kMaxCellText, text);
        // A string's header stays with its first character.
        std::size_t head = 3 + (text.units.empty() ? 0 : (text.compressed ? 1 : 2));
        if (sst.room() < head) {
            sst.next();
        }
        if (i % perBucket == 0) {
            buckets.push_back({sst.nextPosition(), sst.nextOffset()});
        }
        appendString(sst, text);
    }
    sst.next();

    out.begin(record::kExtSst);
    out.u16(static_cast<std::uint16_t>(perBucket));
    for (const BucketStart& bucket : buckets) {
        out.u32(static_cast<std::uint32_t>(bucket.position));
        out.u16(bucket.offset);
        out.u16(0);
    }
    out.end();
}

// --- numbers --------------------------------------------------------------------------------

std::optional<std::uint32_t> encodeRk(double value) {
    constexpr double kLowest = -(1 << 29);
    constexpr double kHighest = (1 << 29) - 1;
    auto bits = std::bit_cast<std::uint64_t>(value);
    bool negativeZero = value == 0.0 && std::signbit(value);
    if (!negativeZero && value >= kLowest && value <= kHighest && value == std::floor(value)) {
        auto whole = static_cast<std::int32_t>(value);
        return (static_cast<std::uint32_t>(whole) << 2) | 0x2U;
    }
    double hundredths = value * 100.0;
    if (!negativeZero && hundredths >= kLowest && hundredths <= kHighest &&
        hundredths == std::floor(hundredths)) {
        auto whole = static_cast<std::int32_t>(hundredths);
        if (static_cast<double>(whole) / 100.0 == value) {
            return (static_cast<std::uint32_t>(whole) << 2) | 0x3U;
        }
    }
    if ((bits & 0x3FFFFFFFFULL) == 0) {
        return static_cast<std::uint32_t>(bits >> 32);
    }
    return std::nullopt;
}

} // namespace qr::output::biff
