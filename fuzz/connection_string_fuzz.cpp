// The connection-string parser and the masking used in every message that names one. A
// password given in the string must never survive masking.

#include "fuzz/fuzz_input.hpp"
#include "platform/db/connection_string.hpp"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qr;
    const std::string_view text = fuzz::textOf(data, size);
    const std::string masked = db::maskConnectionString(text);
    fuzz::refusalsAllowed([&] {
        const db::ConnectionSpec spec = db::parseConnectionString(text);
        if (spec.engine == db::Engine::PostgreSQL && !spec.password.empty() &&
            masked.find("***") == std::string::npos)
            std::abort();
    });
    return 0;
}
