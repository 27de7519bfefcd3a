#pragma once
// Report data as JSON, read by key path: one value of a document together with the path that
// leads to it ("Items[3].Part"), so that every error names where the wrong value stands
// ("Items[3].Part.Multiplier must be a number"). The rules are the same for every typed
// method: keys are the host's member names, nested host objects are JSON objects, a host list
// (a Count and a zero-based Item) is a JSON array, dates are ISO 8601 text; keys nobody asks
// for are ignored.
//
// Errors are qr::Error (999, "ReportData") with a description starting "Report data: ".

#include "platform/core/currency.hpp"
#include "platform/core/date.hpp"
#include "platform/core/variant.hpp"

#include <QJsonValue>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qr::host {

/// Whether a member must be there. An optional member that is missing (or null) reads as the
/// empty value of its kind (empty text, 0, false).
enum class Presence { Required, Optional };

/// A read-only view of one JSON value and its key path. Copies are cheap (Qt shares the data).
class JsonNode {
  public:
    /// The root of a document; raises the report data error when the text is not JSON.
    static JsonNode parse(const std::string& json);

    /// The key path of this value ("" for the root).
    const std::string& path() const { return m_path; }
    bool isNull() const { return m_value.isNull(); }
    bool isObject() const { return m_value.isObject(); }
    bool isList() const { return m_value.isArray(); }

    // ---- Members of an object ---------------------------------------------------------------
    // Each raises, naming the key path, when this value is not an object, when a required key
    // is missing ("missing key Job.JobName") or when the value is of another kind.

    /// Whether the key is there (a null value counts as there).
    bool has(std::string_view key) const;
    /// The member itself, of any kind.
    JsonNode member(std::string_view key, Presence presence = Presence::Required) const;
    std::string text(std::string_view key, Presence presence = Presence::Required) const;
    /// A text or null (a host's Null): the key must be there.
    std::optional<std::string> textOrNull(std::string_view key) const;
    double number(std::string_view key, Presence presence = Presence::Required) const;
    /// A whole number in the 32-bit range.
    std::int32_t wholeNumber(std::string_view key, Presence presence = Presence::Required) const;
    bool boolean(std::string_view key, Presence presence = Presence::Required) const;
    /// Money, rounded half to even at four decimals.
    Currency currency(std::string_view key, Presence presence = Presence::Required) const;
    /// ISO 8601 text: "2024-03-15", "2024-03-15T14:05" or "2024-03-15T14:05:30".
    Date date(std::string_view key, Presence presence = Presence::Required) const;
    /// A number (a Double) or a text (a String), for members the report converts itself.
    Variant numberOrText(std::string_view key, Presence presence = Presence::Required) const;
    /// A nested object; an optional one that is missing reads as an empty object.
    JsonNode object(std::string_view key, Presence presence = Presence::Required) const;
    /// A list; its items' paths are the key and the index ("Items[3]").
    std::vector<JsonNode> list(std::string_view key, Presence presence = Presence::Required) const;

    // ---- This value itself --------------------------------------------------------------------

    std::string asText() const;
    double asNumber() const;
    std::int32_t asWholeNumber() const;
    bool asBoolean() const;
    Currency asCurrency() const;
    Date asDate() const;
    Variant asNumberOrText() const;
    /// This value as an object (raises when it is not one).
    const JsonNode& asObject() const;
    std::vector<JsonNode> asList() const;

  private:
    JsonNode(QJsonValue value, std::string path)
        : m_value(std::move(value)), m_path(std::move(path)) {}
    /// The member's node; an undefined value when it is missing and optional.
    JsonNode take(std::string_view key, Presence presence) const;
    bool absent() const { return m_value.isUndefined(); }
    [[noreturn]] void mustBe(const char* what) const;

    QJsonValue m_value;
    std::string m_path;
};

/// Raises the report data error (999, "ReportData", "Report data: " + message).
[[noreturn]] void failReportData(const std::string& message);

} // namespace qr::host
