#include "service/typed_calls.hpp"

#include "platform/host/report_data_json.hpp"
#include "service/print_service.hpp"

namespace qr::service::typed_calls {

namespace {

using S = PrintService;
using A = TypedCallArguments;

bool previewOr(const A& a, bool fallback) {
    return a.preview.value_or(fallback);
}

// The report-data types that carry only a heading so far.
template <class Data> Data headingData(const A& a) {
    Data data;
    static_cast<host::ReportHeading&>(data) =
        a.dataJson.empty() ? host::ReportHeading{} : host::reportHeadingFromJson(a.dataJson);
    return data;
}

// The final glass methods share their parameters (the vendor path by value).
template <void (S::*Method)(host::FinalGlassReportData&, std::string, bool, bool, bool)>
void glass(S& s, const A& a) {
    auto data = host::finalGlassReportDataFromJson(a.dataJson);
    (s.*Method)(data, a.vendorPath, previewOr(a, true), a.excel, a.pdf);
}

template <void (S::*Method)(host::FinalPartsReportData&, std::string&, host::UserDefaults&, bool,
                            bool, bool)>
void finalParts(S& s, const A& a) {
    auto data = headingData<host::FinalPartsReportData>(a);
    host::UserDefaults defaults;
    std::string vendorPath = a.vendorPath;
    (s.*Method)(data, vendorPath, defaults, a.excel, a.pdf, previewOr(a, true));
}

template <class Data, void (S::*Method)(Data&, bool)> void dataAndPreview(S& s, const A& a) {
    auto data = headingData<Data>(a);
    (s.*Method)(data, previewOr(a, true));
}

} // namespace

void finalGlassPortrait(S& s, const A& a) {
    glass<&S::PrintFinalGlassPortraitReport>(s, a);
}
void finalGlassLandscape(S& s, const A& a) {
    glass<&S::PrintFinalGlassLandscapeReport>(s, a);
}
void finalGlassWithoutPrices(S& s, const A& a) {
    glass<&S::PrintFinalGlassReportWithoutPrices>(s, a);
}
void finalGlassLandscapeWithoutPrices(S& s, const A& a) {
    glass<&S::PrintFinalGlassLandscapeReportWithoutPrices>(s, a);
}

void finalPartsLandscape(S& s, const A& a) {
    finalParts<&S::PrintFinalPartsReportLandscape>(s, a);
}
void finalPartsPortrait(S& s, const A& a) {
    finalParts<&S::PrintFinalPartsReportPortrait>(s, a);
}
void finalPartsWithNoPrices(S& s, const A& a) {
    finalParts<&S::PrintFinalPartsReportWithNoPrices>(s, a);
}

void lineal(S& s, const A& a) {
    auto data = headingData<host::LinealReportData>(a);
    std::string vendorPath = a.vendorPath;
    bool excel = a.excel, pdf = a.pdf;
    s.PrintLinealReport(data, vendorPath, excel, pdf, previewOr(a, true));
}

void metalRecap(S& s, const A& a) {
    dataAndPreview<host::MetalRecapReportData, &S::PrintMetalRecapReport>(s, a);
}

void optimizedCutList(S& s, const A& a) {
    auto data = headingData<host::OptimizedCutListReportData>(a);
    std::string vendorPath = a.vendorPath;
    s.PrintOptimizedCutListReport(data, vendorPath, previewOr(a, true), a.excel, a.pdf);
}

void jobParts(S& s, const A& a) {
    dataAndPreview<host::JobPartsReportData, &S::PrintJobPartsReport>(s, a);
}
void jobPartsByElevation(S& s, const A& a) {
    dataAndPreview<host::JobPartsReportData, &S::PrintJobPartsReportByElevation>(s, a);
}

void cutLabelsLarge(S& s, const A& a) {
    dataAndPreview<host::CutLabelsReportData, &S::PrintCutLabelsLarge>(s, a);
}
void cutLabelsSmallA(S& s, const A& a) {
    dataAndPreview<host::CutLabelsReportData, &S::PrintCutLabelsSmallA>(s, a);
}
void cutLabelsSmallB(S& s, const A& a) {
    dataAndPreview<host::CutLabelsReportData, &S::PrintCutLabelsSmallB>(s, a);
}
void cutLabelsSmallC(S& s, const A& a) {
    dataAndPreview<host::CutLabelsReportData, &S::PrintCutLabelsSmallC>(s, a);
}
void metalCutListing(S& s, const A& a) {
    dataAndPreview<host::CutLabelsReportData, &S::PrintMetalCutListing>(s, a);
}

void elevationParts(S& s, const A& a) {
    auto heading = headingData<host::ReportHeading>(a);
    host::ElevationData elevation;
    host::PartsReportListItems items;
    std::string vendorPath = a.vendorPath;
    s.PrintElevationPartsReport(heading.User, elevation, items, vendorPath, previewOr(a, true));
}

void multipleElevationParts(S& s, const A& a) {
    host::ElevationPartsReportDataList list;
    bool preview = previewOr(a, true);
    s.PrintMultipleElevationPartsReports(list, preview);
}

void multipleElevationGlass(S& s, const A& a) {
    host::ElevationGlassReportDataList list;
    std::string format = a.reportFormat;
    bool preview = previewOr(a, true);
    s.PrintMultipleElevationGlassReports(list, format, preview);
}

} // namespace qr::service::typed_calls
