#include "service/request_fields.hpp"

#include "platform/core/text.hpp"

namespace qr::service {

namespace {

// The legacy Trim: spaces only, not tabs or line ends.
std::string trimmedSpaces(std::string_view text) {
    return std::string(trimmed(text, " "));
}

// The text up to and including the first space, trimmed; `rest` becomes the text after that
// space, trimmed. Without a space the field is empty and `rest` stays as it is.
std::string nextField(std::string& rest) {
    const auto space = rest.find(' ');
    if (space == std::string::npos)
        return {};
    std::string field = trimmedSpaces(std::string_view(rest).substr(0, space + 1));
    rest = trimmedSpaces(std::string_view(rest).substr(space + 1));
    return field;
}

// The text after the first occurrence of `marker`, trimmed; all of it when there is none.
std::string afterFirst(const std::string& text, std::string_view marker) {
    const auto at = text.find(marker);
    if (at == std::string::npos)
        return trimmedSpaces(text);
    return trimmedSpaces(std::string_view(text).substr(at + marker.size()));
}

// The text before the first occurrence of `marker`, trimmed; none found gives all of it.
std::string beforeFirst(const std::string& text, std::string_view marker) {
    const auto at = text.find(marker);
    return trimmedSpaces(
        std::string_view(text).substr(0, at == std::string::npos ? text.size() : at));
}

} // namespace

RequestFields splitRequest(std::string_view args) {
    std::string rest = lowerCase(args);
    RequestFields fields;
    fields.reportName = nextField(rest);
    fields.table = nextField(rest);
    fields.preview = nextField(rest);
    fields.userId = nextField(rest);
    fields.jobId = nextField(rest);
    fields.excel = nextField(rest);
    fields.pdf = nextField(rest);
    fields.spareFlag = nextField(rest);
    rest = afterFirst(rest, "|");
    fields.spareText = beforeFirst(rest, " |");
    fields.tail = afterFirst(rest, "|");
    return fields;
}

} // namespace qr::service
