#pragma once
// Writes the sample jobs into a vendor and a master database, as the host and its companion
// tools would have filled them: the tables are created where missing, and the sample's rows
// replace those of an earlier run (jobs 1 to 3, their report tables, the sample firm, users,
// customers and vendor), so running it again gives the same databases.

#include "platform/db/connection.hpp"

#include <string>
#include <vector>

namespace qr::data::sample {

/// The estimator of every sample job.
inline constexpr std::int32_t kSampleUserId = 1;

/// Write jobs 1, 2 and 3 and everything their reports read. Returns the names of the report
/// tables it filled, job by job (labor, markup, framing systems, glass take-off, glass to
/// order, glass cut); job 3's are empty. Each connection is written in one transaction.
std::vector<std::string> writeSample(db::Connection& vendor, db::Connection& master);

} // namespace qr::data::sample
