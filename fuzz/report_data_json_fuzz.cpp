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

// The first byte picks the reader, the rest is the JSON: each execution tries one reader, so
// the fuzzer spends its time on the JSON rather than on seventeen parses of the same input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qr::host;
    if (size == 0)
        return 0;
    const unsigned reader = data[0];
    const std::string json(qr::fuzz::textOf(data + 1, size - 1));
    const auto writeAny = [](const auto& value) { return toJson(value); };
    const bool flag = (reader & 0x80) != 0;
    switch (reader % 10) {
    case 0:
        roundTrips(json, linealReportDataFromJson, writeAny);
        break;
    case 1:
        roundTrips(json, metalRecapReportDataFromJson, writeAny);
        break;
    case 2:
        roundTrips(json, optimizedCutListReportDataFromJson, writeAny);
        break;
    case 3:
        roundTrips(json, [&](const std::string& j) { return jobPartsReportDataFromJson(j, flag); },
                   writeAny);
        break;
    case 4:
        roundTrips(
            json, [&](const std::string& j) { return finalPartsCallFromJson(j, flag); },
            [](const FinalPartsCallData& call) {
                return finalPartsCallToJson(call.oReportData, call.oUserDefaults);
            });
        break;
    case 5: {
        constexpr CutReportReads kReads[] = {CutReportReads::Listing, CutReportReads::CutPartType,
                                             CutReportReads::PiecePartType};
        const CutReportReads reads = kReads[(reader >> 4) % 3];
        roundTrips(json, [&](const std::string& j) { return cutLabelsReportDataFromJson(j, reads); },
                   writeAny);
        break;
    }
    case 6:
        roundTrips(
            json, [&](const std::string& j) { return elevationGlassReportDataFromJson(j, flag); },
            writeAny);
        break;
    case 7:
        roundTrips(
            json,
            [&](const std::string& j) { return elevationGlassReportDataListFromJson(j, flag); },
            writeAny);
        break;
    case 8:
        roundTrips(json, elevationPartsReportDataListFromJson, writeAny);
        break;
    default:
        roundTrips(json, elevationPartsCallFromJson, [](const ElevationPartsCallData& call) {
            return elevationPartsCallToJson(call.oUser, call.oElevation, call.oPartsReportListItems);
        });
        break;
    }
    return 0;
}
