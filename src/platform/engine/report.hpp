#pragma once
// The report object every report class derives from: a design (checked when the object is
// built), a run-time copy of it that handlers change on purpose, the field collection, the data
// control, and the events the engine raises during run():
//
//   initialize()      once per object, before its first run (unbound reports add fields)
//   reportStart()     each run, before any row is read (open data, set captions and margins)
//   fetchData(eof)    once per row; unbound reports fill the fields, or set eof (which comes in
//                     False) when no row is left; bound reports read the current row
//   <Section> Format  before each section instance is laid out (registered with onFormat)
//   <Section> BeforePrint  after layout, on its page, before it is printed (onBeforePrint)
//   PageFooter Format on every page, pageNumber() set to that page
//   reportEnd()       once after the last page, the pages complete (page counts resolved)
//
// A report's .cpp reads: design table, then the constructor registering section handlers,
// then the handlers in the order the engine raises them.
//
//   FinalGlassAR::FinalGlassAR() : Report(kDesign) {
//       onFormat("Detail", &FinalGlassAR::detailFormat);
//       onFormat("PageFooter", &FinalGlassAR::pageFooterFormat);
//   }
//
// A report object is used on one thread at a time.

#include "platform/engine/controls.hpp"
#include "platform/engine/data_control.hpp"
#include "platform/engine/design/report_design.hpp"
#include "platform/engine/fields.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/engine/page/text_measurer.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qr::engine {

class Filler;
struct FillSource;

/// Install the process-wide text measurer. The service installs the one that the output
/// renderers draw with, once at start-up; every report without a measurer of its own shares it
/// (shared_ptr: the process keeps it, runs in progress hold it), on any thread: the engine
/// makes its calls into it one at a time.
void setTextMeasurer(std::shared_ptr<page::TextMeasurer> measurer);
/// The process-wide text measurer (nullptr until installed).
std::shared_ptr<page::TextMeasurer> textMeasurer();

class Report {
  public:
    /// Checks the design (raising qr::Error 999 "ReportDesign" on a fault) and builds the
    /// run-time sections and controls.
    explicit Report(ReportDesign design);
    virtual ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    /// Run the report: raise the events, lay out and paginate every band, produce the pages.
    /// Handler errors pass through (the pages are then incomplete). Raises qr::Error when no
    /// text measurer is installed or the page leaves no room between page header and footer.
    void run();
    /// The pages of the last run.
    const page::Pages& pages() const { return m_pages; }
    /// Drop the pages of the last run (a long report's pages are large; a report object kept
    /// for the next request need not hold them meanwhile).
    void releasePages() { m_pages = page::Pages{}; }
    /// The report's class name, as its design names it ("FinalGlassAR").
    const std::string& className() const { return m_context.reportName; }

    /// Document title carried by the pages.
    const std::string& title() const { return m_title; }
    void setTitle(std::string title) { m_title = std::move(title); }
    /// Paper, orientation, margins, print width; handlers may change them (from reportStart on
    /// they apply to the run that follows).
    PageSettings& pageSettings() { return m_page; }
    const PageSettings& pageSettings() const { return m_page; }
    int printWidth() const { return m_page.printWidth; }
    void setPrintWidth(int twips) { m_page.printWidth = twips; }
    void setOrientation(page::Orientation orientation) { m_page.orientation = orientation; }

    /// Sections and controls by design name; raise qr::Error (999, class name) naming the
    /// report and the name when there is none of that name (or it is of another kind).
    Section& section(std::string_view name);
    Control& control(std::string_view name);
    Label& label(std::string_view name);
    TextBox& textBox(std::string_view name);
    CheckBox& checkBox(std::string_view name);
    SubReport& subReport(std::string_view name);

    Fields& fields() { return m_fields; }
    DataControl& dataControl() { return m_dataControl; }

    /// During a run the number of the page being filled (in a page footer handler: the page
    /// the footer closes); after a run the number of pages.
    int pageNumber() const;

    /// Use `measurer` for this report instead of the process-wide one (tests); it is called
    /// only from the thread running the report.
    void setTextMeasurer(std::shared_ptr<page::TextMeasurer> measurer) {
        m_measurer = std::move(measurer);
    }

  protected:
    virtual void initialize() {}
    virtual void reportStart() {}
    /// Without a handler an unbound report has no rows.
    virtual void fetchData(bool& eof) { eof = true; }
    virtual void reportEnd() {}

    /// Register a handler for a section's Format or BeforePrint event (one per section and
    /// event; a later one replaces it). Raises qr::Error when the section does not exist.
    void onFormat(std::string_view section, std::function<void()> handler);
    void onBeforePrint(std::string_view section, std::function<void()> handler);
    template <class R> void onFormat(std::string_view section, void (R::*handler)()) {
        R* self = static_cast<R*>(this);
        onFormat(section, [self, handler] { (self->*handler)(); });
    }
    template <class R> void onBeforePrint(std::string_view section, void (R::*handler)()) {
        R* self = static_cast<R*>(this);
        onBeforePrint(section, [self, handler] { (self->*handler)(); });
    }

  private:
    template <class T> T& typed(std::string_view name, ControlKind kind);
    [[noreturn]] void missing(const char* what, std::string_view name) const;
    int sectionIndex(std::string_view name) const;
    void buildRuntime(ReportDesign design);
    /// What a run of the filler takes from this report and calls back into.
    FillSource fillSource();

    RunContext m_context;
    std::string m_title;
    PageSettings m_page;
    std::vector<std::unique_ptr<Section>> m_sections;
    std::vector<std::unique_ptr<Control>> m_controls;
    std::unordered_map<std::string, Control*> m_controlsByName;
    std::vector<std::function<void()>> m_formatHandlers;
    std::vector<std::function<void()>> m_beforePrintHandlers;
    Fields m_fields;
    DataControl m_dataControl;
    page::Pages m_pages;
    std::shared_ptr<page::TextMeasurer> m_measurer;
    bool m_initialized = false;
    bool m_running = false;
    int m_lastPageCount = 0;
    const Filler* m_filler = nullptr;
};

} // namespace qr::engine
