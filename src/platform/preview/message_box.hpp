#pragma once
// The platform's plain message box: a Qt message box with an OK button when a person can see it
// (desktop_session.hpp), a line on standard error otherwise. The host layer adapts it to its own
// message box interface; this library does not know the host.

#include <iosfwd>
#include <string>

namespace qr::output {

enum class MessageBoxIcon { None, Information, Critical };

/// Shows a message and returns when the user has closed it.
class DesktopMessageBox {
  public:
    enum class Presentation {
        Automatic, // a dialog in an interactive session, a line on the stream otherwise
        Dialog,    // always a dialog
        Stream     // always a line on the stream
    };

    /// Lines go to `stream` (standard error by default).
    explicit DesktopMessageBox(Presentation presentation = Presentation::Automatic);
    DesktopMessageBox(Presentation presentation, std::ostream& stream);

    /// Shows `text` with `icon`, titled `title`; an empty title leaves the window the
    /// application's name. On the stream: "TITLE: TEXT", or the text alone without a title,
    /// ended by a line break.
    void show(const std::string& text, MessageBoxIcon icon, const std::string& title);

  private:
    bool showsDialog() const;
    void showDialog(const std::string& text, MessageBoxIcon icon, const std::string& title);

    Presentation m_presentation;
    std::ostream& m_stream;
};

} // namespace qr::output
