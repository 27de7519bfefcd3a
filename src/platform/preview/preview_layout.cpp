#include "platform/preview/preview_layout.hpp"

#include "platform/engine/page/page.hpp"

#include <algorithm>
#include <cmath>

namespace qr::output {

namespace {

constexpr double kMinFitPercent = 5;

double percentScale(double percent, double dpi) {
    return percent / 100.0 * dpi / page::kTwipsPerInch;
}

} // namespace

int zoomInStep(int percent) {
    for (int step : kZoomSteps) {
        if (step > percent)
            return step;
    }
    return kMaxZoomPercent;
}

int zoomOutStep(int percent) {
    for (auto it = kZoomSteps.rbegin(); it != kZoomSteps.rend(); ++it) {
        if (*it < percent)
            return *it;
    }
    return kMinZoomPercent;
}

int clampZoomPercent(int percent) {
    return std::clamp(percent, kMinZoomPercent, kMaxZoomPercent);
}

double zoomScale(const Zoom& zoom, const std::vector<PaperSize>& papers, const ViewGeometry& view) {
    if (zoom.mode == ZoomMode::Percent)
        return percentScale(clampZoomPercent(zoom.percent), view.dpi);
    int widest = page::kLetterWidth;
    int tallest = page::kLetterHeight;
    if (!papers.empty()) {
        widest = tallest = 1;
        for (const auto& paper : papers) {
            widest = std::max(widest, paper.width);
            tallest = std::max(tallest, paper.height);
        }
    }
    const double across = double(view.width - 2 * PageColumn::kGap) / widest;
    double scale = across;
    if (zoom.mode == ZoomMode::FitPage) {
        const double down = double(view.height - 2 * PageColumn::kGap) / tallest;
        scale = std::min(across, down);
    }
    return std::max(scale, percentScale(kMinFitPercent, view.dpi));
}

void PageColumn::layout(const std::vector<PaperSize>& papers, double scale, int viewWidth) {
    m_scale = scale;
    m_rects.clear();
    m_rects.reserve(papers.size());
    int widest = 0;
    for (const auto& paper : papers)
        widest = std::max(widest, int(std::lround(paper.width * scale)));
    m_width = std::max(viewWidth, widest + 2 * kGap);
    int y = kGap;
    for (const auto& paper : papers) {
        PixelRect rect;
        rect.width = std::max(1, int(std::lround(paper.width * scale)));
        rect.height = std::max(1, int(std::lround(paper.height * scale)));
        rect.x = (m_width - rect.width) / 2;
        rect.y = y;
        m_rects.push_back(rect);
        y += rect.height + kGap;
    }
    m_height = y;
}

std::pair<std::size_t, std::size_t> PageColumn::pagesIn(int top, int height) const {
    const int bottom = top + height;
    // Pages are in order and do not overlap, so their bottoms and tops both ascend.
    auto first = std::upper_bound(m_rects.begin(), m_rects.end(), top,
                                  [](int y, const PixelRect& r) { return y < r.bottom(); });
    auto last = std::lower_bound(first, m_rects.end(), bottom,
                                 [](const PixelRect& r, int y) { return r.y < y; });
    return {std::size_t(first - m_rects.begin()), std::size_t(last - m_rects.begin())};
}

std::size_t PageColumn::mostVisiblePage(int top, int height) const {
    const auto [first, last] = pagesIn(top, height);
    if (first == last)
        return std::min(first, m_rects.empty() ? 0 : m_rects.size() - 1);
    std::size_t best = first;
    int bestShown = -1;
    for (std::size_t i = first; i < last; ++i) {
        const PixelRect& r = m_rects[i];
        const int shown = std::min(r.bottom(), top + height) - std::max(r.y, top);
        if (shown > bestShown) {
            best = i;
            bestShown = shown;
        }
    }
    return best;
}

int PageColumn::topOf(std::size_t index) const {
    if (index >= m_rects.size())
        return 0;
    return m_rects[index].y - kGap;
}

} // namespace qr::output
