#pragma once
// Small helpers for report design tables: static captions numbered the way the designer
// numbered them (Label1, Label2, ...), and the value boxes the handlers fill.

#include "platform/engine/design/report_design.hpp"

#include <string>

namespace qr::reports {

/// Hands out the static captions of one design, named Label1, Label2, ... in the order they
/// are made, all in one font size.
class CaptionMaker {
  public:
    explicit CaptionMaker(double size) : m_size(size) {}

    engine::ControlDesign operator()(page::Rect rect, std::string text);
    engine::ControlDesign bold(page::Rect rect, std::string text);
    engine::ControlDesign right(page::Rect rect, std::string text);
    double size() const { return m_size; }
    /// The size of the captions made from here on (a section in another size).
    void setSize(double size) { m_size = size; }

  private:
    double m_size;
    int m_count = 0;
};

/// A label that a handler fills, left-aligned, showing `designText` until it does.
engine::ControlDesign textLabel(std::string name, page::Rect rect, double size,
                                std::string designText = "");
/// A right-aligned label that a handler fills with a figure.
engine::ControlDesign figureLabel(std::string name, page::Rect rect, double size,
                                  std::string designText = "xx");
/// A right-aligned text box bound to `column`, shown through `format` ("" for none).
engine::ControlDesign boundFigure(std::string name, page::Rect rect, double size,
                                  std::string column, std::string format);

} // namespace qr::reports
