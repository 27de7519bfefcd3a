#pragma once
// SQL text files (test fixtures, schema scripts) run statement by statement.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace qr::db {

class Connection;

/// The statements of a script, split at each ";" that is outside quotes ('...', "...",
/// [...]) and comments (-- to the end of the line, /* ... */). Comments are dropped; empty
/// statements are skipped.
std::vector<std::string> splitSqlScript(std::string_view script);

/// Run every statement of `script` in order, in one transaction. Raises the database's Error
/// (with the statement's position in the script added) at the first failure.
void runSqlScript(Connection& connection, std::string_view script);

/// runSqlScript on a file's text; raises Error naming the file when it cannot be read.
void runSqlFile(Connection& connection, const std::filesystem::path& file);

} // namespace qr::db
