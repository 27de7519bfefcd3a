#pragma once
// What the tests of the glass reports asked for by request share: the cost fixture's vendor and
// master databases (SQLite, or PostgreSQL when QR_TEST_PG is set) filled with the sample jobs,
// report tables made by hand beside them, and a request for job 1 left in the module state as
// the dispatcher leaves it.

#include "data/schema.hpp"
#include "reports/support/cost_fixture.hpp"

#include <string>
#include <vector>

namespace qr::test {

/// The sample job the requests name (job 1).
inline constexpr const char* kGlassSampleJob = "Riverside Medical Office Building";

/// A row of a report table, its values in the order of the table's columns (data/schema).
using ReportRow = std::vector<Variant>;

class GlassRequestTest : public CostSampleTest {
  protected:
    /// A report table of `kind` named `name` holding `rows`.
    void makeTable(data::ReportTableKind kind, const std::string& name,
                   const std::vector<ReportRow>& rows) {
        createReportTable(kind, name);
        std::string columns, marks;
        for (const data::ColumnDef& column : data::reportTableDef(kind, name).columns) {
            columns += (columns.empty() ? "" : ", ") + column.name;
            marks += marks.empty() ? "?" : ", ?";
        }
        for (const ReportRow& row : rows)
            execVendor("INSERT INTO " + name + " (" + columns + ") VALUES (" + marks + ")", row);
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
