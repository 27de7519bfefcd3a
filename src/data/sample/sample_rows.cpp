#include "data/sample/sample_rows.hpp"

#include "data/sample/glass_sizes.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"

#include <algorithm>

namespace qr::data::sample {
namespace {

double round2(double value) {
    return roundHalfEven(value, 2);
}

const GlassProduct& productOf(const JobPlan& job, const std::string& typeLabel) {
    for (const GlassProduct& product : job.glass)
        if (product.typeLabel == typeLabel)
            return product;
    throw Error::component("SampleJobs",
                           "Job " + std::to_string(job.jobId) + " has no glass type " + typeLabel);
}

double squareFeet(int widthSixteenths, int heightSixteenths) {
    return widthSixteenths / 16.0 * heightSixteenths / 16.0 / 144.0;
}

Currency addedLabor(const JobPlan& job) {
    const double rate = job.miscLaborRate ? job.miscLaborRate->toDouble() : 0.0;
    Currency total;
    for (const AddedLabor& item : job.addedLabor)
        total += Currency::fromDouble(round2(item.hours * rate)) + item.fixedAmount;
    return total;
}

} // namespace

std::string GlassLine::blockSize() const {
    return std::to_string(blockWidth) + " x " + std::to_string(blockHeight);
}

std::vector<GlassLine> glassLines(const JobPlan& job) {
    std::vector<GlassLine> lines;
    int sort = 0;
    for (const ElevationPlan& elevation : job.elevations) {
        ++sort;
        for (const LitePlan& lite : elevation.lites) {
            const GlassProduct& product = productOf(job, lite.typeLabel);
            const int w = sixteenthsOf(lite.width);
            const int left = sixteenthsOf(lite.height);
            const int right = lite.rightHeight.empty() ? left : sixteenthsOf(lite.rightHeight);
            GlassLine line{&elevation, &lite, &product, sort, lite.perElevation * elevation.quantity,
                           inchesText(w), inchesText(left), inchesText(right), blockInches(w),
                           blockInches(std::max(left, right)),
                           // A raked lite's area is its trapezoid; its block is the rectangle.
                           round2(squareFeet(w, (left + right) / 2)), 0, false, 0, ""};
            line.blockArea = round2(line.blockWidth * line.blockHeight / 144.0);
            line.minimumMet = line.blockArea >= product.minBlockArea;
            const double billed = std::max(line.blockArea, product.minBlockArea);
            line.priceTotal = round2(billed * line.quantity * product.pricePerSqFt);
            line.category = lite.partType == "Door" ? "door glass" : elevation.system + " glass";
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

std::vector<LaborLine> laborLines(const JobPlan& job) {
    const LaborRates rates;
    const double miscRate = job.miscLaborRate ? job.miscLaborRate->toDouble() : 0.0;
    std::vector<LaborLine> lines;
    int sort = 0;
    for (const ElevationPlan& elevation : job.elevations) {
        const double frameArea =
            squareFeet(sixteenthsOf(elevation.width), sixteenthsOf(elevation.height));
        int lites = 0, doors = 0;
        double glassArea = 0;
        for (const LitePlan& lite : elevation.lites) {
            lites += lite.perElevation;
            if (lite.partType == "Door")
                doors += lite.perElevation;
            glassArea +=
                lite.perElevation * squareFeet(sixteenthsOf(lite.width), sixteenthsOf(lite.height));
        }
        // The estimator's production factors: frame work by area and lite count, entrances by
        // door leaf, glazing by glass area and lite count.
        LaborLine line{};
        line.elevationName = elevation.code + " " + elevation.name;
        line.quantity = elevation.quantity;
        line.sort = ++sort;
        line.fabHours = round2(frameArea * 0.045 + lites * 0.25);
        line.installHours = round2(frameArea * 0.06 + lites * 0.15);
        line.miscHours = round2(frameArea * 0.012);
        line.entFabHours = doors * 3.5;
        line.entInstallHours = doors * 4.25;
        line.glazHours = round2(glassArea * 0.035 + lites * 0.12);
        line.fabTotal = round2(line.fabHours * rates.fabrication);
        line.installTotal = round2(line.installHours * rates.installation);
        line.miscTotal = round2(line.miscHours * miscRate);
        line.entFabTotal = round2(line.entFabHours * rates.entranceFabrication);
        line.entInstallTotal = round2(line.entInstallHours * rates.entranceInstallation);
        line.glazTotal = round2(line.glazHours * rates.glazing);
        line.elevationTotal = round2(line.fabTotal + line.installTotal + line.miscTotal +
                                     line.entFabTotal + line.entInstallTotal + line.glazTotal);
        lines.push_back(line);
    }
    return lines;
}

double glassPerimeter(const ElevationPlan& elevation) {
    double inches = 0;
    for (const LitePlan& lite : elevation.lites) {
        const int w = sixteenthsOf(lite.width);
        const int left = sixteenthsOf(lite.height);
        const int right = lite.rightHeight.empty() ? left : sixteenthsOf(lite.rightHeight);
        inches += lite.perElevation * (2.0 * w + left + right) / 16.0;
    }
    return round2(inches / 12.0 * elevation.quantity);
}

JobFigures jobFigures(const JobPlan& job) {
    JobFigures figures;
    for (const GlassLine& line : glassLines(job))
        figures.glassTotal += Currency::fromDouble(line.priceTotal);
    for (const LaborLine& line : laborLines(job))
        figures.laborTotal += Currency::fromDouble(round2(line.elevationTotal * line.quantity));
    figures.laborTotal += addedLabor(job);
    for (const ElevationPlan& elevation : job.elevations) {
        const int w = sixteenthsOf(elevation.width), h = sixteenthsOf(elevation.height);
        figures.area += squareFeet(w, h) * elevation.quantity;
        figures.perimeter += 2.0 * (w + h) / 16.0 / 12.0 * elevation.quantity;
    }
    figures.area = round2(figures.area);
    figures.perimeter = round2(figures.perimeter);

    figures.effective = {effectiveTotal(job.stockOverride, Variant(job.stockTotal)),
                         effectiveTotal(job.doorOverride, Variant(job.doorTotal)),
                         effectiveTotal(job.miscOverride, Variant(job.miscPartsTotal)),
                         effectiveTotal(job.glassOverride, Variant(figures.glassTotal)),
                         effectiveTotal(job.laborOverride, Variant(figures.laborTotal))};
    const CategoryTotals& e = figures.effective;
    figures.markup = computeMarkup({e.metal, e.doors, e.miscParts, e.glass, e.labor, job.addToLabor,
                                    job.addToMaterial, job.subcontractorCosts, job.rentalCosts,
                                    job.otherCosts, job.rates});
    return figures;
}

} // namespace qr::data::sample
