#pragma once
// The file structure of a PDF: numbered objects written one after another, each one's offset
// remembered for the cross-reference table that ends the file, streams compressed with zlib.
// Objects may refer to numbers reserved before they are written, so a page can name the
// shared resources and its parent long before those objects exist.

#include "platform/output/output_file.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

namespace qr::output::pdf {

/// Appends `value` with at most `decimals` digits after the point, trailing zeros and a
/// lone point dropped ("12", "0.5", "-3.25"), never in exponent form: the number syntax PDF
/// content and objects accept. Values that would print as "-0" print as "0".
void appendNumber(std::string& out, double value, int decimals);
/// Appends an integer.
void appendInteger(std::string& out, long long value);

/// `text` (UTF-8) as a PDF text string: a literal string "(...)" with \, ( and ) escaped when
/// every character is printable ASCII, otherwise UTF-16BE with a byte-order mark in hex
/// ("<FEFF...>"), which viewers show in any script.
std::string textString(std::string_view utf8);

/// Writes numbered objects to an OutputFile and ends the file with the cross-reference table.
class ObjectWriter {
  public:
    /// Writes the header. `file` must outlive the writer.
    explicit ObjectWriter(OutputFile& file);
    ~ObjectWriter();
    ObjectWriter(const ObjectWriter&) = delete;
    ObjectWriter& operator=(const ObjectWriter&) = delete;

    /// A new object number, to be written later with object() or stream().
    int reserve();
    /// Writes object `number` whose body (a dictionary, array, ...) is `body`.
    void object(int number, std::string_view body);
    /// Writes object `number` as a stream of `data`, deflated; `dictionary` holds the entries
    /// other than /Length and /Filter (without the << >>).
    void stream(int number, std::string_view dictionary, std::string_view data);
    /// Writes the cross-reference table and the trailer naming `root` and `info`. Raises
    /// qr::Error when an object reserved was never written.
    void finish(int root, int info);

  private:
    void put(std::string_view bytes);
    void begin(int number);

    OutputFile& m_file;
    std::uint64_t m_offset = 0;
    std::vector<std::uint64_t> m_offsets; // by object number - 1; 0 while not written
    z_stream m_zlib{};
    std::string m_deflated;
    std::string m_scratch;
    std::uint64_t m_fingerprint = 1469598103934665603ULL; // of every byte, for the file's ID
};

} // namespace qr::output::pdf
