#include "reports/common/page_footer.hpp"

#include <string>

namespace qr::reports {

engine::SectionDesign pageNumberFooter(page::Rect box, double size, page::Align align, int height) {
    auto number = engine::textBox("txtPageNumber", box).pageCount().size(size);
    number.align = align;
    return engine::pageFooter("PageFooter", height, {std::move(number)});
}

void formatPageNumberFooter(engine::Report& report) {
    showPageOfPages(report.textBox("txtPageNumber"), report.pageNumber());
}

void showPageOfPages(engine::TextBox& pageCountBox, int pageNumber) {
    pageCountBox.setOutputFormat("\"Page  " + std::to_string(pageNumber) + " of  \"#");
}

} // namespace qr::reports
