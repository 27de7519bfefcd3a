#include "cli/program.hpp"

#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace qr::test {

namespace fs = std::filesystem;

std::string quoted(const std::string& arg) {
    std::string q = "'";
    for (char c : arg)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

Outcome runProgram(const TempDir& dir, const std::vector<std::string>& args,
                   const std::string& environment) {
    const fs::path program = fs::path(QR_BINARY_DIR) / "bin" / "quarvex-reports";
    std::string command =
        "env QUARVEX_NONINTERACTIVE=1 QUARVEX_PREVIEW_DIR=" + quoted((dir / "preview").string()) +
        " " + environment + " " + quoted(program.string());
    for (const auto& a : args)
        command += " " + quoted(a);
    command += " >" + quoted((dir / "stdout").string()) + " 2>" + quoted((dir / "stderr").string());
    const int status = std::system(command.c_str());
    Outcome outcome;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.out = fileBytes(dir / "stdout");
    outcome.err = fileBytes(dir / "stderr");
    return outcome;
}

} // namespace qr::test
