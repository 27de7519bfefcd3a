// The metal cut listing and the four metal label sheets printed through their typed methods
// and read back with poppler: one line or label per cut, piece by piece; "n of m" stock
// pieces; lengths in fractions on the labels; whose part type each sheet prints; no data, no
// rows; and the failures the methods show.
#include "reports/common/label_sheet.hpp"
#include "reports/support/label_geometry.hpp"
#include "reports/support/parts_fixture.hpp"
#include "service/print_service.hpp"
#include "support/readers/file_readers.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <regex>

namespace qr::test {
namespace {

namespace fs = std::filesystem;
using S = service::PrintService;
using Method = void (S::*)(host::CutLabelsReportData&, bool);

constexpr const char* kJob = "Harbor Point";

/// Two stock pieces of one part, with three cuts and two.
host::CutLabelsReportData twoPieces() {
    host::CutLabelsReportData data;
    data.Job = {7, kJob};
    data.StockPieces = {
        {{"SF-4503", "Frame"},
         1,
         2,
         {{120, "E1 - Entrance", "E1-01", "Jamb"},
          {12.375, "E1 - Entrance", "E1-02", "Head"},
          {96.5, "E2 - Side Lite", "E2-01", "Jamb"}}},
        {{"SF-4503", "Frame"},
         2,
         2,
         {{42.25, "E2 - Side Lite", "E2-02", "Sill"}, {30, "E3 - Door", "E3-01", "Jamb"}}},
    };
    return data;
}

host::CutLabelsReportData noPieces() {
    host::CutLabelsReportData data = twoPieces();
    data.StockPieces.clear();
    return data;
}

/// Text with runs of white space as one blank.
std::string words(const std::string& text) {
    return std::regex_replace(text, std::regex("\\s+"), " ");
}

class MetalCutReportsTest : public PartsReportTest {
  protected:
    fs::path print(Method method, host::CutLabelsReportData data) {
        const fs::path printed = m_dir / "printed.pdf";
        fs::remove(printed);
        ::setenv("QUARVEX_PRINTER", ("file:" + printed.string()).c_str(), 1);
        S service;
        service.setContainer(m_host.host);
        (service.*method)(data, false);
        ::unsetenv("QUARVEX_PRINTER");
        return printed;
    }

    /// The words of each label, top to bottom and left to right, joined by blanks.
    std::vector<std::string> labelTexts(const fs::path& printed, const reports::LabelSheet& sheet) {
        LabelledWords labels = sortIntoLabels(pdfWords(printed), sheet, 0, 0);
        for (const PdfWord& stray : labels.strays)
            ADD_FAILURE() << "outside every label: " << describe(stray);
        std::vector<std::string> texts;
        for (auto& [label, onLabel] : labels.byLabel) {
            EXPECT_EQ(label, static_cast<int>(texts.size())) << "labels fill from the first";
            std::sort(onLabel.begin(), onLabel.end(), [](const PdfWord& a, const PdfWord& b) {
                return std::pair(std::lround(a.top / 10), a.left) <
                       std::pair(std::lround(b.top / 10), b.left);
            });
            std::string text;
            for (const PdfWord& w : onLabel)
                text += (text.empty() ? "" : " ") + w.text;
            texts.push_back(text);
        }
        return texts;
    }
};

TEST_F(MetalCutReportsTest, TheListingPrintsEachCutPieceByPieceUnderItsHeading) {
    struct Case {
        host::CutLabelsReportData data;
        Texts inOrder;
        Texts absent;
    };
    const Case cases[] = {
        {twoPieces(),
         {"3/15/2024 Metal Cut Listing Report 2:05 PM", "Job Name: Harbor Point",
          "Type Cut Length Stock Number Part Number Elevation",
          "Frame 120 1 of 2 SF-4503 E1 - Entrance", "Frame 12.375 1 of 2 SF-4503 E1 - Entrance",
          "Frame 96.5 1 of 2 SF-4503 E2 - Side Lite", "Frame 42.25 2 of 2 SF-4503 E2 - Side Lite",
          "Frame 30 2 of 2 SF-4503 E3 - Door", "Page 1 of 1"},
         {"Jamb", "E1-01"}},
        // No stock pieces: the heading alone.
        {noPieces(),
         {"Metal Cut Listing Report", "Job Name: Harbor Point",
          "Type Cut Length Stock Number Part Number Elevation", "Page 1 of 1"},
         {"Frame", "SF-4503"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.data.StockPieces.size());
        const std::string text = words(pdfText(print(&S::PrintMetalCutListing, c.data)));
        std::size_t at = 0;
        for (const std::string& line : c.inOrder) {
            const std::size_t found = text.find(line, at);
            ASSERT_NE(found, std::string::npos)
                << "'" << line << "' after " << at << " in " << text;
            at = found + line.size();
        }
        for (const std::string& word : c.absent)
            EXPECT_EQ(text.find(word), std::string::npos) << word;
        EXPECT_TRUE(shown().empty()) << shown().front();
    }
}

TEST_F(MetalCutReportsTest, EachLabelSheetPrintsOneLabelPerCutInOrder) {
    // What each cut prints: its part type, its length as fractions, its piece's number, its
    // elevation and piece label. The piece's part type is Frame, its part number SF-4503.
    struct Cut {
        const char *type, *length, *stock, *elevation, *label;
    };
    const Cut cuts[] = {
        {"Jamb", "120", "1", "E1 - Entrance", "E1-01"},
        {"Head", "12 3/8", "1", "E1 - Entrance", "E1-02"},
        {"Jamb", "96 1/2", "1", "E2 - Side Lite", "E2-01"},
        {"Sill", "42 1/4", "2", "E2 - Side Lite", "E2-02"},
        {"Jamb", "30", "2", "E3 - Door", "E3-01"},
    };
    const std::string job = kJob;
    struct Sheet {
        Method method;
        const reports::LabelSheet* stock;
        std::function<std::string(const Cut&)> label;
    };
    const Sheet sheets[] = {
        {&S::PrintCutLabelsLarge, &reports::kAvery5260,
         [&](const Cut& c) {
             return std::string(c.type) + " " + c.length + " Stock number " + c.stock +
                    " Part number SF-4503 Elevation " + c.elevation + " Job " + job +
                    " Piece Label " + c.label;
         }},
        {&S::PrintCutLabelsSmallA, &reports::kAvery5267,
         [&](const Cut& c) {
             return std::string(c.type) + " " + c.length + " SF-4503 J: " + job +
                    " E: " + c.elevation;
         }},
        {&S::PrintCutLabelsSmallB, &reports::kAvery5267,
         [&](const Cut& c) {
             return std::string(c.type) + " " + c.length + " " + c.stock + " J: " + job +
                    " E: " + c.elevation;
         }},
        // Variant C prints the stock piece's part type, not the cut's.
        {&S::PrintCutLabelsSmallC, &reports::kAvery5267,
         [&](const Cut& c) {
             return std::string("SF-4503 ") + c.length + " " + c.stock +
                    " : Frame E: " + c.elevation;
         }},
    };
    for (const Sheet& sheet : sheets) {
        SCOPED_TRACE(sheet.stock->stock);
        Texts expected;
        for (const Cut& c : cuts)
            expected.push_back(sheet.label(c));
        EXPECT_EQ(labelTexts(print(sheet.method, twoPieces()), *sheet.stock), expected);
        // No stock pieces: no label.
        EXPECT_EQ(labelTexts(print(sheet.method, noPieces()), *sheet.stock), Texts{});
        EXPECT_TRUE(shown().empty()) << shown().front();
    }
}

TEST_F(MetalCutReportsTest, AFailureIsShownByTheMethodThatRanTheReport) {
    struct Case {
        Method method;
        const char* name;
        std::function<void(host::CutLabelsReportData&)> spoil;
        const char* description;
    };
    const Case cases[] = {
        {&S::PrintCutLabelsSmallB, "PrintCutLabelsSmallB",
         [](host::CutLabelsReportData& d) { d.StockPieces[1].Cuts.clear(); },
         "Subscript out of range"},
        {&S::PrintCutLabelsLarge, "PrintCutLabelsLarge",
         [](host::CutLabelsReportData& d) { d.TopOffset = 20000; },
         "The label sheet's top offset of 20000 twips moves it off the paper."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        m_host.messages->shown.clear();
        host::CutLabelsReportData data = twoPieces();
        c.spoil(data);
        print(c.method, data);
        EXPECT_EQ(shown(), Texts{std::string("Quarvex Error: Description: ") + c.description +
                                 "\r\nModule: PrintService\r\nFunction: " + c.name});
    }
}

} // namespace
} // namespace qr::test
