#pragma once
// Small, complete report data for each parts and metal print method: what
// `quarvex-reports call METHOD --example` prints, so a host developer starts from data that
// runs. A few lines each, chosen to show what the reports do with them (a part sold one by one
// next to packaged ones, a stock piece that runs over eight cuts, two elevations).

#include "platform/host/report_data.hpp"

#include <string>

namespace qr::data::sample {

/// The JSON documents, as the methods read them.
std::string finalPartsExampleJson();
std::string linealExampleJson();
std::string metalRecapExampleJson();
std::string jobPartsExampleJson();
std::string cutListExampleJson();
/// The metal cut listing's and the metal labels' (one document for the five methods).
std::string cutLabelsExampleJson();

} // namespace qr::data::sample
