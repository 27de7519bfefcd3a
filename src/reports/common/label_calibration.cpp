#include "reports/common/label_calibration.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace qr::reports {

namespace {

using engine::ControlDesign;

constexpr int kThin = 10;
constexpr int kScaleBottom = 690; // ticks of the left scale end just above the first row
constexpr int kTickLengths[] = {70, 110, 160}; // a tick, every 90 twips, every 180 twips
constexpr double kNumberSize = 5;

int tickLength(int offset) {
    if (offset % kCalibrationNumberStep == 0)
        return kTickLengths[2];
    return offset % (2 * kCalibrationTick) == 0 ? kTickLengths[1] : kTickLengths[0];
}

std::string signedTwips(int offset) {
    return offset > 0 ? "+" + std::to_string(offset) : std::to_string(offset);
}

// Outline, centre cross and "R<row> C<column>" of every label, rows and columns from 1.
void addLabels(const LabelSheet& s, std::vector<ControlDesign>& controls) {
    const int arm = std::min(s.labelWidth, s.labelHeight) / 4;
    for (int row = 0; row < s.rows; ++row) {
        for (int column = 0; column < s.columns; ++column) {
            const page::Rect r = s.label(row, column);
            const int cx = r.x + r.width / 2;
            const int cy = r.y + r.height / 2;
            controls.push_back(
                engine::shape(calibrationControl("shp", row, column), r).weight(kThin));
            controls.push_back(engine::line(calibrationControl("lnAcross", row, column), cx - arm,
                                            cy, cx + arm, cy)
                                   .weight(kThin));
            controls.push_back(
                engine::line(calibrationControl("lnDown", row, column), cx, cy - arm, cx, cy + arm)
                    .weight(kThin));
            controls.push_back(
                engine::label(calibrationControl("lbl", row, column),
                              {r.x + 80, r.y + 60, r.width / 2 - 80, 200},
                              "R" + std::to_string(row + 1) + " C" + std::to_string(column + 1))
                    .size(7)
                    .noWrap());
        }
    }
}

// The left scale: upright ticks in the top margin across the left edge of the second column
// (the first when there is one), numbers above them on two staggered rows.
void addLeftScale(const LabelSheet& s, std::vector<ControlDesign>& controls) {
    const int edge = s.label(0, std::min(1, s.columns - 1)).x;
    const int reach = kCalibrationScaleReach;
    for (int p = -reach; p <= reach; p += kCalibrationTick) {
        const std::string id = std::to_string((p + reach) / kCalibrationTick);
        controls.push_back(engine::line("tkLeft" + id, edge + p, kScaleBottom - tickLength(p),
                                        edge + p, kScaleBottom)
                               .weight(p == 0 ? 2 * kThin : kThin));
        if (p % kCalibrationNumberStep == 0) {
            const bool upper = (p / kCalibrationNumberStep) % 2 != 0;
            controls.push_back(engine::label("numLeft" + id,
                                             {edge + p - 170, upper ? 290 : 400, 340, 110},
                                             signedTwips(p))
                                   .size(kNumberSize)
                                   .alignCenter()
                                   .noWrap());
        }
    }
    controls.push_back(
        engine::label("lblLeftScale", {edge - reach - 2600, 400, 2400, 160}, "Left offset (twips):")
            .size(6)
            .alignRight()
            .noWrap());
}

// The top scale: level ticks across the top edge of the first row at the right end of the
// sheet, each number just above its tick.
void addTopScale(const LabelSheet& s, std::vector<ControlDesign>& controls) {
    const page::Rect last = s.label(0, s.columns - 1);
    const int right = last.x + last.width - 20;
    const int edge = s.topMargin;
    const int reach = kCalibrationScaleReach;
    for (int p = -reach; p <= reach; p += kCalibrationTick) {
        const std::string id = std::to_string((p + reach) / kCalibrationTick);
        controls.push_back(
            engine::line("tkTop" + id, right - tickLength(p), edge + p, right, edge + p)
                .weight(p == 0 ? 2 * kThin : kThin));
        if (p % kCalibrationNumberStep == 0) {
            controls.push_back(engine::label("numTop" + id, {right - 600, edge + p - 120, 400, 110},
                                             signedTwips(p))
                                   .size(kNumberSize)
                                   .alignRight()
                                   .noWrap());
        }
    }
    controls.push_back(engine::label("lblTopScale", {right - 3100, edge - reach - 40, 2400, 160},
                                     "Top offset (twips):")
                           .size(6)
                           .alignRight()
                           .noWrap());
}

engine::ReportDesign calibrationDesign(const LabelSheet& s) {
    std::vector<ControlDesign> controls;
    addLabels(s, controls);
    addLeftScale(s, controls);
    addTopScale(s, controls);
    const int below = s.topMargin + s.rows * s.pitchDown;
    controls.push_back(engine::label("lblLegend", {600, below + 100, 11000, 420}, "").size(7));

    engine::ReportDesign d;
    d.name = "LabelCalibrationSheet";
    d.title = std::string(s.stock) + " calibration sheet";
    d.page.marginLeft = d.page.marginTop = d.page.marginRight = d.page.marginBottom = 0;
    d.page.printWidth = d.page.paperWidth;
    // The whole paper is one band, so every mark stands at its place on the paper.
    d.sections.push_back(
        engine::detail("Detail", d.page.paperHeight, std::move(controls)).fixedHeight());
    return d;
}

} // namespace

std::string calibrationControl(const char* prefix, int row, int column) {
    return prefix + std::string("R") + std::to_string(row) + "C" + std::to_string(column);
}

LabelCalibrationSheet::LabelCalibrationSheet(const LabelSheet& stock, int topOffset, int leftOffset)
    : Report(calibrationDesign(stock)), m_stock(stock), m_designPage(pageSettings()),
      m_topOffset(topOffset), m_leftOffset(leftOffset) {}

void LabelCalibrationSheet::reportStart() {
    pageSettings() = m_designPage;
    applyLabelOffsets(pageSettings(), m_topOffset, m_leftOffset);
    m_delivered = false;
    label("lblLegend")
        .setCaption(std::string(m_stock.stock) + " calibration sheet, printed with top offset " +
                    std::to_string(m_topOffset) + " and left offset " +
                    std::to_string(m_leftOffset) +
                    " twips. Where the die-cut left edge of the second column crosses the left "
                    "scale, and the top edge of the first row the top scale, add the number "
                    "there to that offset.");
}

void LabelCalibrationSheet::fetchData(bool& eof) {
    eof = m_delivered;
    m_delivered = true;
}

} // namespace qr::reports
