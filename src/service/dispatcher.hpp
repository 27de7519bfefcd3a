#pragma once
// The request route: a request string names a report, the table the host filled for it, the
// user, the job and the output wanted. DispatchRequest parses it into module state, looks up the
// headings, runs the report and records the usage event. It traps every error: each one shows
// the "Error Encountered" message box and the dispatcher carries on.

#include <string>

namespace qr::service {

/// Called only by PrintReport, with the two request connections set.
void DispatchRequest(std::string& args);

/// Sets the label offsets from the user's "LblTop" and "LblLeft" settings (default 0), each
/// narrowed to 16 bits with an overflow check.
void LoadLabelOffsets(int userId);

} // namespace qr::service
