#include "cli/option_reader.hpp"

#include <iostream>

namespace qr::cli {

std::optional<int> readOptions(std::span<const std::string> args, const char* command,
                               std::span<const ValuedOption> valued, const OtherArgument& other) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        std::string* target = nullptr;
        for (const auto& option : valued)
            target = a == option.name ? option.value : target;
        if (!target) {
            if (std::optional<int> exitCode = other(a))
                return exitCode;
            continue;
        }
        if (i + 1 >= args.size()) {
            std::cerr << "quarvex-reports " << command << ": " << a << " needs a value\n";
            return 2;
        }
        *target = args[++i];
    }
    return std::nullopt;
}

int unknownOption(const char* command, const std::string& argument,
                  void (*printUsage)(std::ostream&)) {
    std::cerr << "quarvex-reports " << command << ": unknown option '" << argument << "'\n";
    printUsage(std::cerr);
    return 2;
}

} // namespace qr::cli
