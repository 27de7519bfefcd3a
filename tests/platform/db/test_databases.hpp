#pragma once
// Fresh databases for tests, on every engine the database layer supports: a SQLite file under
// the build tree, and -- when the test run started its private PostgreSQL server
// (scripts/test-services.sh) -- a database of its own on that server, reached directly and
// through Debian's PostgreSQL ODBC driver. Each is dropped when the test ends.

#include "platform/db/connection.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qr::test {

enum class Backend { SQLite, PostgreSQL, Odbc };

std::vector<Backend> allBackends();
/// "SQLite", "PostgreSQL", "ODBC": used in parameterised test names.
std::string backendName(Backend backend);
inline void PrintTo(Backend backend, std::ostream* out) {
    *out << backendName(backend);
}

class TestDatabase {
  public:
    explicit TestDatabase(Backend backend);
    ~TestDatabase();
    TestDatabase(const TestDatabase&) = delete;
    TestDatabase& operator=(const TestDatabase&) = delete;

    /// Why the backend cannot be used in this run (the test then skips); empty when it can.
    const std::string& unavailable() const { return m_unavailable; }
    const std::string& connectionString() const { return m_connectionString; }
    /// The connection opened with the database.
    const std::shared_ptr<db::Connection>& connection() const { return m_connection; }
    /// A further, independent connection to the same database.
    std::shared_ptr<db::Connection> connect() const;

  private:
    std::string m_unavailable;
    std::string m_connectionString;
    std::string m_pgDatabase;
    std::optional<TempDir> m_dir;
    std::shared_ptr<db::Connection> m_connection;
};

/// Path of a file under tests/fixtures.
std::string fixturePath(const std::string& relative);

/// Base of the test suites that run on every backend.
class BackendTest : public ::testing::TestWithParam<Backend> {
  protected:
    void SetUp() override;
    void TearDown() override { m_database.reset(); }
    db::Connection& connection() { return *m_database->connection(); }
    TestDatabase& database() { return *m_database; }
    /// Run a fixture script (tests/fixtures/...) on the test database.
    void loadFixture(const std::string& relative);

  private:
    std::unique_ptr<TestDatabase> m_database;
};

inline std::string backendParamName(const ::testing::TestParamInfo<Backend>& info) {
    return backendName(info.param);
}

} // namespace qr::test

#define QR_INSTANTIATE_ON_ALL_BACKENDS(suite)                                                      \
    INSTANTIATE_TEST_SUITE_P(AllBackends, suite, ::testing::ValuesIn(::qr::test::allBackends()),   \
                             ::qr::test::backendParamName)
