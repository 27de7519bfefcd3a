#pragma once
// The number of the Error a call raises, or 0 when it raises none: lets conversion tables
// state the expected failure next to the expected values.

#include "platform/core/error.hpp"

namespace qr::test {

template <typename Call> int errorNumberOf(Call&& call) {
    try {
        call();
    } catch (const Error& e) {
        return e.number();
    }
    return 0;
}

} // namespace qr::test
