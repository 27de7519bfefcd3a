#include "service/dispatcher.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/text.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/recordset.hpp"
#include "platform/host/error_log.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/print_reports.hpp"
#include "service/report_objects.hpp"
#include "service/report_registry.hpp"
#include "service/run_sequence.hpp"

#include <optional>
#include <string_view>

namespace qr::service {

namespace {

constexpr const char* kInvalidInput = "Invalid input string passed to PrintReport procedure";
constexpr const char* kUnknownReport =
    "Error in Main subroutine in the PrintReports Project, please call Tolmar";

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

void showErrorEncountered() {
    host::messageBox().show(host::currentErrorDescription(), host::MessageIcon::Information,
                            "Error Encountered");
}

// One step of the dispatcher. An error shows the "Error Encountered" box, is cleared, and the
// dispatcher goes on with its next step; the values the failed step should have set keep
// their earlier setting. Returns whether the step finished.
template <class Step> bool step(Step&& body) {
    try {
        body();
        return true;
    } catch (...) {
        showErrorEncountered();
        return false;
    }
}

db::Connection& requireConnection(const host::ConnectionRef& connection) {
    if (!connection)
        throw Error::objectNotSet();
    return *connection;
}

} // namespace

void LoadLabelOffsets(int userId) {
    auto& state = host::moduleState();
    auto settings = host::hostClasses().createUserSettingService();
    settings->setConnection(state.requestMasterConnection);
    state.labelTopOffset = toInteger(Variant(settings->getSetting(userId, "LblTop", 0)));
    state.labelLeftOffset = toInteger(Variant(settings->getSetting(userId, "LblLeft", 0)));
}

void DispatchRequest(std::string& args) {
    if (args.empty()) {
        host::messageBox().show(kInvalidInput, host::MessageIcon::None, "");
        return;
    }
    auto& state = host::moduleState();
    std::string rest = lowerCase(args);

    // Fields 1 to 8. Pasted values (table, user id, job id) are checked as they are read: a
    // refused value keeps the earlier setting and the request runs no report, so nothing built
    // from it reaches a database.
    std::string reportName;
    bool preview = false;
    bool refused = false;
    const auto vendorDialect = [&] {
        return state.requestVendorConnection ? state.requestVendorConnection->dialect()
                                             : db::Dialect::SQLite;
    };
    step([&] { reportName = nextField(rest); });
    const std::string table = nextField(rest);
    refused |= !step([&] { state.requestTable = data::checkedTableName(table, vendorDialect()); });
    const std::string previewText = nextField(rest);
    step([&] { preview = toBoolean(Variant(previewText)); });
    const std::string userId = nextField(rest);
    refused |= !step([&] { state.requestUserId = data::checkedId(userId, "user id in request"); });
    const std::string jobId = nextField(rest);
    refused |= !step([&] { state.requestJobId = data::checkedId(jobId, "job id in request"); });
    const std::string excelText = nextField(rest);
    step([&] { state.requestExcel = toBoolean(Variant(excelText)); });
    const std::string pdfText = nextField(rest);
    step([&] { state.requestPdf = toBoolean(Variant(pdfText)); });
    const std::string spareFlagText = nextField(rest);
    step([&] { state.requestSpareFlag = toBoolean(Variant(spareFlagText)); });

    // Fields 9 and 10: the spare text between the first bar and " |", and the tail after the
    // next bar.
    rest = afterFirst(rest, "|");
    state.requestSpareText = beforeFirst(rest, " |");
    rest = afterFirst(rest, "|");
    state.requestTail = rest;

    state.firmName.clear();
    state.firmPhone.clear();
    state.firmFax.clear();
    state.userEmail.clear();
    state.userName.clear();

    step([&] {
        auto users = host::hostClasses().createUserService();
        users->setConnection(state.requestMasterConnection);
        const host::User user = users->getUser(toLong(Variant(state.requestUserId)));
        auto companies = host::hostClasses().createCompanyService();
        companies->setConnection(state.requestMasterConnection);
        const host::Company company = companies->getCompany();
        state.firmPhone = user.phone.empty() ? company.phone : user.phone;
        state.userEmail = user.email.empty() ? company.email : user.email;
        state.userName = user.name;
        state.firmName = company.name;
        state.firmFax = company.fax;
    });
    step([&] {
        auto paths = host::hostClasses().createPathHelper();
        state.vendorSource = paths->sourceOf(state.requestVendorConnection);
        state.vendorPath = paths->folderOf(state.vendorSource);
    });
    step([&] {
        auto vendors = host::hostClasses().createVendorService();
        vendors->setConnection(state.requestVendorConnection);
        state.vendorName = vendors->getVendor().name;
    });
    if (!refused) {
        step([&] {
            auto job = requireConnection(state.requestVendorConnection)
                           .openRecordset(data::sql::jobLookup(state.requestJobId),
                                          CursorType::Static, LockType::Optimistic);
            if (job->recordCount() != 0)
                state.currentJobName = toText(job->value("sJobName"));
            job->close();
        });
    }

    const ReportRegistration* entry = registrationOfRequest(reportName);
    if (!entry) {
        host::messageBox().show(kUnknownReport, host::MessageIcon::None, "");
    } else if (!refused) {
        if (entry->loadsLabelOffsets) {
            step([&] { LoadLabelOffsets(toLong(Variant(state.requestUserId))); });
        }
        step([&] { runSequence(reportObject(entry->className), preview); });
    }
    if (!entry || !refused)
        step([&] { reports::logReportOutcome(reportName, preview); });
}

} // namespace qr::service
