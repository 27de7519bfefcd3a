#include "platform/preview/preview.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/preview/desktop_session.hpp"
#include "platform/preview/preview_window.hpp"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <system_error>

namespace qr::output {

namespace {

constexpr std::size_t kMaxStemLength = 80;

bool keptInFileName(unsigned char c) {
    return std::isalnum(c) || c == ' ' || c == '-' || c == '_' || c == '.' || c == '(' || c == ')';
}

std::filesystem::path makeTemporaryFolder() {
    std::error_code ec;
    std::filesystem::path base = std::filesystem::temp_directory_path(ec);
    if (ec)
        base = "/tmp";
    std::string pattern = (base / "quarvex-preview-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        throw Error(errc::kComponent, kPreviewSource,
                    "Could not make a preview folder in \"" + base.string() +
                        "\": " + std::strerror(errno));
    }
    return pattern;
}

} // namespace

std::string previewFileStem(std::string_view title) {
    std::string stem;
    bool replacing = false;
    for (char c : title) {
        if (keptInFileName(static_cast<unsigned char>(c))) {
            stem += c;
            replacing = false;
        } else if (!replacing) {
            stem += '_';
            replacing = true;
        }
    }
    if (stem.size() > kMaxStemLength)
        stem.resize(kMaxStemLength);
    // Leading dots would hide the file; trailing dots and spaces trouble other systems.
    const auto first = stem.find_first_not_of(" .");
    const auto last = stem.find_last_not_of(" .");
    stem = first == std::string::npos ? std::string() : stem.substr(first, last - first + 1);
    return stem.empty() ? "Report" : stem;
}

HeadlessPreview::HeadlessPreview(std::ostream& messages) : m_messages(messages) {}

HeadlessPreview::HeadlessPreview() : HeadlessPreview(std::cerr) {}

std::filesystem::path HeadlessPreview::folder() {
    const char* configured = std::getenv(kPreviewDirVariable);
    if (configured && *configured) {
        std::filesystem::path path(configured);
        std::error_code ec;
        std::filesystem::create_directories(path, ec);
        if (ec || !std::filesystem::is_directory(path)) {
            throw Error(
                errc::kComponent, kPreviewSource,
                "The preview folder \"" + path.string() + "\" (" + kPreviewDirVariable +
                    ") cannot be used: " + (ec ? ec.message() : std::string("it is not a folder")));
        }
        return path;
    }
    if (m_temporaryFolder.empty())
        m_temporaryFolder = makeTemporaryFolder();
    return m_temporaryFolder;
}

void HeadlessPreview::show(const page::Pages& pages, const std::string& title) {
    const std::filesystem::path dir = folder();
    const std::string stem = previewFileStem(title);
    std::filesystem::path file;
    for (int n = 1;; ++n) {
        file = dir / (stem + "-" + std::to_string(n) + ".pdf");
        if (!std::filesystem::exists(file))
            break;
    }
    writePdf(pages, file);
    m_lastFile = file;
    m_messages << "Preview written to " << file.string() << std::endl;
}

std::unique_ptr<PreviewPresenter> makePreviewPresenter() {
    if (isInteractiveSession())
        return std::make_unique<WindowPreview>();
    return std::make_unique<HeadlessPreview>();
}

} // namespace qr::output
