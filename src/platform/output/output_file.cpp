#include "platform/output/output_file.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace qr::output {

namespace {

constexpr int kCreateAttempts = 16;

std::string temporaryName(const std::filesystem::path& target) {
    static std::atomic<unsigned> counter{0};
    static thread_local std::mt19937 random{std::random_device{}()};
    // Built by appending: GCC 12 warns falsely about "literal" + std::string at -O3.
    std::string name(".");
    name.append(target.filename().string());
    name.append(".").append(std::to_string(::getpid()));
    name.append("-").append(std::to_string(counter++));
    name.append("-").append(std::to_string(random() % 1000000));
    name.append(".tmp");
    return name;
}

} // namespace

std::string replaceRefusal(const std::filesystem::path& target) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::file_status status = fs::status(target, ec);
    if (ec || !fs::exists(status))
        return {};
    using fs::perms;
    if ((status.permissions() & (perms::owner_write | perms::group_write | perms::others_write)) ==
        perms::none)
        return "the file is read-only";
    const std::string name = target.filename().string();
    for (const std::string& lock : {".~lock." + name + "#", "~$" + name}) {
        if (fs::exists(target.parent_path() / lock, ec))
            return "the file is open in another program (its lock file \"" + lock +
                   "\" is beside it); close it and try again";
    }
    return {};
}

OutputFile::OutputFile(std::filesystem::path target, std::string kind, std::string source)
    : m_target(std::move(target)), m_kind(std::move(kind)), m_source(std::move(source)) {
    if (m_target.empty() || !m_target.has_filename()) {
        throw Error(kFileAccessError, m_source,
                    "Could not write the " + m_kind + " file \"" + m_target.string() +
                        "\": the path does not name a file.");
    }
    if (const std::string refusal = replaceRefusal(m_target); !refusal.empty()) {
        throw Error(kFileAccessError, m_source,
                    "Could not write the " + m_kind + " file \"" + m_target.string() + "\": " +
                        refusal + ".");
    }
    std::filesystem::path folder = m_target.parent_path();
    if (folder.empty())
        folder = ".";
    int fd = -1;
    int error = 0;
    for (int attempt = 0; attempt < kCreateAttempts && fd < 0; ++attempt) {
        m_temporary = folder / temporaryName(m_target);
        // 0666 less the umask: the finished file gets the permissions a plain create would.
        fd = ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        error = errno;
        if (fd < 0 && error != EEXIST)
            break;
    }
    if (fd < 0) {
        throw Error(kFileAccessError, m_source,
                    "Could not write the " + m_kind + " file \"" + m_target.string() +
                        "\": " + std::strerror(error));
    }
    m_stream = ::fdopen(fd, "wb");
    if (!m_stream) {
        error = errno;
        ::close(fd);
        ::unlink(m_temporary.c_str());
        throw Error(kFileAccessError, m_source,
                    "Could not write the " + m_kind + " file \"" + m_target.string() +
                        "\": " + std::strerror(error));
    }
}

OutputFile::~OutputFile() {
    if (!m_committed)
        discard();
}

void OutputFile::write(const void* data, std::size_t size) {
    if (m_writeError != 0 || !m_stream)
        return;
    if (std::fwrite(data, 1, size, m_stream) != size)
        m_writeError = errno ? errno : EIO;
}

cairo_status_t OutputFile::cairoWrite(void* closure, const unsigned char* data, unsigned int size) {
    auto* file = static_cast<OutputFile*>(closure);
    file->write(data, size);
    return file->m_writeError == 0 ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

void OutputFile::commit() {
    if (m_writeError != 0)
        fail(std::strerror(m_writeError));
    if (std::fflush(m_stream) != 0 || ::fsync(::fileno(m_stream)) != 0)
        fail(std::strerror(errno));
    std::FILE* stream = m_stream;
    m_stream = nullptr;
    if (std::fclose(stream) != 0)
        fail(std::strerror(errno));
    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        fail(std::strerror(errno));
    m_committed = true;
}

void OutputFile::fail(const std::string& cause) {
    // A failed write is the real cause behind whatever the caller noticed afterwards.
    const std::string reason = m_writeError != 0 ? std::strerror(m_writeError) : cause;
    discard();
    throw Error(kFileAccessError, m_source,
                "Could not write the " + m_kind + " file \"" + m_target.string() + "\": " + reason);
}

void OutputFile::discard() noexcept {
    if (m_stream) {
        std::fclose(m_stream);
        m_stream = nullptr;
    }
    if (!m_temporary.empty()) {
        ::unlink(m_temporary.c_str());
        m_temporary.clear();
    }
}

} // namespace qr::output
