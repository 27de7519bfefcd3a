// Every label sheet on real stock, glass and metal, read back from the PDF it printed: every
// word inside its own label's die-cut rectangle, a long text cut at its label's edge, a sheet
// and a half of labels filling the first sheet across, then down, then a second sheet, and the
// offsets moving every word by exactly the offset. One table row per sheet: the glass labels
// asked for by request (the user's stored offsets), the metal labels by their typed methods
// (the offsets in the report data).

#include "reports/common/label_sheet.hpp"
#include "reports/support/cost_fixture.hpp"
#include "reports/support/label_geometry.hpp"
#include "service/print_service.hpp"
#include "support/readers/file_readers.hpp"

#include <cstdio>

namespace qr::test {
namespace {

using MetalMethod = void (service::PrintService::*)(host::CutLabelsReportData&, bool);

struct SheetCase {
    const char* name; ///< the request name or the typed method
    const reports::LabelSheet* sheet;
    /// Glass: the column each label must show, its first line's left box. Metal: nullptr.
    const char* markColumn;
    /// Metal: the method that prints the sheet; nullptr for the glass requests.
    MetalMethod method;
    /// Metal: the label prints the stock piece's part type rather than the cut's.
    bool piecePartType;
    /// The label shows the long text (glass: the description; metal: the elevation).
    bool showsLongText;
};

using S = service::PrintService;

const SheetCase kSheets[] = {
    {"aravery5260glasslabels", &reports::kAvery5260, "sLabel", nullptr, false, true},
    {"aravery5267aglasslabels", &reports::kAvery5267, "sLabel", nullptr, false, true},
    {"aravery5267bglasslabels", &reports::kAvery5267, "sLabel", nullptr, false, false},
    {"aravery5267cglasslabels", &reports::kAvery5267, "sGlassType", nullptr, false, true},
    {"PrintCutLabelsLarge", &reports::kAvery5260, nullptr, &S::PrintCutLabelsLarge, false, true},
    {"PrintCutLabelsSmallA", &reports::kAvery5267, nullptr, &S::PrintCutLabelsSmallA, false, true},
    {"PrintCutLabelsSmallB", &reports::kAvery5267, nullptr, &S::PrintCutLabelsSmallB, false, true},
    {"PrintCutLabelsSmallC", &reports::kAvery5267, nullptr, &S::PrintCutLabelsSmallC, true, true},
};

const std::set<std::string> kGlassCaptions = {"Cut:", "Descr:", "Elev:", "Job:", "E:"};
const std::set<std::string> kMetalCaptions = {"Stock", "number", "Part", "Elevation", "Job",
                                              "Piece", "Label",  "J:",   "E:",        ":"};
constexpr int kLongTextWords = 24;
constexpr int kCutsPerPiece = 3;
constexpr const char* kMetalJob = "Harbor Point";

std::string numbered(const char* prefix, int n) {
    char text[16];
    std::snprintf(text, sizeof text, "%s%03d", prefix, n);
    return text;
}

std::string longText(const char* prefix, int n) {
    std::string text = numbered(prefix, n);
    for (int i = 1; i < kLongTextWords; ++i)
        text += " " + numbered(prefix, n);
    return text;
}

// Row n of a glass table: every text carries the row's number, so a word printed on another
// row's label gives itself away. Seven lites an elevation.
std::vector<std::string> glassTexts(int n) {
    char elevation[32];
    std::snprintf(elevation, sizeof elevation, "E%02d Wall", n / 7);
    return {numbered("J", n), elevation,        std::to_string(n / 7), numbered("L", n),
            longText("D", n), numbered("T", n), numbered("P", n),      numbered("W", n),
            numbered("H", n), numbered("R", n)};
}

// Cut n of the metal data, three cuts a stock piece: what its label may print. The piece's
// part number and part type carry the number of the piece's first cut; of the two part types
// only the one the sheet prints is among the texts (the cut's T..., or the piece's Q...).
int firstCutOfPiece(int n) {
    return n / kCutsPerPiece * kCutsPerPiece;
}

std::vector<std::string> metalTexts(int n, bool piecePartType) {
    return {numbered("P", firstCutOfPiece(n)),
            piecePartType ? numbered("Q", firstCutOfPiece(n)) : numbered("T", n),
            std::to_string(n) + " 3/8",
            std::to_string(n / kCutsPerPiece + 1),
            longText("E", n),
            kMetalJob,
            numbered("C", n)};
}

class LabelGeometryTest : public CostReportTest {
  protected:
    struct Printed {
        std::vector<PdfWord> words;
        int pages = 0;
    };

    /// A sheet and a half of labels, and one more.
    static int labelCount(const reports::LabelSheet& sheet) {
        return sheet.labelsPerSheet() * 3 / 2 + 1;
    }

    // ---- Glass: a glass cut table asked for by request ------------------------------------

    // Written in an order that is not the labels'.
    void writeGlassRows(const std::string& table, int count) {
        createReportTable(data::ReportTableKind::GlassCut, table);
        std::vector<std::vector<Variant>> rows;
        for (int i = 0; i < count; ++i) {
            const int n = (i * 37) % count; // 37 shares no factor with the counts used
            std::vector<Variant> row;
            for (const std::string& text : glassTexts(n))
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
    }

    void storeOffsets(int top, int left) {
        master().execute("DELETE FROM UserSettings WHERE UserID=1");
        master().execute("INSERT INTO UserSettings (UserID, sName, iValue) VALUES (1, 'LblTop', " +
                         std::to_string(top) + "), (1, 'LblLeft', " + std::to_string(left) + ")");
    }

    // ---- Metal: stock pieces and cuts handed to a typed method ---------------------------

    static host::CutLabelsReportData metalData(int count) {
        host::CutLabelsReportData data;
        data.Job.JobName = kMetalJob;
        const int pieces = (count + kCutsPerPiece - 1) / kCutsPerPiece;
        for (int n = 0; n < count; ++n) {
            if (n == firstCutOfPiece(n)) {
                host::StockPiece piece;
                piece.Part = {numbered("P", n), numbered("Q", n)};
                piece.StockNumber = n / kCutsPerPiece + 1;
                piece.StockCount = pieces;
                data.StockPieces.push_back(piece);
            }
            data.StockPieces.back().Cuts.push_back(
                {n + 0.375, longText("E", n), numbered("C", n), numbered("T", n)});
        }
        return data;
    }

    Printed print(const SheetCase& c, int count, const std::string& table, int top, int left) {
        const auto path = m_dir / "printed.pdf";
        if (!c.method) {
            storeOffsets(top, left);
            printRequest(std::string(c.name) + " " + table + " false 1 1 false false false |x |");
        } else {
            host::CutLabelsReportData data = metalData(count);
            data.TopOffset = top;
            data.LeftOffset = left;
            ::setenv("QUARVEX_PRINTER", ("file:" + path.string()).c_str(), 1);
            S service;
            service.setContainer(m_host->host);
            (service.*c.method)(data, false);
            ::unsetenv("QUARVEX_PRINTER");
        }
        return {pdfWords(path), static_cast<int>(pdfPageTexts(path).size())};
    }
};

TEST_P(LabelGeometryTest, EveryLabelLandsOnItsOwnLabelAndOffsetsMoveItExactly) {
    int serial = 0;
    for (const SheetCase& c : kSheets) {
        // The metal labels read no database: one backend is enough.
        if (c.method && GetParam() != CostBackend::SQLite)
            continue;
        SCOPED_TRACE(c.name);
        const reports::LabelSheet& sheet = *c.sheet;
        const int count = labelCount(sheet);
        const std::string table = "GlassCutSheet" + std::to_string(++serial);
        if (!c.method)
            writeGlassRows(table, count);
        std::vector<LabelRow> rows;
        for (int n = 0; n < count; ++n) {
            if (c.method) {
                rows.push_back(labelRow(metalTexts(n, c.piecePartType),
                                        c.piecePartType ? numbered("P", firstCutOfPiece(n))
                                                        : numbered("T", n)));
            } else {
                const bool byLabel = c.markColumn == std::string("sLabel");
                rows.push_back(labelRow(glassTexts(n), numbered(byLabel ? "L" : "T", n)));
            }
        }
        const std::set<std::string>& captions = c.method ? kMetalCaptions : kGlassCaptions;

        const Printed straight = print(c, count, table, 0, 0);
        const LabelledWords labels = sortIntoLabels(straight.words, sheet, 0, 0);
        expectOnTheirLabels(labels, rows, captions, straight.pages, sheet);

        const Printed moved = print(c, count, table, 100, -50);
        expectOnTheirLabels(sortIntoLabels(moved.words, sheet, 100, -50), rows, captions,
                            moved.pages, sheet);
        expectWordsMovedBy(straight.words, moved.words, 100, -50);

        if (c.showsLongText) {
            // The long text shows its start and is cut at the label's edge.
            const std::string start = c.method ? "E000" : "D000";
            int shown = 0;
            for (const PdfWord& w : labels.byLabel.at(0))
                shown += w.text.rfind(start, 0) == 0 ? 1 : 0;
            EXPECT_GE(shown, 1);
            EXPECT_LT(shown, kLongTextWords);
        }
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, LabelGeometryTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
