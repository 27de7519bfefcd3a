#pragma once
// What the tests of the glass reports asked for by request share: the cost fixture's vendor and
// master databases (SQLite, or PostgreSQL when QR_TEST_PG is set) filled with the sample jobs,
// glass-to-order and take-off tables made by hand beside them, and a request for job 1 left in
// the module state as the dispatcher leaves it.

#include "reports/support/cost_fixture.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qr::test {

/// The sample job the requests name (job 1).
inline constexpr const char* kGlassSampleJob = "Riverside Medical Office Building";

/// One row of a glass-to-order table.
struct OrderRow {
    const char* description;
    const char* partType;
    const char* typeLabel;
    const char* glassType;
    const char* width;
    const char* leftHeight;
    const char* rightHeight;
    const char* position; ///< sLabel
    const char* code;
    int units;
    std::optional<double> areaEach; ///< pSqrFt; nullopt for Null
    double blockEach;               ///< pBlockSize
};

/// One row of a glass take-off table.
struct TakeoffRow {
    const char* elevation;
    int elevationSort;
    const char* description;
    const char* typeLabel;
    const char* part;
    int units;
    const char* width;
    const char* leftHeight;
    const char* rightHeight;
    std::optional<double> price; ///< pGprc; nullopt for Null
    double areaEach;
    double lineTotal;
    double blockTotal;
    const char* blockSize;
    double blockAreaEach;
};

class GlassRequestTest : public CostReportTest {
  protected:
    void SetUp() override {
        CostReportTest::SetUp();
        if (IsSkipped())
            return;
        loadSample();
    }

    /// A glass-to-order table `name` holding `rows`.
    void makeOrderTable(const std::string& name, const std::vector<OrderRow>& rows) {
        createReportTable(data::ReportTableKind::GlassToOrder, name);
        for (const OrderRow& r : rows) {
            execVendor("INSERT INTO " + name +
                           " (sDescription, sPartType, sTypeLabel, sGlassType, sWidth, "
                           "sLeftHeight, sRightHeight, sLabel, Code, iElevQty, pSqrFt, "
                           "pBlockSize) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                       {r.description, r.partType, r.typeLabel, r.glassType, r.width, r.leftHeight,
                        r.rightHeight, r.position, r.code,
                        Variant(static_cast<std::int32_t>(r.units)),
                        r.areaEach ? Variant(*r.areaEach) : Variant::null(), Variant(r.blockEach)});
        }
    }

    /// A glass take-off table `name` holding `rows`.
    void makeTakeoffTable(const std::string& name, const std::vector<TakeoffRow>& rows) {
        createReportTable(data::ReportTableKind::GlassTakeoff, name);
        for (const TakeoffRow& r : rows) {
            execVendor("INSERT INTO " + name +
                           " (sElevName, iElevSort, sDesc, sTypeLabel, sPNum, iGqty, sWide, "
                           "sHt1, sHt2, pGprc, pSqrFt, ptotals, pblkpricetotal, sblocksize, "
                           "pblksqrft) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                       {r.elevation, Variant(static_cast<std::int32_t>(r.elevationSort)),
                        r.description, r.typeLabel, r.part,
                        Variant(static_cast<std::int32_t>(r.units)), r.width, r.leftHeight,
                        r.rightHeight, r.price ? Variant(*r.price) : Variant::null(),
                        Variant(r.areaEach), Variant(r.lineTotal), Variant(r.blockTotal),
                        r.blockSize, Variant(r.blockAreaEach)});
        }
    }

    /// Runs `report` on a request for job 1 on `table`, as the dispatcher would.
    const page::Pages& runOn(engine::Report& report, const std::string& table) {
        setRequest(table, 1);
        return run(report);
    }
};

#define QR_GLASS_REQUEST_ON_BOTH_BACKENDS(suite)                                                   \
    INSTANTIATE_TEST_SUITE_P(Backends, suite,                                                      \
                             ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),      \
                             costBackendName)

} // namespace qr::test
