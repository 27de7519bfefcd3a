#include "reports/common/label_sheet.hpp"

#include "platform/core/error.hpp"

#include <algorithm>

namespace qr::reports {

const LabelSheet* labelSheetNamed(const std::string& name) {
    if (name == "5260")
        return &kAvery5260;
    if (name == "5267")
        return &kAvery5267;
    return nullptr;
}

engine::PageSettings labelPageSettings(const LabelSheet& sheet) {
    engine::PageSettings page;
    page.marginLeft = kLabelOriginLeft;
    page.marginTop = kLabelOriginTop;
    page.marginRight = 0;
    page.marginBottom = page.paperHeight - (kLabelOriginTop + sheet.rows * sheet.pitchDown);
    page.printWidth = sheet.columns * sheet.pitchAcross;
    return page;
}

engine::ReportDesign labelDesign(const LabelSheet& sheet, const char* name, const char* title,
                                 std::vector<engine::ControlDesign> label) {
    engine::ReportDesign d;
    d.name = name;
    d.title = title;
    d.page = labelPageSettings(sheet);
    d.sections.push_back(labelDetail(sheet, std::move(label)));
    return d;
}

engine::SectionDesign labelDetail(const LabelSheet& sheet,
                                  std::vector<engine::ControlDesign> controls) {
    return engine::detail("Detail", sheet.pitchDown, std::move(controls))
        .columns(sheet.columns, engine::ColumnDirection::AcrossThenDown, sheet.pitchAcross, 0)
        .fixedHeight();
}

LabelFrame::LabelFrame(const LabelSheet& sheet)
    : m_sheet(&sheet), m_dx(sheet.sideMargin - kLabelOriginLeft),
      m_dy(sheet.topMargin - kLabelOriginTop) {
    // The band is one pitch wide and high; the label is the part of it the die-cut covers.
    const int left = std::max(0, -m_dx);
    const int top = std::max(0, -m_dy);
    const int right = std::min(sheet.labelWidth, sheet.pitchAcross - m_dx);
    const int bottom = std::min(sheet.labelHeight, sheet.pitchDown - m_dy);
    m_printable = {left, top, right - left, bottom - top};
}

page::Rect LabelFrame::place(page::Rect rect) const {
    const page::Rect& p = m_printable;
    if (rect.x < p.x || rect.y < p.y || rect.x + rect.width > p.x + p.width ||
        rect.y + rect.height > p.y + p.height) {
        const auto text = [](const page::Rect& r) {
            return "(" + std::to_string(r.x) + ", " + std::to_string(r.y) + ", " +
                   std::to_string(r.width) + " x " + std::to_string(r.height) + ")";
        };
        throw Error::component("LabelFrame", "A control at " + text(rect) + " leaves the " +
                                                 std::string(m_sheet->stock) +
                                                 " label's printable part " + text(p) + ".");
    }
    return {rect.x + m_dx, rect.y + m_dy, rect.width, rect.height};
}

void applyLabelOffsets(engine::PageSettings& page, int topOffset, int leftOffset) {
    page.marginTop += topOffset;
    page.marginLeft += leftOffset;
    page.marginBottom -= topOffset;
}

} // namespace qr::reports
