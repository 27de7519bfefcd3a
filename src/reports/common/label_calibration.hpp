#pragma once
// The label calibration sheet: one page of a label stock as the label reports would print it,
// moved by the same offsets, where every label shows its outline, a cross at its centre and its
// row and column ("R1 C1"). Two scales stand in the top margin, numbered in twips: the left
// scale crosses the left edge of the second column, the top scale the top edge of the first
// row. Printed on (or held against) a sheet of the stock, the number where a die-cut edge
// crosses its scale is what to add to that offset; a sheet whose edges cross both scales at 0
// fits the printer.

#include "platform/engine/report.hpp"
#include "reports/common/label_sheet.hpp"

namespace qr::reports {

/// How far the scales reach either side of the edge they cross, their tick step and the step
/// of their numbers, in twips.
inline constexpr int kCalibrationScaleReach = 360;
inline constexpr int kCalibrationTick = 45;
inline constexpr int kCalibrationNumberStep = 180;

class LabelCalibrationSheet : public engine::Report {
  public:
    /// The sheet of `stock`, moved `topOffset` twips down and `leftOffset` twips right (the
    /// user's "LblTop" and "LblLeft").
    LabelCalibrationSheet(const LabelSheet& stock, int topOffset, int leftOffset);

    const LabelSheet& stock() const { return m_stock; }

  protected:
    void reportStart() override;
    /// One row: the sheet is a single band the size of the paper.
    void fetchData(bool& eof) override;

  private:
    LabelSheet m_stock;
    engine::PageSettings m_designPage;
    int m_topOffset;
    int m_leftOffset;
    bool m_delivered = false;
};

/// The design name of the outline of the label at `row`, `column` (from 0), e.g. "shpR0C2";
/// the cross is "lnAcrossR0C2" and "lnDownR0C2", the text "lblR0C2".
std::string calibrationControl(const char* prefix, int row, int column);

} // namespace qr::reports
