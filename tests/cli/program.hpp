#pragma once
// Running the quarvex-reports program as a host script runs it: a child process with
// arguments, judged by its exit code, its standard streams and the files it leaves.

#include "support/temp_dir.hpp"

#include <string>
#include <vector>

namespace qr::test {

struct Outcome {
    int exitCode = -1;
    std::string out;
    std::string err;
};

/// `arg` quoted for the shell.
std::string quoted(const std::string& arg);

/// Runs the program with `args` (and `environment` assignments before it), headless, its
/// streams caught in files of `dir`.
Outcome runProgram(const TempDir& dir, const std::vector<std::string>& args,
                   const std::string& environment = "");

} // namespace qr::test
