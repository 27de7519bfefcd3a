// The platform's message boxes and the choice between the preview window and the headless
// preview.
#include "platform/preview/desktop_session.hpp"
#include "platform/preview/message_box.hpp"
#include "platform/preview/preview.hpp"
#include "platform/preview/preview_window.hpp"
#include "preview_window_support.hpp"

#include <QMessageBox>
#include <QPushButton>
#include <gtest/gtest.h>
#include <sstream>

namespace qr::output {
namespace {

using test::ScopedEnv;

TEST(DesktopMessageBox, WithoutADesktopWritesOneLine) {
    struct Case {
        std::string text;
        MessageBoxIcon icon;
        std::string title;
        std::string line;
    };
    const Case cases[] = {
        {"Invalid input string passed to PrintReport procedure", MessageBoxIcon::None, "",
         "Invalid input string passed to PrintReport procedure\n"},
        {"Type mismatch", MessageBoxIcon::Information, "Error Encountered",
         "Error Encountered: Type mismatch\n"},
        {"Description: x\r\nModule: FinalPartsAR\r\nFunction: ActiveReport_ReportStart",
         MessageBoxIcon::Critical, "Quarvex Error",
         "Quarvex Error: Description: x\r\nModule: FinalPartsAR\r\nFunction: "
         "ActiveReport_ReportStart\n"},
    };
    for (const auto& c : cases) {
        std::ostringstream out;
        DesktopMessageBox(DesktopMessageBox::Presentation::Stream, out)
            .show(c.text, c.icon, c.title);
        EXPECT_EQ(out.str(), c.line);
    }
    // Automatic with the host refusing windows: the stream, even with a display.
    ScopedEnv display("DISPLAY", std::string(":0"));
    ScopedEnv refuse(kNonInteractiveVariable, std::string("1"));
    std::ostringstream out;
    DesktopMessageBox(DesktopMessageBox::Presentation::Automatic, out)
        .show("Type mismatch", MessageBoxIcon::Information, "Error Encountered");
    EXPECT_EQ(out.str(), "Error Encountered: Type mismatch\n");
}

TEST(DesktopMessageBox, OnADesktopShowsAModalBoxWithTheTextIconAndTitle) {
    test::WindowTestSession session;
    struct Case {
        std::string text;
        MessageBoxIcon icon;
        std::string title;
        QMessageBox::Icon shownIcon;
    };
    const Case cases[] = {
        {"Invalid input string passed to PrintReport procedure", MessageBoxIcon::None, "",
         QMessageBox::NoIcon},
        {"Type mismatch", MessageBoxIcon::Information, "Error Encountered",
         QMessageBox::Information},
        {"Description: <b>x</b>\r\nModule: FinalPartsAR\r\nFunction: ActiveReport_ReportStart",
         MessageBoxIcon::Critical, "Quarvex Error", QMessageBox::Critical},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        QString text, title;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        int buttons = 0;
        Qt::TextFormat format = Qt::AutoText;
        test::ModalScript script([&] {
            auto* box = test::waitForModal<QMessageBox>();
            ASSERT_NE(box, nullptr);
            text = box->text();
            title = box->windowTitle();
            icon = box->icon();
            format = box->textFormat();
            buttons = int(box->buttons().size());
            box->button(QMessageBox::Ok)->click();
        });
        std::ostringstream out;
        DesktopMessageBox(DesktopMessageBox::Presentation::Dialog, out)
            .show(c.text, c.icon, c.title);
        EXPECT_TRUE(script.ran());
        EXPECT_FALSE(script.timedOut());
        EXPECT_EQ(text.toStdString(), c.text);
        EXPECT_EQ(title.toStdString(), c.title);
        EXPECT_EQ(icon, c.shownIcon);
        EXPECT_EQ(format, Qt::PlainText); // markup in a description is shown as typed
        EXPECT_EQ(buttons, 1);
        EXPECT_TRUE(out.str().empty());
    }
}

TEST(MakePreviewPresenter, HeadlessWhenNobodyCanSeeAWindow) {
    struct Case {
        const char* name;
        std::optional<std::string> display;
        std::optional<std::string> refusal;
    };
    const Case cases[] = {
        {"no display", std::nullopt, std::nullopt},
        {"host refuses", std::string(":0"), std::string("1")},
    };
    for (const auto& c : cases) {
        ScopedEnv display("DISPLAY", c.display);
        ScopedEnv wayland("WAYLAND_DISPLAY", std::nullopt);
        ScopedEnv refusal(kNonInteractiveVariable, c.refusal);
        auto presenter = makePreviewPresenter();
        EXPECT_NE(dynamic_cast<HeadlessPreview*>(presenter.get()), nullptr) << c.name;
    }
}

TEST(MakePreviewPresenter, TheWindowOnADisplay) {
    const std::string platform = test::startWindowTests();
    if (platform != "xcb")
        GTEST_SKIP() << "needs Qt on an X display (QR_TEST_XVFB_DISPLAY); Qt runs on " << platform;
    ScopedEnv display("DISPLAY", std::string(std::getenv(test::kXvfbVariable)));
    ScopedEnv refusal(kNonInteractiveVariable, std::string("0"));
    auto presenter = makePreviewPresenter();
    EXPECT_NE(dynamic_cast<WindowPreview*>(presenter.get()), nullptr);
}

} // namespace
} // namespace qr::output
