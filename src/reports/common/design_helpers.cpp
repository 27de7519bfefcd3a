#include "reports/common/design_helpers.hpp"

namespace qr::reports {

engine::ControlDesign CaptionMaker::operator()(page::Rect rect, std::string text) {
    return engine::label("Label" + std::to_string(++m_count), rect, std::move(text)).size(m_size);
}

engine::ControlDesign CaptionMaker::bold(page::Rect rect, std::string text) {
    return (*this)(rect, std::move(text)).bold();
}

engine::ControlDesign CaptionMaker::right(page::Rect rect, std::string text) {
    return (*this)(rect, std::move(text)).alignRight();
}

engine::ControlDesign textLabel(std::string name, page::Rect rect, double size,
                                std::string designText) {
    return engine::label(std::move(name), rect, std::move(designText)).size(size);
}

engine::ControlDesign figureLabel(std::string name, page::Rect rect, double size,
                                  std::string designText) {
    return engine::label(std::move(name), rect, std::move(designText)).size(size).alignRight();
}

engine::ControlDesign boundFigure(std::string name, page::Rect rect, double size,
                                  std::string column, std::string format) {
    auto box = engine::textBox(std::move(name), rect, std::move(column)).size(size).alignRight();
    if (!format.empty())
        box.format(std::move(format));
    return box;
}

} // namespace qr::reports
