// The request string's front end: splitting into fields, then the checks each pasted value
// passes before anything is built from it. A value the checks accept must be one that can be
// pasted into a statement: only the characters the checks promise.

#include "data/statements.hpp"
#include "fuzz/fuzz_input.hpp"
#include "platform/core/convert.hpp"
#include "service/request_fields.hpp"

#include <cstdlib>
#include <string_view>

namespace {

// An optional sign and at least one digit.
bool isDecimalInteger(std::string_view id) {
    if (!id.empty() && (id.front() == '+' || id.front() == '-'))
        id.remove_prefix(1);
    if (id.empty())
        return false;
    for (char c : id)
        if (c < '0' || c > '9')
            return false;
    return true;
}

// A plain identifier, alone, in brackets or in double quotes.
bool isQuotableIdentifier(std::string_view name) {
    if (name.size() >= 2 && ((name.front() == '[' && name.back() == ']') ||
                             (name.front() == '"' && name.back() == '"')))
        name = name.substr(1, name.size() - 2);
    if (name.empty() || (name.front() >= '0' && name.front() <= '9'))
        return false;
    for (char c : name) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool digit = c >= '0' && c <= '9';
        if (!letter && !digit && c != '_')
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qr;
    const auto fields = service::splitRequest(fuzz::textOf(data, size));
    for (auto dialect : {db::Dialect::SQLite, db::Dialect::PostgreSQL, db::Dialect::Classic}) {
        fuzz::refusalsAllowed([&] {
            if (!isQuotableIdentifier(data::checkedTableName(fields.table, dialect)))
                std::abort();
        });
    }
    for (const std::string* id : {&fields.userId, &fields.jobId}) {
        fuzz::refusalsAllowed([&] {
            if (!isDecimalInteger(data::checkedId(*id, "id")))
                std::abort();
        });
    }
    for (const std::string* flag : {&fields.preview, &fields.excel, &fields.pdf, &fields.spareFlag})
        fuzz::refusalsAllowed([&] { (void)toBoolean(Variant(*flag)); });
    return 0;
}
