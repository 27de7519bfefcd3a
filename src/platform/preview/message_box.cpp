#include "platform/preview/message_box.hpp"

#include "platform/preview/desktop_session.hpp"
#include "platform/preview/gui_application.hpp"

#include <QMessageBox>
#include <QString>
#include <iostream>

namespace qr::output {

namespace {

QMessageBox::Icon toQtIcon(MessageBoxIcon icon) {
    switch (icon) {
    case MessageBoxIcon::Information:
        return QMessageBox::Information;
    case MessageBoxIcon::Critical:
        return QMessageBox::Critical;
    case MessageBoxIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

} // namespace

DesktopMessageBox::DesktopMessageBox(Presentation presentation)
    : DesktopMessageBox(presentation, std::cerr) {}

DesktopMessageBox::DesktopMessageBox(Presentation presentation, std::ostream& stream)
    : m_presentation(presentation), m_stream(stream) {}

bool DesktopMessageBox::showsDialog() const {
    switch (m_presentation) {
    case Presentation::Dialog:
        return true;
    case Presentation::Stream:
        return false;
    case Presentation::Automatic:
        break;
    }
    return isInteractiveSession();
}

void DesktopMessageBox::show(const std::string& text, MessageBoxIcon icon,
                             const std::string& title) {
    if (showsDialog()) {
        showDialog(text, icon, title);
        return;
    }
    if (!title.empty())
        m_stream << title << ": ";
    m_stream << text << std::endl;
}

void DesktopMessageBox::showDialog(const std::string& text, MessageBoxIcon icon,
                                   const std::string& title) {
    ensureGuiApplication();
    QMessageBox box(toQtIcon(icon), QString::fromStdString(title), QString::fromStdString(text),
                    QMessageBox::Ok);
    // Plain text: descriptions come from databases and errors, never meant as markup.
    box.setTextFormat(Qt::PlainText);
    box.setWindowModality(Qt::ApplicationModal);
    box.exec();
}

} // namespace qr::output
