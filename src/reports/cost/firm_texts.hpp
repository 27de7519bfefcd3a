#pragma once
// The firm's standard exclusions and notes (SystemDefaults, one row per user) and how they are
// merged into a job's own exclusions and notes: the job's text, a blank line, then the firm's.
// The customer's estimate stores the merge in the job row; the markup report shows the same
// merge without storing it.

#include "platform/db/connection.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace qr::reports::cost {

/// `text` without leading and trailing blanks, tabs and line breaks.
std::string trimmedText(std::string_view text);

/// The merged text for a job text and a firm text (already trimmed), or nothing when the job
/// text is to be left exactly as it is:
/// - firm text empty: nothing (the job text is not even trimmed);
/// - job text empty once trimmed: the firm text alone;
/// - the firm text already stands in the job text as paragraphs of their own (it starts the
///   text, ends it, or stands between line breaks), as after an earlier print: nothing, so
///   printing the estimate again does not append the firm's text a second time;
/// - otherwise the trimmed job text, CR LF, CR LF, the firm text.
std::optional<std::string> mergedFirmText(std::string_view jobText, std::string_view firmText);

/// The firm's standard texts for one user, trimmed; empty when the user has no row or a
/// column is Null.
struct FirmTexts {
    std::string exclusions;
    std::string notes;
};

/// Reads the user's SystemDefaults row on the master connection.
FirmTexts readFirmTexts(db::Connection& master, std::string_view requestUserId);

} // namespace qr::reports::cost
