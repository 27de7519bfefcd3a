#pragma once
// The typed methods of PrintService as calls with JSON report data: each reads the method's
// host objects from TypedCallArguments::dataJson (keys are the host's member names) and calls
// the method with the arguments' options. The command line and every other JSON-speaking host
// go through these; the registry names them.

#include "service/report_registry.hpp"

namespace qr::service::typed_calls {

void finalGlassPortrait(PrintService& service, const TypedCallArguments& arguments);
void finalGlassLandscape(PrintService& service, const TypedCallArguments& arguments);
void finalGlassWithoutPrices(PrintService& service, const TypedCallArguments& arguments);
void finalGlassLandscapeWithoutPrices(PrintService& service, const TypedCallArguments& arguments);

void finalPartsLandscape(PrintService& service, const TypedCallArguments& arguments);
void finalPartsPortrait(PrintService& service, const TypedCallArguments& arguments);
void finalPartsWithNoPrices(PrintService& service, const TypedCallArguments& arguments);
void lineal(PrintService& service, const TypedCallArguments& arguments);
void metalRecap(PrintService& service, const TypedCallArguments& arguments);
void optimizedCutList(PrintService& service, const TypedCallArguments& arguments);
void jobParts(PrintService& service, const TypedCallArguments& arguments);
void jobPartsByElevation(PrintService& service, const TypedCallArguments& arguments);

void cutLabelsLarge(PrintService& service, const TypedCallArguments& arguments);
void cutLabelsSmallA(PrintService& service, const TypedCallArguments& arguments);
void cutLabelsSmallB(PrintService& service, const TypedCallArguments& arguments);
void cutLabelsSmallC(PrintService& service, const TypedCallArguments& arguments);
void metalCutListing(PrintService& service, const TypedCallArguments& arguments);

void elevationParts(PrintService& service, const TypedCallArguments& arguments);
void multipleElevationParts(PrintService& service, const TypedCallArguments& arguments);
void multipleElevationGlass(PrintService& service, const TypedCallArguments& arguments);

} // namespace qr::service::typed_calls
