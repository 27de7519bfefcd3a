#include "data/sample/parts_takeoff.hpp"

#include "data/sample/glass_sizes.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"

#include <algorithm>
#include <cmath>
#include <map>

namespace qr::data::sample {

namespace {

constexpr int kInch = 16; // sixteenths
constexpr int kKerf = 2;  // the saw blade takes 1/8 inch per cut
constexpr int kFrameFace = 2 * kInch;
constexpr int kFrameDepth = 72;      // 4 1/2 inches
constexpr int kCurtainWallFace = 40; // 2 1/2 inches

using K = PartKind;

// The vendor's catalogue, as far as the sample jobs use it: part number, description, sort
// type, finish ("" for the job's), how it is bought, stock lengths (inches), units per
// package, price (per unit, per foot of stock, or per lineal foot), multiplier.
// clang-format off
const CatalogueEntry kCatalogue[] = {
    {"SF-4501", "Head, 2 x 4-1/2 in. thermal", "Frame", "", K::Metal, {252, 288}, 0, 3.85, 0.58},
    {"SF-4502", "Sill receptor, 2 x 4-1/2 in.", "Frame", "", K::Metal, {252, 288}, 0, 3.40, 0.58},
    {"SF-4503", "Jamb, 2 x 4-1/2 in. thermal", "Frame", "", K::Metal, {192, 252}, 0, 3.62, 0.58},
    {"SF-4504", "Vertical mullion, 2 x 4-1/2 in.", "Frame", "", K::Metal, {192, 252}, 0, 3.95,
     0.58},
    {"SF-4505", "Intermediate horizontal, 2 x 4-1/2 in.", "Frame", "", K::Metal, {144, 192}, 0,
     3.28, 0.58},
    {"SF-4510", "Snap-in glass stop, square", "Glazing", "", K::Metal, {144}, 0, 0.96, 0.58},
    {"DR-2001", "Medium stile door stile, 4 in.", "Door", "", K::Metal, {144, 192}, 0, 6.10,
     0.62},
    {"DR-2002", "Door top rail, 4 in.", "Door", "", K::Metal, {144}, 0, 5.80, 0.62},
    {"DR-2003", "Door bottom rail, 10 in.", "Door", "", K::Metal, {144}, 0, 9.45, 0.62},
    {"CW-7501", "Curtain wall mullion, 2-1/2 x 7-1/2 in.", "Frame", "", K::Metal, {192, 288}, 0,
     7.25, 0.55},
    {"CW-7502", "Curtain wall horizontal, 2-1/2 x 6 in.", "Frame", "", K::Metal, {192, 252}, 0,
     6.40, 0.55},
    {"CW-7510", "Pressure plate, 2-1/2 in.", "Glazing", "Mill", K::Metal, {240, 288}, 0, 1.85,
     0.55},
    {"CW-7511", "Snap cover, 2-1/2 x 1 in.", "Cover", "", K::Metal, {252, 288}, 0, 1.62, 0.55},
    {"AC-4401", "Anchor clip, 3 x 3 x 1/4 in.", "Anchor", "Mill", K::Packaged, {}, 25, 2.15, 0.72},
    {"AC-4402", "#12 x 1-1/2 in. pan head screw", "Fastener", "Stainless", K::Packaged, {}, 100,
     0.18, 0.72},
    {"AC-4403", "Setting block, 4 in. EPDM", "Glazing", "Black", K::Packaged, {}, 50, 0.42, 0.72},
    {"AC-4404", "Shear block, 4-1/2 in.", "Fastener", "Mill", K::Packaged, {}, 20, 3.10, 0.72},
    {"SE-5501", "Perimeter silicone sealant, 10.1 oz", "Sealant", "Limestone", K::Packaged, {},
     24, 8.75, 0.85},
    {"DH-3001", "Offset pivot set, top and intermediate", "Hardware", "Satin Aluminum", K::Each,
     {}, 0, 168.00, 1.0},
    {"DH-3002", "Surface closer with hold open", "Hardware", "Aluminum", K::Each, {}, 0, 212.50,
     1.0},
    {"DH-3003", "Push/pull set, 1 in. round", "Hardware", "Satin Stainless", K::Each, {}, 0,
     96.40, 1.0},
    {"DH-3004", "Deadlock with cylinder", "Hardware", "Satin Aluminum", K::Each, {}, 0, 141.75,
     1.0},
    {"LN-6601", "Exterior glazing gasket, EPDM", "Gasket", "Black", K::Lineal, {}, 0, 0.34, 0.65},
    {"LN-6602", "Interior wedge gasket, EPDM", "Gasket", "Black", K::Lineal, {}, 0, 0.29, 0.65},
    {"LN-6603", "Structural glazing tape, 1/4 x 1/2 in.", "Tape", "Gray", K::Lineal, {}, 0, 0.56,
     0.80},
    {"LN-6604", "Closed-cell backer rod, 3/8 in.", "Sealant", "Gray", K::Lineal, {}, 0, 0.08, 1.0},
};
// clang-format on

const CatalogueEntry& partNumbered(const std::string& number) {
    for (const CatalogueEntry& part : kCatalogue) {
        if (part.partNumber == number)
            return part;
    }
    throw Error::component("SampleParts", "No catalogue part " + number);
}

int ceilDiv(int a, int b) {
    return (a + b - 1) / b;
}

/// Collects what one job needs, elevation by elevation.
class TakeoffBuilder {
  public:
    /// `count` cuts of `sixteenths` for the current elevation, for every time it occurs. A
    /// member longer than the longest stock is spliced from equal pieces.
    void cut(const char* part, int sixteenths, int count = 1) {
        PartNeed& need = needOf(part);
        const int longest = need.part->stockInches.back() * kInch - kKerf;
        const int pieces = ceilDiv(sixteenths, longest);
        for (int i = 0; i < count * m_occurrences * pieces; ++i)
            need.cuts.push_back({sixteenths / pieces, m_elevation});
    }
    /// `units` more of a counted part, or feet of a lineal one, for every occurrence.
    void add(const char* part, double units) { needOf(part).units += units * m_occurrences; }

    void startElevation(int index, int occurrences) {
        m_elevation = index;
        m_occurrences = occurrences;
    }

    std::vector<PartNeed> finish();

  private:
    PartNeed& needOf(const char* part) {
        PartNeed& need = m_needs[part];
        need.part = &partNumbered(part);
        return need;
    }

    std::map<std::string, PartNeed> m_needs; // ordered by part number
    int m_elevation = 0;
    int m_occurrences = 1;
};

/// First fit on the longest stock, longest cuts first, at most eight cuts a length; then each
/// length is cut from the shortest stock its cuts fit on.
std::vector<StockPiece> layOut(const CatalogueEntry& part, std::vector<MemberCut>& cuts) {
    std::stable_sort(cuts.begin(), cuts.end(), [](const MemberCut& a, const MemberCut& b) {
        return a.sixteenths > b.sixteenths;
    });
    const int longest = part.stockInches.back() * kInch;
    std::vector<StockPiece> pieces;
    std::vector<int> used;
    for (const MemberCut& cut : cuts) {
        std::size_t i = 0;
        while (i < pieces.size() && (used[i] + cut.sixteenths + kKerf > longest ||
                                     static_cast<int>(pieces[i].cuts.size()) >= kMaxCutsPerStock))
            ++i;
        if (i == pieces.size()) {
            pieces.push_back({part.stockInches.back(), {}});
            used.push_back(0);
        }
        pieces[i].cuts.push_back(cut);
        used[i] += cut.sixteenths + kKerf;
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        for (int stock : part.stockInches) {
            if (used[i] <= stock * kInch) {
                pieces[i].stockInches = stock;
                break;
            }
        }
    }
    std::stable_sort(pieces.begin(), pieces.end(), [](const StockPiece& a, const StockPiece& b) {
        return a.stockInches < b.stockInches;
    });
    return pieces;
}

std::vector<PartNeed> TakeoffBuilder::finish() {
    std::vector<PartNeed> parts;
    for (auto& [number, need] : m_needs) {
        if (need.part->kind == PartKind::Metal)
            need.stock = layOut(*need.part, need.cuts);
        if (need.part->kind == PartKind::Lineal)
            need.units = std::ceil(need.units);
        parts.push_back(std::move(need));
    }
    return parts;
}

struct Opening {
    int width = 0, height = 0; // sixteenths
};

/// The lites of an elevation as openings, one entry per lite.
std::vector<Opening> litesOf(const ElevationPlan& elevation, const char* partType = nullptr) {
    std::vector<Opening> lites;
    for (const LitePlan& lite : elevation.lites) {
        if (partType && lite.partType != partType)
            continue;
        const int height = std::max(sixteenthsOf(lite.height),
                                    lite.rightHeight.empty() ? 0 : sixteenthsOf(lite.rightHeight));
        for (int i = 0; i < lite.perElevation; ++i)
            lites.push_back({sixteenthsOf(lite.width), height});
    }
    return lites;
}

double feetAround(const Opening& opening) {
    return 2.0 * (opening.width + opening.height) / (12.0 * kInch);
}

/// Gaskets, setting blocks, stops (storefront) and tape (curtain wall) around each lite.
void glazeLites(TakeoffBuilder& b, const ElevationPlan& elevation, bool curtainWall) {
    for (const Opening& lite : litesOf(elevation)) {
        b.add("LN-6601", feetAround(lite));
        b.add("LN-6602", feetAround(lite));
        b.add("AC-4403", 2);
        if (curtainWall) {
            b.add("LN-6603", feetAround(lite));
        } else {
            b.cut("SF-4510", lite.width + 8, 2);
            b.cut("SF-4510", lite.height + 8, 2);
        }
    }
}

void entranceDoors(TakeoffBuilder& b, const ElevationPlan& elevation) {
    for (const Opening& lite : litesOf(elevation, "Door")) {
        b.cut("DR-2001", lite.height + 14 * kInch, 2);
        b.cut("DR-2002", lite.width);
        b.cut("DR-2003", lite.width);
        for (const char* hardware : {"DH-3001", "DH-3002", "DH-3003", "DH-3004"})
            b.add(hardware, 1);
    }
}

void storefront(TakeoffBuilder& b, const ElevationPlan& elevation) {
    const int width = sixteenthsOf(elevation.width);
    const int height = sixteenthsOf(elevation.height);
    const int bays = std::max(1, ceilDiv(width, 64 * kInch));
    const int rows = height > 100 * kInch ? 2 : 1;
    const int bay = (width - 2 * kFrameFace - (bays - 1) * kFrameFace) / bays;
    b.cut("SF-4501", width - 2 * kFrameFace);
    b.cut("SF-4502", width - 2 * kFrameFace);
    b.cut("SF-4503", height, 2);
    if (bays > 1)
        b.cut("SF-4504", height - 2 * kFrameDepth, bays - 1);
    b.cut("SF-4505", bay, rows * bays);
    b.add("AC-4401", 2 * (bays + 1));
    b.add("AC-4404", 2 * rows * bays + 4 * (bays - 1));
    b.add("AC-4402", 4 * rows * bays + 12);
    glazeLites(b, elevation, false);
    entranceDoors(b, elevation);
}

void curtainWall(TakeoffBuilder& b, const ElevationPlan& elevation) {
    const int width = sixteenthsOf(elevation.width);
    const int height = sixteenthsOf(elevation.height);
    const int bays = std::max(1, ceilDiv(width, 60 * kInch));
    const int horizontals = std::max(2, ceilDiv(height, 84 * kInch)) + 1;
    const int bay = (width - (bays + 1) * kCurtainWallFace) / bays;
    b.cut("CW-7501", height, bays + 1);
    b.cut("CW-7502", bay, horizontals * bays);
    for (const char* cover : {"CW-7510", "CW-7511"}) {
        b.cut(cover, height, bays + 1);
        b.cut(cover, bay, horizontals * bays);
    }
    b.add("AC-4401", 2 * (bays + 1));
    b.add("AC-4402", 6 * (bays + 1) + 4 * horizontals * bays);
    glazeLites(b, elevation, true);
}

void perimeterSeal(TakeoffBuilder& b, const ElevationPlan& elevation) {
    const Opening outline{sixteenthsOf(elevation.width), sixteenthsOf(elevation.height)};
    b.add("LN-6604", feetAround(outline));
    // Inside and outside joints; a tube seals about 20 feet of joint.
    b.add("SE-5501", std::ceil(2 * feetAround(outline) / 20.0));
}

} // namespace

int StockPiece::usedSixteenths() const {
    int used = 0;
    for (const MemberCut& cut : cuts)
        used += cut.sixteenths;
    return used;
}

std::string finishOf(const CatalogueEntry& part, const JobPlan& job) {
    if (!part.finish.empty())
        return part.finish;
    return job.finish.isNull() ? std::string() : toText(job.finish);
}

JobTakeoff partsTakeoff(const JobPlan& job) {
    TakeoffBuilder builder;
    for (std::size_t i = 0; i < job.elevations.size(); ++i) {
        const ElevationPlan& elevation = job.elevations[i];
        builder.startElevation(static_cast<int>(i), elevation.quantity);
        if (elevation.system == "curtain wall")
            curtainWall(builder, elevation);
        else
            storefront(builder, elevation);
        perimeterSeal(builder, elevation);
    }
    return {&job, builder.finish()};
}

} // namespace qr::data::sample
