#include "platform/db/test_databases.hpp"

#include "platform/core/error.hpp"
#include "platform/db/sql_script.hpp"

#include <atomic>
#include <cstdlib>
#include <random>
#include <unistd.h>

namespace qr::test {
namespace {

std::string env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string uniqueDatabaseName() {
    static std::atomic<int> counter{0};
    static const unsigned salt = std::random_device{}() % 100000;
    return "qrt_" + std::to_string(::getpid()) + "_" + std::to_string(salt) + "_" +
           std::to_string(counter++);
}

/// The server's connection string with another database name in place of its own.
std::string withDatabase(const std::string& server, const std::string& database) {
    const auto query = server.find('?');
    const std::string base = server.substr(0, query);
    const std::string tail = query == std::string::npos ? "" : server.substr(query);
    return base.substr(0, base.rfind('/') + 1) + database + tail;
}

} // namespace

std::vector<Backend> allBackends() {
    return {Backend::SQLite, Backend::PostgreSQL, Backend::Odbc};
}

std::string backendName(Backend backend) {
    switch (backend) {
    case Backend::SQLite:
        return "SQLite";
    case Backend::PostgreSQL:
        return "PostgreSQL";
    case Backend::Odbc:
        return "ODBC";
    }
    return "?";
}

std::string fixturePath(const std::string& relative) {
    return std::string(QR_SOURCE_DIR) + "/tests/fixtures/" + relative;
}

TestDatabase::TestDatabase(Backend backend) {
    if (backend == Backend::SQLite) {
        m_dir.emplace();
        m_connectionString = "sqlite:" + (m_dir->path() / "test.db").string();
        m_connection = std::make_shared<db::Connection>(m_connectionString);
        return;
    }
    const std::string server = env("QR_TEST_PG");
    if (server.empty()) {
        m_unavailable = "QR_TEST_PG is not set: no PostgreSQL server in this run "
                        "(./run test starts one)";
        return;
    }
    std::string odbc;
    if (backend == Backend::Odbc) {
        odbc = env("QR_TEST_ODBC_PG");
        if (odbc.empty()) {
            m_unavailable = "QR_TEST_ODBC_PG is not set: no ODBC data source registered in this "
                            "run (./run test registers one)";
            return;
        }
    }
    m_pgDatabase = uniqueDatabaseName();
    db::Connection(server).execute("CREATE DATABASE " + m_pgDatabase);
    m_connectionString = backend == Backend::Odbc ? odbc + ";Database=" + m_pgDatabase
                                                  : withDatabase(server, m_pgDatabase);
    m_connection = std::make_shared<db::Connection>(m_connectionString);
}

TestDatabase::~TestDatabase() {
    m_connection.reset();
    if (m_pgDatabase.empty())
        return;
    try {
        db::Connection(env("QR_TEST_PG"))
            .execute("DROP DATABASE IF EXISTS " + m_pgDatabase + " WITH (FORCE)");
    } catch (const Error& error) {
        ADD_FAILURE() << "dropping " << m_pgDatabase << ": " << error.description();
    }
}

std::shared_ptr<db::Connection> TestDatabase::connect() const {
    return std::make_shared<db::Connection>(m_connectionString);
}

void BackendTest::SetUp() {
    m_database = std::make_unique<TestDatabase>(GetParam());
    if (!m_database->unavailable().empty())
        GTEST_SKIP() << m_database->unavailable();
}

void BackendTest::loadFixture(const std::string& relative) {
    db::runSqlFile(connection(), fixturePath(relative));
}

} // namespace qr::test
