#include "reports/support/cost_fixture.hpp"

#include "data/sample/sample_writer.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/db/sql_script.hpp"
#include "platform/host/module_state.hpp"
#include "platform/output/png_writer.hpp"
#include "service/component.hpp"
#include "service/print_service.hpp"

#include <atomic>
#include <cstdlib>
#include <freexl.h>
#include <poppler-document.h>
#include <poppler-page.h>
#include <random>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace qr::test {

namespace {

std::string uniqueDatabaseName(const std::string& name) {
    static std::atomic<int> counter{0};
    static const unsigned salt = std::random_device{}() % 100000;
    return "qr_cost_" + name + "_" + std::to_string(::getpid()) + "_" + std::to_string(salt) + "_" +
           std::to_string(counter++);
}

// The server's connection string naming another database.
std::string withDatabase(const std::string& server, const std::string& database) {
    const auto query = server.find('?');
    const std::string base = server.substr(0, query);
    const std::string tail = query == std::string::npos ? "" : server.substr(query);
    return base.substr(0, base.rfind('/') + 1) + database + tail;
}

std::string fixture(const std::string& name) {
    return std::string(QR_SOURCE_DIR) + "/tests/reports/fixtures/" + name;
}

} // namespace

std::string costBackendName(const ::testing::TestParamInfo<CostBackend>& info) {
    return info.param == CostBackend::SQLite ? "SQLite" : "PostgreSQL";
}

CostDatabase::CostDatabase(CostBackend backend, const std::filesystem::path& folder,
                           const std::string& name) {
    if (backend == CostBackend::SQLite) {
        m_connectionString = "sqlite:" + (folder / name).string() + ".db";
        m_connection = std::make_shared<db::Connection>(m_connectionString);
        return;
    }
    const char* server = std::getenv("QR_TEST_PG");
    if (server == nullptr || *server == '\0') {
        m_unavailable = "QR_TEST_PG is not set: no PostgreSQL server in this run "
                        "(./run test starts one)";
        return;
    }
    m_server = server;
    m_database = uniqueDatabaseName(name);
    db::Connection(m_server).execute("CREATE DATABASE " + m_database);
    m_connectionString = withDatabase(m_server, m_database);
    m_connection = std::make_shared<db::Connection>(m_connectionString);
}

CostDatabase::~CostDatabase() {
    m_connection.reset();
    if (m_database.empty())
        return;
    try {
        db::Connection(m_server).execute("DROP DATABASE IF EXISTS " + m_database + " WITH (FORCE)");
    } catch (const Error& error) {
        ADD_FAILURE() << "dropping " << m_database << ": " << error.description();
    }
}

void CostReportTest::SetUp() {
    service::initializeComponent();
    setSystemFormats(SystemFormats("en_US"));
    Clock::pin(Date::fromParts(2024, 3, 15, 14, 5));
    host::StandaloneConfig config;
    config.vendorPath = (m_dir / "vendor data").string();
    m_host.emplace(config);
    m_vendor = std::make_unique<CostDatabase>(GetParam(), m_dir.path(), "vendor");
    if (!m_vendor->unavailable().empty())
        GTEST_SKIP() << m_vendor->unavailable();
    m_master = std::make_unique<CostDatabase>(GetParam(), m_dir.path(), "master");
    data::createTables(vendor(), data::vendorTables());
    data::createTables(master(), data::masterTables());
}

void CostReportTest::TearDown() {
    m_host.reset();
    m_vendor.reset();
    m_master.reset();
    Clock::unpin();
}

void CostReportTest::loadFixture() {
    using data::ReportTableKind;
    for (const char* name : {"MarkupClinic", "MarkupZero", "MarkupRound", "MarkupNull"})
        createReportTable(ReportTableKind::Markup, name);
    for (const char* name : {"LaborClinic", "LaborRound", "LaborBig", "LaborNull", "LaborEmpty"})
        createReportTable(ReportTableKind::Labor, name);
    for (const char* name : {"FramingClinic", "FramingEmpty", "FramingMany"})
        createReportTable(ReportTableKind::FramingSystems, name);
    db::runSqlFile(vendor(), fixture("cost_vendor.sql"));
    db::runSqlFile(master(), fixture("cost_master.sql"));
}

std::vector<std::string> CostReportTest::loadSample() {
    return data::sample::writeSample(vendor(), master());
}

void CostReportTest::createReportTable(data::ReportTableKind kind, const std::string& name) {
    vendor().execute(data::createTableSql(data::reportTableDef(kind, name), vendor().dialect()));
}

void CostReportTest::execVendor(const std::string& sql, const std::vector<Variant>& params) {
    vendor().execute(sql, params);
}

void CostReportTest::setRequest(const std::string& table, int jobId, const std::string& tail) {
    auto& state = host::moduleState();
    state.requestVendorConnection = m_vendor->connection();
    state.requestMasterConnection = m_master->connection();
    state.requestTable = table;
    state.requestJobId = std::to_string(jobId);
    state.requestUserId = "1";
    state.requestTail = tail;
    state.requestExcel = state.requestPdf = false;
    state.vendorPath = (m_dir / "vendor data").string();
    state.vendorName = kCostVendor;
    state.firmName = kCostFirm;
    state.firmPhone = "(503) 555-0142";
    state.firmFax = "(503) 555-0101";
    const Variant name = vendorValue(
        "SELECT sJobName FROM JobSummary WHERE JobID=" + state.requestJobId, "sJobName");
    if (!name.isEmpty())
        state.currentJobName = toText(name);
}

const page::Pages& CostReportTest::run(engine::Report& report) {
    report.run();
    return report.pages();
}

std::filesystem::path CostReportTest::printRequest(const std::string& args) {
    const std::filesystem::path printed = m_dir / "printed.pdf";
    const char* old = std::getenv("QUARVEX_PRINTER");
    const std::string previous = old ? old : "";
    ::setenv("QUARVEX_PRINTER", ("file:" + printed.string()).c_str(), 1);
    service::PrintService service;
    service.setVendorConnection(m_vendor->connection());
    service.setMasterConnection(m_master->connection());
    service.setContainer(m_host->host);
    std::string request = args;
    service.PrintReport(request);
    if (old)
        ::setenv("QUARVEX_PRINTER", previous.c_str(), 1);
    else
        ::unsetenv("QUARVEX_PRINTER");
    return printed;
}

std::filesystem::path CostReportTest::reportsFolder(const std::string& jobName) const {
    return m_dir / "vendor data" / "Jobs" / jobName / "Reports";
}

Variant CostReportTest::vendorValue(const std::string& sql, const std::string& column) {
    auto rows = vendor().openRecordset(sql);
    return rows->eof() ? Variant() : rows->value(column);
}

std::vector<std::string> CostReportTest::shownMessages() const {
    std::vector<std::string> lines;
    for (const auto& message : m_host->messages->shown)
        lines.push_back(message.title + ": " + message.text);
    for (const auto& entry : m_host->host->usageEntries()) {
        if (!entry.error.empty())
            lines.push_back("error log: " + entry.error);
    }
    return lines;
}

std::vector<std::string> costTexts(const page::Pages& pages, const std::string& control) {
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

std::string costText(const page::Pages& pages, const std::string& control) {
    const std::vector<std::string> texts = costTexts(pages, control);
    EXPECT_EQ(texts.size(), 1u) << control << " printed " << texts.size() << " times";
    return texts.empty() ? std::string("<none>") : texts.front();
}

std::string costPdfText(const std::filesystem::path& path) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(path.string()));
    if (!doc)
        throw std::runtime_error("poppler cannot read " + path.string());
    std::string text;
    for (int i = 0; i < doc->pages(); ++i) {
        std::unique_ptr<poppler::page> page(doc->create_page(i));
        if (!page)
            continue;
        const auto bytes = page->text().to_utf8();
        if (i > 0)
            text += '\f';
        text.append(bytes.begin(), bytes.end());
    }
    return text;
}

std::vector<std::string> costWorkbookCells(const std::filesystem::path& path) {
    const void* handle = nullptr;
    const int rc = freexl_open(path.c_str(), &handle);
    // libfreexl can report success without a handle on a malformed string table.
    if (rc != FREEXL_OK || handle == nullptr)
        throw std::runtime_error("freexl cannot read " + path.string());
    std::vector<std::string> cells;
    unsigned rows = 0;
    unsigned short columns = 0;
    if (freexl_select_active_worksheet(handle, 0) == FREEXL_OK &&
        freexl_worksheet_dimensions(handle, &rows, &columns) == FREEXL_OK) {
        for (unsigned r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < columns; ++c) {
                FreeXL_CellValue value{};
                if (freexl_get_cell_value(handle, r, c, &value) != FREEXL_OK)
                    continue;
                std::ostringstream shown;
                shown.precision(15);
                if (value.type == FREEXL_CELL_INT)
                    shown << '=' << value.value.int_value;
                else if (value.type == FREEXL_CELL_DOUBLE)
                    shown << '=' << value.value.double_value;
                else if (value.type == FREEXL_CELL_TEXT || value.type == FREEXL_CELL_SST_TEXT)
                    shown << value.value.text_value;
                else
                    continue;
                cells.push_back(shown.str());
            }
        }
    }
    freexl_close(handle);
    return cells;
}

void writeCostPngs(const page::Pages& pages, const std::string& stem) {
    const std::filesystem::path folder = std::filesystem::path(QR_BINARY_DIR) / "cost-pages";
    std::filesystem::create_directories(folder);
    for (std::size_t i = 0; i < pages.pages.size(); ++i) {
        output::writePng(pages, i, folder / (stem + "-" + std::to_string(i + 1) + ".png"), 110);
    }
}

} // namespace qr::test
