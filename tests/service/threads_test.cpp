// The apartment model under load: several threads, each with its own PrintService and its own
// connections to its own copy of the sample jobs, run requests and a typed method that export
// at the same time. Every thread's files must be byte for byte those of a run alone: nothing a
// report keeps (module state, report objects, number-format caches, fonts) leaks between
// threads. The thread count comes from QR_THREADS (default 4); the run prints one line,
// "threads=N requests=R mismatches=M", for the stress summary.

#include "data/sample/sample_writer.hpp"
#include "data/schema.hpp"
#include "platform/db/connection.hpp"
#include "service/print_service.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>

namespace qr::service {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>; // path under the vendor folder -> bytes

Files exportedFiles(const fs::path& vendorFolder) {
    Files files;
    const fs::path jobs = vendorFolder / "Jobs";
    if (!fs::exists(jobs))
        return files;
    for (const auto& entry : fs::recursive_directory_iterator(jobs))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), vendorFolder).string()] = test::fileBytes(entry.path());
    return files;
}

constexpr int kRequests = 5;           // request strings per run
constexpr int kRequestsPerRun = kRequests + 1; // and one typed method

// One estimator's afternoon on one thread: the sample jobs written to databases of its own,
// then the markup, summary, labor and glass order requests and the final glass list, each
// previewed (headless) and exported. Returns what landed in the vendor folder.
Files runOneThread(const std::shared_ptr<host::StandaloneHost>& host, const fs::path& folder) {
    fs::create_directories(folder);
    auto vendor = std::make_shared<db::Connection>("sqlite:" + (folder / "vendor.db").string());
    auto master = std::make_shared<db::Connection>("sqlite:" + (folder / "master.db").string());
    data::sample::writeSample(*vendor, *master);

    PrintService service;
    service.setContainer(host);
    service.setVendorConnection(vendor);
    service.setMasterConnection(master);
    const auto table = [](data::ReportTableKind kind) {
        return data::reportTableName(kind, 1);
    };
    using K = data::ReportTableKind;
    const std::string requests[kRequests] = {
        "armarkup " + table(K::Markup) + " true 1 1 true true false |x |",
        "armarkup2 " + table(K::Markup) + " true 1 1 true true false |x |",
        "finalsummaryar " + table(K::FramingSystems) + " true 1 1 true true false |x |212-48-6-3180.25-9",
        "finallaborar " + table(K::Labor) + " true 1 1 true true false |x |",
        "jobglasstoorder " + table(K::GlassToOrder) + " true 1 1 true true false |x |",
    };
    for (std::string request : requests)
        service.PrintReport(request);

    host::FinalGlassReportData glass;
    glass.User.name = "Dana Whitfield";
    glass.Company.name = "Cascade Glass & Glazing, Inc.";
    glass.Job = {1, "Riverside Medical Office Building"};
    glass.GlassQuery = "SELECT * FROM JobGlass WHERE JobID=1 ORDER BY sDescription, pThickness, "
                       "sGlassType, sTypeLabel";
    glass.Connection = vendor;
    service.PrintFinalGlassPortraitReport(glass, folder.string(), true, true, true);
    return exportedFiles(folder);
}

int threadCount() {
    const char* configured = std::getenv("QR_THREADS");
    const int count = configured ? std::atoi(configured) : 4;
    return count > 0 ? count : 4;
}

TEST(Threads, ConcurrentRunsWriteTheSameFilesAsARunAlone) {
    ::setenv("SOURCE_DATE_EPOCH", "1767225600", 1); // one clock for every run
    test::RecordingHost recording;
    test::TempDir dir;

    const Files alone = runOneThread(recording.host, dir.path() / "alone");
    ASSERT_EQ(alone.size(), 2u * kRequestsPerRun) << "each report exports a PDF and a workbook";
    ASSERT_TRUE(recording.messages->shown.empty()) << recording.messages->shown[0].text;

    const int threads = threadCount();
    std::vector<Files> results(threads);
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back([&, i] {
            results[i] = runOneThread(recording.host, dir.path() / ("thread" + std::to_string(i)));
        });
    for (auto& worker : workers)
        worker.join();

    int mismatches = 0;
    for (int i = 0; i < threads; ++i) {
        for (const auto& [path, bytes] : alone) {
            const auto found = results[i].find(path);
            const bool same = found != results[i].end() && found->second == bytes;
            EXPECT_TRUE(same) << "thread " << i << ": " << path;
            mismatches += same ? 0 : 1;
        }
        EXPECT_EQ(results[i].size(), alone.size()) << "thread " << i;
    }
    // Each request logs its usage once, from whichever thread ran it.
    const auto usage = recording.host->usageEntries();
    EXPECT_EQ(usage.size(), static_cast<std::size_t>((threads + 1) * kRequests));
    for (const auto& entry : usage)
        EXPECT_EQ(entry.outcome, "Previewed") << entry.label << ": " << entry.error;
    std::cout << "threads=" << threads << " requests=" << threads * kRequestsPerRun
              << " mismatches=" << mismatches << std::endl;
    ::unsetenv("SOURCE_DATE_EPOCH");
}

} // namespace
} // namespace qr::service
