#pragma once
// The job glass reports: the job's glass take-off priced by actual size. Every glass item with
// its units, description, part number, width, left and right height, price per square foot,
// area of one lite and line total, subtotalled per part number (and, by elevation, per
// elevation), with the job's totals at the end. The wide reports add each lite's block size,
// block area and block price beside the actual figures.
//
// Four report classes, one handler class behind them:
//
//   JobGlassByPartAR       "jobglassbypartar"       description, part        portrait
//   JobGlassByElevAR       "jobglassbyelevar"       elevation, description, part  portrait
//   JobGlassWideByPartAR2  "jobglasswidebypartar2"  description, part        landscape, block
//   JobGlassWideByElevAR2  "jobglasswidebyelevar2"  elevation, description, part  landscape, block
//
// The host writes the take-off into a table of its own and names it in the request. None of
// the four exports a file. The portrait reports end with notes on how they price, and with a
// warning when some item of the take-off has no price per square foot (pGprc empty or 0).
//
// A row's units are its quantity as the fUnits box printed it, read back as a number, and a
// lite's block area likewise from fBlkArea, so the figures add up what the page shows.

#include "reports/common/request_report.hpp"

namespace qr::reports {

/// What sets the four reports apart besides their layout.
struct JobGlassOptions {
    /// Groups by elevation around the description groups, with an elevation footer.
    bool byElevation = false;
    /// The block size, block area and block price of each lite and their totals.
    bool blockFigures = false;
};

class JobGlassReport : public RequestReport {
  public:
    /// What one of the four is made of: its design, and the options its handlers follow.
    struct Setup {
        engine::ReportDesign design;
        JobGlassOptions options;
    };

  protected:
    explicit JobGlassReport(Setup setup);

    /// Binds the report to the request's take-off table in the order of its groups, fills the
    /// heading and starts every figure from zero.
    void reportStart() override;
    /// Lets go of the rows; these reports export nothing.
    void reportEnd() override;

  private:
    /// Area (times units) and price of a part, an elevation or the job, at actual size and,
    /// in the wide reports, at block size.
    struct Figures {
        double area = 0;
        double price = 0;
        double blockArea = 0;
        double blockPrice = 0;
        Figures& operator+=(const Figures& other);
    };

    void detailFormat();
    void ghTypeFooterFormat();
    void ghElevFooterFormat();
    void reportFooterFormat();

    /// Shows `figures` in the four labels named (the block labels only in the wide reports).
    void showFigures(const Figures& figures, const char* area, const char* price,
                     const char* blockArea, const char* blockPrice);

    JobGlassOptions m_options;
    Figures m_part;
    Figures m_elevation;
    Figures m_job;
    /// Some row of this run has no price per square foot.
    bool m_unpricedItems = false;
};

/// By description and part number, portrait.
class JobGlassByPartAR : public JobGlassReport {
  public:
    JobGlassByPartAR();
};

/// By elevation, description and part number, portrait.
class JobGlassByElevAR : public JobGlassReport {
  public:
    JobGlassByElevAR();
};

/// By description and part number, landscape, with the block figures.
class JobGlassWideByPartAR2 : public JobGlassReport {
  public:
    JobGlassWideByPartAR2();
};

/// By elevation, description and part number, landscape, with the block figures.
class JobGlassWideByElevAR2 : public JobGlassReport {
  public:
    JobGlassWideByElevAR2();
};

} // namespace qr::reports
