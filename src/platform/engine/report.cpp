#include "platform/engine/report.hpp"

#include "platform/core/error.hpp"
#include "platform/engine/fill/fill_source.hpp"
#include "platform/engine/fill/filler.hpp"

#include <mutex>

namespace qr::engine {

namespace {

std::mutex& measurerMutex() {
    static std::mutex mutex;
    return mutex;
}

std::shared_ptr<page::TextMeasurer>& processMeasurer() {
    static std::shared_ptr<page::TextMeasurer> measurer;
    return measurer;
}

/// The process-wide measurer, shared by reports on every thread: calls into it are taken one
/// at a time. (Each run caches its widths, so this is one lock per distinct string.)
class SerialisedMeasurer final : public page::TextMeasurer {
  public:
    explicit SerialisedMeasurer(std::shared_ptr<page::TextMeasurer> inner)
        : m_inner(std::move(inner)) {}
    int width(const page::FontSpec& font, std::string_view text) override {
        std::lock_guard lock(mutex());
        return m_inner->width(font, text);
    }
    page::FontMetrics metrics(const page::FontSpec& font) override {
        std::lock_guard lock(mutex());
        return m_inner->metrics(font);
    }

  private:
    static std::mutex& mutex() {
        static std::mutex shared;
        return shared;
    }
    std::shared_ptr<page::TextMeasurer> m_inner;
};

std::unique_ptr<Control> makeControl(ControlDesign design, const std::string& section,
                                     const RunContext& context) {
    switch (design.kind) {
    case ControlKind::Label:
        return std::make_unique<Label>(std::move(design), section, context);
    case ControlKind::TextBox:
        return std::make_unique<TextBox>(std::move(design), section, context);
    case ControlKind::CheckBox:
        return std::make_unique<CheckBox>(std::move(design), section, context);
    case ControlKind::Line:
        return std::make_unique<Line>(std::move(design), section, context);
    case ControlKind::Shape:
        return std::make_unique<Shape>(std::move(design), section, context);
    case ControlKind::SubReport:
        return std::make_unique<SubReport>(std::move(design), section, context);
    }
    return nullptr;
}

} // namespace

void setTextMeasurer(std::shared_ptr<page::TextMeasurer> measurer) {
    std::lock_guard lock(measurerMutex());
    processMeasurer() = std::move(measurer);
}

std::shared_ptr<page::TextMeasurer> textMeasurer() {
    std::lock_guard lock(measurerMutex());
    return processMeasurer();
}

Report::Report(ReportDesign design) : m_fields(design.name), m_dataControl(design.name) {
    checkDesign(design);
    m_context.reportName = design.name;
    m_title = design.title;
    m_page = design.page;
    buildRuntime(std::move(design));
}

Report::~Report() = default;

void Report::buildRuntime(ReportDesign design) {
    int index = 0;
    for (SectionDesign& sectionDesign : design.sections) {
        std::vector<ControlDesign> controls = std::move(sectionDesign.controls);
        sectionDesign.controls.clear();
        auto section = std::make_unique<Section>(std::move(sectionDesign), index++);
        for (ControlDesign& controlDesign : controls) {
            std::unique_ptr<Control> control =
                makeControl(std::move(controlDesign), section->name(), m_context);
            m_controlsByName.emplace(control->name(), control.get());
            section->m_controls.push_back(control.get());
            m_controls.push_back(std::move(control));
        }
        m_sections.push_back(std::move(section));
    }
    m_formatHandlers.resize(m_sections.size());
    m_beforePrintHandlers.resize(m_sections.size());
}

void Report::run() {
    if (m_running)
        throw Error(errc::kComponent, className(),
                    className() + " is already running (a report cannot contain itself).");
    std::shared_ptr<page::TextMeasurer> measurer = m_measurer;
    if (!measurer) {
        std::shared_ptr<page::TextMeasurer> shared = textMeasurer();
        if (!shared)
            throw Error(errc::kComponent, className(),
                        "No text measurer is installed; " + className() + " cannot lay out text.");
        measurer = std::make_shared<SerialisedMeasurer>(std::move(shared));
    }
    m_pages = page::Pages{};
    TextLayout text(*measurer, m_pages);
    Filler filler(fillSource(), text);
    filler.runPages();
    m_lastPageCount = static_cast<int>(m_pages.pages.size());
}

FillSource Report::fillSource() {
    return FillSource{m_context.reportName,
                      m_title,
                      m_page,
                      m_sections,
                      m_controls,
                      m_formatHandlers,
                      m_beforePrintHandlers,
                      m_fields,
                      m_dataControl,
                      m_context,
                      m_pages,
                      m_running,
                      m_filler,
                      [this] {
                          if (!m_initialized) {
                              m_initialized = true;
                              initialize();
                          }
                      },
                      [this] { reportStart(); },
                      [this](bool& eof) { fetchData(eof); },
                      [this] { reportEnd(); },
                      [this](SubReport& box, TextLayout& text, int pageNumber, Band& strip) {
                          Report& child = *box.report();
                          if (child.m_running)
                              throw Error(errc::kComponent, className(),
                                          className() + ": the sub-report " + box.name() +
                                              " runs " + child.className() +
                                              ", which is already running.");
                          Filler filler(child.fillSource(), text);
                          filler.runStrip(pageNumber, strip);
                      }};
}

int Report::pageNumber() const {
    return m_filler ? m_filler->pageNumber() : m_lastPageCount;
}

[[noreturn]] void Report::missing(const char* what, std::string_view name) const {
    throw Error(errc::kComponent, className(),
                className() + " has no " + what + " named " + std::string(name) + ".");
}

int Report::sectionIndex(std::string_view name) const {
    for (const auto& s : m_sections) {
        if (s->name() == name)
            return s->index();
    }
    return -1;
}

Section& Report::section(std::string_view name) {
    const int index = sectionIndex(name);
    if (index < 0)
        missing("section", name);
    return *m_sections[index];
}

Control& Report::control(std::string_view name) {
    auto it = m_controlsByName.find(std::string(name));
    if (it == m_controlsByName.end())
        missing("control", name);
    return *it->second;
}

template <class T> T& Report::typed(std::string_view name, ControlKind kind) {
    Control& c = control(name);
    if (c.kind() != kind)
        throw Error(errc::kComponent, className(),
                    className() + ": " + std::string(name) + " is a " + controlKindName(c.kind()) +
                        ", not a " + controlKindName(kind) + ".");
    return static_cast<T&>(c);
}

Label& Report::label(std::string_view name) {
    return typed<Label>(name, ControlKind::Label);
}
TextBox& Report::textBox(std::string_view name) {
    return typed<TextBox>(name, ControlKind::TextBox);
}
CheckBox& Report::checkBox(std::string_view name) {
    return typed<CheckBox>(name, ControlKind::CheckBox);
}
SubReport& Report::subReport(std::string_view name) {
    return typed<SubReport>(name, ControlKind::SubReport);
}

void Report::onFormat(std::string_view section, std::function<void()> handler) {
    const int index = sectionIndex(section);
    if (index < 0)
        missing("section", section);
    m_formatHandlers[index] = std::move(handler);
}

void Report::onBeforePrint(std::string_view section, std::function<void()> handler) {
    const int index = sectionIndex(section);
    if (index < 0)
        missing("section", section);
    m_beforePrintHandlers[index] = std::move(handler);
}

} // namespace qr::engine
