// Database faults while a report runs, with nothing lost: a write-back that fails part way, the
// connection killed while the labor report writes back or while a report reads, a server that
// has gone. Each shows an error and returns (no crash, no hang), and the labor table holds
// every row multiplied or none, never half: half would make the next print multiply those
// rows twice.
#include "platform/core/convert.hpp"
#include "platform/db/recordset.hpp"
#include "reports/support/cost_fixture.hpp"

#include <chrono>
#include <string>
#include <thread>

namespace qr::test {
namespace {

class DatabaseFaultTest : public CostFixtureTest {
  protected:
    // Every figure of the labor table, read through a connection of its own, as one text.
    std::string laborTable(const std::string& table) {
        auto rows = otherVendorConnection()->openRecordset(
            "SELECT sElevName, iQuantity, pFabHours, pFabTot, pInstallTot, pGlazTot, pElevTot FROM " +
            table + " ORDER BY sElevName");
        std::string text;
        for (; !rows->eof(); rows->moveNext()) {
            for (const char* column : {"sElevName", "iQuantity", "pFabHours", "pFabTot",
                                       "pInstallTot", "pGlazTot", "pElevTot"})
                text += toText(rows->value(column)) + " ";
            text += "\n";
        }
        return text;
    }

    // A trigger that makes the update of one elevation's row fail: with an error, or (on
    // PostgreSQL) by killing the connection that writes it.
    void failUpdateOf(const std::string& table, const std::string& elevation, bool kill) {
        if (backend() == CostBackend::SQLite) {
            execVendor("CREATE TRIGGER labor_fault BEFORE UPDATE ON " + table +
                       " WHEN OLD.sElevName = '" + elevation +
                       "' BEGIN SELECT RAISE(ABORT, 'disk I/O error injected'); END");
            return;
        }
        const std::string action = kill ? "PERFORM pg_terminate_backend(pg_backend_pid());"
                                        : "RAISE EXCEPTION 'disk I/O error injected';";
        execVendor("CREATE FUNCTION labor_fault() RETURNS trigger AS $$ BEGIN IF OLD.sElevName = '" +
                   elevation + "' THEN " + action + " END IF; RETURN NEW; END $$ LANGUAGE plpgsql");
        execVendor("CREATE TRIGGER labor_fault BEFORE UPDATE ON " + table +
                   " FOR EACH ROW EXECUTE FUNCTION labor_fault()");
    }

    static std::string laborRequest(const std::string& table) {
        return "finallaborar " + table + " false 1 " + std::to_string(kClinicJob) +
               " false false false |x |";
    }
};

TEST_P(DatabaseFaultTest, ALaborWriteBackThatFailsPartWayLeavesEveryRowAsItWas) {
    struct Case {
        const char* fault;
        bool kill;
        bool postgresOnly;
    };
    const Case cases[] = {
        {"an update that fails", false, false},
        {"the connection killed mid-write", true, true},
    };
    for (const Case& c : cases) {
        if (c.postgresOnly && backend() != CostBackend::PostgreSQL)
            continue;
        SCOPED_TRACE(c.fault);
        const std::string before = laborTable("LaborClinic");
        // The table's last row: the rows before it are already multiplied when it fails.
        failUpdateOf("LaborClinic", "Curtain Wall Typical", c.kill);
        printRequest(laborRequest("LaborClinic"));
        EXPECT_FALSE(shownMessages().empty()) << "the failure is shown";
        EXPECT_EQ(laborTable("LaborClinic"), before) << "no row multiplied";
        if (c.kill)
            return; // the fixture's connection is gone with it
        execVendor("DROP TRIGGER labor_fault" +
                   std::string(backend() == CostBackend::SQLite ? "" : " ON LaborClinic"));
        if (backend() == CostBackend::PostgreSQL)
            execVendor("DROP FUNCTION labor_fault()");
    }
}

// The faults only a server has: its connection killed from outside, during a read or before.
using ServerFaultTest = DatabaseFaultTest;

TEST_P(ServerFaultTest, AConnectionKilledWhileAReportReadsShowsAnErrorAndReturns) {
    // The table the markup report reads takes two seconds to answer; a second into it the
    // server ends the reading connection, as an administrator or a restart would.
    execVendor("CREATE VIEW MarkupSlow AS SELECT m.* FROM MarkupClinic m, "
               "(SELECT pg_sleep(2)) AS pause");
    const std::string pid = toText(vendorValue("SELECT pg_backend_pid() AS pid", "pid"));
    std::thread killer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        otherVendorConnection()->execute("SELECT pg_terminate_backend(" + pid + ")");
    });
    printRequest("armarkup MarkupSlow false 1 " + std::to_string(kClinicJob) +
                 " false false false |x |");
    killer.join();
    EXPECT_FALSE(shownMessages().empty()) << "the lost connection is shown";
}

TEST_P(ServerFaultTest, AServerThatHasGoneShowsAnErrorAndReturns) {
    const std::string pid = toText(vendorValue("SELECT pg_backend_pid() AS pid", "pid"));
    otherVendorConnection()->execute("SELECT pg_terminate_backend(" + pid + ")");
    const std::string before = laborTable("LaborClinic");
    printRequest(laborRequest("LaborClinic"));
    EXPECT_FALSE(shownMessages().empty());
    EXPECT_EQ(laborTable("LaborClinic"), before);
}

INSTANTIATE_TEST_SUITE_P(Backends, DatabaseFaultTest,
                         ::testing::Values(CostBackend::SQLite, CostBackend::PostgreSQL),
                         costBackendName);
INSTANTIATE_TEST_SUITE_P(Server, ServerFaultTest, ::testing::Values(CostBackend::PostgreSQL),
                         costBackendName);

} // namespace
} // namespace qr::test
