#pragma once
// Helpers shared by the fuzz targets: every target swallows the component's own error type
// (a refused input is the expected answer to garbage) and lets anything else crash, so the
// fuzzer reports it.

#include "platform/core/error.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qr::fuzz {

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Runs `body`; a qr::Error is a refusal and is ignored.
template <class Body> void refusalsAllowed(Body&& body) {
    try {
        body();
    } catch (const Error&) {
    }
}

} // namespace qr::fuzz
