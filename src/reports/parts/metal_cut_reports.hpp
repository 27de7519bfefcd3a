#pragma once
// The metal cut listing and the four metal label sheets: the job's stock pieces and the cuts
// laid on each, as the host hands them over, printed one line (or one label) per cut. The
// listing prints on plain paper with a heading and page numbers; the labels print on Avery 5260
// and 5267 stock (reports/common/label_sheet.hpp), moved by the sheet offsets that come with the
// report data. None of the five reads the database or exports a file.
//
// The five share their handlers: they walk the same two-level list and differ in their design,
// in the fields they fill and, on the labels, in whose part type they print (variant C of the
// small labels prints the stock piece's, the others the cut's).

#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/fraction_formatter.hpp"

#include <cstdint>

namespace qr::reports {

/// What a metal cut report prints from each cut.
enum class MetalCutLayout {
    Listing,           ///< the cut listing: the piece's part type, "n of m", the raw length
    CutPartTypeLabel,  ///< a label showing the cut's part type and the length in fractions
    PiecePartTypeLabel ///< a label showing the stock piece's part type instead
};

/// The handlers of the five reports.
class MetalCutReport : public engine::Report {
  public:
    /// The stock pieces and their cuts, in print order; the host keeps it alive during the
    /// run.
    const host::CutLabelsReportData* ReportData = nullptr;

  protected:
    MetalCutReport(engine::ReportDesign design, MetalCutLayout layout);

    void initialize() override;
    /// Listing: the job name, date and time, errors shown through the host's error dialog
    /// naming the report and "ActiveReport_ReportStart" (the run goes on). Labels: the design's
    /// margins moved by the data's TopOffset and LeftOffset; errors pass to the caller.
    void reportStart() override;
    /// One row per cut: the cuts of the first piece, then those of the next. A piece without
    /// cuts fails with "Subscript out of range".
    void fetchData(bool& eof) override;

  private:
    const host::CutLabelsReportData& data() const;
    void fillListingFields(const host::StockPiece& piece, const host::MetalCut& cut);
    void fillLabelFields(const host::StockPiece& piece, const host::MetalCut& cut);

    engine::PageSettings m_designPage;
    MetalCutLayout m_layout;
    FractionFormatter m_fractions;
    // Where the next row comes from. Both start at zero when the object is made and run on
    // from there: a report object prints its data once (the typed methods release it after).
    std::int32_t m_piece = 0;
    std::int32_t m_cut = 0;
};

/// "Metal Cut Sheet in List Format" (PrintMetalCutListing, request "ar2metalcutlistings"):
/// part type, cut length, "n of m" stock pieces, part number and elevation, one line a cut.
class AR2MetalCutListings : public MetalCutReport {
  public:
    AR2MetalCutListings();
};

/// "Avery 5260 Metal Label" (PrintCutLabelsLarge): part type and length; stock number; part
/// number; elevation; job; piece label.
class arAvery5260MetalLabels : public MetalCutReport {
  public:
    arAvery5260MetalLabels();
};

/// "Avery 5267 Metal Label #1" (PrintCutLabelsSmallA): part type and length; part number and
/// job; elevation.
class arAvery5267AMetalLabels : public MetalCutReport {
  public:
    arAvery5267AMetalLabels();
};

/// "Avery 5267 Metal Label #2" (PrintCutLabelsSmallB): part type and length; stock number and
/// job; elevation.
class arAvery5267BMetalLabels : public MetalCutReport {
  public:
    arAvery5267BMetalLabels();
};

/// "Avery 5267 Metal Label #3" (PrintCutLabelsSmallC): part number and length; stock number
/// and the stock piece's part type; elevation.
class arAvery5267CMetalLabels : public MetalCutReport {
  public:
    arAvery5267CMetalLabels();
};

} // namespace qr::reports
