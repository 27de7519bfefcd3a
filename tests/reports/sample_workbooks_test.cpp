// The workbooks of the sample jobs' reports (the markup reports, the final summaries, the
// labor report and the final glass lists), read back with readers that share nothing with the
// writer: libfreexl for the cells' values, the tests' own record reader for the widths, fonts,
// formats and merges. Every cell must be readable as printed, and every figure the pages
// printed must be a number in the workbook.
#include "data/statements.hpp"
#include "platform/output/workbook.hpp"
#include "reports/glass/final_glass_report.hpp"
#include "reports/support/cost_fixture.hpp"
#include "service/report_objects.hpp"
#include "support/readers/file_readers.hpp"
#include "support/readers/workbook_layout.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <regex>

namespace qr::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSampleJob = "Riverside Medical Office Building";
constexpr int kSampleJobId = 1;
// Excel keeps 2 pixels each side of a cell's text and 1 for the grid line.
constexpr int kCellPaddingPixels = 5;

/// One exported workbook and the pages it was made from.
struct Exported {
    std::string report;
    fs::path workbook;
    page::Pages pages;
};

class SampleWorkbooks : public CostSampleTest {
  protected:
    /// Every report of the sample job with a spreadsheet export, exported.
    std::vector<Exported> exportAll() {
        std::vector<Exported> all;
        const std::pair<std::string, const char*> requests[] = {
            {"armarkup " + sampleTable("MarkupReport"), "ARMarkup"},
            {"armarkup2 " + sampleTable("MarkupReport"), "ARMarkup2"},
            {"finalsummaryar " + sampleTable("FramingReport"), "FinalSummaryAR"},
            {"finalsummaryar2 " + sampleTable("FramingReport"), "FinalSummaryAR2"},
            {"finallaborar " + sampleTable("LaborReport"), "FinalLaborAR"},
        };
        for (const auto& [request, className] : requests) {
            printRequest(request + " false 1 1 false false false |x |212-48-6-3180.25-9");
            const page::Pages& pages = service::reportObject(className).pages();
            all.push_back({className, writeOne(className, pages), pages});
        }
        const std::function<std::unique_ptr<reports::FinalGlassReport>()> glass[] = {
            [] { return std::make_unique<reports::FinalGlassAR>(); },
            [] { return std::make_unique<reports::FinalGlassAR2>(); },
            [] { return std::make_unique<reports::FinalGlassARNP>(); },
            [] { return std::make_unique<reports::FinalGlassARNP2>(); },
        };
        for (const auto& make : glass) {
            host::FinalGlassReportData data;
            data.User = {1, "Dana Whitfield", "(360) 555-0148", "dana@cascadeglazing.example"};
            data.Company = {"Cascade Glass & Glazing, Inc.", "(360) 555-0100", "", ""};
            data.Job = {kSampleJobId, kSampleJob};
            data.GlassQuery = data::sql::finalGlassQuery(kSampleJobId);
            data.ShowSupplier = true;
            data.Connection = vendorConnection();
            auto report = make();
            report->ReportData = &data;
            report->run();
            all.push_back({report->className(), writeOne(report->className(), report->pages()),
                           report->pages()});
        }
        EXPECT_TRUE(shownMessages().empty()) << shownMessages().front();
        return all;
    }

    fs::path writeOne(const std::string& name, const page::Pages& pages) {
        const fs::path path = m_dir / (name + ".xls");
        output::writeWorkbook(pages, path);
        return path;
    }
};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t from = 0;
    for (std::size_t end; (end = text.find('\n', from)) != std::string::npos; from = end + 1)
        lines.push_back(text.substr(from, end - from));
    lines.push_back(text.substr(from));
    return lines;
}

/// What a cell shows in Excel: its text, or its number through its format.
std::string shownText(const CellValue& value, const std::string& format) {
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    return excelFormatted(std::get<double>(value), format);
}

TEST_P(SampleWorkbooks, EveryCellIsAsWideAndTallAsItsText) {
    for (const Exported& book : exportAll()) {
        SCOPED_TRACE(book.report);
        const std::vector<Sheet> sheets = readWorkbook(book.workbook);
        const WorkbookLayout layout = readWorkbookLayout(book.workbook);
        ASSERT_EQ(sheets.size(), layout.sheets.size());
        ASSERT_FALSE(sheets.empty());
        for (std::size_t s = 0; s < sheets.size(); ++s) {
            const SheetLayout& sheet = layout.sheets[s];
            for (const auto& [at, value] : sheets[s].cells) {
                const auto [row, column] = at;
                const std::string shown = shownText(value, layout.formatOf(sheet, row, column));
                const WorkbookFont& font = layout.fontOf(sheet, row, column);
                const MergedRange* merge = sheet.mergeAt(row, column);
                const unsigned short last = merge ? merge->lastColumn : column;
                int room = -kCellPaddingPixels;
                for (unsigned short c = column; c <= last; ++c)
                    room += layout.columnPixels(sheet, c);
                const std::vector<std::string> lines = linesOf(shown);
                for (const std::string& line : lines) {
                    EXPECT_LE(textPixels(line, font), room)
                        << "\"" << line << "\" in row " << row << ", column " << column << " ("
                        << font.points << " pt" << (font.bold ? " bold" : "") << ")";
                }
                // Arial's lines are 1.15 of the font size apart.
                const double height = lines.size() * font.points * 20 * 1.15;
                auto rowHeight = sheet.rowHeights.find(row);
                const double stored = rowHeight == sheet.rowHeights.end() ? 0 : rowHeight->second;
                EXPECT_GE(std::max(stored, 255.0), height)
                    << lines.size() << " lines of \"" << lines.front() << "\" in row " << row;
            }
        }
    }
}

TEST_P(SampleWorkbooks, PageHeadersShowOnceAndPageFootersGoToTheSheetFooter) {
    for (const Exported& book : exportAll()) {
        SCOPED_TRACE(book.report + ", " + std::to_string(book.pages.pages.size()) + " pages");
        // Texts compared on one line, blanks collapsed: a cell shows a text's lines where the
        // page broke them.
        const auto oneLine = [](const std::string& text) {
            const std::string collapsed = std::regex_replace(text, std::regex("\\s+"), " ");
            const auto first = collapsed.find_first_not_of(' ');
            return first == std::string::npos
                       ? std::string()
                       : collapsed.substr(first, collapsed.find_last_not_of(' ') - first + 1);
        };
        std::vector<std::string> texts = textsOf(readWorkbook(book.workbook).at(0));
        std::transform(texts.begin(), texts.end(), texts.begin(), oneLine);
        const auto count = [&](const std::string& text) {
            return std::count(texts.begin(), texts.end(), oneLine(text));
        };
        const WorkbookLayout layout = readWorkbookLayout(book.workbook);
        const std::string footer = layout.sheets.at(0).footer.value_or("");
        EXPECT_NE(footer.find("Page  &P of  &N"), std::string::npos) << footer;

        // What the body prints, on every page.
        std::vector<std::string> bodyTexts;
        for (const page::Page& page : book.pages.pages) {
            for (const page::Item& item : page.items) {
                const auto* text = std::get_if<page::TextItem>(&item);
                if (text != nullptr && text->pageBand == page::PageBand::Body)
                    bodyTexts.push_back(oneLine(text->text));
            }
        }
        std::vector<std::string> headerTexts;
        for (const page::Item& item : book.pages.pages.at(0).items) {
            const auto* text = std::get_if<page::TextItem>(&item);
            if (text == nullptr || text->numericValue)
                continue;
            if (text->pageBand == page::PageBand::Header)
                headerTexts.push_back(oneLine(text->text));
            if (text->pageBand == page::PageBand::Footer) {
                // In the sheet footer, or (too long for it) once below the last row.
                const std::string literal = std::regex_replace(text->text, std::regex("&"), "&&");
                const bool inFooter = oneLine(footer).find(oneLine(literal)) != std::string::npos;
                EXPECT_EQ(count(text->text), inFooter ? 0 : 1)
                    << "footer text \"" << text->text << "\"";
            }
        }
        for (const std::string& text : headerTexts) {
            // As often as the first page's header and the body print it, not once a page.
            const auto printed = std::count(headerTexts.begin(), headerTexts.end(), text) +
                                 std::count(bodyTexts.begin(), bodyTexts.end(), text);
            EXPECT_EQ(count(text), printed) << "header text \"" << text << "\"";
        }
    }
}

TEST_P(SampleWorkbooks, EveryPrintedMoneyAndAreaFigureIsANumberShownAsPrinted) {
    // Money is "$" and digits with cents; areas are figures with two decimals (formats
    // "##,###.00" and "#,##0.00"), or the job area as the job row holds it.
    const std::regex money(R"(-?\$[0-9,]*\.[0-9]{2})");
    const std::regex area(R"(-?[0-9,]*\.[0-9]{2})");
    for (const Exported& book : exportAll()) {
        SCOPED_TRACE(book.report);
        std::vector<std::string> printed;
        for (const page::Page& page : book.pages.pages) {
            for (const page::Item& item : page.items) {
                const auto* text = std::get_if<page::TextItem>(&item);
                if (text == nullptr || text->pageBand == page::PageBand::Footer)
                    continue;
                if (std::regex_match(text->text, money) || std::regex_match(text->text, area) ||
                    text->control == "lSquareFeet")
                    printed.push_back(text->text);
            }
        }
        EXPECT_FALSE(printed.empty());
        // The numbers of the workbook as Excel shows them through their formats.
        const WorkbookLayout layout = readWorkbookLayout(book.workbook);
        const std::vector<Sheet> sheets = readWorkbook(book.workbook);
        std::vector<std::string> numbers;
        for (std::size_t s = 0; s < sheets.size(); ++s) {
            for (const auto& [at, value] : sheets[s].cells) {
                if (std::holds_alternative<double>(value))
                    numbers.push_back(
                        shownText(value, layout.formatOf(layout.sheets[s], at.first, at.second)));
            }
        }
        for (const std::string& figure : printed) {
            auto found = std::find(numbers.begin(), numbers.end(), figure);
            EXPECT_NE(found, numbers.end()) << "\"" << figure << "\" is not a number";
            if (found != numbers.end())
                numbers.erase(found);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, SampleWorkbooks,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
