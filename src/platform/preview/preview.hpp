#pragma once
// Showing a report before it is printed. The presenter is an interface so the service does not
// care whether a window or a file shows the pages. A person at a desktop gets the modal preview
// window (preview_window.hpp); without one (no display, QUARVEX_NONINTERACTIVE=1, see
// desktop_session.hpp) the headless presenter writes the pages to a PDF in a preview folder and
// says where on standard error, and never waits for anyone.
//   QUARVEX_PREVIEW_DIR=FOLDER  where headless preview files go (created when missing); unset,
//                               a fresh temporary folder is used

#include "platform/engine/page/page.hpp"

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace qr::output {

inline constexpr const char* kPreviewDirVariable = "QUARVEX_PREVIEW_DIR";

/// Shows pages to the user. show() returns when the user is done with them.
class PreviewPresenter {
  public:
    virtual ~PreviewPresenter() = default;
    /// Shows `pages` under `title`. Raises qr::Error when they cannot be shown.
    virtual void show(const page::Pages& pages, const std::string& title) = 0;
};

/// Writes each preview to a new PDF in the preview folder, named after the title and numbered
/// ("Job Glass Report-1.pdf", "-2", ...), reports "Preview written to PATH" on `messages`, and
/// returns at once.
class HeadlessPreview final : public PreviewPresenter {
  public:
    explicit HeadlessPreview(std::ostream& messages);
    HeadlessPreview();

    /// Raises qr::Error naming the folder when it cannot be made, or what writePdf raises.
    void show(const page::Pages& pages, const std::string& title) override;

    /// The file the last show() wrote (empty before the first).
    const std::filesystem::path& lastFile() const { return m_lastFile; }

  private:
    std::filesystem::path folder();

    std::ostream& m_messages;
    std::filesystem::path m_temporaryFolder; // made on first use when no folder is configured
    std::filesystem::path m_lastFile;
};

/// A file name stem made from a title: letters, digits, spaces and -_.() kept, every other run
/// of characters one "_", ends trimmed, at most 80 characters; "Report" when nothing is left.
std::string previewFileStem(std::string_view title);

/// The presenter the service uses: the preview window in an interactive session
/// (isInteractiveSession), otherwise the headless one, reporting on standard error.
std::unique_ptr<PreviewPresenter> makePreviewPresenter();

} // namespace qr::output
