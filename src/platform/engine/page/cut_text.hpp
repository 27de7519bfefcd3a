#pragma once
// A text the engine could not print whole in its box: a line wider than a box that does not
// wrap, or lines below the bottom of a box that may not grow. The run lists every such text
// with its page, so a layout that loses part of a value is found instead of printing it short
// without a word.

#include <string>

namespace qr::page {

struct CutText {
    int page = 0;         ///< 1-based number of the page it printed on
    std::string control;  ///< design name of the control
    std::string section;  ///< design name of the section that printed it
    std::string text;     ///< the whole text, line breaks as "\n"
    std::string printed;  ///< what was printed, its lines joined by "\n"
    bool clipped = false; ///< the design lets this control cut its text (a fixed one-line box)
    bool operator==(const CutText&) const = default;
};

} // namespace qr::page
