#include "platform/core/error.hpp"

#include <utility>

namespace qr {

Error::Error(int number, std::string source, std::string description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)) {}

Error Error::typeMismatch(std::string source) {
    return Error(errc::kTypeMismatch, std::move(source), "Type mismatch");
}

Error Error::overflow(std::string source) {
    return Error(errc::kOverflow, std::move(source), "Overflow");
}

Error Error::invalidUseOfNull(std::string source) {
    return Error(errc::kInvalidUseOfNull, std::move(source), "Invalid use of Null");
}

Error Error::objectNotSet(std::string source) {
    return Error(errc::kObjectNotSet, std::move(source),
                 "Object variable or With block variable not set");
}

Error Error::subscriptOutOfRange(std::string source) {
    return Error(errc::kSubscriptOutOfRange, std::move(source), "Subscript out of range");
}

Error Error::invalidCall(std::string source) {
    return Error(errc::kInvalidCall, std::move(source), "Invalid procedure call or argument");
}

Error Error::component(std::string source, std::string description) {
    return Error(errc::kComponent, std::move(source), std::move(description));
}

} // namespace qr
