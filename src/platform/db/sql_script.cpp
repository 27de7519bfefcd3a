#include "platform/db/sql_script.hpp"

#include "platform/core/error.hpp"
#include "platform/core/text.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/db_error.hpp"

#include <fstream>
#include <sstream>

namespace qr::db {

std::vector<std::string> splitSqlScript(std::string_view script) {
    std::vector<std::string> statements;
    std::string current;
    std::size_t i = 0;
    auto flush = [&] {
        if (!isBlank(current))
            statements.emplace_back(trimmed(current));
        current.clear();
    };
    while (i < script.size()) {
        const char c = script[i];
        if (c == '-' && i + 1 < script.size() && script[i + 1] == '-') {
            while (i < script.size() && script[i] != '\n')
                ++i;
            continue;
        }
        if (c == '/' && i + 1 < script.size() && script[i + 1] == '*') {
            const auto end = script.find("*/", i + 2);
            i = end == std::string_view::npos ? script.size() : end + 2;
            current += ' ';
            continue;
        }
        if (c == '\'' || c == '"' || c == '[') {
            const char close = c == '[' ? ']' : c;
            current += c;
            ++i;
            while (i < script.size()) {
                current += script[i];
                if (script[i] == close) {
                    // A doubled quote inside a literal is an escaped quote, not its end.
                    if (i + 1 < script.size() && script[i + 1] == close && close != ']') {
                        current += script[++i];
                        ++i;
                        continue;
                    }
                    break;
                }
                ++i;
            }
            ++i;
            continue;
        }
        if (c == ';') {
            flush();
            ++i;
            continue;
        }
        current += c;
        ++i;
    }
    flush();
    return statements;
}

void runSqlScript(Connection& connection, std::string_view script) {
    const std::vector<std::string> statements = splitSqlScript(script);
    Transaction transaction(connection);
    for (std::size_t n = 0; n < statements.size(); ++n) {
        try {
            connection.execute(statements[n]);
        } catch (const Error& error) {
            throw Error(error.number(), error.source(),
                        "Statement " + std::to_string(n + 1) +
                            " of the script: " + error.description());
        }
    }
    transaction.commit();
}

void runSqlFile(Connection& connection, const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw Error(dberr::kProviderError, kRecordsetSource,
                    "Cannot read the SQL file " + file.string());
    std::ostringstream text;
    text << in.rdbuf();
    runSqlScript(connection, text.str());
}

} // namespace qr::db
