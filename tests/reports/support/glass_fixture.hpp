#pragma once
// What the final glass report tests share: a job database made from
// tests/reports/fixtures/glass_job.sql on SQLite and on PostgreSQL (a database of its own on
// the server QR_TEST_PG names, dropped afterwards), the report data the host would hand over
// for it, a recording host, and the process set up the way the service sets it up (its text
// measurer and export filters, the clock and locale pinned).

#include "data/statements.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/sql_script.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/host/report_data.hpp"
#include "service/component.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace qr::test {

enum class GlassBackend { SQLite, PostgreSQL };

inline std::string glassBackendName(const ::testing::TestParamInfo<GlassBackend>& info) {
    return info.param == GlassBackend::SQLite ? "SQLite" : "PostgreSQL";
}

/// The job of the fixture, its name and the job that has no elevations.
inline constexpr std::int32_t kGlassJobId = 7;
inline constexpr const char* kGlassJobName = "Harbor Point Tower";
inline constexpr std::int32_t kJobWithoutElevations = 9;

/// A fresh database holding the glass fixture.
class GlassDatabase {
  public:
    explicit GlassDatabase(GlassBackend backend) {
        if (backend == GlassBackend::SQLite) {
            m_dir.emplace();
            m_connection =
                std::make_shared<db::Connection>("sqlite:" + (m_dir->path() / "glass.db").string());
        } else {
            const char* server = std::getenv("QR_TEST_PG");
            if (server == nullptr || *server == '\0') {
                m_unavailable = "QR_TEST_PG is not set: no PostgreSQL server in this run";
                return;
            }
            m_server = server;
            m_database = uniqueName();
            db::Connection(m_server).execute("CREATE DATABASE " + m_database);
            m_connection = std::make_shared<db::Connection>(withDatabase(m_server, m_database));
        }
        db::runSqlFile(*m_connection,
                       std::string(QR_SOURCE_DIR) + "/tests/reports/fixtures/glass_job.sql");
    }
    ~GlassDatabase() {
        m_connection.reset();
        if (m_database.empty())
            return;
        try {
            db::Connection(m_server).execute("DROP DATABASE IF EXISTS " + m_database +
                                             " WITH (FORCE)");
        } catch (const Error& error) {
            ADD_FAILURE() << "dropping " << m_database << ": " << error.description();
        }
    }
    GlassDatabase(const GlassDatabase&) = delete;
    GlassDatabase& operator=(const GlassDatabase&) = delete;

    const std::string& unavailable() const { return m_unavailable; }
    const host::ConnectionRef& connection() const { return m_connection; }

  private:
    static std::string uniqueName() {
        static std::atomic<int> counter{0};
        static const unsigned salt = std::random_device{}() % 100000;
        return "qr_glass_" + std::to_string(::getpid()) + "_" + std::to_string(salt) + "_" +
               std::to_string(counter++);
    }
    static std::string withDatabase(const std::string& server, const std::string& database) {
        const auto query = server.find('?');
        const std::string base = server.substr(0, query);
        const std::string tail = query == std::string::npos ? "" : server.substr(query);
        return base.substr(0, base.rfind('/') + 1) + database + tail;
    }

    std::string m_unavailable;
    std::string m_server;
    std::string m_database;
    std::optional<TempDir> m_dir;
    host::ConnectionRef m_connection;
};

/// The report data the host hands over for `jobId` of the fixture.
inline host::FinalGlassReportData glassReportData(const host::ConnectionRef& connection,
                                                  std::int32_t jobId = kGlassJobId) {
    host::FinalGlassReportData data;
    data.User.name = "Dana Whitfield";
    data.User.phone = "(555) 201-4477";
    data.User.email = "dana@harborglass.example";
    data.Company.name = "Harbor Glass & Glazing";
    data.Company.phone = "(555) 201-4400";
    data.Job.JobID = jobId;
    data.Job.JobName = kGlassJobName;
    data.GlassQuery = data::sql::finalGlassQuery(jobId);
    data.Connection = connection;
    return data;
}

/// Base of the final glass suites: one fixture database per test on the backend of the
/// parameter, a recording host, the service's start-up, clock and locale pinned.
class GlassReportTest : public ::testing::TestWithParam<GlassBackend> {
  protected:
    void SetUp() override {
        service::initializeComponent();
        setSystemFormats(SystemFormats("en_US"));
        Clock::pin(Date::fromParts(2024, 3, 15, 14, 5));
        m_database = std::make_unique<GlassDatabase>(GetParam());
        if (!m_database->unavailable().empty())
            GTEST_SKIP() << m_database->unavailable();
        m_data = glassReportData(m_database->connection());
    }
    void TearDown() override {
        m_database.reset();
        Clock::unpin();
    }

    host::FinalGlassReportData& reportData() { return m_data; }
    const host::ConnectionRef& connection() { return m_database->connection(); }

    RecordingHost m_host;

  private:
    std::unique_ptr<GlassDatabase> m_database;
    host::FinalGlassReportData m_data;
};

// ---- Reading pages ---------------------------------------------------------------------------

/// Texts printed by one control on all pages, in order.
inline std::vector<std::string> glassTexts(const page::Pages& pages, const std::string& control) {
    std::vector<std::string> texts;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* text = std::get_if<page::TextItem>(&item);
                text && text->control == control)
                texts.push_back(text->text);
        }
    }
    return texts;
}

/// The one text a control printed; fails the test when it printed none or several.
inline std::string glassText(const page::Pages& pages, const std::string& control) {
    const std::vector<std::string> texts = glassTexts(pages, control);
    EXPECT_EQ(texts.size(), 1u) << control;
    return texts.empty() ? std::string("<none>") : texts.front();
}

/// States of one check box on all pages: "x" checked, "-" cleared.
inline std::string glassChecks(const page::Pages& pages, const std::string& control) {
    std::string states;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* box = std::get_if<page::CheckBoxItem>(&item);
                box && box->control == control)
                states += box->checked ? 'x' : '-';
        }
    }
    return states;
}

} // namespace qr::test
