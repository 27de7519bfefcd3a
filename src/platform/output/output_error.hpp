#pragma once
// Error numbers and sources of the output library. File and printer failures carry the classic
// runtime's numbers for those conditions, so a host that reacts to numbers sees familiar ones.

namespace qr::output {

inline constexpr int kFileAccessError = 75; // "Path/File access error"
inline constexpr int kPrinterError = 482;   // "Printer error"

inline constexpr const char* kFontsSource = "Fonts";
inline constexpr const char* kPdfSource = "PdfExport";
inline constexpr const char* kPngSource = "PngExport";
inline constexpr const char* kPrinterSource = "Printer";
inline constexpr const char* kPreviewSource = "Preview";
inline constexpr const char* kRenderSource = "PageRenderer";

} // namespace qr::output
