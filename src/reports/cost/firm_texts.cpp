#include "reports/cost/firm_texts.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"

namespace qr::reports::cost {

namespace {

constexpr std::string_view kBlank = " \t\r\n";
constexpr std::string_view kParagraphBreak = "\r\n\r\n";

bool isLineBreak(char c) {
    return c == '\r' || c == '\n';
}

// Whether `part` occurs in `text` with a line break (or the start or end of the text) on each
// side of it.
bool standsAsParagraphs(std::string_view text, std::string_view part) {
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        const auto end = at + part.size();
        const bool openStart = at == 0 || isLineBreak(text[at - 1]);
        const bool openEnd = end == text.size() || isLineBreak(text[end]);
        if (openStart && openEnd)
            return true;
    }
    return false;
}

std::string trimmedColumn(const RowCursor& row, std::string_view column) {
    const Variant value = row.value(column);
    return value.isNull() ? std::string() : trimmedText(toText(value));
}

} // namespace

std::string trimmedText(std::string_view text) {
    const auto first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(kBlank);
    return std::string(text.substr(first, last - first + 1));
}

std::optional<std::string> mergedFirmText(std::string_view jobText, std::string_view firmText) {
    if (firmText.empty())
        return std::nullopt;
    const std::string job = trimmedText(jobText);
    if (job.empty())
        return std::string(firmText);
    if (standsAsParagraphs(job, firmText))
        return std::nullopt;
    std::string merged = job;
    merged += kParagraphBreak;
    merged += firmText;
    return merged;
}

FirmTexts readFirmTexts(db::Connection& master, std::string_view requestUserId) {
    FirmTexts texts;
    auto defaults = master.openRecordset(data::sql::systemDefaults(requestUserId));
    if (!defaults->eof()) {
        texts.exclusions = trimmedColumn(*defaults, "mcompanyexclusions");
        texts.notes = trimmedColumn(*defaults, "mcompanynotes");
    }
    defaults->close();
    return texts;
}

} // namespace qr::reports::cost
