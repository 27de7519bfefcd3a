#include "platform/output/sheet_footer.hpp"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace qr::output {

namespace {

constexpr int kLineTolerance = 60; // twips: tops this close stand on one line
// Excel holds at most 255 characters of footer; bytes of UTF-8 count at least as many.
constexpr std::size_t kMaxFooterLength = 255;

/// `text` with every "&" doubled, as Excel's footer syntax writes a literal ampersand.
std::string footerLiteral(std::string_view text) {
    std::string out;
    for (char c : text) {
        out += c;
        if (c == '&') {
            out += '&';
        }
    }
    return out;
}

/// A footer text in Excel's syntax. A page-number or page-count box (a text with a number
/// behind it) gives its numbers as page codes: the last number that is the page count becomes
/// "&N" when the box counts pages, and the first that is the page's number becomes "&P".
std::string footerText(const page::TextItem& item, int pageNumber, int pageCount) {
    struct Digits {
        std::size_t at;
        std::size_t size;
        long value;
    };
    std::vector<Digits> numbers;
    for (std::size_t i = 0; i < item.text.size();) {
        if (item.text[i] < '0' || item.text[i] > '9') {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < item.text.size() && item.text[end] >= '0' && item.text[end] <= '9') {
            ++end;
        }
        numbers.push_back({i, end - i, std::strtol(item.text.c_str() + i, nullptr, 10)});
        i = end;
    }
    std::vector<std::pair<std::size_t, const char*>> codes; // number -> code
    if (item.numericValue) {
        if (*item.numericValue == pageCount) {
            for (std::size_t n = numbers.size(); n-- > 0;) {
                if (numbers[n].value == pageCount) {
                    codes.emplace_back(n, "&N");
                    break;
                }
            }
        }
        for (std::size_t n = 0; n < numbers.size(); ++n) {
            if (numbers[n].value == pageNumber && (codes.empty() || codes[0].first != n)) {
                codes.emplace_back(n, "&P");
                break;
            }
        }
    }
    std::string out;
    std::size_t from = 0;
    std::sort(codes.begin(), codes.end());
    for (const auto& [n, code] : codes) {
        out += footerLiteral(std::string_view(item.text).substr(from, numbers[n].at - from));
        out += code;
        from = numbers[n].at + numbers[n].size;
    }
    out += footerLiteral(std::string_view(item.text).substr(from));
    return out;
}

} // namespace

SheetFooter sheetFooter(const std::vector<page::TextItem>& items, int pageWidth, int pageNumber,
                        int pageCount) {
    std::vector<std::size_t> order(items.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const page::Rect& x = items[a].box;
        const page::Rect& y = items[b].box;
        return x.y != y.y ? x.y < y.y : x.x < y.x;
    });
    // Page numbers first: they are what only the sheet footer can show.
    std::stable_partition(order.begin(), order.end(),
                          [&](std::size_t i) { return items[i].numericValue.has_value(); });
    std::vector<const page::TextItem*> taken[3];
    std::size_t length = 0;
    SheetFooter footer;
    for (std::size_t i : order) {
        const page::TextItem& item = items[i];
        const int anchor = item.align == page::Align::Left    ? item.box.x
                           : item.align == page::Align::Right ? item.box.x + item.box.width
                                                              : item.box.x + item.box.width / 2;
        const int part = anchor < pageWidth / 3 ? 0 : anchor > pageWidth * 2 / 3 ? 2 : 1;
        const std::size_t added = footerText(item, pageNumber, pageCount).size() + 3;
        if (length + added > kMaxFooterLength) {
            footer.leftOver.push_back(i);
            continue;
        }
        length += added;
        taken[part].push_back(&item);
    }
    const char* codes[3] = {"&L", "&C", "&R"};
    for (int part = 0; part < 3; ++part) {
        std::sort(taken[part].begin(), taken[part].end(),
                  [](const page::TextItem* a, const page::TextItem* b) {
                      return a->box.y != b->box.y ? a->box.y < b->box.y : a->box.x < b->box.x;
                  });
        for (std::size_t i = 0; i < taken[part].size(); ++i) {
            const page::TextItem& item = *taken[part][i];
            if (i == 0) {
                footer.text += codes[part];
            } else {
                footer.text += item.box.y - taken[part][i - 1]->box.y > kLineTolerance ? "\n" : " ";
            }
            footer.text += footerText(item, pageNumber, pageCount);
        }
    }
    std::sort(footer.leftOver.begin(), footer.leftOver.end());
    return footer;
}

} // namespace qr::output
