#pragma once
// Helpers for the output tests: pages built by hand (no engine), read-backs of written PDFs
// through poppler, environment variables set for one test.

#include "platform/engine/page/page.hpp"
#include "platform/output/cairo_text_measurer.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <poppler-document.h>
#include <poppler-page.h>
#include <string>
#include <vector>

namespace qr::test {

/// Sets (or with nullopt, unsets) an environment variable until the end of the scope.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, std::optional<std::string> value) : m_name(name) {
        if (const char* old = std::getenv(name))
            m_old = old;
        if (value) {
            ::setenv(name, value->c_str(), 1);
        } else {
            ::unsetenv(name);
        }
    }
    ~ScopedEnv() {
        if (m_old) {
            ::setenv(m_name.c_str(), m_old->c_str(), 1);
        } else {
            ::unsetenv(m_name.c_str());
        }
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

  private:
    std::string m_name;
    std::optional<std::string> m_old;
};

/// Builds pages the way the engine would: one measurer, runs placed at their measured widths.
class PageBuilder {
  public:
    explicit PageBuilder(std::string title = "Test Report") { m_pages.title = std::move(title); }

    page::Page& addPage(bool landscape = false) {
        page::Page p;
        if (landscape)
            std::swap(p.width, p.height);
        m_pages.pages.push_back(std::move(p));
        return m_pages.pages.back();
    }

    /// A one-line text item with its left end at x and its baseline at y on the last page;
    /// returns a copy of what it added.
    page::TextItem text(int x, int baseline, const std::string& text,
                        const page::FontSpec& font = {}) {
        const int index = fontIndex(font);
        const int width = m_measurer.width(font, text);
        const auto metrics = m_measurer.metrics(font);
        page::TextItem item;
        item.box = {x, baseline - metrics.ascent, width, metrics.ascent + metrics.descent};
        item.font = index;
        item.runs.push_back({x, baseline, width, text});
        item.text = text;
        m_pages.pages.back().items.push_back(item);
        return item;
    }

    void line(int x1, int y1, int x2, int y2, int thickness = 15) {
        page::LineItem item;
        item.x1 = x1, item.y1 = y1, item.x2 = x2, item.y2 = y2, item.thickness = thickness;
        m_pages.pages.back().items.emplace_back(item);
    }

    void checkBox(int x, int y, int side, bool checked) {
        page::CheckBoxItem item;
        item.box = {x, y, side, side};
        item.checked = checked;
        m_pages.pages.back().items.emplace_back(item);
    }

    void rect(page::Rect box, std::optional<page::Color> fill, int thickness = 15) {
        page::RectItem item;
        item.box = box;
        item.fill = fill;
        item.thickness = thickness;
        m_pages.pages.back().items.emplace_back(item);
    }

    page::Pages& pages() { return m_pages; }

  private:
    int fontIndex(const page::FontSpec& font) {
        for (std::size_t i = 0; i < m_pages.fonts.size(); ++i) {
            if (m_pages.fonts[i] == font)
                return static_cast<int>(i);
        }
        m_pages.fonts.push_back(font);
        return static_cast<int>(m_pages.fonts.size() - 1);
    }

    page::Pages m_pages;
    output::CairoTextMeasurer m_measurer;
};

/// A written PDF opened with poppler; fails the test when it cannot be read.
inline std::unique_ptr<poppler::document> openPdf(const std::filesystem::path& path) {
    return std::unique_ptr<poppler::document>(poppler::document::load_from_file(path.string()));
}

inline std::string toUtf8(const poppler::ustring& text) {
    const auto bytes = text.to_utf8();
    return std::string(bytes.begin(), bytes.end());
}

/// The text of page `index` in reading order, as poppler extracts it.
inline std::string pdfPageText(poppler::document& doc, int index) {
    std::unique_ptr<poppler::page> p(doc.create_page(index));
    return p ? toUtf8(p->text()) : std::string();
}

/// Names of the files in a folder, sorted.
inline std::vector<std::string> folderContents(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// A box of ink in a picture of a page, in pixels.
struct InkBox {
    int left = 0, top = 0, right = -1, bottom = -1; // inclusive; empty when right < left
    bool empty() const { return right < left; }
};

inline int luminance(std::uint32_t argb) {
    return (((argb >> 16) & 0xFF) * 30 + ((argb >> 8) & 0xFF) * 59 + (argb & 0xFF) * 11) / 100;
}

inline bool isDark(std::uint32_t argb) {
    return luminance(argb) < 128;
}

// The bounding box of the ink inside a region given in pixels.
template <typename PixelAt> InkBox inkBox(PixelAt pixelAt, int x0, int y0, int x1, int y1) {
    InkBox box{x1, y1, x0 - 1, y0 - 1};
    for (int y = y0; y < y1; ++y) {
        for (int x = x0; x < x1; ++x) {
            if (!isDark(pixelAt(x, y)))
                continue;
            box.left = std::min(box.left, x);
            box.top = std::min(box.top, y);
            box.right = std::max(box.right, x);
            box.bottom = std::max(box.bottom, y);
        }
    }
    return box;
}

} // namespace qr::test
