#pragma once
// The request string split into its fields, before any field is checked or used. Splitting
// never fails: a request with too few fields gives empty ones, and every check of a value
// (table name, ids, flags) happens afterwards, one field at a time, in the dispatcher.

#include <string>
#include <string_view>

namespace qr::service {

/// The ten fields of a request, lower-cased and trimmed of spaces:
/// "<report> <table> <preview> <user> <job> <excel> <pdf> <spare flag> |<spare text> |<tail>".
struct RequestFields {
    std::string reportName;
    std::string table;
    std::string preview;
    std::string userId;
    std::string jobId;
    std::string excel;
    std::string pdf;
    std::string spareFlag;
    std::string spareText; ///< between the first bar and the next " |"
    std::string tail;      ///< after the second bar
};

RequestFields splitRequest(std::string_view args);

} // namespace qr::service
