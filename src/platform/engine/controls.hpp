#pragma once
// The run-time sections and controls of a report: a copy of the design that handlers change on
// purpose (captions, texts, output formats, visibility, widths, bound fields) and that persists
// with the report object from run to run, as the classic report objects did.
//
// Texts set by handlers versus values the engine binds: a bound text box (or check box) takes
// the row's value when its section formats; a text set by a handler after the current row was
// fetched wins over that value for that row, and is printed exactly as set. A value (bound,
// summary, or set with setValue) is printed through the output format. A box bound to a field
// that the row does not have keeps the text it has (designs bind some boxes that handlers fill).
//
// Figures a handler computes are shown with setNumber (labels and text boxes alike): the text
// is the number through the given format, and the number and format stay with the printed
// item, so outputs that hold numbers (the workbook) get the figure and not only its text.

#include "platform/core/number_format.hpp"
#include "platform/core/variant.hpp"
#include "platform/engine/design/report_design.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qr::engine {

class Report;
class BandBuilder;
class Filler;

/// What controls need to know about the report and run they are part of.
struct RunContext {
    std::string reportName; ///< the report's class name, for messages
    long rowSerial = 0;     ///< increases each time a row is fetched
};

/// A control of a running report. Accessors of the kinds below add what each kind shows.
class Control {
  public:
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return m_settings.name; }
    ControlKind kind() const { return m_settings.kind; }
    /// Design name of the section the control belongs to.
    const std::string& sectionName() const { return m_section; }

    bool visible() const { return m_settings.visible; }
    void setVisible(bool visible) { m_settings.visible = visible; }
    int left() const { return m_settings.rect.x; }
    int top() const { return m_settings.rect.y; }
    int width() const { return m_settings.rect.width; }
    int height() const { return m_settings.rect.height; }
    void setLeft(int twips) { m_settings.rect.x = twips; }
    void setTop(int twips) { m_settings.rect.y = twips; }
    void setWidth(int twips) { m_settings.rect.width = twips; }
    void setHeight(int twips) { m_settings.rect.height = twips; }
    const page::FontSpec& font() const { return m_settings.font; }
    void setFont(const page::FontSpec& font);
    page::Align alignment() const { return m_settings.align; }
    void setAlignment(page::Align align) { m_settings.align = align; }
    /// The control's current settings (its design as changed by handlers so far).
    const ControlDesign& settings() const { return m_settings; }

  protected:
    /// A number a handler showed through a format, as the printed item carries it.
    struct ShownNumber {
        double value = 0;
        std::string format;
    };

    Control(ControlDesign design, std::string section, const RunContext& context)
        : m_settings(std::move(design)), m_section(std::move(section)), m_context(&context) {}

    /// Record that a handler changed what the control shows.
    void touch() { ++m_revision; }
    /// `value` through the number format `pattern` (errors name the report and the control),
    /// remembering the number behind the text when there is one.
    std::string showNumber(const Variant& value, std::string_view pattern);

    ControlDesign m_settings;
    std::string m_section;
    const RunContext* m_context;
    unsigned m_revision = 0;
    int m_fontIndex = -1;                ///< index into the run's font table; -1 until resolved
    std::optional<ShownNumber> m_number; ///< what setNumber showed, until a text replaces it

    friend class BandBuilder;
    friend class Filler;
};

class Label : public Control {
  public:
    Label(ControlDesign design, std::string section, const RunContext& context)
        : Control(std::move(design), std::move(section), context) {}
    const std::string& caption() const { return m_settings.caption; }
    void setCaption(std::string caption);
    /// Show `value` through the number format `pattern` ("$###,###.00", "Currency", "" for the
    /// general format). The printed label keeps the number and the format; a value that is no
    /// number (Null, text) shows as that format prints it, as text.
    void setNumber(const Variant& value, std::string_view pattern);
};

class TextBox : public Control {
  public:
    TextBox(ControlDesign design, std::string section, const RunContext& context);

    /// The text. In a Format handler a bound or summary box gives its value as plain text
    /// (Null as ""); from layout on (BeforePrint handlers) the text as printed, output format
    /// applied. A text set by a handler is returned as set.
    const std::string& text() const;
    /// Show `text` exactly as given (no output format) for the current row.
    void setText(std::string text);
    /// Show `value` through the number format `pattern` for the current row, as
    /// Label::setNumber does; the box's own output format is left as it is.
    void setNumber(const Variant& value, std::string_view pattern);
    /// The value behind the text: the bound field's value, the summary, or what setValue set.
    const Variant& value() const { return m_value; }
    /// Show `value` through the output format for the current row.
    void setValue(Variant value);

    const std::string& outputFormat() const { return m_settings.outputFormat; }
    /// Change the output format; raises qr::Error naming the report's control when the pattern
    /// does not parse.
    void setOutputFormat(std::string pattern);
    const std::string& dataField() const { return m_settings.dataField; }
    /// Bind to another field (or unbind with ""), from the next row on.
    void setDataField(std::string field);
    const Summary& summary() const { return m_settings.summary; }

  private:
    enum class TextSource { Fixed, RawValue, Formatted };

    /// The engine's binding: the row's (or the summary's) value for this section instance.
    void bindValue(const Variant& value);
    /// Whether a handler set the text or value since the current row was fetched.
    bool setForCurrentRow() const { return m_setAt == m_context->rowSerial; }
    /// Apply the output format when the text comes from the value; returns the printed text.
    const std::string& finalText();
    /// Printed text of a value under a pattern: number formats for numbers and number text,
    /// other text as is, Null and Empty as "".
    std::string formatValue(const Variant& value) const;

    Variant m_value;
    mutable std::string m_text;
    mutable TextSource m_source = TextSource::Fixed;
    long m_setAt = -1;
    std::optional<NumberFormat> m_format;
    int m_fieldIndex = -2;  // -2: not looked up yet, -1: no such field
    int m_summarySlot = -1; // the run's summary this box shows

    friend class BandBuilder;
    friend class Filler;
};

class CheckBox : public Control {
  public:
    CheckBox(ControlDesign design, std::string section, const RunContext& context)
        : Control(std::move(design), std::move(section), context) {}
    bool checked() const { return m_settings.checked; }
    /// Check or clear the box for the current row (wins over a bound value).
    void setChecked(bool checked);
    const std::string& caption() const { return m_settings.caption; }
    void setCaption(std::string caption);
    const std::string& dataField() const { return m_settings.dataField; }
    void setDataField(std::string field);

  private:
    long m_setAt = -1;
    int m_fieldIndex = -2; // -2: not looked up yet, -1: no such field

    friend class BandBuilder;
    friend class Filler;
};

class Line : public Control {
  public:
    Line(ControlDesign design, std::string section, const RunContext& context)
        : Control(std::move(design), std::move(section), context) {}
};

class Shape : public Control {
  public:
    Shape(ControlDesign design, std::string section, const RunContext& context)
        : Control(std::move(design), std::move(section), context) {}
};

/// A box that runs another report inside its section each time the section formats; the
/// sub-report's bands become part of the section and grow it.
class SubReport : public Control {
  public:
    SubReport(ControlDesign design, std::string section, const RunContext& context);
    ~SubReport() override;

    Report* report() const { return m_report; }
    /// Run `report` here; the caller keeps it alive while it is set. nullptr clears the box.
    void setReport(Report* report);
    /// Run `report` here and own it (released when replaced or cleared).
    void setReport(std::unique_ptr<Report> report);

  private:
    Report* m_report = nullptr;
    std::unique_ptr<Report> m_owned;
};

/// A section of a running report.
class Section {
  public:
    Section(SectionDesign design, int index);
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;

    const std::string& name() const { return m_settings.name; }
    SectionKind kind() const { return m_settings.kind; }
    bool visible() const { return m_settings.visible; }
    void setVisible(bool visible) { m_settings.visible = visible; }
    int height() const { return m_settings.height; }
    void setHeight(int twips) { m_settings.height = twips; }
    bool canGrow() const { return m_settings.canGrow; }
    void setCanGrow(bool canGrow) { m_settings.canGrow = canGrow; }
    bool keepTogether() const { return m_settings.keepTogether; }
    void setKeepTogether(bool keep) { m_settings.keepTogether = keep; }
    bool newPageBefore() const { return m_settings.newPageBefore; }
    void setNewPageBefore(bool on) { m_settings.newPageBefore = on; }
    bool newPageAfter() const { return m_settings.newPageAfter; }
    void setNewPageAfter(bool on) { m_settings.newPageAfter = on; }
    /// Group headers: the field that starts a new group (read when the rows start, so a
    /// change in reportStart applies to that run).
    const std::string& groupField() const { return m_settings.groupField; }
    void setGroupField(std::string field) { m_settings.groupField = std::move(field); }
    /// Group footers: the header they close.
    const std::string& header() const { return m_settings.header; }
    /// The section's settings (design as changed by handlers; controls are listed separately).
    const SectionDesign& settings() const { return m_settings; }
    /// Controls in drawing order.
    const std::vector<Control*>& controls() const { return m_controls; }
    /// Position in the design's section list.
    int index() const { return m_index; }

  private:
    SectionDesign m_settings;
    std::vector<Control*> m_controls;
    int m_index;

    friend class Report;
};

} // namespace qr::engine
