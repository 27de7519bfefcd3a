#include "service/print_service.hpp"

#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "platform/host/module_state.hpp"
#include "reports/glass/final_glass_report.hpp"
#include "service/component.hpp"
#include "service/dispatcher.hpp"
#include "service/run_sequence.hpp"

namespace qr::service {

namespace {

constexpr const char* kSource = "QuarvexReports.PrintService";

// Typed methods whose report this build does not include run through the same mechanism; the
// report table then reports the class as unavailable through the error dialog.
void runUnavailable(const char* method, const char* reportClass, bool preview) {
    runTypedMethod<engine::Report>(method, reportClass, preview, [](engine::Report&) {});
}

void storeVendorPath(const std::string& vendorPath) { host::moduleState().vendorPath = vendorPath; }

} // namespace

PrintService::PrintService() { initializeComponent(); }

void PrintService::setVendorConnection(host::ConnectionRef connection) {
    m_vendorConnection = std::move(connection);
}

void PrintService::setMasterConnection(host::ConnectionRef connection) {
    m_masterConnection = std::move(connection);
}

void PrintService::setContainer(std::shared_ptr<host::ServiceContainer> container) {
    m_container = container;
    host::moduleState().sharedContainer = std::move(container);
}

void PrintService::PrintReport(std::string& args) {
    if (!m_vendorConnection || !m_masterConnection) {
        throw Error::component(kSource, "Cannot call PrintReport() without setting the "
                                        "VendorConnection and MasterConnection properties first");
    }
    auto& state = host::moduleState();
    state.requestMasterConnection = m_masterConnection;
    state.requestVendorConnection = m_vendorConnection;
    // The request connections are the host's only for this call, whatever the dispatcher does.
    struct ClearRequestConnections {
        ~ClearRequestConnections() {
            auto& s = host::moduleState();
            s.requestMasterConnection.reset();
            s.requestVendorConnection.reset();
        }
    } clear;
    DispatchRequest(args);
}

void PrintService::PrintMultipleElevationPartsReports(host::ElevationPartsReportDataList&,
                                                      bool& bPreview) {
    runUnavailable("PrintMultipleElevationPartsReports", "ElevPartsMultipleReport", bPreview);
}

void PrintService::PrintMultipleElevationGlassReports(host::ElevationGlassReportDataList&,
                                                      std::string&, bool& bPreview) {
    runUnavailable("PrintMultipleElevationGlassReports", "ElevGlassMultipleReport", bPreview);
}

void PrintService::PrintElevationPartsReport(host::User& oUser, host::ElevationData& oElevation,
                                             host::PartsReportListItems& oPartsReportListItems,
                                             std::string& sVendorPath, bool bPreview) {
    try {
        auto companyService = host::hostClasses().createCompanyService();
        companyService->setConnection(m_masterConnection);
        host::Company company = companyService->getCompany();
        storeVendorPath(sVendorPath);
        auto vendorService = host::hostClasses().createVendorService();
        vendorService->setConnection(m_vendorConnection);
        host::Vendor vendor = vendorService->getVendor();

        host::ElevationPartsReportData data;
        data.Company = company;
        data.Elevation = oElevation;
        data.User = oUser;
        data.Vendor = vendor;
        data.PartsRows = oPartsReportListItems;

        engine::Report& report = reportObject("ElevPartsAR");
        runSequence(report, bPreview);
        releaseReportObject("ElevPartsAR");
    } catch (...) {
        host::messageBox().show(host::currentErrorDescription(), host::MessageIcon::Information,
                                "Error Encountered");
    }
}

void PrintService::PrintLinealReport(host::LinealReportData&, std::string& sVendorPath, bool&,
                                     bool&, bool bPreview) {
    storeVendorPath(sVendorPath);
    runUnavailable("PrintLinealReport", "FinalPartsLineal", bPreview);
}

void PrintService::PrintMetalRecapReport(host::MetalRecapReportData&, bool bPreview) {
    runUnavailable("PrintMetalRecapReport", "ar2MetalRecap", bPreview);
}

void PrintService::PrintOptimizedCutListReport(host::OptimizedCutListReportData&,
                                               std::string& sVendorPath, bool bPreview, bool,
                                               bool) {
    storeVendorPath(sVendorPath);
    runUnavailable("PrintOptimizedCutListReport", "AR2CutList", bPreview);
}

void PrintService::PrintFinalPartsReportLandscape(host::FinalPartsReportData&,
                                                  std::string& sVendorPath, host::UserDefaults&,
                                                  bool, bool, bool bPreview) {
    storeVendorPath(sVendorPath);
    runUnavailable("PrintFinalPartsReportLandscape", "FinalPartsAR", bPreview);
}

void PrintService::PrintFinalPartsReportPortrait(host::FinalPartsReportData&,
                                                 std::string& sVendorPath, host::UserDefaults&,
                                                 bool, bool, bool bPreview) {
    storeVendorPath(sVendorPath);
    runUnavailable("PrintFinalPartsReportPortrait", "FinalPartsAR2", bPreview);
}

void PrintService::PrintFinalPartsReportWithNoPrices(host::FinalPartsReportData&,
                                                     std::string& sVendorPath, host::UserDefaults&,
                                                     bool, bool, bool bPreview) {
    storeVendorPath(sVendorPath);
    runUnavailable("PrintFinalPartsReportWithNoPrices", "FinalPartsARNP", bPreview);
}

void PrintService::PrintJobPartsReport(host::JobPartsReportData&, bool bPreview) {
    runUnavailable("PrintJobPartsReport", "JobPartsAR", bPreview);
}

void PrintService::PrintJobPartsReportByElevation(host::JobPartsReportData&, bool bPreview) {
    runUnavailable("PrintJobPartsReportByElevation", "JobElevAR", bPreview);
}

void PrintService::PrintCutLabelsLarge(host::CutLabelsReportData&, bool bPreview) {
    runUnavailable("PrintCutLabelsLarge", "arAvery5260MetalLabels", bPreview);
}

void PrintService::PrintCutLabelsSmallA(host::CutLabelsReportData&, bool bPreview) {
    runUnavailable("PrintCutLabelsSmallA", "arAvery5267AMetalLabels", bPreview);
}

void PrintService::PrintCutLabelsSmallB(host::CutLabelsReportData&, bool bPreview) {
    runUnavailable("PrintCutLabelsSmallB", "arAvery5267BMetalLabels", bPreview);
}

void PrintService::PrintCutLabelsSmallC(host::CutLabelsReportData&, bool bPreview) {
    runUnavailable("PrintCutLabelsSmallC", "arAvery5267CMetalLabels", bPreview);
}

void PrintService::PrintMetalCutListing(host::CutLabelsReportData&, bool bPreview) {
    runUnavailable("PrintMetalCutListing", "AR2MetalCutListings", bPreview);
}

void PrintService::PrintFinalGlassReportWithoutPrices(host::FinalGlassReportData& ReportData,
                                                      std::string VendorPath, bool bPreview,
                                                      bool ShouldExportToExcel,
                                                      bool ShouldExportToPdf) {
    storeVendorPath(VendorPath);
    runTypedMethod<reports::FinalGlassARNP>("PrintFinalGlassReportWithoutPrices", "FinalGlassARNP",
                                            bPreview, [&](reports::FinalGlassARNP& report) {
                                                report.ReportData = &ReportData;
                                                report.ShouldExportToExcel = ShouldExportToExcel;
                                                report.ShouldExportToPdf = ShouldExportToPdf;
                                            });
}

void PrintService::PrintFinalGlassLandscapeReportWithoutPrices(
    host::FinalGlassReportData& ReportData, std::string VendorPath, bool bPreview,
    bool ShouldExportToExcel, bool ShouldExportToPdf) {
    storeVendorPath(VendorPath);
    runTypedMethod<reports::FinalGlassARNP2>("PrintFinalGlassLandscapeReportWithoutPrices",
                                             "FinalGlassARNP2", bPreview,
                                             [&](reports::FinalGlassARNP2& report) {
                                                 report.ReportData = &ReportData;
                                                 report.ShouldExportToExcel = ShouldExportToExcel;
                                                 report.ShouldExportToPdf = ShouldExportToPdf;
                                             });
}

void PrintService::PrintFinalGlassLandscapeReport(host::FinalGlassReportData& ReportData,
                                                  std::string VendorPath, bool bPreview,
                                                  bool ShouldExportToExcel,
                                                  bool ShouldExportToPdf) {
    storeVendorPath(VendorPath);
    runTypedMethod<reports::FinalGlassAR2>("PrintFinalGlassLandscapeReport", "FinalGlassAR2",
                                           bPreview, [&](reports::FinalGlassAR2& report) {
                                               report.ReportData = &ReportData;
                                               report.ShouldExportToExcel = ShouldExportToExcel;
                                               report.ShouldExportToPdf = ShouldExportToPdf;
                                           });
}

void PrintService::PrintFinalGlassPortraitReport(host::FinalGlassReportData& ReportData,
                                                 std::string VendorPath, bool bPreview,
                                                 bool ShouldExportToExcel, bool ShouldExportToPdf) {
    storeVendorPath(VendorPath);
    runTypedMethod<reports::FinalGlassAR>("PrintFinalGlassPortraitReport", "FinalGlassAR", bPreview,
                                          [&](reports::FinalGlassAR& report) {
                                              report.ReportData = &ReportData;
                                              report.ShouldExportToExcel = ShouldExportToExcel;
                                              report.ShouldExportToPdf = ShouldExportToPdf;
                                          });
}

} // namespace qr::service
