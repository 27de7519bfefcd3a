#include "platform/db/field_values.hpp"

#include "platform/core/text.hpp"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace qr::db {
namespace {

bool endsWith(std::string_view text, std::string_view suffix) {
    return text.size() > suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

bool isIntegerType(int id) {
    switch (id) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isFloatType(int id) {
    return id == QMetaType::Double || id == QMetaType::Float;
}

/// A whole number as a Long when it fits, else as a Double (the classic library gave large
/// integers as Decimal; a Double keeps them numeric).
Variant wholeNumber(long long value) {
    if (value >= std::numeric_limits<std::int32_t>::min() &&
        value <= std::numeric_limits<std::int32_t>::max())
        return Variant(static_cast<std::int32_t>(value));
    return Variant(static_cast<double>(value));
}

/// A number written as text by a driver (PostgreSQL NUMERIC, ODBC in high precision); C locale.
bool parseNumberText(const QString& text, double& out) {
    const QByteArray bytes = text.trimmed().toLatin1();
    if (bytes.isEmpty())
        return false;
    char* end = nullptr;
    out = std::strtod(bytes.constData(), &end);
    return end == bytes.constData() + bytes.size();
}

bool parseIntegerText(const QString& text, long long& out) {
    bool ok = false;
    out = text.trimmed().toLongLong(&ok);
    return ok;
}

Variant fromDate(const QDate& d, const QTime& t = QTime(0, 0)) {
    return Variant(Date::fromParts(d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second()));
}

Variant natural(const QVariant& raw, QMetaType declared) {
    const int id = raw.metaType().id();
    if (id == QMetaType::Bool)
        return Variant(raw.toBool());
    if (isIntegerType(id))
        return wholeNumber(raw.toLongLong());
    if (isFloatType(id))
        return Variant(raw.toDouble());
    if (id == QMetaType::QDate)
        return fromDate(raw.toDate());
    if (id == QMetaType::QDateTime) {
        const QDateTime dt = raw.toDateTime();
        return fromDate(dt.date(), dt.time());
    }
    if (id == QMetaType::QTime) {
        const QTime t = raw.toTime();
        return Variant(Date::fromParts(1899, 12, 30, t.hour(), t.minute(), t.second()));
    }
    if (id == QMetaType::QString) {
        // A NUMERIC result (a SUM over a money column) arrives as text in high precision.
        double number = 0;
        if (isFloatType(declared.id()) && parseNumberText(raw.toString(), number))
            return Variant(number);
        return Variant(raw.toString().toStdString());
    }
    if (id == QMetaType::QByteArray)
        return Variant(raw.toByteArray().toStdString());
    return Variant(raw.toString().toStdString());
}

Variant asMoney(const QVariant& raw, QMetaType declared) {
    if (isIntegerType(raw.metaType().id())) {
        const long long whole = raw.toLongLong();
        if (std::llabs(whole) < std::numeric_limits<std::int64_t>::max() / Currency::kScale)
            return Variant(Currency::fromTicks(whole * Currency::kScale));
    }
    std::string text = moneyText(raw);
    if (!text.empty()) {
        if (auto value = Currency::parseDecimal(text))
            return Variant(*value);
    }
    return natural(raw, declared);
}

Variant asDate(const QVariant& raw, QMetaType declared) {
    if (raw.metaType().id() == QMetaType::QString) {
        Date date;
        if (parseIsoDate(raw.toString().toStdString(), date))
            return Variant(date);
    }
    return natural(raw, declared);
}

Variant asBoolean(const QVariant& raw, QMetaType declared) {
    const int id = raw.metaType().id();
    if (id == QMetaType::Bool)
        return Variant(raw.toBool());
    if (isIntegerType(id))
        return Variant(raw.toLongLong() != 0);
    if (id == QMetaType::QString) {
        const std::string text = lowerCase(raw.toString().trimmed().toStdString());
        if (text == "1" || text == "true" || text == "t" || text == "-1")
            return Variant(true);
        if (text == "0" || text == "false" || text == "f")
            return Variant(false);
    }
    return natural(raw, declared);
}

Variant asInteger(const QVariant& raw, QMetaType declared) {
    const int id = raw.metaType().id();
    if (isIntegerType(id))
        return wholeNumber(raw.toLongLong());
    if (isFloatType(id)) {
        const double d = raw.toDouble();
        if (std::nearbyint(d) == d && std::fabs(d) < 9.2e18)
            return wholeNumber(static_cast<long long>(d));
    }
    if (id == QMetaType::QString) {
        long long whole = 0;
        if (parseIntegerText(raw.toString(), whole))
            return wholeNumber(whole);
    }
    return natural(raw, declared);
}

Variant asNumber(const QVariant& raw, QMetaType declared) {
    const int id = raw.metaType().id();
    if (isIntegerType(id) || isFloatType(id))
        return Variant(raw.toDouble());
    if (id == QMetaType::QString) {
        double number = 0;
        if (parseNumberText(raw.toString(), number))
            return Variant(number);
    }
    return natural(raw, declared);
}

Variant asText(const QVariant& raw, QMetaType declared) {
    const int id = raw.metaType().id();
    if (id == QMetaType::QString || isIntegerType(id) || isFloatType(id))
        return Variant(raw.toString().toStdString());
    return natural(raw, declared);
}

} // namespace

ColumnKind columnKindOf(std::string_view columnName) {
    const std::string name = lowerCase(columnName);
    // Host columns that carry no type prefix although their first letter looks like one.
    if (name == "defaultfinish" || name == "code")
        return ColumnKind::Text;
    if (name == "brake")
        return ColumnKind::Boolean;
    if (endsWith(name, "override"))
        return ColumnKind::Money;
    if (endsWith(name, "id"))
        return ColumnKind::Integer;
    if (name.size() < 2)
        return ColumnKind::Natural;
    switch (name[0]) {
    case 's':
    case 'm':
        return ColumnKind::Text;
    case 'p':
        return ColumnKind::Number;
    case 'c':
        return ColumnKind::Money;
    case 'i':
        return ColumnKind::Integer;
    case 'd':
        return ColumnKind::Date;
    case 'b':
        return ColumnKind::Boolean;
    default:
        return ColumnKind::Natural;
    }
}

std::string moneyText(const QVariant& raw) {
    const int id = raw.metaType().id();
    if (isFloatType(id)) {
        const double d = raw.toDouble();
        if (!std::isfinite(d))
            return {};
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.15g", d);
        std::string text(buffer);
        // Exponent forms only occur for amounts no money column holds; leave them unread.
        if (text.find_first_of("eE") != std::string::npos)
            return {};
        return text;
    }
    if (isIntegerType(id))
        return std::to_string(raw.toLongLong());
    if (id == QMetaType::QString)
        return raw.toString().trimmed().toStdString();
    return {};
}

Variant fromDriverValue(const QVariant& raw, ColumnKind kind, QMetaType declared) {
    if (!raw.isValid() || raw.isNull())
        return Variant::null();
    switch (kind) {
    case ColumnKind::Money:
        return asMoney(raw, declared);
    case ColumnKind::Date:
        return asDate(raw, declared);
    case ColumnKind::Boolean:
        return asBoolean(raw, declared);
    case ColumnKind::Integer:
        return asInteger(raw, declared);
    case ColumnKind::Number:
        return asNumber(raw, declared);
    case ColumnKind::Text:
        return asText(raw, declared);
    case ColumnKind::Natural:
        break;
    }
    return natural(raw, declared);
}

Variant fromDriverText(std::string_view utf8, ColumnKind kind, QMetaType declared) {
    switch (kind) {
    case ColumnKind::Text:
        return Variant(std::string(utf8));
    case ColumnKind::Natural:
        if (!isFloatType(declared.id()))
            return Variant(std::string(utf8));
        break;
    case ColumnKind::Date: {
        Date date;
        if (parseIsoDate(utf8, date))
            return Variant(date);
        break;
    }
    default:
        break;
    }
    return fromDriverValue(QVariant(QString::fromUtf8(utf8.data(), qsizetype(utf8.size()))), kind,
                           declared);
}

QVariant toBindValue(const Variant& value, bool dateAsText) {
    switch (value.type()) {
    case VarType::Empty:
    case VarType::Null:
        return QVariant(QMetaType::fromType<QString>());
    case VarType::Boolean:
        return QVariant(value.asBoolean());
    case VarType::Integer:
        return QVariant(static_cast<int>(value.asInteger()));
    case VarType::Long:
        return QVariant(static_cast<int>(value.asLong()));
    case VarType::Single:
        return QVariant(static_cast<double>(value.asSingle()));
    case VarType::Double:
        return QVariant(value.asDouble());
    case VarType::Currency:
        return QVariant(QString::fromStdString(value.asCurrency().toDecimalText()));
    case VarType::Date: {
        const Date::Parts p = value.asDate().parts();
        const QDateTime dt(QDate(p.year, p.month, p.day), QTime(p.hour, p.minute, p.second));
        if (!dateAsText)
            return QVariant(dt);
        if (p.hour == 0 && p.minute == 0 && p.second == 0)
            return QVariant(dt.date().toString(Qt::ISODate));
        return QVariant(dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    }
    case VarType::String:
        return QVariant(QString::fromStdString(value.asString()));
    }
    return {};
}

std::string sqlMoneyLiteral(Currency value) {
    return value.toDecimalText();
}

bool parseIsoDate(std::string_view text, Date& out) {
    QString s = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).trimmed();
    if (s.size() < 10)
        return false;
    const QDate date = QDate::fromString(s.left(10), Qt::ISODate);
    if (!date.isValid())
        return false;
    QTime time(0, 0);
    if (s.size() > 10) {
        if (s[10] != QLatin1Char(' ') && s[10] != QLatin1Char('T'))
            return false;
        QString rest = s.mid(11);
        if (auto dot = rest.indexOf(QLatin1Char('.')); dot >= 0)
            rest = rest.left(dot);
        time = QTime::fromString(rest, rest.size() == 5 ? QStringLiteral("HH:mm")
                                                        : QStringLiteral("HH:mm:ss"));
        if (!time.isValid())
            return false;
    }
    out = Date::fromParts(date.year(), date.month(), date.day(), time.hour(), time.minute(),
                          time.second());
    return true;
}

} // namespace qr::db
