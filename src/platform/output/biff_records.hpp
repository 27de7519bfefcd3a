#pragma once
// The record layer of an Excel 97-2003 (BIFF8) workbook stream: little-endian records of a
// 16-bit type and a 16-bit length, at most 8,224 data bytes each; texts as BIFF8 strings; the
// shared-string table with its CONTINUE records and its EXTSST index; numbers in the compact
// RK form where it holds them exactly.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qr::output::biff {

/// Largest data part of one record.
inline constexpr std::size_t kMaxRecordData = 8224;
/// Longest text a cell holds, in UTF-16 code units.
inline constexpr std::size_t kMaxCellText = 32767;

/// Record types used by the workbook writer.
namespace record {
inline constexpr std::uint16_t kBof = 0x0809;
inline constexpr std::uint16_t kEof = 0x000A;
inline constexpr std::uint16_t kCodePage = 0x0042;
inline constexpr std::uint16_t kDate1904 = 0x0022;
inline constexpr std::uint16_t kWindow1 = 0x003D;
inline constexpr std::uint16_t kFont = 0x0031;
inline constexpr std::uint16_t kFormat = 0x041E;
inline constexpr std::uint16_t kXf = 0x00E0;
inline constexpr std::uint16_t kStyle = 0x0293;
inline constexpr std::uint16_t kBoundSheet = 0x0085;
inline constexpr std::uint16_t kSst = 0x00FC;
inline constexpr std::uint16_t kContinue = 0x003C;
inline constexpr std::uint16_t kExtSst = 0x00FF;
inline constexpr std::uint16_t kDefColWidth = 0x0055;
inline constexpr std::uint16_t kColInfo = 0x007D;
inline constexpr std::uint16_t kDimensions = 0x0200;
inline constexpr std::uint16_t kRow = 0x0208;
inline constexpr std::uint16_t kNumber = 0x0203;
inline constexpr std::uint16_t kRk = 0x027E;
inline constexpr std::uint16_t kLabelSst = 0x00FD;
inline constexpr std::uint16_t kWindow2 = 0x023E;
inline constexpr std::uint16_t kFooter = 0x0015;
inline constexpr std::uint16_t kMergedCells = 0x00E5;
} // namespace record

/// Writes records into a buffer and hands full chunks to a sink. Without a sink the bytes are
/// only counted, which measures a stream before it is written.
class RecordWriter {
  public:
    using Sink = std::function<void(std::span<const std::uint8_t>)>;

    explicit RecordWriter(Sink sink = {});

    /// Opens a record; its length is filled in by end().
    void begin(std::uint16_t type);
    void u8(std::uint8_t value) { *take(1) = value; }
    void u16(std::uint16_t value) { putLittleEndian(take(2), value, 2); }
    void u32(std::uint32_t value) { putLittleEndian(take(4), value, 4); }
    void f64(double value);
    void bytes(std::span<const std::uint8_t> data);
    /// Closes the open record. Raises std::logic_error when its data exceeds kMaxRecordData.
    void end();
    /// A whole record at once.
    void record(std::uint16_t type, std::span<const std::uint8_t> data);

    /// Whether the writer only counts (it has no sink).
    bool counting() const { return !m_sink; }
    /// Counts `size` bytes of whole records without writing them: a counting writer can
    /// measure records whose sizes are known without encoding them.
    void count(std::uint64_t size);

    /// Stream position of the next byte written.
    std::uint64_t position() const { return m_flushed + m_used; }
    /// Hands everything buffered to the sink.
    void flush();

  private:
    /// The next `size` bytes of the buffer, counted as written. The buffer holds a chunk and
    /// the longest record past it, so it grows only for a record that end() will refuse.
    std::uint8_t* take(std::size_t size) {
        if (m_used + size > m_buffer.size()) {
            grow(size);
        }
        std::uint8_t* at = m_buffer.data() + m_used;
        m_used += size;
        return at;
    }
    void grow(std::size_t size);
    static void putLittleEndian(std::uint8_t* at, std::uint64_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            at[i] = static_cast<std::uint8_t>(value >> (8 * i));
        }
    }
    void flushIfFull();

    Sink m_sink;
    std::vector<std::uint8_t> m_buffer; // its whole size is room; m_used bytes are written
    std::size_t m_used = 0;
    std::uint64_t m_flushed = 0;
    std::size_t m_open = 0; // buffer offset of the open record's header
    bool m_inRecord = false;
};

/// A text as BIFF8 stores it: UTF-16 code units, written one byte per character
/// ("compressed") when every unit is below 0x100.
struct BiffString {
    std::u16string units;
    bool compressed = true;
};

/// Decodes UTF-8 into `out`, keeping at most `maxUnits` code units and never splitting a
/// surrogate pair. Bytes that are not valid UTF-8 become U+FFFD.
void toBiffString(std::string_view utf8, std::size_t maxUnits, BiffString& out);

/// A string with a 16-bit length (XLUnicodeString): length, flags, characters.
void writeUnicodeString(RecordWriter& out, const BiffString& text);
/// A string with an 8-bit length (ShortXLUnicodeString), for names of at most 255 units.
void writeShortUnicodeString(RecordWriter& out, const BiffString& text);
/// Bytes a string takes with a 16-bit (wide) or an 8-bit length.
std::size_t unicodeStringSize(const BiffString& text, bool wideLength);

/// Writes the shared-string table: an SST record continued by CONTINUE records past 8,224
/// bytes (a string's header never parts from its first character; each continuation of a
/// string starts with a fresh flags byte), then the EXTSST index of every eighth or more
/// string. `uses` is the number of cells that refer to the table.
void writeSharedStrings(RecordWriter& out, const std::vector<std::string>& texts,
                        std::uint32_t uses);

/// The RK form of a value (integers and hundredths within 30 bits, or doubles whose low 34
/// bits are zero), or nothing when only a full NUMBER record holds it exactly.
std::optional<std::uint32_t> encodeRk(double value);

} // namespace qr::output::biff
