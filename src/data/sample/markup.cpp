#include "data/sample/markup.hpp"

#include "platform/core/convert.hpp"

namespace qr::data::sample {

Currency percentOf(Currency amount, double percent) {
    return Currency::fromDouble(roundHalfEven(amount.toDouble() * percent / 100.0, 2));
}

MarkupFigures computeMarkup(const MarkupInputs& in) {
    const MarkupRates& r = in.rates;
    MarkupFigures f;

    // Material at cost: the metal side (stock, miscellaneous parts, doors and what the
    // estimator added) and the glass.
    f.totalMetal = in.metal + in.miscParts + in.doors + in.addToMaterial;
    f.totalMaterial = f.totalMetal + in.glass;

    // Suppliers' surcharges (metal price index, glass energy surcharge) on the material.
    f.metalSurcharge = percentOf(f.totalMetal, r.metalSurcharge);
    f.metalPlusSurcharge = f.totalMetal + f.metalSurcharge;
    f.glassSurcharge = percentOf(in.glass, r.glassSurcharge);
    f.glassPlusSurcharge = in.glass + f.glassSurcharge;
    f.totalSurcharge = f.metalSurcharge + f.glassSurcharge;

    f.totalLabor = in.labor + in.addToLabor;
    f.totalOutside = in.subcontractorCosts + in.rentalCosts + in.otherCosts;

    // Markups: material with its surcharge, at the metal rate and the glass rate; labor;
    // outside costs.
    f.materialMarkup = percentOf(f.metalPlusSurcharge, r.stockMarkup) +
                       percentOf(f.glassPlusSurcharge, r.glassMarkup);
    f.laborMarkup = percentOf(f.totalLabor, r.laborMarkup);
    f.outsideMarkup = percentOf(f.totalOutside, r.otherMarkup);
    f.totalMarkup = f.materialMarkup + f.laborMarkup + f.outsideMarkup;

    f.totalBeforeTax =
        f.totalMaterial + f.totalSurcharge + f.totalLabor + f.totalOutside + f.totalMarkup;

    // Sales tax on what the firm buys and resells at cost: each base at its own rate.
    f.salesTax = percentOf(f.totalMetal, r.stockTax) + percentOf(in.glass, r.glassTax) +
                 percentOf(f.totalOutside, r.otherCostsTax) + percentOf(f.totalLabor, r.laborTax) +
                 percentOf(f.totalSurcharge, r.surchargeTax);
    f.grandTotal = f.totalBeforeTax + f.salesTax;
    return f;
}

} // namespace qr::data::sample
