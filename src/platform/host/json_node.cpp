#include "platform/host/json_node.hpp"

#include "platform/core/error.hpp"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QString>
#include <cmath>
#include <cstdio>
#include <limits>

namespace qr::host {

namespace {

std::string memberPath(const std::string& parent, std::string_view key) {
    std::string path = parent;
    if (!path.empty())
        path += '.';
    path += key;
    return path;
}

/// "HH:MM" or "HH:MM:SS" into hour, minute and second; false for other text.
bool isoTime(const std::string& text, int& hour, int& minute, int& second) {
    int end = 0;
    second = 0;
    if (text.size() == 8)
        return std::sscanf(text.c_str(), "%2d:%2d:%2d%n", &hour, &minute, &second, &end) == 3 &&
               end == 8;
    return text.size() == 5 && std::sscanf(text.c_str(), "%2d:%2d%n", &hour, &minute, &end) == 2 &&
           end == 5;
}

/// "YYYY-MM-DD", optionally followed by "T" (or a blank) and the time of day.
std::optional<Date> isoDate(const std::string& text) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    int used = 0;
    if (std::sscanf(text.c_str(), "%4d-%2d-%2d%n", &year, &month, &day, &used) != 3 || used != 10)
        return std::nullopt;
    if (text.size() > 10 &&
        ((text[10] != 'T' && text[10] != ' ') || !isoTime(text.substr(11), hour, minute, second)))
        return std::nullopt;
    try {
        return Date::fromParts(year, month, day, hour, minute, second);
    } catch (const Error&) {
        return std::nullopt; // a day or time that does not exist
    }
}

} // namespace

void failReportData(const std::string& message) {
    throw Error::component("ReportData", "Report data: " + message);
}

JsonNode JsonNode::parse(const std::string& json) {
    QJsonParseError error;
    const auto doc = QJsonDocument::fromJson(QByteArray::fromStdString(json), &error);
    if (error.error != QJsonParseError::NoError) {
        failReportData("not valid JSON at offset " + std::to_string(error.offset) + ": " +
                       error.errorString().toStdString());
    }
    return JsonNode(doc.isArray() ? QJsonValue(doc.array()) : QJsonValue(doc.object()), "");
}

void JsonNode::mustBe(const char* what) const {
    if (m_path.empty())
        failReportData(std::string("the document must be ") + what);
    failReportData(m_path + " must be " + what);
}

const JsonNode& JsonNode::asObject() const {
    if (!m_value.isObject())
        mustBe(m_path.empty() ? "a JSON object" : "an object");
    return *this;
}

bool JsonNode::has(std::string_view key) const {
    return asObject().m_value.toObject().contains(QString::fromUtf8(key.data(), key.size()));
}

JsonNode JsonNode::take(std::string_view key, Presence presence) const {
    const QJsonValue value =
        asObject().m_value.toObject().value(QString::fromUtf8(key.data(), key.size()));
    std::string path = memberPath(m_path, key);
    if (value.isUndefined() && presence == Presence::Required)
        failReportData("missing key " + path);
    if (value.isNull() && presence == Presence::Optional)
        return JsonNode(QJsonValue(QJsonValue::Undefined), std::move(path));
    return JsonNode(value, std::move(path));
}

JsonNode JsonNode::member(std::string_view key, Presence presence) const {
    return take(key, presence);
}

std::string JsonNode::text(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? std::string() : node.asText();
}

std::optional<std::string> JsonNode::textOrNull(std::string_view key) const {
    const JsonNode node = take(key, Presence::Required);
    if (node.isNull())
        return std::nullopt;
    return node.asText();
}

double JsonNode::number(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? 0.0 : node.asNumber();
}

std::int32_t JsonNode::wholeNumber(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? 0 : node.asWholeNumber();
}

bool JsonNode::boolean(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? false : node.asBoolean();
}

Currency JsonNode::currency(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? Currency() : node.asCurrency();
}

Date JsonNode::date(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? Date() : node.asDate();
}

Variant JsonNode::numberOrText(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? Variant() : node.asNumberOrText();
}

JsonNode JsonNode::object(std::string_view key, Presence presence) const {
    JsonNode node = take(key, presence);
    if (node.absent())
        return JsonNode(QJsonObject(), node.m_path);
    node.asObject();
    return node;
}

std::vector<JsonNode> JsonNode::list(std::string_view key, Presence presence) const {
    const JsonNode node = take(key, presence);
    return node.absent() ? std::vector<JsonNode>() : node.asList();
}

std::string JsonNode::asText() const {
    if (!m_value.isString())
        mustBe("a text");
    return m_value.toString().toStdString();
}

double JsonNode::asNumber() const {
    if (!m_value.isDouble())
        mustBe("a number");
    return m_value.toDouble();
}

std::int32_t JsonNode::asWholeNumber() const {
    const double number = m_value.toDouble(std::nan(""));
    if (!m_value.isDouble() || std::floor(number) != number ||
        number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
        mustBe("a whole number");
    }
    return static_cast<std::int32_t>(number);
}

bool JsonNode::asBoolean() const {
    if (!m_value.isBool())
        mustBe("true or false");
    return m_value.toBool();
}

Currency JsonNode::asCurrency() const {
    const double amount = asNumber();
    try {
        return Currency::fromDouble(amount);
    } catch (const Error&) {
        mustBe("an amount of money within the currency range");
    }
}

Date JsonNode::asDate() const {
    const std::optional<Date> date = m_value.isString() ? isoDate(asText()) : std::nullopt;
    if (!date)
        mustBe("a date (ISO 8601 text such as 2024-03-15 or 2024-03-15T14:05)");
    return *date;
}

Variant JsonNode::asNumberOrText() const {
    if (m_value.isDouble())
        return Variant(m_value.toDouble());
    if (m_value.isString())
        return Variant(m_value.toString().toStdString());
    mustBe("a number or a text");
}

std::vector<JsonNode> JsonNode::asList() const {
    if (!m_value.isArray())
        mustBe(m_path.empty() ? "a JSON list" : "a list");
    const QJsonArray array = m_value.toArray();
    std::vector<JsonNode> items;
    items.reserve(static_cast<std::size_t>(array.size()));
    for (qsizetype i = 0; i < array.size(); ++i)
        items.push_back(JsonNode(array.at(i), m_path + "[" + std::to_string(i) + "]"));
    return items;
}

} // namespace qr::host
