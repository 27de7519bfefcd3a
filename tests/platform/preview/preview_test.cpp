#include "platform/core/error.hpp"
#include "platform/output/output_test_support.hpp"
#include "platform/preview/preview.hpp"
#include "support/temp_dir.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace qr::output {
namespace {

using test::ScopedEnv;

page::Pages twoPages() {
    test::PageBuilder b("Final Summary");
    b.addPage();
    b.text(720, 1440, "Bid total");
    b.addPage();
    b.text(720, 1440, "Page 2");
    return b.pages();
}

TEST(PreviewFileStem, KeepsASafeReadableName) {
    struct Case {
        std::string title;
        std::string stem;
    };
    const Case cases[] = {
        {"Job Glass Report", "Job Glass Report"},
        {"FinalParts (No Prices)", "FinalParts (No Prices)"},
        {"Glass/Metal: recap?", "Glass_Metal_ recap_"},
        {"..\\..\\etc", "_.._etc"},
        {"  .hidden. ", "hidden"},
        {"", "Report"},
        {"***", "_"},
        {"Caf\xC3\xA9 list", "Caf_ list"},
        {std::string(200, 'x'), std::string(80, 'x')},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(previewFileStem(c.title), c.stem) << c.title;
    }
}

TEST(HeadlessPreview, WritesNumberedPdfsIntoTheConfiguredFolder) {
    test::TempDir dir;
    const auto folder = dir / "previews" / "nested"; // made when missing
    ScopedEnv env(kPreviewDirVariable, folder.string());
    std::ostringstream messages;
    HeadlessPreview preview(messages);
    preview.show(twoPages(), "Final Summary");
    const auto first = preview.lastFile();
    preview.show(twoPages(), "Final Summary");
    const auto second = preview.lastFile();

    EXPECT_EQ(first, folder / "Final Summary-1.pdf");
    EXPECT_EQ(second, folder / "Final Summary-2.pdf");
    EXPECT_EQ(messages.str(), "Preview written to " + first.string() + "\nPreview written to " +
                                  second.string() + "\n");
    auto doc = test::openPdf(second);
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->pages(), 2);
}

TEST(HeadlessPreview, UsesAFreshTemporaryFolderWhenNoneIsConfigured) {
    ScopedEnv env(kPreviewDirVariable, std::nullopt);
    std::ostringstream messages;
    HeadlessPreview preview(messages);
    preview.show(twoPages(), "Markup");
    const auto file = preview.lastFile();
    EXPECT_TRUE(std::filesystem::is_regular_file(file));
    EXPECT_EQ(file.filename(), "Markup-1.pdf");
    EXPECT_EQ(file.parent_path().filename().string().rfind("quarvex-preview-", 0), 0u);
    std::filesystem::remove_all(file.parent_path());
}

TEST(HeadlessPreview, UnusableFolderIsAnErrorNamingIt) {
    test::TempDir dir;
    const auto notAFolder = dir / "file";
    std::ofstream(notAFolder) << "x";
    ScopedEnv env(kPreviewDirVariable, notAFolder.string());
    std::ostringstream messages;
    HeadlessPreview preview(messages);
    try {
        preview.show(twoPages(), "Markup");
        FAIL() << "expected an error";
    } catch (const Error& e) {
        EXPECT_NE(e.description().find(notAFolder.string()), std::string::npos) << e.description();
    }
    EXPECT_TRUE(messages.str().empty());
}

} // namespace
} // namespace qr::output
