#pragma once
// Reading a subcommand's arguments: the options that take a value ("--job 12") are read from a
// table, everything else (flags, positional words) goes to the command's own callback.

#include <functional>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>

namespace qr::cli {

/// An option followed by its value, and where the value goes.
struct ValuedOption {
    const char* name;
    std::string* value;
};

/// Takes one argument that is not a valued option. Returns nothing when it was taken, else the
/// exit code the command ends with (having said why).
using OtherArgument = std::function<std::optional<int>(const std::string& argument)>;

/// Reads `args` in order, storing the valued options and handing everything else to `other`.
/// Returns nothing when every argument was taken, else the exit code to end with: 2 after
/// "quarvex-reports <command>: --x needs a value" for a valued option at the end, or what
/// `other` returned.
std::optional<int> readOptions(std::span<const std::string> args, const char* command,
                               std::span<const ValuedOption> valued, const OtherArgument& other);

/// Refuses `argument` as an unknown option of `command`, followed by the usage; returns 2.
int unknownOption(const char* command, const std::string& argument,
                  void (*printUsage)(std::ostream&));

} // namespace qr::cli
