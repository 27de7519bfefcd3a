#pragma once
// The markup arithmetic the host does before it asks for a markup report: surcharges on metal
// and glass, markups on material, labor and outside costs, taxes, the pre-tax and grand totals.
// The host writes the results into a one-row markup table; the sample writer computes them the
// same way so that the sample job's markup reports show consistent figures.

#include "platform/core/currency.hpp"

namespace qr::data::sample {

/// The job's rates, in percent, as JobSummary stores them.
struct MarkupRates {
    double stockMarkup = 0; ///< metal and miscellaneous material
    double glassMarkup = 0;
    double otherMarkup = 0; ///< outside costs
    double laborMarkup = 0;
    double metalSurcharge = 0;
    double glassSurcharge = 0;
    double stockTax = 0; ///< metal and miscellaneous material
    double glassTax = 0;
    double otherCostsTax = 0;
    double laborTax = 0;
    double surchargeTax = 0;
};

/// What the markup starts from: the five category totals after the override rule, and the
/// amounts the estimator added by hand.
struct MarkupInputs {
    Currency metal, doors, miscParts, glass, labor;
    Currency addToLabor, addToMaterial, subcontractorCosts, rentalCosts, otherCosts;
    MarkupRates rates;
};

/// The markup table's figures (its column names in comments).
struct MarkupFigures {
    Currency totalMetal;         ///< ptotalmetal: metal + misc parts + doors + added material
    Currency totalLabor;         ///< ptotlabor: job labor + added labor
    Currency totalOutside;       ///< ptotoutside: subcontractor + rental + other costs
    Currency metalSurcharge;     ///< pmetalsur
    Currency metalPlusSurcharge; ///< pmetalplussur
    Currency glassSurcharge;     ///< pglasssur
    Currency glassPlusSurcharge; ///< pglassplussur
    Currency totalMaterial;      ///< ptotmaterial: total metal + glass, before surcharges
    Currency totalSurcharge;     ///< ptotsur
    Currency materialMarkup;     ///< pmtrlmarkup
    Currency laborMarkup;        ///< plabormarkup
    Currency outsideMarkup;      ///< poutsidemarkup
    Currency totalMarkup;        ///< ptotalmarkup
    Currency totalBeforeTax;     ///< ptotbeforetax
    Currency salesTax;           ///< psalestax
    Currency grandTotal;         ///< pgrandtot
};

/// `percent` of `amount`, rounded to cents (half to even), as the host rounds each figure.
Currency percentOf(Currency amount, double percent);

/// The host's markup computation; every figure is rounded to cents.
MarkupFigures computeMarkup(const MarkupInputs& in);

} // namespace qr::data::sample
