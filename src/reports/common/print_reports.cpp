#include "reports/common/print_reports.hpp"

#include "platform/core/error.hpp"
#include "platform/core/text.hpp"
#include "platform/engine/page/export_filter.hpp"
#include "platform/host/error_log.hpp"
#include "platform/host/module_state.hpp"

namespace qr::reports {

namespace {

constexpr const char* kModule = "PrintReports";

// The steps both exports share once the job name is known to be set: check the vendor folder,
// make the job's folder, write through a new filter, tell the host.
void exportThrough(page::ExportKind kind, const page::Pages& pages, const std::string& fileName,
                   const std::string& jobName) {
    const auto& state = host::moduleState();
    if (state.vendorPath.empty()) {
        throw Error::component(
            kModule,
            "Developer error: Vendor path argument not set for exporting to the proper path.");
    }
    const std::string folder = exportFolder(state.vendorPath, jobName);
    host::hostClasses().createFolderMaker()->makeFolder(folder);
    auto filter = page::createExportFilter(kind);
    filter->setFileName(folder + safeFileName(fileName));
    filter->exportPages(pages);
    host::hostClasses().createPathHelper()->afterExport(folder, false);
}

std::string jobOrCurrent(const std::string& jobName) {
    return jobName.empty() ? host::moduleState().currentJobName : jobName;
}

} // namespace

std::string safeFileName(std::string_view name) {
    std::string safe(name);
    for (char& c : safe) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f ||
            std::string_view(R"(/\:*?"<>|)").find(c) != std::string_view::npos)
            c = '-';
    }
    if (safe == "." || safe == "..")
        safe.assign(safe.size(), '-');
    return safe;
}

std::string exportFolder(const std::string& vendorPath, const std::string& jobName) {
    const std::string jobFolder = safeFileName(jobName);
    if (isBlank(jobFolder, " .-")) {
        throw Error::component(kModule, "The job name \"" + jobName +
                                            "\" gives no folder name to export the report into.");
    }
    std::string folder = vendorPath;
    folder += kPathSeparator;
    folder += "Jobs";
    folder += kPathSeparator;
    folder += jobFolder;
    folder += kPathSeparator;
    folder += "Reports";
    folder += kPathSeparator;
    return folder;
}

void exportToExcel(const page::Pages& pages, const std::string& fileName,
                   const std::string& jobName) {
    try {
        const std::string job = jobOrCurrent(jobName);
        if (job.empty()) {
            throw Error::component(kModule, "Developer error: Job Name argument not set for "
                                            "exporting excel file to the proper path.");
        }
        exportThrough(page::ExportKind::Spreadsheet, pages, fileName, job);
    } catch (...) {
        host::showError("Issue exporting report to excel: " + host::currentErrorDescription(),
                        kModule, "ExportToExcel");
    }
}

void exportToPdf(const page::Pages& pages, const std::string& fileName,
                 const std::string& jobName) {
    const std::string job = jobOrCurrent(jobName);
    if (job.empty()) {
        throw Error::component(
            kModule, "Job Name argument not set for exporting PDF file to the proper path.");
    }
    exportThrough(page::ExportKind::Pdf, pages, fileName, job);
}

void exportAtReportEnd(const page::Pages& pages, const std::string& jobName, bool spreadsheet,
                       bool pdf, ExportSuffixes suffixes) {
    if (spreadsheet)
        exportToExcel(pages, jobName + suffixes.spreadsheet, jobName);
    if (pdf)
        exportToPdf(pages, jobName + suffixes.pdf, jobName);
}

void logReportOutcome(const std::string& reportName, bool preview) {
    host::hostClasses().createUsageLog()->recordUsage(
        preview ? "Previewed" : "Printed (No Preview)", "Report", "PrintReport-" + reportName);
}

} // namespace qr::reports
