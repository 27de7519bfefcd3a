#pragma once
// What the cost report tests share: a vendor and a master database per test on SQLite or on
// PostgreSQL (databases of their own on the server QR_TEST_PG names, dropped afterwards), made
// with the job schema and filled from tests/reports/fixtures/cost_*.sql or with the sample
// jobs; a recording host whose vendor folder is a temporary folder; the module state a request
// leaves; and readers of pages, PDF text and workbook cells.

#include "data/schema.hpp"
#include "platform/db/connection.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/engine/report.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace qr::test {

enum class CostBackend { SQLite, PostgreSQL };

std::string costBackendName(const ::testing::TestParamInfo<CostBackend>& info);
inline void PrintTo(CostBackend backend, std::ostream* out) {
    *out << (backend == CostBackend::SQLite ? "SQLite" : "PostgreSQL");
}

/// One empty database: a SQLite file, or a fresh database on the test PostgreSQL server.
class CostDatabase {
  public:
    CostDatabase(CostBackend backend, const std::filesystem::path& folder, const std::string& name);
    ~CostDatabase();
    CostDatabase(const CostDatabase&) = delete;
    CostDatabase& operator=(const CostDatabase&) = delete;

    /// Why the backend cannot be used in this run; empty when it can.
    const std::string& unavailable() const { return m_unavailable; }
    const host::ConnectionRef& connection() const { return m_connection; }
    /// What opens another connection to the same database.
    const std::string& connectionString() const { return m_connectionString; }

  private:
    std::string m_unavailable;
    std::string m_server;
    std::string m_database;
    std::string m_connectionString;
    host::ConnectionRef m_connection;
};

/// The fixture's firm, user and jobs.
inline constexpr const char* kCostFirm = "Cascade Glass & Glazing";
inline constexpr const char* kCostVendor = "Pacific Architectural Metals";
inline constexpr int kClinicJob = 101;   // every figure filled, overrides of 0 and more
inline constexpr int kLubeJob = 102;     // no job area, a contractor that is not a customer
inline constexpr int kRoundingJob = 103; // job area 100, no added labor

/// Base of the cost report suites, parameterised on the backend.
class CostReportTest : public ::testing::TestWithParam<CostBackend> {
  protected:
    void SetUp() override;
    void TearDown() override;

    db::Connection& vendor() { return *m_vendor->connection(); }
    /// The vendor connection as the host hands it to a report (the final glass reports).
    const host::ConnectionRef& vendorConnection() const { return m_vendor->connection(); }
    db::Connection& master() { return *m_master->connection(); }
    const host::ConnectionRef& masterConnection() const { return m_master->connection(); }
    /// A second connection to the vendor database, for looking from outside the report's.
    std::shared_ptr<db::Connection> otherVendorConnection() const {
        return std::make_shared<db::Connection>(m_vendor->connectionString());
    }
    CostBackend backend() const { return GetParam(); }

    /// The fixture rows: tests/reports/fixtures/cost_vendor.sql and cost_master.sql.
    void loadFixture();
    /// The sample jobs instead; returns the report tables they filled, job by job.
    std::vector<std::string> loadSample();
    /// Creates an empty report table of `kind` named `name` on the vendor database.
    void createReportTable(data::ReportTableKind kind, const std::string& name);
    /// Runs a statement with parameters on the vendor database.
    void execVendor(const std::string& sql, const std::vector<Variant>& params = {});

    /// Leaves the module state as the dispatcher leaves it for a request for job `jobId` on
    /// `table` (no files asked for), with the job size text `tail`.
    void setRequest(const std::string& table, int jobId, const std::string& tail = {});
    /// Runs `report` on that request and returns its pages.
    const page::Pages& run(engine::Report& report);

    /// Asks for `args` through a PrintService with both connections set, printing into a PDF
    /// file; returns that file's path.
    std::filesystem::path printRequest(const std::string& args);
    /// The folder the exports of `jobName` land in.
    std::filesystem::path reportsFolder(const std::string& jobName) const;

    /// A value of the vendor database (first row of `sql`).
    Variant vendorValue(const std::string& sql, const std::string& column);

    /// Messages the host was asked to show, one line each ("title: text").
    std::vector<std::string> shownMessages() const;

    TempDir m_dir;
    std::optional<RecordingHost> m_host;

  private:
    std::unique_ptr<CostDatabase> m_vendor;
    std::unique_ptr<CostDatabase> m_master;
};

/// CostReportTest with the sample jobs loaded; m_sampleTables holds the report tables they
/// filled.
class CostSampleTest : public CostReportTest {
  protected:
    void SetUp() override {
        CostReportTest::SetUp();
        if (!IsSkipped())
            m_sampleTables = loadSample();
    }
    /// The sample's report table of job 1 of a kind ("<none>" when it filled none).
    std::string sampleTable(const std::string& stem) const {
        for (const std::string& t : m_sampleTables) {
            if (t == stem + "1")
                return t;
        }
        return "<none>";
    }
    std::vector<std::string> m_sampleTables;
};

/// CostReportTest with the fixture rows loaded.
class CostFixtureTest : public CostReportTest {
  protected:
    void SetUp() override {
        CostReportTest::SetUp();
        if (!IsSkipped())
            loadFixture();
    }
};

// ---- Reading what the reports produced ---------------------------------------------------

/// Texts one control printed on all pages, in order.
std::vector<std::string> costTexts(const page::Pages& pages, const std::string& control);
/// The one text a control printed ("<none>", and a failure, when it printed none or several).
std::string costText(const page::Pages& pages, const std::string& control);
/// The text of every page of a PDF as poppler reads it, pages joined by a form feed.
std::string costPdfText(const std::filesystem::path& path);
/// Every text and number cell of a workbook's first sheet, as libfreexl reads them (numbers
/// as "=value").
std::vector<std::string> costWorkbookCells(const std::filesystem::path& path);
/// Writes each page as a PNG into the build tree (cost-pages/<stem>-<n>.png), for looking at.
void writeCostPngs(const page::Pages& pages, const std::string& stem);

} // namespace qr::test
