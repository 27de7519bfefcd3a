// Exports that fail part way, with nothing lost: a folder that cannot be made, a disk that
// fills mid-write (the file-size limit), a target marked read-only or open in another program.
// Each fault must show the error naming the file and the cause, leave no partial file under
// the final name (nor a temporary beside it), and keep an earlier export of the same name
// byte for byte. Prints "faults=N lost=L" for the stress summary.

#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/print_reports.hpp"
#include "service/component.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <sstream>
#include <sys/resource.h>

namespace qr::service {
namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> folderContents(const fs::path& folder) {
    std::map<std::string, std::string> files;
    if (!fs::is_directory(folder))
        return files;
    for (const auto& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = test::fileBytes(entry.path());
    return files;
}

page::Pages onePage(const std::string& text) {
    page::Pages pages;
    pages.title = "Glass List";
    pages.fontIndex({});
    page::Page& page = pages.pages.emplace_back();
    page::TextItem item;
    item.box = {720, 720, 6000, 240};
    item.text = text;
    item.runs.push_back({720, 900, 3000, text});
    page.items.push_back(item);
    return pages;
}

// Lowers the file-size limit for its lifetime; a write past it fails with EFBIG instead of
// killing the process.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_saved);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit lowered = m_saved;
        lowered.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_handler);
    }

  private:
    rlimit m_saved{};
    void (*m_handler)(int) = SIG_DFL;
};

constexpr const char* kJob = "Harbor View Lofts";

TEST(ExportFaults, AFailedExportShowsItsCauseAndLosesNothing) {
    initializeComponent();
    test::RecordingHost recording;
    test::TempDir dir;
    const fs::path vendor = dir / "vendor";
    const fs::path reports = vendor / "Jobs" / kJob / "Reports";
    const std::string stem = std::string(kJob) + "-GlassList";
    host::moduleState().vendorPath = vendor.string();

    struct Case {
        const char* fault;
        std::function<void()> inject; // run after the earlier export, before the failing one
        std::function<void()> clear;
        const char* cause;            // what the messages must say
        bool earlierExport;           // whether a good export exists before the fault
    };
    std::unique_ptr<FileSizeLimit> limit;
    const Case cases[] = {
        {"a file where the job's folder should be",
         [&] {
             fs::create_directories(vendor / "Jobs");
             std::ofstream(vendor / "Jobs" / kJob) << "not a folder";
         },
         [&] { fs::remove(vendor / "Jobs" / kJob); }, kJob, false},
        {"the disk fills mid-write", [&] { limit = std::make_unique<FileSizeLimit>(1024); },
         [&] { limit.reset(); }, "File too large", true},
        {"the earlier export marked read-only",
         [&] {
             for (const char* ext : {".xls", ".pdf"})
                 fs::permissions(reports / (stem + ext), fs::perms::owner_read |
                                                             fs::perms::group_read |
                                                             fs::perms::others_read);
         },
         [&] {
             for (const char* ext : {".xls", ".pdf"})
                 fs::permissions(reports / (stem + ext), fs::perms::owner_all,
                                 fs::perm_options::add);
         },
         "read-only", true},
        {"the earlier export open in another program",
         [&] {
             std::ofstream(reports / (".~lock." + stem + ".xls#")) << "estimator";
             std::ofstream(reports / ("~$" + stem + ".pdf")) << "estimator";
         },
         [&] {
             fs::remove(reports / (".~lock." + stem + ".xls#"));
             fs::remove(reports / ("~$" + stem + ".pdf"));
         },
         "open in another program", true},
    };

    int faults = 0, lost = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fault);
        fs::remove_all(vendor);
        recording.messages->shown.clear();
        if (c.earlierExport) {
            reports::exportToExcel(onePage("earlier"), stem + ".xls", kJob);
            reports::exportToPdf(onePage("earlier"), stem + ".pdf", kJob);
            ASSERT_TRUE(recording.messages->shown.empty());
        }
        c.inject();
        const auto before = folderContents(reports);

        std::string pdfError;
        reports::exportToExcel(onePage(std::string(4000, 'x')), stem + ".xls", kJob);
        try {
            reports::exportToPdf(onePage(std::string(4000, 'y')), stem + ".pdf", kJob);
        } catch (const Error& e) {
            pdfError = e.description();
        }
        const auto after = folderContents(reports);
        c.clear();
        ++faults;

        ASSERT_EQ(recording.messages->shown.size(), 1u) << "the workbook's error dialog";
        const std::string& excelError = recording.messages->shown[0].text;
        EXPECT_NE(excelError.find(c.cause), std::string::npos) << excelError;
        EXPECT_NE(pdfError.find(c.cause), std::string::npos) << pdfError;
        if (c.earlierExport) {
            EXPECT_NE(excelError.find(stem + ".xls"), std::string::npos) << excelError;
            EXPECT_NE(pdfError.find(stem + ".pdf"), std::string::npos) << pdfError;
        }
        // The folder holds exactly what it held before: no partial file, no temporary, and
        // the earlier exports unchanged.
        EXPECT_EQ(after, before);
        lost += after == before ? 0 : 1;
    }
    std::cout << "faults=" << faults << " lost=" << lost << std::endl;
}

} // namespace
} // namespace qr::service
