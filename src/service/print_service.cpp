#include "service/print_service.hpp"

#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "platform/host/module_state.hpp"
#include "reports/glass/final_glass_report.hpp"
#include "reports/multi/elevation_multiple_report.hpp"
#include "reports/parts/cut_list.hpp"
#include "reports/parts/elev_parts_report.hpp"
#include "reports/parts/final_parts_report.hpp"
#include "reports/parts/job_parts_report.hpp"
#include "reports/parts/lineal_report.hpp"
#include "reports/parts/metal_cut_reports.hpp"
#include "reports/parts/metal_recap.hpp"
#include "service/component.hpp"
#include "service/dispatcher.hpp"
#include "service/report_registry.hpp"
#include "service/run_sequence.hpp"

namespace qr::service {

namespace {

constexpr const char* kSource = "QuarvexReports.PrintService";

void storeVendorPath(const std::string& vendorPath) {
    host::moduleState().vendorPath = vendorPath;
}

// The class a typed method runs, as the registry says.
const char* reportClassOf(const char* method) {
    const ReportRegistration* entry = registrationOfMethod(method);
    return entry ? entry->className : method;
}

// The four final glass methods differ only in their report class.
template <class R>
void runFinalGlass(const char* method, host::FinalGlassReportData& data,
                   const std::string& vendorPath, bool preview, bool excel, bool pdf) {
    storeVendorPath(vendorPath);
    runTypedMethod<R>(method, reportClassOf(method), preview, [&](R& report) {
        report.ReportData = &data;
        report.ShouldExportToExcel = excel;
        report.ShouldExportToPdf = pdf;
    });
}

// The metal cut listing and the four metal label sheets differ only in their report class.
template <class R>
void runMetalCut(const char* method, host::CutLabelsReportData& data, bool preview) {
    runTypedMethod<R>(method, reportClassOf(method), preview,
                      [&](R& report) { report.ReportData = &data; });
}

// The three final parts methods differ only in their report class.
template <class R>
void runFinalParts(const char* method, host::FinalPartsReportData& data,
                   const std::string& vendorPath, host::UserDefaults& defaults, bool excel,
                   bool pdf, bool preview) {
    storeVendorPath(vendorPath);
    runTypedMethod<R>(method, reportClassOf(method), preview, [&](R& report) {
        report.ReportData = &data;
        report.UserWantsExcelExport = excel;
        report.UserWantsPdfExport = pdf;
        report.UserDefaults = &defaults;
    });
}

// The two job parts methods: the report data is all they set.
template <class R>
void runJobParts(const char* method, host::JobPartsReportData& data, bool preview) {
    runTypedMethod<R>(method, reportClassOf(method), preview,
                      [&](R& report) { report.ReportData = &data; });
}

} // namespace

PrintService::PrintService() {
    initializeComponent();
}

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
    // The request connections are the host's only for this call, whatever the dispatcher does.
    const host::RequestConnectionsScope requestConnections(m_vendorConnection, m_masterConnection);
    DispatchRequest(args);
}

void PrintService::PrintMultipleElevationPartsReports(
    host::ElevationPartsReportDataList& oElevationPartsReportDataList, bool& bPreview) {
    runTypedMethod<reports::ElevPartsMultipleReport>(
        "PrintMultipleElevationPartsReports", reportClassOf("PrintMultipleElevationPartsReports"),
        bPreview, [&](reports::ElevPartsMultipleReport& report) {
            report.ElevationPartsReportDataList = &oElevationPartsReportDataList;
        });
}

void PrintService::PrintMultipleElevationGlassReports(
    host::ElevationGlassReportDataList& oElevationGlassReportDataList, std::string& ReportFormat,
    bool& bPreview) {
    runTypedMethod<reports::ElevGlassMultipleReport>(
        "PrintMultipleElevationGlassReports", reportClassOf("PrintMultipleElevationGlassReports"),
        bPreview, [&](reports::ElevGlassMultipleReport& report) {
            report.ElevationGlassReportDataList = &oElevationGlassReportDataList;
            report.ReportFormat = ReportFormat;
        });
}

void PrintService::PrintElevationPartsReport(host::User& oUser, host::ElevationData& oElevation,
                                             host::PartsReportListItems& oPartsReportListItems,
                                             std::string& sVendorPath, bool bPreview) {
    trapTypedMethod("PrintElevationPartsReport", [&] {
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
        data.Items = oPartsReportListItems;

        runTypedMethod<reports::ElevPartsAR>(
            "PrintElevationPartsReport", reportClassOf("PrintElevationPartsReport"), bPreview,
            [&](reports::ElevPartsAR& report) { report.ReportData = &data; });
    });
}

void PrintService::PrintLinealReport(host::LinealReportData& oReportData, std::string& sVendorPath,
                                     bool& ExportToExcel, bool& ExportToPDF, bool bPreview) {
    storeVendorPath(sVendorPath);
    runTypedMethod<reports::FinalPartsLineal>("PrintLinealReport",
                                              reportClassOf("PrintLinealReport"), bPreview,
                                              [&](reports::FinalPartsLineal& report) {
                                                  report.ReportData = &oReportData;
                                                  report.UserWantsExcelExport = ExportToExcel;
                                                  report.UserWantsPdfExport = ExportToPDF;
                                              });
}

void PrintService::PrintMetalRecapReport(host::MetalRecapReportData& oReportData, bool bPreview) {
    runTypedMethod<reports::ar2MetalRecap>(
        "PrintMetalRecapReport", reportClassOf("PrintMetalRecapReport"), bPreview,
        [&](reports::ar2MetalRecap& report) { report.ReportData = &oReportData; });
}

void PrintService::PrintOptimizedCutListReport(host::OptimizedCutListReportData& oReportData,
                                               std::string& sVendorPath, bool bPreview,
                                               bool bExportToExcel, bool bExportToPdf) {
    storeVendorPath(sVendorPath);
    runTypedMethod<reports::AR2CutList>("PrintOptimizedCutListReport",
                                        reportClassOf("PrintOptimizedCutListReport"), bPreview,
                                        [&](reports::AR2CutList& report) {
                                            report.ReportData = &oReportData;
                                            report.UserWantsExcelExport = bExportToExcel;
                                            report.UserWantsPdfExport = bExportToPdf;
                                        });
}

void PrintService::PrintFinalPartsReportLandscape(host::FinalPartsReportData& oReportData,
                                                  std::string& sVendorPath,
                                                  host::UserDefaults& oUserDefaults,
                                                  bool bExportToExcel, bool bExportToPdf,
                                                  bool bPreview) {
    runFinalParts<reports::FinalPartsAR>("PrintFinalPartsReportLandscape", oReportData, sVendorPath,
                                         oUserDefaults, bExportToExcel, bExportToPdf, bPreview);
}

void PrintService::PrintFinalPartsReportPortrait(host::FinalPartsReportData& oReportData,
                                                 std::string& sVendorPath,
                                                 host::UserDefaults& oUserDefaults,
                                                 bool bExportToExcel, bool bExportToPdf,
                                                 bool bPreview) {
    runFinalParts<reports::FinalPartsAR2>("PrintFinalPartsReportPortrait", oReportData, sVendorPath,
                                          oUserDefaults, bExportToExcel, bExportToPdf, bPreview);
}

void PrintService::PrintFinalPartsReportWithNoPrices(host::FinalPartsReportData& oReportData,
                                                     std::string& sVendorPath,
                                                     host::UserDefaults& oUserDefaults,
                                                     bool bExportToExcel, bool bExportToPdf,
                                                     bool bPreview) {
    runFinalParts<reports::FinalPartsARNP>("PrintFinalPartsReportWithNoPrices", oReportData,
                                           sVendorPath, oUserDefaults, bExportToExcel, bExportToPdf,
                                           bPreview);
}

void PrintService::PrintJobPartsReport(host::JobPartsReportData& oReportData, bool bPreview) {
    runJobParts<reports::JobPartsAR>("PrintJobPartsReport", oReportData, bPreview);
}

void PrintService::PrintJobPartsReportByElevation(host::JobPartsReportData& oReportData,
                                                  bool bPreview) {
    runJobParts<reports::JobElevAR>("PrintJobPartsReportByElevation", oReportData, bPreview);
}

void PrintService::PrintCutLabelsLarge(host::CutLabelsReportData& oReportData, bool bPreview) {
    runMetalCut<reports::arAvery5260MetalLabels>("PrintCutLabelsLarge", oReportData, bPreview);
}

void PrintService::PrintCutLabelsSmallA(host::CutLabelsReportData& oReportData, bool bPreview) {
    runMetalCut<reports::arAvery5267AMetalLabels>("PrintCutLabelsSmallA", oReportData, bPreview);
}

void PrintService::PrintCutLabelsSmallB(host::CutLabelsReportData& oReportData, bool bPreview) {
    runMetalCut<reports::arAvery5267BMetalLabels>("PrintCutLabelsSmallB", oReportData, bPreview);
}

void PrintService::PrintCutLabelsSmallC(host::CutLabelsReportData& oReportData, bool bPreview) {
    runMetalCut<reports::arAvery5267CMetalLabels>("PrintCutLabelsSmallC", oReportData, bPreview);
}

void PrintService::PrintMetalCutListing(host::CutLabelsReportData& oReportData, bool bPreview) {
    runMetalCut<reports::AR2MetalCutListings>("PrintMetalCutListing", oReportData, bPreview);
}

void PrintService::PrintFinalGlassReportWithoutPrices(host::FinalGlassReportData& ReportData,
                                                      std::string VendorPath, bool bPreview,
                                                      bool ShouldExportToExcel,
                                                      bool ShouldExportToPdf) {
    runFinalGlass<reports::FinalGlassARNP>("PrintFinalGlassReportWithoutPrices", ReportData,
                                           VendorPath, bPreview, ShouldExportToExcel,
                                           ShouldExportToPdf);
}

void PrintService::PrintFinalGlassLandscapeReportWithoutPrices(
    host::FinalGlassReportData& ReportData, std::string VendorPath, bool bPreview,
    bool ShouldExportToExcel, bool ShouldExportToPdf) {
    runFinalGlass<reports::FinalGlassARNP2>("PrintFinalGlassLandscapeReportWithoutPrices",
                                            ReportData, VendorPath, bPreview, ShouldExportToExcel,
                                            ShouldExportToPdf);
}

void PrintService::PrintFinalGlassLandscapeReport(host::FinalGlassReportData& ReportData,
                                                  std::string VendorPath, bool bPreview,
                                                  bool ShouldExportToExcel,
                                                  bool ShouldExportToPdf) {
    runFinalGlass<reports::FinalGlassAR2>("PrintFinalGlassLandscapeReport", ReportData, VendorPath,
                                          bPreview, ShouldExportToExcel, ShouldExportToPdf);
}

void PrintService::PrintFinalGlassPortraitReport(host::FinalGlassReportData& ReportData,
                                                 std::string VendorPath, bool bPreview,
                                                 bool ShouldExportToExcel, bool ShouldExportToPdf) {
    runFinalGlass<reports::FinalGlassAR>("PrintFinalGlassPortraitReport", ReportData, VendorPath,
                                         bPreview, ShouldExportToExcel, ShouldExportToPdf);
}

} // namespace qr::service
