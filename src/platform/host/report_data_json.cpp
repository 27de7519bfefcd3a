#include "platform/host/report_data_json.hpp"

#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QString>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <set>

namespace qr::host {

namespace {

constexpr const char* kSource = "ReportData";

[[noreturn]] void fail(const std::string& message) {
    throw Error::component(kSource, "Report data: " + message);
}

std::string join(const std::string& prefix, const char* key) {
    return prefix.empty() ? std::string(key) : prefix + "." + key;
}

// Reads members of one JSON object by key path, and refuses keys it was not asked about.
class ObjectReader {
  public:
    ObjectReader(QJsonObject object, std::string path) : m_object(std::move(object)), m_path(std::move(path)) {}

    bool has(const char* key) const { return m_object.contains(QString::fromUtf8(key)); }

    std::string text(const char* key, bool required) {
        auto value = take(key, required);
        if (value.isUndefined()) return {};
        if (!value.isString()) fail(join(m_path, key) + " must be a text");
        return value.toString().toStdString();
    }

    bool boolean(const char* key, bool required) {
        auto value = take(key, required);
        if (value.isUndefined()) return false;
        if (!value.isBool()) fail(join(m_path, key) + " must be true or false");
        return value.toBool();
    }

    std::int32_t wholeNumber(const char* key, bool required) {
        auto value = take(key, required);
        if (value.isUndefined()) return 0;
        const double number = value.toDouble(std::nan(""));
        if (!value.isDouble() || std::floor(number) != number ||
            number < std::numeric_limits<std::int32_t>::min() ||
            number > std::numeric_limits<std::int32_t>::max()) {
            fail(join(m_path, key) + " must be a whole number");
        }
        return static_cast<std::int32_t>(number);
    }

    ObjectReader object(const char* key, bool required) {
        auto value = take(key, required);
        if (value.isUndefined()) return ObjectReader(QJsonObject(), join(m_path, key));
        if (!value.isObject()) fail(join(m_path, key) + " must be an object");
        return ObjectReader(value.toObject(), join(m_path, key));
    }

    /// Every key must have been read.
    void finish() const {
        for (auto it = m_object.begin(); it != m_object.end(); ++it) {
            const std::string key = it.key().toStdString();
            if (!m_read.count(key)) fail("unknown key " + join(m_path, key.c_str()));
        }
    }

  private:
    QJsonValue take(const char* key, bool required) {
        m_read.insert(key);
        const auto value = m_object.value(QString::fromUtf8(key));
        if (value.isUndefined() && required) fail("missing key " + join(m_path, key));
        return value;
    }

    QJsonObject m_object;
    std::string m_path;
    std::set<std::string> m_read;
};

ObjectReader parseDocument(const std::string& json) {
    QJsonParseError error;
    const auto doc = QJsonDocument::fromJson(QByteArray::fromStdString(json), &error);
    if (error.error != QJsonParseError::NoError) {
        fail("not valid JSON at offset " + std::to_string(error.offset) + ": " +
             error.errorString().toStdString());
    }
    if (!doc.isObject()) fail("the document must be a JSON object");
    return ObjectReader(doc.object(), "");
}

void readHeading(ObjectReader& root, ReportHeading& heading, bool required) {
    auto user = root.object("User", required);
    heading.User.name = user.text("Name", required);
    heading.User.phone = user.text("Phone", required);
    heading.User.email = user.text("Email", required);
    user.finish();
    auto company = root.object("Company", required);
    heading.Company.name = company.text("Name", required);
    heading.Company.phone = company.text("Phone", required);
    heading.Company.fax = company.text("Fax", false);
    heading.Company.email = company.text("Email", false);
    company.finish();
    auto vendor = root.object("Vendor", false);
    heading.Vendor.name = vendor.text("Name", false);
    vendor.finish();
    auto job = root.object("Job", required);
    heading.Job.JobID = job.wholeNumber("JobID", required);
    heading.Job.JobName = job.text("JobName", required);
    job.finish();
}

} // namespace

FinalGlassReportData finalGlassReportDataFromJson(const std::string& json) {
    auto root = parseDocument(json);
    FinalGlassReportData data;
    readHeading(root, data, true);
    data.ReportTitle = root.text("ReportTitle", true);
    data.GlassQuery = root.text("GlassQuery", true);
    data.ShowSupplier = root.boolean("ShowSupplier", true);
    const std::string connection = root.text("Connection", true);
    root.finish();
    data.Connection = std::make_shared<db::Connection>(connection);
    return data;
}

ReportHeading reportHeadingFromJson(const std::string& json) {
    auto root = parseDocument(json);
    ReportHeading heading;
    readHeading(root, heading, false);
    root.finish();
    return heading;
}

} // namespace qr::host
