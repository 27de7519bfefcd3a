#pragma once
// Pictures of pages: a page drawn on a cairo image surface by the same routine as the PDF, on
// white paper, at a chosen resolution.

#include "platform/engine/page/page.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace qr::output {

inline constexpr double kMinImageDpi = 1;
inline constexpr double kMaxImageDpi = 600;

/// An opaque picture of a page, row after row, each pixel 0xFFRRGGBB.
struct PageImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t pixel(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

/// `page` drawn at `dpi` dots per inch (the picture is the paper's size at that resolution,
/// rounded up to whole pixels); its text items index `fonts`. Raises qr::Error for a
/// resolution outside kMinImageDpi..kMaxImageDpi, a bad item or a missing font.
PageImage renderPageImage(const page::Page& page, const std::vector<page::FontSpec>& fonts,
                          double dpi);

/// Writes `page` as a PNG file at `path`, whole or not at all. Errors as renderPageImage, and
/// qr::Error naming the path and the cause when the file cannot be written.
void writePng(const page::Page& page, const std::vector<page::FontSpec>& fonts,
              const std::filesystem::path& path, double dpi);

/// Page `pageIndex` (from 0) of `pages` as a PNG file; an index past the last page is an error.
void writePng(const page::Pages& pages, std::size_t pageIndex, const std::filesystem::path& path,
              double dpi);

} // namespace qr::output
