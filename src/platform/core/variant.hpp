#pragma once
// The value type every column, field and handler figure travels in: the classic variant with
// Empty and Null kept apart, 16- and 32-bit integers, single and double precision, Currency,
// Date and String. Conversions between them live in convert.hpp.

#include "platform/core/currency.hpp"
#include "platform/core/date.hpp"

#include <cstdint>
#include <string>
#include <variant>

namespace qr {

enum class VarType { Empty, Null, Boolean, Integer, Long, Single, Double, Currency, Date, String };

/// Name of a type as the classic runtime prints it ("Empty", "Null", "Boolean", "Integer",
/// "Long", "Single", "Double", "Currency", "Date", "String").
const char* typeName(VarType type);

class Variant {
  public:
    Variant() = default; // Empty
    static Variant null();

    Variant(bool v) : m_value(v) {}
    Variant(std::int16_t v) : m_value(v) {}
    Variant(std::int32_t v) : m_value(v) {}
    Variant(float v) : m_value(v) {}
    Variant(double v) : m_value(v) {}
    Variant(Currency v) : m_value(v) {}
    Variant(Date v) : m_value(v) {}
    Variant(std::string v) : m_value(std::move(v)) {}
    Variant(const char* v) : m_value(std::string(v)) {}

    VarType type() const;
    bool isEmpty() const { return type() == VarType::Empty; }
    bool isNull() const { return type() == VarType::Null; }
    /// True for the numeric kinds (Boolean excluded) and Currency.
    bool isNumeric() const;

    /// Direct access when the type is known; raise Type mismatch otherwise. Use convert.hpp
    /// for the classic coercions.
    bool asBoolean() const;
    std::int16_t asInteger() const;
    std::int32_t asLong() const;
    float asSingle() const;
    double asDouble() const;
    Currency asCurrency() const;
    Date asDate() const;
    const std::string& asString() const;

    /// Same type and same value (Null equals Null here; this is identity, not the runtime's
    /// comparison operator).
    bool operator==(const Variant& other) const = default;

  private:
    struct NullTag {
        bool operator==(const NullTag&) const = default;
    };
    std::variant<std::monostate, NullTag, bool, std::int16_t, std::int32_t, float, double, Currency,
                 Date, std::string>
        m_value;
};

} // namespace qr
