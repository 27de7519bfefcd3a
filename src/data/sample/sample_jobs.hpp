#pragma once
// The sample jobs, described the way an estimator enters them: the glass types of the job,
// its elevations with the lites in each, the labor items added by hand, the cost totals and
// the markup rates. The sample writer derives every table row from these plans.
//
// Job 1 is a two-storey medical office (storefront below, curtain wall above) with overrides on
// the door and glass totals; job 2 a small dental storefront; job 3 a pending retrofit whose
// texts, overrides and dates are Null and whose labor and report tables are empty.

#include "data/sample/markup.hpp"
#include "platform/core/currency.hpp"
#include "platform/core/variant.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qr::data::sample {

/// A glass make-up the job uses, priced per square foot of block size.
struct GlassProduct {
    std::string typeLabel;   ///< "GL-1"
    std::string description; ///< "1\" Insulated Low-E Clear"
    std::string supplier;
    double thickness;      ///< inches
    std::string glassType; ///< "Annealed", "Heat Strengthened", ... or another make-up
    double pricePerSqFt;
    double minBlockArea; ///< the supplier bills smaller lites at this area (sq ft)
};

/// One kind of lite in an elevation.
struct LitePlan {
    std::string mark;      ///< "A": labelled <elevation code>-A
    std::string typeLabel; ///< its GlassProduct
    std::string partType;  ///< "Frame", "Door", "Vent", "Panel"
    std::string width, height;
    std::string rightHeight; ///< a raked lite's other side; empty when square
    int perElevation;
};

struct ElevationPlan {
    std::string code, name;
    std::string system; ///< "storefront", "curtain wall", "window", "interior"
    int quantity;       ///< how many times the elevation occurs in the job
    std::string width, height;
    std::vector<LitePlan> lites;
};

struct AddedLabor {
    std::string item;
    double hours;
    Currency fixedAmount;
};

struct CustomerPlan {
    std::int32_t id;
    Variant company, contact, phone, fax, address1, address2, address3;
};

struct JobPlan {
    std::int32_t jobId;
    std::string name;
    Variant estimator, status, finish, bidDate;
    Variant notes, exclusions, sectionsBid;
    std::int32_t contractorId;
    std::int32_t architectId;
    /// Material totals at cost from the parts take-off (glass and labor are derived).
    Currency stockTotal, doorTotal, miscPartsTotal;
    /// Overrides: Null, or the estimator's figure.
    Variant stockOverride, doorOverride, miscOverride, glassOverride, laborOverride;
    Currency addToLabor, addToMaterial, subcontractorCosts, rentalCosts, otherCosts;
    MarkupRates rates;
    int totalJoints = 0, cuts = 0;
    std::vector<GlassProduct> glass;
    std::vector<ElevationPlan> elevations;
    std::vector<AddedLabor> addedLabor;
    std::optional<Currency> miscLaborRate;                           ///< JobMainLabor; none: no row
    std::vector<std::pair<std::string, std::string>> framingSystems; ///< description, notes
};

/// Jobs 1, 2 and 3.
const std::vector<JobPlan>& sampleJobs();
/// The firm's customers: the contractors and architects of the sample jobs.
const std::vector<CustomerPlan>& sampleCustomers();

} // namespace qr::data::sample
