// The JSON report-data readers of the typed methods. Whatever a reader accepts, its writer
// must give back JSON the reader accepts again, unchanged: a data file written by make-sample
// or by a host always reads back as the same report data. (The final glass reader is left
// out: it opens the connection its document names.)

#include "fuzz/fuzz_input.hpp"
#include "platform/host/report_data_json.hpp"

#include <cstdlib>

namespace {

template <class Read, class Write> void roundTrips(const std::string& json, Read read, Write write) {
    qr::fuzz::refusalsAllowed([&] {
        const std::string once = write(read(json));
        const std::string twice = write(read(once));
        if (once != twice)
            std::abort();
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qr::host;
    const std::string json(qr::fuzz::textOf(data, size));
    const auto writeAny = [](const auto& value) { return toJson(value); };
    roundTrips(json, linealReportDataFromJson, writeAny);
    roundTrips(json, metalRecapReportDataFromJson, writeAny);
    roundTrips(json, optimizedCutListReportDataFromJson, writeAny);
    for (bool byElevation : {false, true})
        roundTrips(json, [&](const std::string& j) { return jobPartsReportDataFromJson(j, byElevation); },
                   writeAny);
    for (bool showsPrices : {false, true})
        roundTrips(
            json, [&](const std::string& j) { return finalPartsCallFromJson(j, showsPrices); },
            [](const FinalPartsCallData& call) {
                return finalPartsCallToJson(call.oReportData, call.oUserDefaults);
            });
    for (auto reads : {CutReportReads::Listing, CutReportReads::CutPartType,
                       CutReportReads::PiecePartType})
        roundTrips(json, [&](const std::string& j) { return cutLabelsReportDataFromJson(j, reads); },
                   writeAny);
    for (bool blockFigures : {false, true}) {
        roundTrips(
            json,
            [&](const std::string& j) { return elevationGlassReportDataFromJson(j, blockFigures); },
            writeAny);
        roundTrips(
            json,
            [&](const std::string& j) {
                return elevationGlassReportDataListFromJson(j, blockFigures);
            },
            writeAny);
    }
    roundTrips(json, elevationPartsReportDataListFromJson, writeAny);
    roundTrips(json, elevationPartsCallFromJson, [](const ElevationPartsCallData& call) {
        return elevationPartsCallToJson(call.oUser, call.oElevation, call.oPartsReportListItems);
    });
    return 0;
}
