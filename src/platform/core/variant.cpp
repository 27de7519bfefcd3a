#include "platform/core/variant.hpp"

#include "platform/core/error.hpp"

namespace qr {

const char* typeName(VarType type) {
    switch (type) {
    case VarType::Empty:
        return "Empty";
    case VarType::Null:
        return "Null";
    case VarType::Boolean:
        return "Boolean";
    case VarType::Integer:
        return "Integer";
    case VarType::Long:
        return "Long";
    case VarType::Single:
        return "Single";
    case VarType::Double:
        return "Double";
    case VarType::Currency:
        return "Currency";
    case VarType::Date:
        return "Date";
    case VarType::String:
        return "String";
    }
    return "Unknown";
}

Variant Variant::null() {
    Variant v;
    v.m_value = NullTag{};
    return v;
}

// The alternatives of m_value stand in the order of VarType.
VarType Variant::type() const {
    return static_cast<VarType>(m_value.index());
}

bool Variant::isNumeric() const {
    switch (type()) {
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
        return true;
    default:
        return false;
    }
}

namespace {
template <typename T, typename V> const T& exactly(const V& value) {
    if (const T* p = std::get_if<T>(&value)) {
        return *p;
    }
    throw Error::typeMismatch();
}
} // namespace

bool Variant::asBoolean() const {
    return exactly<bool>(m_value);
}
std::int16_t Variant::asInteger() const {
    return exactly<std::int16_t>(m_value);
}
std::int32_t Variant::asLong() const {
    return exactly<std::int32_t>(m_value);
}
float Variant::asSingle() const {
    return exactly<float>(m_value);
}
double Variant::asDouble() const {
    return exactly<double>(m_value);
}
Currency Variant::asCurrency() const {
    return exactly<Currency>(m_value);
}
Date Variant::asDate() const {
    return exactly<Date>(m_value);
}
const std::string& Variant::asString() const {
    return exactly<std::string>(m_value);
}

} // namespace qr
