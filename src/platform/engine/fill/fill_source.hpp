#pragma once
// What one run of the filler takes from the report it fills, and the calls it makes back into
// it. The report hands this over for each run, so the filler works on these parts alone and
// never needs the report class itself (the report includes the filler, not the other way
// round).

#include "platform/engine/controls.hpp"
#include "platform/engine/data_control.hpp"
#include "platform/engine/design/report_design.hpp"
#include "platform/engine/fields.hpp"
#include "platform/engine/page/page.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qr::engine {

struct Band;
class Filler;
class TextLayout;

struct FillSource {
    // The report's parts, as built from its design and changed by its handlers.
    const std::string& className;
    const std::string& title;
    const PageSettings& page;
    const std::vector<std::unique_ptr<Section>>& sections;
    const std::vector<std::unique_ptr<Control>>& controls;
    /// By section index; an empty function when the section has no handler.
    const std::vector<std::function<void()>>& formatHandlers;
    const std::vector<std::function<void()>>& beforePrintHandlers;
    Fields& fields;
    DataControl& data;
    RunContext& context;
    /// Where a run onto pages puts them.
    page::Pages& pages;
    /// Set while a run is in progress, and the filler that runs it.
    bool& running;
    const Filler*& current;

    // The report's events, in the order a run raises them.
    std::function<void()> initializeOnce; // initialize() before the object's first run only
    std::function<void()> reportStart;
    std::function<void(bool& eof)> fetchData;
    std::function<void()> reportEnd;

    /// Runs the report a sub-report box shows into `strip` while this report is on page
    /// `pageNumber`, laying its text out with `text`.
    std::function<void(SubReport& box, TextLayout& text, int pageNumber, Band& strip)> runSubReport;
};

} // namespace qr::engine
