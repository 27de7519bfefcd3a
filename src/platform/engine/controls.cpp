#include "platform/engine/controls.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/engine/report.hpp"

namespace qr::engine {

namespace {

constexpr int kUnresolvedField = -2;

NumberFormat parseFormat(const std::string& pattern, const RunContext& context,
                         const std::string& control) {
    try {
        return NumberFormat::parse(pattern);
    } catch (const Error& e) {
        throw Error(e.number(), context.reportName,
                    context.reportName + ": output format \"" + pattern + "\" of " + control +
                        ": " + e.description());
    }
}

} // namespace

void Control::setFont(const page::FontSpec& font) {
    m_settings.font = font;
    m_fontIndex = -1;
    touch();
}

std::string Control::showNumber(const Variant& value, std::string_view pattern) {
    try {
        std::string text = formatValue(value, pattern);
        if (auto number = shownNumber(value))
            m_number = ShownNumber{*number, std::string(pattern)};
        else
            m_number.reset();
        return text;
    } catch (const Error& e) {
        const std::string& report = m_context->reportName;
        throw Error(e.number(), report,
                    report + ": number format \"" + std::string(pattern) + "\" of " + name() +
                        ": " + e.description());
    }
}

void Label::setCaption(std::string caption) {
    m_settings.caption = std::move(caption);
    m_number.reset();
    touch();
}

void Label::setNumber(const Variant& value, std::string_view pattern) {
    m_settings.caption = showNumber(value, pattern);
    touch();
}

// ---- TextBox --------------------------------------------------------------------------------

TextBox::TextBox(ControlDesign design, std::string section, const RunContext& context)
    : Control(std::move(design), std::move(section), context), m_text(m_settings.caption) {
    if (!m_settings.outputFormat.empty())
        m_format = parseFormat(m_settings.outputFormat, context, m_settings.name);
}

const std::string& TextBox::text() const {
    if (m_source == TextSource::RawValue) {
        m_text = (m_value.isNull() || m_value.isEmpty()) ? std::string()
                 : m_value.type() == VarType::String     ? m_value.asString()
                                                         : toText(m_value);
    }
    return m_text;
}

void TextBox::setText(std::string text) {
    m_text = std::move(text);
    m_number.reset();
    m_source = TextSource::Fixed;
    m_setAt = m_context->rowSerial;
    touch();
}

void TextBox::setNumber(const Variant& value, std::string_view pattern) {
    m_text = showNumber(value, pattern);
    m_source = TextSource::Fixed;
    m_setAt = m_context->rowSerial;
    touch();
}

void TextBox::setValue(Variant value) {
    m_number.reset();
    m_value = std::move(value);
    m_source = TextSource::RawValue;
    m_setAt = m_context->rowSerial;
    touch();
}

void TextBox::setOutputFormat(std::string pattern) {
    if (pattern.empty())
        m_format.reset();
    else
        m_format = parseFormat(pattern, *m_context, m_settings.name);
    m_settings.outputFormat = std::move(pattern);
    // A text already formatted with the old pattern is formatted again with the new one.
    if (m_source == TextSource::Formatted)
        m_source = TextSource::RawValue;
    touch();
}

void TextBox::setDataField(std::string field) {
    m_settings.dataField = std::move(field);
    m_fieldIndex = kUnresolvedField;
}

void TextBox::bindValue(const Variant& value) {
    m_number.reset();
    m_value = value;
    m_source = TextSource::RawValue;
}

std::string TextBox::formatValue(const Variant& value) const {
    if (value.isNull() || value.isEmpty())
        return {};
    if (value.type() == VarType::String && !m_format)
        return value.asString();
    if (m_format && (value.isNumeric() || value.type() == VarType::String))
        return m_format->format(value);
    return toText(value);
}

const std::string& TextBox::finalText() {
    if (m_source == TextSource::RawValue) {
        m_text = formatValue(m_value);
        m_source = TextSource::Formatted;
    }
    return m_text;
}

// ---- CheckBox -------------------------------------------------------------------------------

void CheckBox::setChecked(bool checked) {
    m_settings.checked = checked;
    m_setAt = m_context->rowSerial;
    touch();
}

void CheckBox::setCaption(std::string caption) {
    m_settings.caption = std::move(caption);
    touch();
}

void CheckBox::setDataField(std::string field) {
    m_settings.dataField = std::move(field);
    m_fieldIndex = kUnresolvedField;
}

// ---- SubReport ------------------------------------------------------------------------------

SubReport::SubReport(ControlDesign design, std::string section, const RunContext& context)
    : Control(std::move(design), std::move(section), context) {}

SubReport::~SubReport() = default;

void SubReport::setReport(Report* report) {
    if (report != m_owned.get())
        m_owned.reset();
    m_report = report;
}

void SubReport::setReport(std::unique_ptr<Report> report) {
    m_owned = std::move(report);
    m_report = m_owned.get();
}

// ---- Section --------------------------------------------------------------------------------

Section::Section(SectionDesign design, int index) : m_settings(std::move(design)), m_index(index) {}

} // namespace qr::engine
