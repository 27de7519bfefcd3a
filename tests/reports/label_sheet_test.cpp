// The label stock as measured on the sheets, and a label design on its sheet: the engine's
// pages put every label of every row where the sheet has it, across, then down, then on the
// next sheet.

#include "platform/core/error.hpp"
#include "platform/engine/report.hpp"
#include "reports/common/label_sheet.hpp"

#include <gtest/gtest.h>

namespace qr::test {
namespace {

using reports::kAvery5260;
using reports::kAvery5267;
using reports::LabelSheet;

constexpr int inch(double inches) {
    return static_cast<int>(inches * 1440 + 0.5);
}

// The corners of the first and the last label, as a ruler finds them on the stock.
TEST(LabelSheet, LabelsStandWhereTheStockHasThem) {
    struct Case {
        const LabelSheet* sheet;
        page::Rect first, last;
    };
    const Case cases[] = {
        {&kAvery5260,
         {inch(3.0 / 16), inch(0.5), inch(2 + 5.0 / 8), inch(1)},
         {inch(3.0 / 16 + 2 * 2.75), inch(0.5 + 9), inch(2 + 5.0 / 8), inch(1)}},
        {&kAvery5267,
         {inch(9.0 / 32), inch(0.5), inch(1.75), inch(0.5)},
         {inch(9.0 / 32 + 3 * (2 + 1.0 / 16)), inch(0.5 + 19 * 0.5), inch(1.75), inch(0.5)}},
    };
    for (const Case& c : cases) {
        const LabelSheet& s = *c.sheet;
        EXPECT_EQ(s.label(0, 0), c.first) << s.stock;
        EXPECT_EQ(s.label(s.rows - 1, s.columns - 1), c.last) << s.stock;
        // The sheet is symmetric: as much paper right of the last column as left of the first,
        // and below the last row as above the first.
        EXPECT_EQ(page::kLetterWidth - (c.last.x + c.last.width), c.first.x) << s.stock;
        EXPECT_EQ(page::kLetterHeight - (c.last.y + c.last.height), c.first.y) << s.stock;
    }
}

TEST(LabelSheet, AFrameRefusesControlsThatLeaveTheLabel) {
    const reports::LabelFrame frame(kAvery5267);
    const page::Rect p = frame.printable();
    EXPECT_NO_THROW(frame.place(p));
    for (page::Rect outside :
         {page::Rect{p.x - 1, p.y, 100, 100}, page::Rect{p.x, p.y - 1, 100, 100},
          page::Rect{p.x + p.width - 99, p.y, 100, 100},
          page::Rect{p.x, p.y + p.height - 99, 100, 100}}) {
        EXPECT_THROW(frame.place(outside), Error) << outside.x << "," << outside.y;
    }
}

// A label report on each stock, a sheet and one label more: every label's box lands on its
// label, the offsets move every one of them by exactly the offset, and the next sheet starts
// where the first is full.
class BoxLabels : public engine::Report {
  public:
    BoxLabels(const LabelSheet& sheet, int count)
        : Report(design(sheet)), m_count(count), m_sheet(sheet) {}

  protected:
    void reportStart() override {
        m_next = 0;
        pageSettings() = reports::labelPageSettings(m_sheet);
        reports::applyLabelOffsets(pageSettings(), m_top, m_left);
    }
    void fetchData(bool& eof) override { eof = m_next++ >= m_count; }

  public:
    int m_top = 0, m_left = 0;

  private:
    static engine::ReportDesign design(const LabelSheet& sheet) {
        const reports::LabelFrame frame(sheet);
        engine::ReportDesign d{"BoxLabels", "Boxes", reports::labelPageSettings(sheet), {}};
        d.sections.push_back(reports::labelDetail(
            sheet, {engine::shape("shpLabel", frame.place(frame.printable()))}));
        return d;
    }
    int m_count;
    int m_next = 0;
    LabelSheet m_sheet;
};

class FixedMeasurer : public page::TextMeasurer {
  public:
    int width(const page::FontSpec&, std::string_view text) override {
        return static_cast<int>(text.size()) * 100;
    }
    page::FontMetrics metrics(const page::FontSpec&) override { return {160, 40, 200}; }
};

TEST(LabelSheet, PagesPutEveryLabelOnItsLabelWhateverTheOffsets) {
    for (const LabelSheet* sheet : {&kAvery5260, &kAvery5267}) {
        const int count = sheet->labelsPerSheet() + 1;
        for (const auto& [top, left] :
             {std::pair{0, 0}, std::pair{100, -50}, std::pair{-300, 90}}) {
            SCOPED_TRACE(std::string(sheet->stock) + " offsets " + std::to_string(top) + ", " +
                         std::to_string(left));
            BoxLabels report(*sheet, count);
            report.setTextMeasurer(std::make_shared<FixedMeasurer>());
            report.m_top = top;
            report.m_left = left;
            report.run();
            const page::Pages& pages = report.pages();
            ASSERT_EQ(pages.pages.size(), 2u);
            int index = 0;
            for (size_t p = 0; p < pages.pages.size(); ++p) {
                for (const page::Item& item : pages.pages[p].items) {
                    const auto& box = std::get<page::RectItem>(item).box;
                    const int onSheet = index++ % sheet->labelsPerSheet();
                    page::Rect label =
                        sheet->label(onSheet / sheet->columns, onSheet % sheet->columns);
                    label.x += left;
                    label.y += top;
                    EXPECT_EQ((index - 1) / sheet->labelsPerSheet(), static_cast<int>(p));
                    EXPECT_EQ(box.x, label.x) << "label " << index - 1;
                    EXPECT_EQ(box.x + box.width, label.x + label.width) << "label " << index - 1;
                    EXPECT_GE(box.y, label.y) << "label " << index - 1;
                    EXPECT_EQ(box.y + box.height, label.y + label.height) << "label " << index - 1;
                }
            }
            EXPECT_EQ(index, count);
        }
    }
}

} // namespace
} // namespace qr::test
