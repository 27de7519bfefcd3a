#pragma once
// What the final glass report tests share: the job of tests/reports/fixtures/glass_job.sql in
// a fresh database on SQLite or on PostgreSQL (a database of its own on the server QR_TEST_PG
// names, dropped afterwards), the report data the host would hand over for it, a recording
// host, and the process set up as the service sets it up, clock and locale pinned.

#include "data/statements.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/db/sql_script.hpp"
#include "platform/host/report_data.hpp"
#include "service/component.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace qr::test {

enum class GlassBackend { SQLite, PostgreSQL };

inline constexpr const char* kGlassJobName = "Harbor Point Tower";

/// The data the host hands over for job `jobId` of the fixture (7 has glass and elevations,
/// 9 has neither).
inline host::FinalGlassReportData glassReportData(const host::ConnectionRef& connection,
                                                  std::int32_t jobId = 7) {
    host::FinalGlassReportData data;
    data.User = {1, "Dana Whitfield", "(555) 201-4477", "dana@harborglass.example"};
    data.Company = {"Harbor Glass & Glazing", "(555) 201-4400", "", ""};
    data.Job = {jobId, kGlassJobName};
    data.GlassQuery = data::sql::finalGlassQuery(jobId);
    data.Connection = connection;
    return data;
}

/// Base of the final glass suites, parameterised by backend.
class GlassReportTest : public ::testing::TestWithParam<GlassBackend> {
  protected:
    void SetUp() override {
        service::initializeComponent();
        setSystemFormats(SystemFormats("en_US"));
        Clock::pin(Date::fromParts(2024, 3, 15, 14, 5));
        std::string connection = "sqlite:" + (m_dir.path() / "glass.db").string();
        if (GetParam() == GlassBackend::PostgreSQL) {
            const char* server = std::getenv("QR_TEST_PG");
            if (server == nullptr || *server == '\0')
                GTEST_SKIP() << "QR_TEST_PG is not set: no PostgreSQL server in this run";
            m_server = server;
            static int serial = 0;
            m_pgDatabase =
                "qr_glass_" + std::to_string(::getpid()) + "_" + std::to_string(++serial);
            db::Connection(m_server).execute("CREATE DATABASE " + m_pgDatabase);
            // postgresql://user@host:port/postgres -> .../<our database>
            connection = m_server.substr(0, m_server.rfind('/') + 1) + m_pgDatabase;
        }
        m_connection = std::make_shared<db::Connection>(connection);
        db::runSqlFile(*m_connection,
                       std::string(QR_SOURCE_DIR) + "/tests/reports/fixtures/glass_job.sql");
        m_data = glassReportData(m_connection);
    }
    void TearDown() override {
        m_connection.reset();
        Clock::unpin();
        if (!m_pgDatabase.empty())
            db::Connection(m_server).execute("DROP DATABASE IF EXISTS " + m_pgDatabase +
                                             " WITH (FORCE)");
    }

    host::FinalGlassReportData& reportData() { return m_data; }
    db::Connection& connection() { return *m_connection; }

    RecordingHost m_host;
    TempDir m_dir;

  private:
    std::string m_server;
    std::string m_pgDatabase;
    host::ConnectionRef m_connection;
    host::FinalGlassReportData m_data;
};

#define QR_GLASS_ON_BOTH_BACKENDS(suite)                                                           \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        Backends, suite, ::testing::Values(GlassBackend::SQLite, GlassBackend::PostgreSQL),        \
        [](const auto& info) {                                                                     \
            return std::string(info.param == GlassBackend::SQLite ? "SQLite" : "PostgreSQL");      \
        })

/// Texts one control printed, on all pages in order (an empty text prints nothing).
inline std::vector<std::string> glassTexts(const page::Pages& pages, const std::string& control) {
    std::vector<std::string> texts;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* t = std::get_if<page::TextItem>(&item); t && t->control == control)
                texts.push_back(t->text);
        }
    }
    return texts;
}

/// The one text a control printed ("<n texts>" when it printed none or several).
inline std::string glassText(const page::Pages& pages, const std::string& control) {
    const auto texts = glassTexts(pages, control);
    return texts.size() == 1 ? texts[0] : "<" + std::to_string(texts.size()) + " texts>";
}

/// States of one check box on all pages: "x" checked, "-" cleared.
inline std::string glassChecks(const page::Pages& pages, const std::string& control) {
    std::string states;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* b = std::get_if<page::CheckBoxItem>(&item); b && b->control == control)
                states += b->checked ? 'x' : '-';
        }
    }
    return states;
}

} // namespace qr::test
