#include "service/typed_calls.hpp"

#include "platform/host/report_data_json.hpp"
#include "reports/multi/elevation_multiple_report.hpp"
#include "service/print_service.hpp"
#include "service/run_sequence.hpp"

namespace qr::service::typed_calls {

namespace {

using S = PrintService;
using A = TypedCallArguments;

bool previewOr(const A& a, bool fallback) {
    return a.preview.value_or(fallback);
}

// Every call reads its report data inside the method's error handling: data that cannot be read
// is the method's failure, shown as the method shows its failures.

// The final glass methods share their parameters (the vendor path by value).
template <void (S::*Method)(host::FinalGlassReportData&, std::string, bool, bool, bool)>
void glass(const char* method, S& s, const A& a) {
    trapTypedMethod(method, [&] {
        auto data = host::finalGlassReportDataFromJson(a.dataJson);
        (s.*Method)(data, a.vendorPath, previewOr(a, true), a.excel, a.pdf);
    });
}

template <void (S::*Method)(host::FinalPartsReportData&, std::string&, host::UserDefaults&, bool,
                            bool, bool)>
void finalParts(const char* method, bool showsPrices, S& s, const A& a) {
    trapTypedMethod(method, [&] {
        auto call = host::finalPartsCallFromJson(a.dataJson, showsPrices);
        std::string vendorPath = a.vendorPath;
        (s.*Method)(call.oReportData, vendorPath, call.oUserDefaults, a.excel, a.pdf,
                    previewOr(a, true));
    });
}

// The methods whose only host object is the report data, read by `read`.
template <class Data, void (S::*Method)(Data&, bool), class Read>
void dataAndPreview(const char* method, Read read, S& s, const A& a) {
    trapTypedMethod(method, [&] {
        Data data = read(a.dataJson);
        (s.*Method)(data, previewOr(a, true));
    });
}

// The metal cut listing and the four metal label sheets, each reading what its report prints.
template <void (S::*Method)(host::CutLabelsReportData&, bool)>
void metalCut(const char* method, host::CutReportReads reads, S& s, const A& a) {
    dataAndPreview<host::CutLabelsReportData, Method>(
        method,
        [reads](const std::string& json) { return host::cutLabelsReportDataFromJson(json, reads); },
        s, a);
}

} // namespace

void finalGlassPortrait(S& s, const A& a) {
    glass<&S::PrintFinalGlassPortraitReport>("PrintFinalGlassPortraitReport", s, a);
}
void finalGlassLandscape(S& s, const A& a) {
    glass<&S::PrintFinalGlassLandscapeReport>("PrintFinalGlassLandscapeReport", s, a);
}
void finalGlassWithoutPrices(S& s, const A& a) {
    glass<&S::PrintFinalGlassReportWithoutPrices>("PrintFinalGlassReportWithoutPrices", s, a);
}
void finalGlassLandscapeWithoutPrices(S& s, const A& a) {
    glass<&S::PrintFinalGlassLandscapeReportWithoutPrices>(
        "PrintFinalGlassLandscapeReportWithoutPrices", s, a);
}

void finalPartsLandscape(S& s, const A& a) {
    finalParts<&S::PrintFinalPartsReportLandscape>("PrintFinalPartsReportLandscape", true, s, a);
}
void finalPartsPortrait(S& s, const A& a) {
    finalParts<&S::PrintFinalPartsReportPortrait>("PrintFinalPartsReportPortrait", true, s, a);
}
void finalPartsWithNoPrices(S& s, const A& a) {
    finalParts<&S::PrintFinalPartsReportWithNoPrices>("PrintFinalPartsReportWithNoPrices", false, s,
                                                      a);
}

void lineal(S& s, const A& a) {
    trapTypedMethod("PrintLinealReport", [&] {
        auto data = host::linealReportDataFromJson(a.dataJson);
        std::string vendorPath = a.vendorPath;
        bool excel = a.excel, pdf = a.pdf;
        s.PrintLinealReport(data, vendorPath, excel, pdf, previewOr(a, true));
    });
}

void metalRecap(S& s, const A& a) {
    dataAndPreview<host::MetalRecapReportData, &S::PrintMetalRecapReport>(
        "PrintMetalRecapReport", host::metalRecapReportDataFromJson, s, a);
}

void optimizedCutList(S& s, const A& a) {
    trapTypedMethod("PrintOptimizedCutListReport", [&] {
        auto data = host::optimizedCutListReportDataFromJson(a.dataJson);
        std::string vendorPath = a.vendorPath;
        s.PrintOptimizedCutListReport(data, vendorPath, previewOr(a, true), a.excel, a.pdf);
    });
}

void jobParts(S& s, const A& a) {
    dataAndPreview<host::JobPartsReportData, &S::PrintJobPartsReport>(
        "PrintJobPartsReport",
        [](const std::string& json) { return host::jobPartsReportDataFromJson(json, false); }, s,
        a);
}
void jobPartsByElevation(S& s, const A& a) {
    dataAndPreview<host::JobPartsReportData, &S::PrintJobPartsReportByElevation>(
        "PrintJobPartsReportByElevation",
        [](const std::string& json) { return host::jobPartsReportDataFromJson(json, true); }, s, a);
}

void cutLabelsLarge(S& s, const A& a) {
    metalCut<&S::PrintCutLabelsLarge>("PrintCutLabelsLarge", host::CutReportReads::CutPartType, s,
                                      a);
}
void cutLabelsSmallA(S& s, const A& a) {
    metalCut<&S::PrintCutLabelsSmallA>("PrintCutLabelsSmallA", host::CutReportReads::CutPartType, s,
                                       a);
}
void cutLabelsSmallB(S& s, const A& a) {
    metalCut<&S::PrintCutLabelsSmallB>("PrintCutLabelsSmallB", host::CutReportReads::CutPartType, s,
                                       a);
}
void cutLabelsSmallC(S& s, const A& a) {
    metalCut<&S::PrintCutLabelsSmallC>("PrintCutLabelsSmallC", host::CutReportReads::PiecePartType,
                                       s, a);
}
void metalCutListing(S& s, const A& a) {
    metalCut<&S::PrintMetalCutListing>("PrintMetalCutListing", host::CutReportReads::Listing, s, a);
}

void elevationParts(S& s, const A& a) {
    trapTypedMethod("PrintElevationPartsReport", [&] {
        auto call = host::elevationPartsCallFromJson(a.dataJson);
        std::string vendorPath = a.vendorPath;
        s.PrintElevationPartsReport(call.oUser, call.oElevation, call.oPartsReportListItems,
                                    vendorPath, previewOr(a, true));
    });
}

void multipleElevationParts(S& s, const A& a) {
    trapTypedMethod("PrintMultipleElevationPartsReports", [&] {
        auto list = host::elevationPartsReportDataListFromJson(a.dataJson);
        bool preview = previewOr(a, true);
        s.PrintMultipleElevationPartsReports(list, preview);
    });
}

void multipleElevationGlass(S& s, const A& a) {
    trapTypedMethod("PrintMultipleElevationGlassReports", [&] {
        // The landscape report, for every format but "basic", reads the block figures too.
        std::string format = a.reportFormat;
        auto list = host::elevationGlassReportDataListFromJson(
            a.dataJson, format != reports::ElevGlassMultipleReport::kBasicFormat);
        bool preview = previewOr(a, true);
        s.PrintMultipleElevationGlassReports(list, format, preview);
    });
}

} // namespace qr::service::typed_calls
