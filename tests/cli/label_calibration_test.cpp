// quarvex-reports label-calibration as a user runs it: the calibration sheet where the stock has
// its labels, moved by the offsets; the offsets stored as the user's settings and applied by
// the next label request; and what it says about bad input.

#include "cli/program.hpp"
#include "platform/core/convert.hpp"
#include "platform/db/connection.hpp"
#include "reports/common/label_sheet.hpp"
#include "support/readers/pdf_words.hpp"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>

namespace qr::test {
namespace {

namespace fs = std::filesystem;

bool within(const PdfWord& w, page::Rect r) {
    return w.left >= r.x - 0.1 && w.right <= r.x + r.width + 0.1 && w.top >= r.y - 0.1 &&
           w.bottom <= r.y + r.height + 0.1;
}

// Every label's "R<row> C<column>" words inside that label, moved by the offsets; how many
// labels were found.
int labelsInPlace(const std::vector<PdfWord>& words, const reports::LabelSheet& sheet, int top,
                  int left) {
    int found = 0;
    for (size_t i = 0; i + 1 < words.size(); ++i) {
        const PdfWord& row = words[i];
        const PdfWord& column = words[i + 1];
        if (row.text.size() < 2 || row.text[0] != 'R' || column.text.size() < 2 ||
            column.text[0] != 'C' || !std::isdigit(static_cast<unsigned char>(row.text[1])))
            continue;
        page::Rect r =
            sheet.label(std::stoi(row.text.substr(1)) - 1, std::stoi(column.text.substr(1)) - 1);
        r.x += left;
        r.y += top;
        EXPECT_TRUE(within(row, r) && within(column, r)) << row.text << " " << column.text;
        ++found;
    }
    return found;
}

class LabelCalibration : public ::testing::Test {
  protected:
    void SetUp() override {
        const Outcome made =
            runProgram(m_dir, {"make-sample", "--vendor", vendor(), "--master", master()});
        ASSERT_EQ(made.exitCode, 0) << made.err;
    }
    std::string vendor() const { return "sqlite:" + (m_dir / "vendor.db").string(); }
    std::string master() const { return "sqlite:" + (m_dir / "master.db").string(); }

    Outcome calibrate(std::vector<std::string> args, const std::string& environment = "") {
        args.insert(args.begin(), "label-calibration");
        return runProgram(m_dir, args, environment);
    }
    // The glass labels of the sample job printed through a request, as words.
    std::vector<PdfWord> printLabels() {
        const fs::path printed = m_dir / "labels.pdf";
        const Outcome outcome =
            runProgram(m_dir,
                       {"request", "--vendor", vendor(), "--master", master(),
                        "aravery5267aglasslabels GlassCutReport1 false 1 1 false false false |x |"},
                       "QUARVEX_PRINTER=" + quoted("file:" + printed.string()));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return pdfWords(printed);
    }
    long storedSetting(const char* name) {
        db::Connection connection(master());
        auto rows = connection.openRecordset(
            std::string("SELECT iValue FROM UserSettings WHERE UserID=1 AND sName='") + name + "'");
        return rows->eof() ? -99999 : toLong(rows->value("iValue"));
    }

    TempDir m_dir;
};

TEST_F(LabelCalibration, EveryLabelOfEachStockIsMarkedOnItsLabelAndMovesByTheOffsets) {
    for (const auto& [name, sheet] :
         {std::pair{"5260", &reports::kAvery5260}, std::pair{"5267", &reports::kAvery5267}}) {
        SCOPED_TRACE(name);
        const fs::path straight = m_dir / (std::string(name) + "-straight.pdf");
        const fs::path moved = m_dir / (std::string(name) + "-moved.pdf");
        ASSERT_EQ(calibrate({"--sheet", name, "--pdf", straight.string()}).exitCode, 0);
        const Outcome outcome =
            calibrate({"--sheet", name, "--top", "100", "--left", "-50", "--pdf", moved.string()});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_NE(outcome.out.find("with top offset 100 and left offset -50 twips"),
                  std::string::npos)
            << outcome.out;

        const auto words = pdfWords(moved);
        EXPECT_EQ(labelsInPlace(words, *sheet, 100, -50), sheet->labelsPerSheet());
        for (const char* number : {"-360", "-180", "+180", "+360"}) {
            const auto count = std::count_if(words.begin(), words.end(),
                                             [&](const PdfWord& w) { return w.text == number; });
            EXPECT_EQ(count, 2) << number << ": once on each scale";
        }
        // Everything but the footer, which names the offsets, moves by exactly the offsets.
        auto marks = [](std::vector<PdfWord> all) {
            const double footer = all.empty() ? 0 : page::kLetterHeight - 720;
            std::erase_if(all, [&](const PdfWord& w) { return w.top > footer; });
            return all;
        };
        expectWordsMovedBy(marks(pdfWords(straight)), marks(words), 100, -50);
    }
}

TEST_F(LabelCalibration, WithoutAFileTheSheetGoesToThePrinter) {
    const fs::path printed = m_dir / "printed.pdf";
    const Outcome outcome =
        calibrate({"--sheet", "5260"}, "QUARVEX_PRINTER=" + quoted("file:" + printed.string()));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(labelsInPlace(pdfWords(printed), reports::kAvery5260, 0, 0), 30);
}

TEST_F(LabelCalibration, SavedOffsetsAreTheUsersAndTheNextLabelRequestAppliesThem) {
    // The sample user prints 120 twips down and 60 left; a calibration without offsets of its
    // own prints that way too.
    const Outcome stored = calibrate({"--sheet", "5267", "--master", master(), "--user", "1",
                                      "--pdf", (m_dir / "stored.pdf").string()});
    ASSERT_EQ(stored.exitCode, 0) << stored.err;
    EXPECT_NE(stored.out.find("with top offset 120 and left offset -60 twips"), std::string::npos)
        << stored.out;
    EXPECT_EQ(labelsInPlace(pdfWords(m_dir / "stored.pdf"), reports::kAvery5267, 120, -60), 80);

    const auto before = printLabels();
    const Outcome saved =
        calibrate({"--sheet", "5267", "--master", master(), "--user", "1", "--top", "100", "--left",
                   "-50", "--save", "--pdf", (m_dir / "saved.pdf").string()});
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_NE(saved.out.find("saved LblTop=100 and LblLeft=-50 for user 1"), std::string::npos)
        << saved.out;
    EXPECT_EQ(storedSetting("LblTop"), 100);
    EXPECT_EQ(storedSetting("LblLeft"), -50);

    const auto after = printLabels();
    ASSERT_EQ(before.size(), after.size());
    ASSERT_FALSE(before.empty());
    for (size_t i = 0; i < before.size(); ++i) {
        EXPECT_NEAR(after[i].top - before[i].top, -20, 0.1) << before[i].text;
        EXPECT_NEAR(after[i].left - before[i].left, 10, 0.1) << before[i].text;
    }
}

TEST_F(LabelCalibration, BadInputSaysWhatWasWrong) {
    struct Case {
        std::vector<std::string> args;
        int exitCode;
        std::string message;
    };
    const std::vector<Case> cases = {
        {{}, 2, "--sheet 5260 or --sheet 5267 is needed"},
        {{"--sheet"}, 2, "--sheet needs a value"},
        {{"--sheet", "5160"}, 2, "--sheet must be 5260 or 5267, not '5160'"},
        {{"--sheet", "5260", "--top", "1/8"},
         2,
         "--top must be a whole number of twips, not '1/8'"},
        {{"--sheet", "5260", "--left", "2000"}, 2, "--left 2000 is out of range (-1440 to 1440)"},
        {{"--sheet", "5260", "--colour", "red"}, 2, "unknown option '--colour'"},
        {{"--sheet", "5260", "--top", "10", "--save"}, 2, "--save needs --master and --user"},
        {{"--sheet", "5260", "--master", master()}, 2, "--master and --user go together"},
        {{"--sheet", "5260", "--master", master(), "--user", "one"},
         2,
         "--user must be a user id (a whole number), not 'one'"},
        {{"--sheet", "5260", "--master", master(), "--user", "1", "--save"},
         2,
         "--save needs --top or --left"},
        {{"--sheet", "5260", "--master", "sqlite:" + (m_dir / "no" / "such.db").string(), "--user",
          "1"},
         1,
         "such.db"},
        {{"--sheet", "5260", "--pdf", (m_dir / "no" / "such" / "sheet.pdf").string()},
         1,
         "sheet.pdf"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = calibrate(c.args);
        EXPECT_EQ(outcome.exitCode, c.exitCode) << c.message << "\n" << outcome.err;
        EXPECT_NE(outcome.err.find(c.message), std::string::npos)
            << "expected '" << c.message << "' in: " << outcome.err;
    }
    EXPECT_FALSE(fs::exists(m_dir / "no"));
    EXPECT_EQ(storedSetting("LblTop"), 120) << "nothing saved";
}

} // namespace
} // namespace qr::test
