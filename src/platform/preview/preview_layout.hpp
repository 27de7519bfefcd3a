#pragma once
// Where the preview window puts pages: one under another in a single column, centred, with a
// gap around each, at the scale the zoom asks for. Plain arithmetic in pixels, so the window
// can place a 2,000-page report without touching a single page's items.

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace qr::output {

/// How large pages are shown.
enum class ZoomMode {
    FitPage,  // the largest page fits the view whole
    FitWidth, // the widest page fills the view's width
    Percent   // a fixed scale, 100 % being the paper's own size on the screen
};

struct Zoom {
    ZoomMode mode = ZoomMode::FitWidth;
    int percent = 100; // used with ZoomMode::Percent
    bool operator==(const Zoom&) const = default;
};

inline constexpr int kMinZoomPercent = 50;
inline constexpr int kMaxZoomPercent = 400;
/// The scales zooming in and out steps through.
inline constexpr std::array<int, 8> kZoomSteps = {50, 75, 100, 125, 150, 200, 300, 400};

/// The next step above `percent` (kMaxZoomPercent at the top).
int zoomInStep(int percent);
/// The next step below `percent` (kMinZoomPercent at the bottom).
int zoomOutStep(int percent);
/// `percent` held within kMinZoomPercent..kMaxZoomPercent.
int clampZoomPercent(int percent);

/// A page's paper size in twips.
struct PaperSize {
    int width = 0;
    int height = 0;
};

/// A rectangle in pixels of the laid-out column.
struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;
    int bottom() const { return y + height; }
    int right() const { return x + width; }
    bool operator==(const PixelRect&) const = default;
};

/// The view a layout is made for: its size in pixels and the screen's logical resolution.
struct ViewGeometry {
    int width = 0;
    int height = 0;
    double dpi = 96;
};

/// Pixels per twip for `zoom`. The fit modes fit the largest paper (gaps included) into the
/// view; they never go below a twentieth of 100 %, so a tiny view still shows something.
double zoomScale(const Zoom& zoom, const std::vector<PaperSize>& papers, const ViewGeometry& view);

/// Pages placed one under another. Built once per scale and view width; every lookup is a
/// binary search.
class PageColumn {
  public:
    /// Space around and between pages, in pixels.
    static constexpr int kGap = 12;

    /// Lays out `papers` at `scale` pixels per twip, centred in a column as wide as `viewWidth`
    /// or the widest page with its gaps, whichever is wider.
    void layout(const std::vector<PaperSize>& papers, double scale, int viewWidth);

    std::size_t pageCount() const { return m_rects.size(); }
    const PixelRect& page(std::size_t index) const { return m_rects[index]; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    double scale() const { return m_scale; }

    /// The page showing most of its height between `top` and `top + height` (the earlier one
    /// on a tie); 0 without pages.
    std::size_t mostVisiblePage(int top, int height) const;
    /// The pages that reach into the band from `top` to `top + height`, as [first, last);
    /// empty when none does.
    std::pair<std::size_t, std::size_t> pagesIn(int top, int height) const;
    /// The scroll position that puts the top of page `index` (less the gap) at the view's top.
    int topOf(std::size_t index) const;

  private:
    std::vector<PixelRect> m_rects;
    int m_width = 0;
    int m_height = 0;
    double m_scale = 1;
};

} // namespace qr::output
