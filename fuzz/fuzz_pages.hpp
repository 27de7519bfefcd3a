#pragma once
// Arbitrary pages for the fuzz targets of the writers that take pages.

#include "platform/engine/page/page.hpp"

#include <fuzzer/FuzzedDataProvider.h>

namespace qr::fuzz {

inline page::Rect rectFrom(FuzzedDataProvider& in) {
    return {in.ConsumeIntegralInRange(-2000, 20000), in.ConsumeIntegralInRange(-2000, 20000),
            in.ConsumeIntegralInRange(-100, 15000), in.ConsumeIntegralInRange(-100, 3000)};
}

/// Pages made from fuzz input: texts with any bytes, boxes anywhere (negative, overlapping, off
/// the paper), numbers with any format, check boxes, lines, rectangles plain and rounded, in a
/// TrueType and a CFF font.
inline page::Pages pagesFrom(FuzzedDataProvider& in) {
    page::Pages pages;
    pages.title = in.ConsumeRandomLengthString(40);
    pages.fonts.push_back({});
    pages.fonts.push_back({"Times New Roman", in.ConsumeFloatingPointInRange(1.0, 72.0), true});
    pages.fonts.push_back({"Helvetica", in.ConsumeFloatingPointInRange(1.0, 72.0), false, true, true});
    const int pageCount = in.ConsumeIntegralInRange(1, 4);
    for (int p = 0; p < pageCount && in.remaining_bytes() > 0; ++p) {
        page::Page& page = pages.pages.emplace_back();
        const int itemCount = in.ConsumeIntegralInRange(0, 40);
        for (int i = 0; i < itemCount && in.remaining_bytes() > 0; ++i) {
            switch (in.ConsumeIntegralInRange(0, 3)) {
            case 0: {
                page::TextItem text;
                text.box = rectFrom(in);
                text.font = in.ConsumeIntegralInRange(0, 2);
                text.align = static_cast<page::Align>(in.ConsumeIntegralInRange(0, 2));
                text.text = in.ConsumeRandomLengthString(300);
                text.runs.push_back({text.box.x, text.box.y + 200, text.box.width, text.text});
                if (in.ConsumeBool())
                    text.numericValue = in.ConsumeFloatingPoint<double>();
                if (in.ConsumeBool())
                    text.format = in.ConsumeRandomLengthString(30);
                text.pageBand = static_cast<page::PageBand>(in.ConsumeIntegralInRange(0, 2));
                page.items.push_back(text);
                break;
            }
            case 1:
                page.items.push_back(page::LineItem{in.ConsumeIntegral<int>(), in.ConsumeIntegral<int>(),
                                              in.ConsumeIntegral<int>(), in.ConsumeIntegral<int>()});
                break;
            case 2: {
                page::RectItem rect{rectFrom(in)};
                rect.rounded = in.ConsumeBool();
                if (in.ConsumeBool())
                    rect.fill = in.ConsumeIntegral<page::Color>();
                page.items.push_back(rect);
                break;
            }
            default:
                page.items.push_back(page::CheckBoxItem{rectFrom(in), in.ConsumeBool()});
                break;
            }
        }
    }
    return pages;
}

} // namespace qr::fuzz
