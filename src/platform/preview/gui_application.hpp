#pragma once
// Qt draws nothing, not even a font, before a QGuiApplication exists, and the component runs
// inside hosts that may not have made one. Everything here that touches Qt painting or printing
// calls ensureGuiApplication() first.

namespace qr::output {

/// Makes sure a Qt application object exists. When there is none, creates a QApplication (so the
/// preview window can use widgets later) that lives until the process ends. With QT_QPA_PLATFORM
/// unset it asks for the display's platform (xcb for DISPLAY, wayland for WAYLAND_DISPLAY) and
/// falls back to "offscreen", which still finds the system's fonts, when there is no display or
/// it cannot be opened. Raises qr::Error when the host made a
/// QCoreApplication without graphics, which cannot draw. Call it on the thread that runs Qt.
void ensureGuiApplication();

} // namespace qr::output
