#pragma once
// A file written whole or not at all: the bytes go to a temporary file beside the target (same
// folder, so the final rename is atomic) and only a successful commit renames it into place.
// Anything short of that removes the temporary and leaves an existing target untouched.

#include <cairo.h>
#include <cstdio>
#include <filesystem>
#include <string>

namespace qr::output {

/// Why an existing `target` must not be replaced, or empty when it may be (or does not exist):
/// a file marked read-only (no write permission for anyone: the estimator protected it), or
/// one that is open in a spreadsheet or office program, seen by the lock file such programs
/// keep beside it (".~lock.<name>#" for LibreOffice, "~$<name>" for Excel on a shared folder).
std::string replaceRefusal(const std::filesystem::path& target);

class OutputFile {
  public:
    /// Creates the temporary file. `kind` names the file in messages ("PDF", "PNG"), `source`
    /// is the error source. Raises qr::Error naming the target and the cause when the folder
    /// cannot take a new file or the target may not be replaced (replaceRefusal).
    OutputFile(std::filesystem::path target, std::string kind, std::string source);
    /// Removes the temporary unless committed.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const std::filesystem::path& target() const { return m_target; }
    const std::filesystem::path& temporary() const { return m_temporary; }

    /// Appends bytes; a failure is remembered and reported by commit().
    void write(const void* data, std::size_t size);
    /// A cairo write callback over an OutputFile passed as the closure.
    static cairo_status_t cairoWrite(void* closure, const unsigned char* data, unsigned int size);

    /// Flushes, closes and renames the temporary onto the target. Raises qr::Error naming the
    /// target and the cause on any failure (the temporary is then removed).
    void commit();
    /// Removes the temporary and raises qr::Error naming the target and `cause`.
    [[noreturn]] void fail(const std::string& cause);

  private:
    void discard() noexcept;

    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    std::string m_kind;
    std::string m_source;
    std::FILE* m_stream = nullptr;
    int m_writeError = 0; // errno of the first failed write
    bool m_committed = false;
};

} // namespace qr::output
