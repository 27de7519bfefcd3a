#pragma once
// PrintService: the one class the host creates. The host sets the two database connections and
// its service container, then asks for one report at a time, through PrintReport with a request
// string or through a typed method that hands over data it has already filled. Member names,
// parameter names, defaults and by-reference passing follow the host's interface; string
// parameters passed by reference are never changed.
//
// Failures inside a typed method never reach the caller: they show the host's error dialog and
// the method returns. PrintReport raises only its own precondition (error 999).

#include "platform/host/report_data.hpp"
#include "platform/host/services.hpp"

#include <memory>
#include <string>

namespace qr::service {

class PrintService {
  public:
    static constexpr const char* kProgId = "QuarvexReports.PrintService";

    /// Makes sure the component is initialised in this process (fonts, export filters).
    PrintService();

    // 1-3: properties
    host::ConnectionRef VendorConnection() const { return m_vendorConnection; }
    void setVendorConnection(host::ConnectionRef connection);
    host::ConnectionRef MasterConnection() const { return m_masterConnection; }
    void setMasterConnection(host::ConnectionRef connection);
    std::shared_ptr<host::ServiceContainer> Container() const { return m_container; }
    /// Also becomes the container that error dialogs on this thread go through.
    void setContainer(std::shared_ptr<host::ServiceContainer> container);

    // 4
    void PrintReport(std::string& args);
    // 5-7
    void PrintMultipleElevationPartsReports(
        host::ElevationPartsReportDataList& oElevationPartsReportDataList, bool& bPreview);
    void PrintMultipleElevationGlassReports(
        host::ElevationGlassReportDataList& oElevationGlassReportDataList,
        std::string& ReportFormat, bool& bPreview);
    void PrintElevationPartsReport(host::User& oUser, host::ElevationData& oElevation,
                                   host::PartsReportListItems& oPartsReportListItems,
                                   std::string& sVendorPath, bool bPreview = true);
    // 8-10
    void PrintLinealReport(host::LinealReportData& oReportData, std::string& sVendorPath,
                           bool& ExportToExcel, bool& ExportToPDF, bool bPreview = true);
    void PrintMetalRecapReport(host::MetalRecapReportData& oReportData, bool bPreview = true);
    void PrintOptimizedCutListReport(host::OptimizedCutListReportData& oReportData,
                                     std::string& sVendorPath, bool bPreview = true,
                                     bool bExportToExcel = false, bool bExportToPdf = false);
    // 11-13
    void PrintFinalPartsReportLandscape(host::FinalPartsReportData& oReportData,
                                        std::string& sVendorPath, host::UserDefaults& oUserDefaults,
                                        bool bExportToExcel = false, bool bExportToPdf = false,
                                        bool bPreview = true);
    void PrintFinalPartsReportPortrait(host::FinalPartsReportData& oReportData,
                                       std::string& sVendorPath, host::UserDefaults& oUserDefaults,
                                       bool bExportToExcel = false, bool bExportToPdf = false,
                                       bool bPreview = true);
    void PrintFinalPartsReportWithNoPrices(host::FinalPartsReportData& oReportData,
                                           std::string& sVendorPath,
                                           host::UserDefaults& oUserDefaults,
                                           bool bExportToExcel = false, bool bExportToPdf = false,
                                           bool bPreview = true);
    // 14-20
    void PrintJobPartsReport(host::JobPartsReportData& oReportData, bool bPreview = true);
    void PrintJobPartsReportByElevation(host::JobPartsReportData& oReportData,
                                        bool bPreview = true);
    void PrintCutLabelsLarge(host::CutLabelsReportData& oReportData, bool bPreview = true);
    void PrintCutLabelsSmallA(host::CutLabelsReportData& oReportData, bool bPreview = true);
    void PrintCutLabelsSmallB(host::CutLabelsReportData& oReportData, bool bPreview = true);
    void PrintCutLabelsSmallC(host::CutLabelsReportData& oReportData, bool bPreview = true);
    void PrintMetalCutListing(host::CutLabelsReportData& oReportData, bool bPreview = true);
    // 21-24: the vendor path by value
    void PrintFinalGlassReportWithoutPrices(host::FinalGlassReportData& ReportData,
                                            std::string VendorPath, bool bPreview = true,
                                            bool ShouldExportToExcel = false,
                                            bool ShouldExportToPdf = false);
    void PrintFinalGlassLandscapeReportWithoutPrices(host::FinalGlassReportData& ReportData,
                                                     std::string VendorPath, bool bPreview = true,
                                                     bool ShouldExportToExcel = false,
                                                     bool ShouldExportToPdf = false);
    void PrintFinalGlassLandscapeReport(host::FinalGlassReportData& ReportData,
                                        std::string VendorPath, bool bPreview = true,
                                        bool ShouldExportToExcel = false,
                                        bool ShouldExportToPdf = false);
    void PrintFinalGlassPortraitReport(host::FinalGlassReportData& ReportData,
                                       std::string VendorPath, bool bPreview = true,
                                       bool ShouldExportToExcel = false,
                                       bool ShouldExportToPdf = false);

  private:
    host::ConnectionRef m_vendorConnection;
    host::ConnectionRef m_masterConnection;
    std::shared_ptr<host::ServiceContainer> m_container;
};

} // namespace qr::service
