#include "reports/common/page_footer.hpp"

#include <string>

namespace qr::reports {

void showPageOfPages(engine::TextBox& pageCountBox, int pageNumber) {
    pageCountBox.setOutputFormat("\"Page  " + std::to_string(pageNumber) + " of  \"#");
}

} // namespace qr::reports
