#pragma once
// What the host would compute from a job plan before a print: each lite's block size, area and
// price, each elevation's labor, the job's totals and its markup figures. The sample writer
// puts these into the job tables and the report tables.

#include "data/cost_categories.hpp"
#include "data/sample/markup.hpp"
#include "data/sample/sample_jobs.hpp"

#include <string>
#include <vector>

namespace qr::data::sample {

/// One kind of lite in one elevation, priced.
struct GlassLine {
    const ElevationPlan* elevation;
    const LitePlan* lite;
    const GlassProduct* product;
    int elevationSort;                          ///< 1-based position of the elevation in the job
    int quantity;                               ///< lites per elevation x elevation quantity
    std::string width, leftHeight, rightHeight; ///< size texts, normalised
    int blockWidth, blockHeight;                ///< inches; the taller side of a raked lite
    double area;                                ///< one lite, sq ft, two decimals
    double blockArea;                           ///< one lite's block, sq ft, two decimals
    bool minimumMet;      ///< the block reaches the supplier's minimum billed area
    double priceTotal;    ///< billed area x quantity x price, two decimals
    std::string category; ///< "door glass" for door lites, else "<system> glass"
    bool raked() const { return leftHeight != rightHeight; }
    std::string label() const { return elevation->code + "-" + lite->mark; }
    std::string blockSize() const;
};

std::vector<GlassLine> glassLines(const JobPlan& job);

/// The hourly rates the host prices labor with (the miscellaneous rate is the job's own).
struct LaborRates {
    double fabrication = 58.00, installation = 64.50, entranceFabrication = 62.00,
           entranceInstallation = 68.00, glazing = 52.00;
};

/// The labor of one occurrence of an elevation, as the labor table holds it before the job
/// labor report multiplies it by the quantity.
struct LaborLine {
    std::string elevationName;
    int quantity, sort;
    double fabHours, fabTotal, installHours, installTotal, miscHours, miscTotal;
    double entFabHours, entFabTotal, entInstallHours, entInstallTotal, glazHours, glazTotal;
    double elevationTotal;
};

std::vector<LaborLine> laborLines(const JobPlan& job);

/// The job's computed figures.
struct JobFigures {
    Currency glassTotal;      ///< cGlassTotal: sum of the priced lites
    Currency laborTotal;      ///< cLaborTotal: elevations x quantities + added job labor
    double area = 0;          ///< pjobarea, sq ft
    double perimeter = 0;     ///< pjobperimeter, ft
    CategoryTotals effective; ///< after the override rule
    MarkupFigures markup;
};

JobFigures jobFigures(const JobPlan& job);

/// Glass perimeter of all occurrences of an elevation, feet.
double glassPerimeter(const ElevationPlan& elevation);

} // namespace qr::data::sample
