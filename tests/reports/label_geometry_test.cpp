// The glass label sheets on real stock, read back from the PDF each request printed: every
// word inside its own label's die-cut rectangle, a long description cut at its label's edge,
// a sheet and a half of labels filling the first sheet across, then down, and the user's
// offsets moving every word by exactly the offset. One table row per sheet.

#include "reports/common/label_sheet.hpp"
#include "reports/support/cost_fixture.hpp"
#include "reports/support/label_geometry.hpp"
#include "support/readers/file_readers.hpp"

#include <cstdio>

namespace qr::test {
namespace {

struct SheetCase {
    const char* request;
    const reports::LabelSheet* sheet;
    /// The column each label must show: the first line's left box.
    const char* markColumn;
    bool showsDescription;
};

const SheetCase kSheets[] = {
    {"aravery5260glasslabels", &reports::kAvery5260, "sLabel", true},
    {"aravery5267aglasslabels", &reports::kAvery5267, "sLabel", true},
    {"aravery5267bglasslabels", &reports::kAvery5267, "sLabel", false},
    {"aravery5267cglasslabels", &reports::kAvery5267, "sGlassType", true},
};

const std::set<std::string> kCaptions = {"Cut:", "Descr:", "Elev:", "Job:", "E:"};
constexpr int kDescriptionWords = 24;

std::string numbered(const char* prefix, int n) {
    char text[16];
    std::snprintf(text, sizeof text, "%s%03d", prefix, n);
    return text;
}

// Row n of the test table: every text carries the row's number, so a word printed on another
// row's label gives itself away. Seven lites an elevation.
std::vector<std::string> rowTexts(int n) {
    std::string description = numbered("D", n);
    for (int i = 1; i < kDescriptionWords; ++i)
        description += " " + numbered("D", n);
    char elevation[32];
    std::snprintf(elevation, sizeof elevation, "E%02d Wall", n / 7);
    return {numbered("J", n), elevation,        std::to_string(n / 7), numbered("L", n),
            description,      numbered("T", n), numbered("P", n),      numbered("W", n),
            numbered("H", n), numbered("R", n)};
}

class GlassLabelGeometryTest : public CostReportTest {
  protected:
    // A sheet and a half of rows (and one more), written in an order that is not the labels'.
    int writeRows(const std::string& table, const reports::LabelSheet& sheet) {
        createReportTable(data::ReportTableKind::GlassCut, table);
        const int count = sheet.labelsPerSheet() * 3 / 2 + 1;
        std::vector<std::vector<Variant>> rows;
        for (int i = 0; i < count; ++i) {
            const int n = (i * 37) % count; // 37 shares no factor with the counts used
            std::vector<Variant> row;
            for (const std::string& text : rowTexts(n))
                row.push_back(Variant(text));
            row[2] = Variant(static_cast<std::int32_t>(n / 7));
            rows.push_back(std::move(row));
        }
        db::Transaction transaction(vendor());
        vendor().executeMany("INSERT INTO " + table +
                                 " (sJobname, sElevName, iElevSort, sLabel, sDescription, "
                                 "sGlassType, sPartType, sWidth, sLeftHeight, sRightHeight) "
                                 "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                             rows);
        transaction.commit();
        return count;
    }

    void storeOffsets(int top, int left) {
        master().execute("DELETE FROM UserSettings WHERE UserID=1");
        master().execute("INSERT INTO UserSettings (UserID, sName, iValue) VALUES (1, 'LblTop', " +
                         std::to_string(top) + "), (1, 'LblLeft', " + std::to_string(left) + ")");
    }

    struct Printed {
        std::vector<PdfWord> words;
        int pages = 0;
    };
    Printed print(const SheetCase& c, const std::string& table) {
        const auto path = printRequest(std::string(c.request) + " " + table +
                                       " false 1 1 false false false |x |");
        return {pdfWords(path), static_cast<int>(pdfPageTexts(path).size())};
    }
};

TEST_P(GlassLabelGeometryTest, EveryLabelLandsOnItsOwnLabelAndOffsetsMoveItExactly) {
    int serial = 0;
    for (const SheetCase& c : kSheets) {
        SCOPED_TRACE(c.request);
        const reports::LabelSheet& sheet = *c.sheet;
        const std::string table = "GlassCutSheet" + std::to_string(++serial);
        const int count = writeRows(table, sheet);
        std::vector<LabelRow> rows;
        for (int n = 0; n < count; ++n) {
            const auto texts = rowTexts(n);
            rows.push_back(
                labelRow(texts, numbered(c.markColumn == std::string("sLabel") ? "L" : "T", n)));
        }

        storeOffsets(0, 0);
        const Printed straight = print(c, table);
        expectOnTheirLabels(sortIntoLabels(straight.words, sheet, 0, 0), rows, kCaptions,
                            straight.pages, sheet);

        storeOffsets(100, -50);
        const Printed moved = print(c, table);
        expectOnTheirLabels(sortIntoLabels(moved.words, sheet, 100, -50), rows, kCaptions,
                            moved.pages, sheet);
        expectWordsMovedBy(straight.words, moved.words, 100, -50);

        if (c.showsDescription) {
            // The long description shows its start and is cut at the label's edge.
            int shown = 0;
            auto labels = sortIntoLabels(straight.words, sheet, 0, 0);
            for (const PdfWord& w : labels.byLabel[0])
                shown += w.text.rfind("D000", 0) == 0 ? 1 : 0;
            EXPECT_GE(shown, 1);
            EXPECT_LT(shown, kDescriptionWords);
        }
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, GlassLabelGeometryTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
