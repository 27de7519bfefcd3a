#include "platform/db/connection_string.hpp"

#include "platform/core/text.hpp"
#include "platform/db/db_error.hpp"

#include <algorithm>
#include <cctype>

namespace qr::db {
namespace {

constexpr std::string_view kSqlitePrefix = "sqlite:";
constexpr std::string_view kOdbcPrefix = "odbc:";
constexpr std::string_view kPgPrefixes[] = {"postgresql://", "postgres://"};

std::size_t pgPrefixLength(std::string_view text) {
    for (auto prefix : kPgPrefixes)
        if (startsWithIgnoringCase(text, prefix))
            return prefix.size();
    return 0;
}

[[noreturn]] void invalid(std::string_view text, const std::string& why) {
    throw Error(dberr::kProviderError, kConnectionSource,
                "Invalid connection string '" + maskConnectionString(text) + "': " + why +
                    " (expected sqlite:PATH, postgresql://user@host:port/db or "
                    "odbc:<ODBC connection string>)");
}

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

/// Undo the %XX escapes a URI uses for reserved characters in user names and passwords.
std::string percentDecode(std::string_view text, std::string_view whole) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out += text[i];
            continue;
        }
        if (i + 2 >= text.size())
            invalid(whole, "bad % escape");
        int hi = hexValue(text[i + 1]), lo = hexValue(text[i + 2]);
        if (hi < 0 || lo < 0)
            invalid(whole, "bad % escape");
        out += static_cast<char>(hi * 16 + lo);
        i += 2;
    }
    return out;
}

ConnectionSpec parsePostgres(std::string_view text, std::size_t prefixLength) {
    ConnectionSpec parsed;
    parsed.engine = Engine::PostgreSQL;
    std::string_view rest = text.substr(prefixLength);

    std::string_view query;
    if (auto q = rest.find('?'); q != std::string_view::npos) {
        query = rest.substr(q + 1);
        rest = rest.substr(0, q);
    }
    auto slash = rest.find('/');
    if (slash == std::string_view::npos)
        invalid(text, "no database name after the host");
    std::string_view authority = rest.substr(0, slash);
    parsed.database = percentDecode(rest.substr(slash + 1), text);
    if (parsed.database.empty())
        invalid(text, "no database name after the host");

    if (auto at = authority.rfind('@'); at != std::string_view::npos) {
        std::string_view credentials = authority.substr(0, at);
        authority = authority.substr(at + 1);
        if (auto colon = credentials.find(':'); colon != std::string_view::npos) {
            parsed.password = percentDecode(credentials.substr(colon + 1), text);
            credentials = credentials.substr(0, colon);
        }
        parsed.user = percentDecode(credentials, text);
    }
    if (auto colon = authority.rfind(':'); colon != std::string_view::npos) {
        std::string_view port = authority.substr(colon + 1);
        authority = authority.substr(0, colon);
        if (port.empty() || port.size() > 5 ||
            !std::all_of(port.begin(), port.end(), [](char c) { return c >= '0' && c <= '9'; }))
            invalid(text, "the port is not a number");
        parsed.port = std::stoi(std::string(port));
        if (parsed.port < 1 || parsed.port > 65535)
            invalid(text, "the port is out of range");
    }
    parsed.host = percentDecode(authority, text);

    while (!query.empty()) {
        auto amp = query.find('&');
        std::string_view pair = query.substr(0, amp);
        query = amp == std::string_view::npos ? std::string_view() : query.substr(amp + 1);
        auto eq = pair.find('=');
        std::string_view key = pair.substr(0, eq);
        std::string value =
            eq == std::string_view::npos ? std::string() : percentDecode(pair.substr(eq + 1), text);
        if (key == "host")
            parsed.host = value;
        else if (key == "user")
            parsed.user = value;
        else if (key == "password")
            parsed.password = value;
        else
            invalid(text, "unknown option '" + std::string(key) + "'");
    }
    if (parsed.host.empty())
        invalid(text, "no host");
    return parsed;
}

/// Mask the value of every `key=value` in an ODBC string whose key is a password key.
std::string maskOdbc(std::string_view text) {
    std::string out;
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t semi = text.find(';', i);
        std::size_t end = semi == std::string_view::npos ? text.size() : semi;
        std::string_view part = text.substr(i, end - i);
        auto eq = part.find('=');
        std::string key(part.substr(0, eq));
        key.erase(
            std::remove_if(key.begin(), key.end(), [](unsigned char c) { return std::isspace(c); }),
            key.end());
        key = lowerCase(key);
        if (eq != std::string_view::npos && (key == "pwd" || key == "password")) {
            out += part.substr(0, eq + 1);
            out += "***";
            // A braced value may itself hold ';': skip to its closing brace.
            std::size_t valueStart = i + eq + 1;
            if (valueStart < text.size() && text[valueStart] == '{') {
                auto close = text.find('}', valueStart);
                end = close == std::string_view::npos ? text.size() : close + 1;
                semi = text.find(';', end);
                end = semi == std::string_view::npos ? text.size() : semi;
            }
        } else {
            out += part;
        }
        if (end < text.size())
            out += ';';
        i = end + 1;
    }
    return out;
}

} // namespace

std::string maskConnectionString(std::string_view text) {
    if (std::size_t n = pgPrefixLength(text)) {
        // The credentials end at the last '@' before the query; a password holding a '?' (the
        // parser refuses it, and its message must not show it) ends at the last '@' of all,
        // as long as no '/' stands before it.
        const std::string_view body = text.substr(n);
        const auto query = body.find('?');
        auto at = body.substr(0, query).rfind('@');
        if (at == std::string_view::npos) {
            at = body.rfind('@');
            if (at != std::string_view::npos && body.substr(0, at).find('/') != std::string_view::npos)
                at = std::string_view::npos;
        }
        const auto colon =
            at == std::string_view::npos ? std::string_view::npos : body.substr(0, at).find(':');
        std::string out(text.substr(0, n));
        std::string_view tail = body;
        if (colon != std::string_view::npos) {
            out += std::string(body.substr(0, colon + 1)) + "***";
            tail = body.substr(at);
        }
        // Every password given as a query option is masked too.
        const auto q = tail.find('?');
        if (q == std::string_view::npos)
            return out + std::string(tail);
        out += std::string(tail.substr(0, q + 1));
        for (std::string_view options = tail.substr(q + 1);;) {
            const auto amp = options.find('&');
            const std::string_view pair = options.substr(0, amp);
            out += pair.substr(0, 9) == "password=" ? std::string("password=***")
                                                    : std::string(pair);
            if (amp == std::string_view::npos)
                break;
            out += '&';
            options = options.substr(amp + 1);
        }
        return out;
    }
    if (startsWithIgnoringCase(text, kOdbcPrefix))
        return std::string(text.substr(0, kOdbcPrefix.size())) +
               maskOdbc(text.substr(kOdbcPrefix.size()));
    return std::string(text);
}

ConnectionSpec parseConnectionString(std::string_view text) {
    if (startsWithIgnoringCase(text, kSqlitePrefix)) {
        ConnectionSpec parsed;
        parsed.engine = Engine::SQLite;
        parsed.path = std::string(text.substr(kSqlitePrefix.size()));
        if (parsed.path.empty())
            invalid(text, "no database file after sqlite:");
        return parsed;
    }
    if (std::size_t n = pgPrefixLength(text))
        return parsePostgres(text, n);
    if (startsWithIgnoringCase(text, kOdbcPrefix)) {
        ConnectionSpec parsed;
        parsed.engine = Engine::Odbc;
        parsed.odbc = std::string(text.substr(kOdbcPrefix.size()));
        if (parsed.odbc.find_first_not_of(" \t") == std::string::npos)
            invalid(text, "no ODBC connection string after odbc:");
        return parsed;
    }
    invalid(text, "unknown kind of connection");
}

} // namespace qr::db
