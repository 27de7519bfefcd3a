#pragma once
// The parts take-off of a sample job, as the host's estimating side works it out: the framing
// members each elevation needs (cut lengths in sixteenths of an inch, for every time the
// elevation occurs), laid onto stock lengths by a first-fit optimiser; the anchors, fasteners,
// setting blocks, sealant and door hardware counted per elevation; and the gaskets and tapes
// measured in lineal feet. The parts report data of the sample is derived from this.

#include "data/sample/sample_jobs.hpp"

#include <string>
#include <vector>

namespace qr::data::sample {

/// How a part is bought.
enum class PartKind {
    Metal,    ///< extrusions cut from stock lengths; priced per stock length
    Packaged, ///< counted units sold in packages; priced per unit
    Each,     ///< counted units sold one by one (door hardware)
    Lineal,   ///< bought by the lineal foot; priced per foot
};

/// A part of the vendor's catalogue.
struct CatalogueEntry {
    std::string partNumber;
    std::string description;
    std::string partType; ///< the sort type printed on the lists ("Frame", "Door", ...)
    /// The finish; empty: the job's finish (the exposed framing).
    std::string finish;
    PartKind kind = PartKind::Metal;
    std::vector<int> stockInches; ///< Metal: the stock lengths sold, shortest first
    int packageQuantity = 0;      ///< Packaged: units per package
    double unitPrice = 0;         ///< per unit, per foot of stock (Metal) or per lineal foot
    double multiplier = 1;        ///< the vendor's price multiplier
};

/// One cut of a member: its length and the elevation it belongs to.
struct MemberCut {
    int sixteenths = 0;
    int elevation = 0; ///< index into the job's elevations
};

/// A stock length with the cuts the optimiser laid on it.
struct StockPiece {
    int stockInches = 0;
    std::vector<MemberCut> cuts;
    int usedSixteenths() const;
};

/// What the job needs of one part.
struct PartNeed {
    const CatalogueEntry* part = nullptr;
    std::vector<MemberCut> cuts;   ///< Metal: every cut, longest first
    std::vector<StockPiece> stock; ///< Metal: by stock length, then as laid out
    double units = 0;              ///< Packaged and Each: the count; Lineal: feet
};

struct JobTakeoff {
    const JobPlan* job = nullptr;
    std::vector<PartNeed> parts; ///< ordered by part number
};

/// The most cuts the saw operator lays on one stock length.
inline constexpr int kMaxCutsPerStock = 8;

/// The take-off of `job` (an empty one for a job without elevations).
JobTakeoff partsTakeoff(const JobPlan& job);

/// The finish a part is delivered in on `job` ("" when the job has none).
std::string finishOf(const CatalogueEntry& part, const JobPlan& job);

} // namespace qr::data::sample
