#pragma once
// The label stock the label reports print on, measured the way the sheets are die-cut: labels
// across and down, their size, where the first one starts and the pitch from one label to the
// next, in twips on Letter paper. One value per stock, shared by every report that prints on it
// (the glass labels, the metal labels) and by the calibration sheet.
//
// The label designs keep their classic origin: each band starts 225 twips from the paper's left
// edge and 760 from its top, and the user's offsets are added to that origin. What the sheet
// decides is everything that must repeat exactly: the column pitch, the row pitch and how many
// rows a page holds. A design whose stored label height or print width was a little off the
// real pitch would drift a row further off with every row; here the twentieth row lands where
// the first does, relative to its own label.

#include "platform/engine/design/report_design.hpp"
#include "platform/engine/page/items.hpp"

#include <string>
#include <vector>

namespace qr::reports {

/// A sheet of labels as die-cut. All lengths are twips.
struct LabelSheet {
    const char* stock; ///< "Avery 5260"
    int columns;
    int rows;
    int labelWidth;
    int labelHeight;
    int topMargin;   ///< paper's top edge to the top edge of the first row
    int sideMargin;  ///< paper's left edge to the left edge of the first column
    int pitchAcross; ///< left edge to left edge of neighbouring labels in a row
    int pitchDown;   ///< top edge to top edge of neighbouring rows

    constexpr int labelsPerSheet() const { return columns * rows; }

    /// The label at `row` and `column` of a sheet, in twips from the paper's top-left corner.
    constexpr page::Rect label(int row, int column) const {
        return {sideMargin + column * pitchAcross, topMargin + row * pitchDown, labelWidth,
                labelHeight};
    }
};

/// Avery 5260 (and its 5160 / 8160 cousins): 3 x 10 labels of 2 5/8 x 1 in, 1/2 in from the
/// top, 3/16 in from the sides, 2 3/4 in from one column to the next.
inline constexpr LabelSheet kAvery5260{"Avery 5260", 3, 10, 3780, 1440, 720, 270, 3960, 1440};
/// Avery 5267: 4 x 20 labels of 1 3/4 x 1/2 in, 1/2 in from the top, 9/32 in from the sides,
/// 2 1/16 in from one column to the next.
inline constexpr LabelSheet kAvery5267{"Avery 5267", 4, 20, 2520, 720, 720, 405, 2970, 720};

/// The stock of a sheet name as a user types it ("5260", "5267"); nullptr for any other.
const LabelSheet* labelSheetNamed(const std::string& name);

// ---- Label designs --------------------------------------------------------------------------

/// The classic origin of the label designs' bands, before the user's offsets.
inline constexpr int kLabelOriginLeft = 225;
inline constexpr int kLabelOriginTop = 760;

/// Page settings of a label report on `sheet`: Letter, the bands' origin as the margins, one
/// pitch of print width per column, and a bottom margin that leaves room for exactly the
/// sheet's rows, so a page is one sheet.
engine::PageSettings labelPageSettings(const LabelSheet& sheet);

/// The detail section "Detail" of a label report on `sheet`: one label per row, laid out
/// across, then down, one pitch apart each way, `controls` placed with a LabelFrame.
engine::SectionDesign labelDetail(const LabelSheet& sheet,
                                  std::vector<engine::ControlDesign> controls);

/// A label report's design: `name`, `title`, the page settings of `sheet` and the one detail
/// section holding `label`, the controls of one label.
engine::ReportDesign labelDesign(const LabelSheet& sheet, const char* name, const char* title,
                                 std::vector<engine::ControlDesign> label);

/// Places controls on one label of a label design. Rectangles are given relative to the
/// label's own top-left corner and come back in the coordinates of the detail band, which
/// starts at the classic origin rather than at the label's corner.
class LabelFrame {
  public:
    explicit LabelFrame(const LabelSheet& sheet);

    /// `rect` on the label, in band coordinates. Raises qr::Error (999, "LabelFrame") naming
    /// the stock when the rectangle leaves the part of the label its band covers, so a design
    /// cannot print over a neighbouring label.
    page::Rect place(page::Rect rect) const;
    /// The part of the label its band covers, relative to the label's top-left corner.
    page::Rect printable() const { return m_printable; }

  private:
    const LabelSheet* m_sheet;
    int m_dx = 0; ///< label's left edge, from the band's left edge
    int m_dy = 0; ///< label's top edge, from the band's top edge
    page::Rect m_printable;
};

/// Moves a label page by the user's offsets in twips (positive: down, right): the top and left
/// margins grow by them, and the bottom margin shrinks by the top offset, so a page still holds
/// exactly the sheet's rows wherever the offset moves them.
void applyLabelOffsets(engine::PageSettings& page, int topOffset, int leftOffset);

} // namespace qr::reports
