#include "platform/output/png_writer.hpp"

#include "platform/core/error.hpp"
#include "platform/output/cairo_renderer.hpp"
#include "platform/output/output_error.hpp"
#include "platform/output/output_file.hpp"
#include "platform/output/page_scene.hpp"

#include <cmath>
#include <memory>
#include <sstream>

namespace qr::output {

namespace {

constexpr double kMaxPixels = 64.0 * 1024 * 1024;

struct SurfaceDeleter {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

std::string describe(double value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

// Draws the page on a new white image surface.
SurfacePtr drawPage(const page::Page& page, const std::vector<page::FontSpec>& fonts, double dpi) {
    if (!(dpi >= kMinImageDpi && dpi <= kMaxImageDpi)) {
        throw Error(errc::kComponent, kPngSource,
                    "A page picture needs a resolution from " + describe(kMinImageDpi) + " to " +
                        describe(kMaxImageDpi) + " dpi, not " + describe(dpi) + ".");
    }
    const double scale = dpi / page::kTwipsPerInch;
    const double width = std::ceil(page.width * scale);
    const double height = std::ceil(page.height * scale);
    if (width < 1 || height < 1 || width * height > kMaxPixels) {
        throw Error(errc::kComponent, kPngSource,
                    "A page of " + std::to_string(page.width) + " x " +
                        std::to_string(page.height) + " twips cannot be pictured at " +
                        describe(dpi) + " dpi.");
    }
    SceneBuilder scenes;
    const PageScene& scene = scenes.build(page, fonts);

    SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                                  static_cast<int>(height)));
    cairo_t* cr = cairo_create(surface.get());
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    cairo_scale(cr, scale, scale);
    drawScene(cr, scene);
    const cairo_status_t status = cairo_status(cr);
    cairo_destroy(cr);
    if (status != CAIRO_STATUS_SUCCESS) {
        throw Error(errc::kComponent, kPngSource,
                    std::string("A page could not be drawn: ") + cairo_status_to_string(status));
    }
    cairo_surface_flush(surface.get());
    return surface;
}

} // namespace

PageImage renderPageImage(const page::Page& page, const std::vector<page::FontSpec>& fonts,
                          double dpi) {
    SurfacePtr surface = drawPage(page, fonts, dpi);
    PageImage image;
    image.width = cairo_image_surface_get_width(surface.get());
    image.height = cairo_image_surface_get_height(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    const unsigned char* data = cairo_image_surface_get_data(surface.get());
    image.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    for (int y = 0; y < image.height; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(data + std::ptrdiff_t(y) * stride);
        for (int x = 0; x < image.width; ++x) {
            image.pixels[static_cast<std::size_t>(y) * image.width + x] = 0xFF000000u | row[x];
        }
    }
    return image;
}

void writePng(const page::Page& page, const std::vector<page::FontSpec>& fonts,
              const std::filesystem::path& path, double dpi) {
    SurfacePtr surface = drawPage(page, fonts, dpi);
    OutputFile file(path, "PNG", kPngSource);
    const cairo_status_t status =
        cairo_surface_write_to_png_stream(surface.get(), &OutputFile::cairoWrite, &file);
    if (status != CAIRO_STATUS_SUCCESS)
        file.fail(cairo_status_to_string(status));
    file.commit();
}

void writePng(const page::Pages& pages, std::size_t pageIndex, const std::filesystem::path& path,
              double dpi) {
    if (pageIndex >= pages.pages.size()) {
        throw Error(errc::kComponent, kPngSource,
                    "There is no page " + std::to_string(pageIndex + 1) + " to picture; the " +
                        "report has " + std::to_string(pages.pages.size()) + " pages.");
    }
    writePng(pages.pages[pageIndex], pages.fonts, path, dpi);
}

} // namespace qr::output
