#include "service/report_registry.hpp"

#include "data/sample/elevation_report_data.hpp"
#include "data/sample/parts_examples.hpp"
#include "reports/cost/ar_markup.hpp"
#include "reports/cost/ar_markup2.hpp"
#include "reports/cost/final_labor.hpp"
#include "reports/cost/final_summary.hpp"
#include "reports/glass/elev_glass_report.hpp"
#include "reports/glass/final_glass_report.hpp"
#include "reports/glass/glass_cut_reports.hpp"
#include "reports/glass/glass_to_order.hpp"
#include "reports/glass/job_glass_report.hpp"
#include "reports/multi/elevation_multiple_report.hpp"
#include "reports/parts/cut_list.hpp"
#include "reports/parts/elev_parts_report.hpp"
#include "reports/parts/final_parts_report.hpp"
#include "reports/parts/job_parts_report.hpp"
#include "reports/parts/lineal_report.hpp"
#include "reports/parts/metal_cut_reports.hpp"
#include "reports/parts/metal_recap.hpp"
#include "service/typed_calls.hpp"

#include <vector>

namespace qr::service {

namespace {

template <class R> ReportFactory make() {
    return [] { return std::make_unique<R>(); };
}

// Parameter lists as the host's interface declares them.
constexpr const char* kGlassParameters = "ReportData, VendorPath, bPreview = True, "
                                         "ShouldExportToExcel = False, ShouldExportToPdf = False";
constexpr const char* kFinalPartsParameters = "oReportData, sVendorPath, oUserDefaults, "
                                              "bExportToExcel = False, bExportToPdf = False, "
                                              "bPreview = True";
constexpr const char* kDataAndPreview = "oReportData, bPreview = True";

namespace calls = typed_calls;
namespace examples = data::sample;

// Every report class; a class with no factory is not built yet (error 429 when asked for).
std::vector<ReportRegistration> buildRegistry() {
    using reports::FinalGlassAR;
    using reports::FinalGlassAR2;
    using reports::FinalGlassARNP;
    using reports::FinalGlassARNP2;
    return {
        // Glass
        {"FinalGlassAR", make<FinalGlassAR>(), nullptr, false,
         TypedMethod{"PrintFinalGlassPortraitReport", kGlassParameters, true,
                     calls::finalGlassPortrait},
         FinalGlassAR::kExportSuffixes},
        {"FinalGlassAR2", make<FinalGlassAR2>(), nullptr, false,
         TypedMethod{"PrintFinalGlassLandscapeReport", kGlassParameters, true,
                     calls::finalGlassLandscape},
         FinalGlassAR2::kExportSuffixes},
        {"FinalGlassARNP", make<FinalGlassARNP>(), nullptr, false,
         TypedMethod{"PrintFinalGlassReportWithoutPrices", kGlassParameters, true,
                     calls::finalGlassWithoutPrices},
         FinalGlassARNP::kExportSuffixes},
        {"FinalGlassARNP2", make<FinalGlassARNP2>(), nullptr, false,
         TypedMethod{"PrintFinalGlassLandscapeReportWithoutPrices", kGlassParameters, true,
                     calls::finalGlassLandscapeWithoutPrices},
         FinalGlassARNP2::kExportSuffixes},
        {"JobGlassToOrder", make<reports::JobGlassToOrder>(), "jobglasstoorder", false,
         std::nullopt, reports::JobGlassToOrder::kExportSuffixes},
        {"JobGlassToOrder2", make<reports::JobGlassToOrder2>(), "jobglasstoorder2", false,
         std::nullopt, reports::JobGlassToOrder2::kExportSuffixes},
        {"JobGlassByPartAR", make<reports::JobGlassByPartAR>(), "jobglassbypartar"},
        {"JobGlassByElevAR", make<reports::JobGlassByElevAR>(), "jobglassbyelevar"},
        {"JobGlassWideByPartAR2", make<reports::JobGlassWideByPartAR2>(), "jobglasswidebypartar2"},
        {"JobGlassWideByElevAR2", make<reports::JobGlassWideByElevAR2>(), "jobglasswidebyelevar2"},
        {"AR2GlassCutListings", make<reports::AR2GlassCutListings>(), "ar2glasscutlistings"},
        {"arAvery5260GlassLabels", make<reports::arAvery5260GlassLabels>(),
         "aravery5260glasslabels", true},
        {"arAvery5267AGlassLabels", make<reports::arAvery5267AGlassLabels>(),
         "aravery5267aglasslabels", true},
        {"arAvery5267BGlassLabels", make<reports::arAvery5267BGlassLabels>(),
         "aravery5267bglasslabels", true},
        {"arAvery5267CGlassLabels", make<reports::arAvery5267CGlassLabels>(),
         "aravery5267cglasslabels", true},
        {"ElevGlassAR", make<reports::ElevGlassAR>(), "elevglassar"},
        {"ElevGlassAR2", make<reports::ElevGlassAR2>(), "elevglassar2"},

        // Parts and metal
        {"FinalPartsAR", make<reports::FinalPartsAR>(), nullptr, false,
         TypedMethod{"PrintFinalPartsReportLandscape", kFinalPartsParameters, true,
                     calls::finalPartsLandscape, examples::finalPartsExampleJson},
         reports::FinalPartsAR::kExportSuffixes},
        {"FinalPartsAR2", make<reports::FinalPartsAR2>(), nullptr, false,
         TypedMethod{"PrintFinalPartsReportPortrait", kFinalPartsParameters, true,
                     calls::finalPartsPortrait, examples::finalPartsExampleJson},
         reports::FinalPartsAR2::kExportSuffixes},
        {"FinalPartsARNP", make<reports::FinalPartsARNP>(), nullptr, false,
         TypedMethod{"PrintFinalPartsReportWithNoPrices", kFinalPartsParameters, true,
                     calls::finalPartsWithNoPrices, examples::finalPartsExampleJson},
         reports::FinalPartsARNP::kExportSuffixes},
        {"FinalPartsLineal", make<reports::FinalPartsLineal>(), nullptr, false,
         TypedMethod{"PrintLinealReport",
                     "oReportData, sVendorPath, ExportToExcel, ExportToPDF, bPreview = True", true,
                     calls::lineal, examples::linealExampleJson},
         reports::FinalPartsLineal::kExportSuffixes},
        {"ar2MetalRecap", make<reports::ar2MetalRecap>(), nullptr, false,
         TypedMethod{"PrintMetalRecapReport", kDataAndPreview, true, calls::metalRecap,
                     examples::metalRecapExampleJson}},
        {"JobPartsAR", make<reports::JobPartsAR>(), "jobpartsar", false,
         TypedMethod{"PrintJobPartsReport", kDataAndPreview, true, calls::jobParts,
                     examples::jobPartsExampleJson}},
        {"JobElevAR", make<reports::JobElevAR>(), "jobelevar", false,
         TypedMethod{"PrintJobPartsReportByElevation", kDataAndPreview, true,
                     calls::jobPartsByElevation, examples::jobPartsExampleJson}},
        {"AR2CutList", make<reports::AR2CutList>(), "ar2cutlist", false,
         TypedMethod{"PrintOptimizedCutListReport",
                     "oReportData, sVendorPath, bPreview = True, bExportToExcel = False, "
                     "bExportToPdf = False",
                     true, calls::optimizedCutList, examples::cutListExampleJson},
         reports::AR2CutList::kExportSuffixes},
        {"AR2MetalCutListings", make<reports::AR2MetalCutListings>(), "ar2metalcutlistings", true,
         TypedMethod{"PrintMetalCutListing", kDataAndPreview, true, calls::metalCutListing,
                     examples::cutLabelsExampleJson}},
        {"arAvery5260MetalLabels", make<reports::arAvery5260MetalLabels>(), nullptr, false,
         TypedMethod{"PrintCutLabelsLarge", kDataAndPreview, true, calls::cutLabelsLarge,
                     examples::cutLabelsExampleJson}},
        {"arAvery5267AMetalLabels", make<reports::arAvery5267AMetalLabels>(), nullptr, false,
         TypedMethod{"PrintCutLabelsSmallA", kDataAndPreview, true, calls::cutLabelsSmallA,
                     examples::cutLabelsExampleJson}},
        {"arAvery5267BMetalLabels", make<reports::arAvery5267BMetalLabels>(), nullptr, false,
         TypedMethod{"PrintCutLabelsSmallB", kDataAndPreview, true, calls::cutLabelsSmallB,
                     examples::cutLabelsExampleJson}},
        {"arAvery5267CMetalLabels", make<reports::arAvery5267CMetalLabels>(), nullptr, false,
         TypedMethod{"PrintCutLabelsSmallC", kDataAndPreview, true, calls::cutLabelsSmallC,
                     examples::cutLabelsExampleJson}},
        {"ElevPartsAR", make<reports::ElevPartsAR>(), "elevpartsar", false,
         TypedMethod{"PrintElevationPartsReport",
                     "oUser, oElevation, oPartsReportListItems, sVendorPath, bPreview = True", true,
                     calls::elevationParts, examples::elevationPartsExampleJson}},

        // Cost
        {"ARMarkup", make<reports::ARMarkup>(), "armarkup", false, std::nullopt,
         reports::ARMarkup::kExportSuffixes},
        {"ARMarkup2", make<reports::ARMarkup2>(), "armarkup2", false, std::nullopt,
         reports::ARMarkup2::kExportSuffixes},
        {"FinalSummaryAR", make<reports::FinalSummaryAR>(), "finalsummaryar", false, std::nullopt,
         reports::FinalSummaryAR::kExportSuffixes},
        {"FinalSummaryAR2", make<reports::FinalSummaryAR2>(), "finalsummaryar2", false,
         std::nullopt, reports::FinalSummaryAR2::kExportSuffixes},
        {"FinalLaborAR", make<reports::FinalLaborAR>(), "finallaborar", false, std::nullopt,
         reports::FinalLaborAR::kExportSuffixes},
        {"JobLaborSub", make<reports::JobLaborSub>()},

        // Multi-elevation
        {"ElevPartsMultipleReport", make<reports::ElevPartsMultipleReport>(), nullptr, false,
         TypedMethod{"PrintMultipleElevationPartsReports",
                     "oElevationPartsReportDataList, bPreview", true, calls::multipleElevationParts,
                     examples::multipleElevationPartsExampleJson}},
        {"ElevGlassMultipleReport", make<reports::ElevGlassMultipleReport>(), nullptr, false,
         TypedMethod{"PrintMultipleElevationGlassReports",
                     "oElevationGlassReportDataList, ReportFormat, bPreview", true,
                     calls::multipleElevationGlass, examples::multipleElevationGlassExampleJson}},
    };
}

template <class Matches> const ReportRegistration* findRegistration(Matches&& matches) {
    for (const auto& entry : reportRegistry()) {
        if (matches(entry))
            return &entry;
    }
    return nullptr;
}

} // namespace

std::span<const ReportRegistration> reportRegistry() {
    static const std::vector<ReportRegistration> registry = buildRegistry();
    return registry;
}

const ReportRegistration* registrationOfClass(std::string_view className) {
    return findRegistration([&](const ReportRegistration& r) { return r.className == className; });
}

const ReportRegistration* registrationOfRequest(std::string_view requestName) {
    return findRegistration(
        [&](const ReportRegistration& r) { return r.requestName && r.requestName == requestName; });
}

const ReportRegistration* registrationOfMethod(std::string_view methodName) {
    return findRegistration(
        [&](const ReportRegistration& r) { return r.method && r.method->name == methodName; });
}

} // namespace qr::service
