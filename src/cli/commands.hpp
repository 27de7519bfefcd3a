#pragma once
// The subcommands of the quarvex-reports program. Each takes the arguments that follow its
// name and returns the process exit code (0 done, 1 the work failed with a message shown,
// 2 usage error).

#include <string>
#include <vector>

namespace qr::cli {

using Args = std::vector<std::string>;

/// make-sample --vendor CONN --master CONN: writes the sample jobs and prints the report
/// tables it filled.
int runMakeSample(const Args& args);

/// call METHOD --data FILE.json [...]: runs one typed print method.
int runCall(const Args& args);

/// request --vendor CONN --master CONN [--vendor-path DIR] REQUEST: runs one request string.
int runRequest(const Args& args);

/// package --vendor CONN --master CONN --job ID --out FILE.pdf [--user ID] [REPORT ...]: prints
/// several reports of a job into one PDF.
int runPackage(const Args& args);

/// label-calibration --sheet 5260|5267 [--top T --left L] [--pdf FILE] [--master CONN --user ID
/// [--save]]: prints a calibration sheet of a label stock and stores the user's label offsets.
int runLabelCalibration(const Args& args);

} // namespace qr::cli
