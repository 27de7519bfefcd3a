#include "platform/db/row_store.hpp"

#include <QByteArray>
#include <QString>
#include <cstring>
#include <stdexcept>

namespace qr::db {
namespace {

// What a cell's first byte says it holds. Variant cells and driver cells have their own tags,
// so a store never mistakes one for the other.
enum Tag : unsigned char {
    kEmpty,
    kNull,
    kFalse,
    kTrue,
    kInteger, // zigzag varint
    kLong,    // zigzag varint
    kSingle,  // 4 bytes
    kDouble,  // 8 bytes
    kCurrency, // ticks, zigzag varint
    kDate,     // serial, 8 bytes
    kString,   // varint length, UTF-8 bytes

    kRawInvalid = 32,
    kRawNull,      // varint type id
    kRawFalse,
    kRawTrue,
    kRawInteger,   // varint type id, zigzag varint
    kRawUnsigned,  // varint type id, varint
    kRawDouble,    // 8 bytes
    kRawString,    // varint count of UTF-16 units, the units
    kRawBytes,     // varint length, the bytes
    kRawOther,     // anything else, as text: varint type id, varint length, UTF-8 bytes
};

void putVarint(std::vector<unsigned char>& out, std::uint64_t value) {
    while (value >= 0x80) {
        out.push_back(static_cast<unsigned char>(value | 0x80));
        value >>= 7;
    }
    out.push_back(static_cast<unsigned char>(value));
}

void putSigned(std::vector<unsigned char>& out, std::int64_t value) {
    putVarint(out, (static_cast<std::uint64_t>(value) << 1) ^ static_cast<std::uint64_t>(value >> 63));
}

template <class T>
void putFixed(std::vector<unsigned char>& out, T value) {
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    out.insert(out.end(), bytes, bytes + sizeof(T));
}

void putBytes(std::vector<unsigned char>& out, const void* data, std::size_t size) {
    const auto* p = static_cast<const unsigned char*>(data);
    out.insert(out.end(), p, p + size);
}

/// Reads a cell's parts in order from its first byte after the tag.
struct Reader {
    const unsigned char* p;

    std::uint64_t varint() {
        std::uint64_t value = 0;
        int shift = 0;
        while (*p & 0x80) {
            value |= static_cast<std::uint64_t>(*p++ & 0x7f) << shift;
            shift += 7;
        }
        value |= static_cast<std::uint64_t>(*p++) << shift;
        return value;
    }
    std::int64_t signedVarint() {
        const std::uint64_t v = varint();
        return static_cast<std::int64_t>(v >> 1) ^ -static_cast<std::int64_t>(v & 1);
    }
    template <class T>
    T fixed() {
        T value;
        std::memcpy(&value, p, sizeof(T));
        p += sizeof(T);
        return value;
    }
    void skip(std::size_t n) { p += n; }
};

/// The first byte after the cell that starts at `p`.
const unsigned char* skipCell(const unsigned char* p) {
    Reader r{p + 1};
    switch (*p) {
    case kEmpty:
    case kNull:
    case kFalse:
    case kTrue:
    case kRawInvalid:
    case kRawFalse:
    case kRawTrue:
        break;
    case kInteger:
    case kLong:
    case kCurrency:
    case kRawNull:
        r.varint();
        break;
    case kSingle:
        r.skip(4);
        break;
    case kDouble:
    case kDate:
    case kRawDouble:
        r.skip(8);
        break;
    case kString:
    case kRawBytes:
        r.skip(r.varint());
        break;
    case kRawInteger:
    case kRawUnsigned:
        r.varint();
        r.varint();
        break;
    case kRawString:
        r.skip(2 * r.varint());
        break;
    case kRawOther:
        r.varint();
        r.skip(r.varint());
        break;
    default:
        throw std::logic_error("RowStore: unknown cell tag");
    }
    return r.p;
}

void encode(std::vector<unsigned char>& out, const Variant& value) {
    switch (value.type()) {
    case VarType::Empty:
        out.push_back(kEmpty);
        break;
    case VarType::Null:
        out.push_back(kNull);
        break;
    case VarType::Boolean:
        out.push_back(value.asBoolean() ? kTrue : kFalse);
        break;
    case VarType::Integer:
        out.push_back(kInteger);
        putSigned(out, value.asInteger());
        break;
    case VarType::Long:
        out.push_back(kLong);
        putSigned(out, value.asLong());
        break;
    case VarType::Single:
        out.push_back(kSingle);
        putFixed(out, value.asSingle());
        break;
    case VarType::Double:
        out.push_back(kDouble);
        putFixed(out, value.asDouble());
        break;
    case VarType::Currency:
        out.push_back(kCurrency);
        putSigned(out, value.asCurrency().ticks());
        break;
    case VarType::Date:
        out.push_back(kDate);
        putFixed(out, value.asDate().serial);
        break;
    case VarType::String: {
        const std::string& text = value.asString();
        out.push_back(kString);
        putVarint(out, text.size());
        putBytes(out, text.data(), text.size());
        break;
    }
    }
}

bool isSignedInteger(int id) {
    switch (id) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::Char:
    case QMetaType::SChar:
        return true;
    default:
        return false;
    }
}

bool isUnsignedInteger(int id) {
    switch (id) {
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

void encode(std::vector<unsigned char>& out, const QVariant& raw) {
    if (!raw.isValid()) {
        out.push_back(kRawInvalid);
        return;
    }
    const int id = raw.metaType().id();
    if (raw.isNull()) {
        out.push_back(kRawNull);
        putVarint(out, static_cast<std::uint32_t>(id));
        return;
    }
    if (id == QMetaType::Bool) {
        out.push_back(raw.toBool() ? kRawTrue : kRawFalse);
    } else if (isSignedInteger(id)) {
        out.push_back(kRawInteger);
        putVarint(out, static_cast<std::uint32_t>(id));
        putSigned(out, raw.toLongLong());
    } else if (isUnsignedInteger(id)) {
        out.push_back(kRawUnsigned);
        putVarint(out, static_cast<std::uint32_t>(id));
        putVarint(out, raw.toULongLong());
    } else if (id == QMetaType::Double) {
        out.push_back(kRawDouble);
        putFixed(out, raw.toDouble());
    } else if (id == QMetaType::QString) {
        const QString text = raw.toString();
        out.push_back(kRawString);
        putVarint(out, static_cast<std::uint64_t>(text.size()));
        putBytes(out, text.utf16(), static_cast<std::size_t>(text.size()) * 2);
    } else if (id == QMetaType::QByteArray) {
        const QByteArray bytes = raw.toByteArray();
        out.push_back(kRawBytes);
        putVarint(out, static_cast<std::uint64_t>(bytes.size()));
        putBytes(out, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    } else {
        // Dates, times, floats and the rest: their text converts back to the same value.
        const QByteArray text = raw.toString().toUtf8();
        out.push_back(kRawOther);
        putVarint(out, static_cast<std::uint32_t>(id));
        putVarint(out, static_cast<std::uint64_t>(text.size()));
        putBytes(out, text.constData(), static_cast<std::size_t>(text.size()));
    }
}

QVariant withType(QVariant value, std::uint64_t id) {
    value.convert(QMetaType(static_cast<int>(id)));
    return value;
}

} // namespace

void RowStore::append(const Variant& value) {
    encode(m_bytes, value);
}

void RowStore::append(const QVariant& raw) {
    encode(m_bytes, raw);
}

const unsigned char* RowStore::cell(std::size_t row, std::size_t column) const {
    const std::size_t start = m_rowStarts.at(row);
    const unsigned char* p = m_bytes.data() + start;
    std::size_t c = 0;
    if (m_near.valid && m_near.row == row && m_near.rowStart == start && m_near.column <= column) {
        p = m_bytes.data() + m_near.offset;
        c = m_near.column;
    }
    for (; c < column; ++c)
        p = skipCell(p);
    m_near = {row, start, column, static_cast<std::size_t>(p - m_bytes.data()), true};
    return p;
}

Variant RowStore::value(std::size_t row, std::size_t column) const {
    const unsigned char* p = cell(row, column);
    Reader r{p + 1};
    switch (*p) {
    case kEmpty:
        return {};
    case kNull:
        return Variant::null();
    case kFalse:
        return Variant(false);
    case kTrue:
        return Variant(true);
    case kInteger:
        return Variant(static_cast<std::int16_t>(r.signedVarint()));
    case kLong:
        return Variant(static_cast<std::int32_t>(r.signedVarint()));
    case kSingle:
        return Variant(r.fixed<float>());
    case kDouble:
        return Variant(r.fixed<double>());
    case kCurrency:
        return Variant(Currency::fromTicks(r.signedVarint()));
    case kDate:
        return Variant(Date{r.fixed<double>()});
    case kString: {
        const std::size_t size = r.varint();
        return Variant(std::string(reinterpret_cast<const char*>(r.p), size));
    }
    default:
        throw std::logic_error("RowStore: the cell holds no Variant");
    }
}

QVariant RowStore::raw(std::size_t row, std::size_t column) const {
    const unsigned char* p = cell(row, column);
    Reader r{p + 1};
    switch (*p) {
    case kRawInvalid:
        return {};
    case kRawNull:
        return QVariant(QMetaType(static_cast<int>(r.varint())));
    case kRawFalse:
        return QVariant(false);
    case kRawTrue:
        return QVariant(true);
    case kRawInteger: {
        const std::uint64_t id = r.varint();
        return withType(QVariant(static_cast<qlonglong>(r.signedVarint())), id);
    }
    case kRawUnsigned: {
        const std::uint64_t id = r.varint();
        return withType(QVariant(static_cast<qulonglong>(r.varint())), id);
    }
    case kRawDouble:
        return QVariant(r.fixed<double>());
    case kRawString: {
        const std::size_t units = r.varint();
        QString text(static_cast<qsizetype>(units), Qt::Uninitialized);
        std::memcpy(text.data(), r.p, units * 2);
        return QVariant(text);
    }
    case kRawBytes: {
        const std::size_t size = r.varint();
        return QVariant(QByteArray(reinterpret_cast<const char*>(r.p), static_cast<qsizetype>(size)));
    }
    case kRawOther: {
        const std::uint64_t id = r.varint();
        const std::size_t size = r.varint();
        return withType(QVariant(QString::fromUtf8(reinterpret_cast<const char*>(r.p),
                                                   static_cast<qsizetype>(size))),
                        id);
    }
    default:
        throw std::logic_error("RowStore: the cell holds no driver value");
    }
}

template <class Value>
void RowStore::rewrite(std::size_t row, std::size_t column, const Value& value) {
    std::vector<unsigned char> copy;
    const unsigned char* p = m_bytes.data() + m_rowStarts.at(row);
    for (std::size_t c = 0; c < m_columns; ++c) {
        const unsigned char* next = skipCell(p);
        if (c == column)
            encode(copy, value);
        else
            copy.insert(copy.end(), p, next);
        p = next;
    }
    m_rowStarts[row] = m_bytes.size();
    m_bytes.insert(m_bytes.end(), copy.begin(), copy.end());
}

void RowStore::set(std::size_t row, std::size_t column, const Variant& value) {
    rewrite(row, column, value);
}

void RowStore::set(std::size_t row, std::size_t column, const QVariant& raw) {
    rewrite(row, column, raw);
}

void RowStore::clear() {
    m_near = {};
    m_bytes.clear();
    m_bytes.shrink_to_fit();
    m_rowStarts.clear();
    m_rowStarts.shrink_to_fit();
}

void RowStore::shrinkToFit() {
    m_bytes.shrink_to_fit();
    m_rowStarts.shrink_to_fit();
}

} // namespace qr::db
