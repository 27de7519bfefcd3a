#include "service/dispatcher.hpp"

#include "data/statements.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/recordset.hpp"
#include "platform/host/error_log.hpp"
#include "platform/host/module_state.hpp"
#include "reports/common/print_reports.hpp"
#include "service/report_objects.hpp"
#include "service/report_registry.hpp"
#include "service/request_fields.hpp"
#include "service/run_sequence.hpp"

namespace qr::service {

namespace {

constexpr const char* kInvalidInput = "Invalid input string passed to PrintReport procedure";
constexpr const char* kUnknownReport =
    "Error in Main subroutine in the PrintReports Project, please call Tolmar";

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
    const RequestFields fields = splitRequest(args);

    // Fields 1 to 8. Pasted values (table, user id, job id) are checked as they are read: a
    // refused value keeps the earlier setting and the request runs no report, so nothing built
    // from it reaches a database.
    const std::string& reportName = fields.reportName;
    bool preview = false;
    bool refused = false;
    const auto vendorDialect = [&] {
        return state.requestVendorConnection ? state.requestVendorConnection->dialect()
                                             : db::Dialect::SQLite;
    };
    refused |= !step(
        [&] { state.requestTable = data::checkedTableName(fields.table, vendorDialect()); });
    step([&] { preview = toBoolean(Variant(fields.preview)); });
    refused |=
        !step([&] { state.requestUserId = data::checkedId(fields.userId, "user id in request"); });
    refused |=
        !step([&] { state.requestJobId = data::checkedId(fields.jobId, "job id in request"); });
    step([&] { state.requestExcel = toBoolean(Variant(fields.excel)); });
    step([&] { state.requestPdf = toBoolean(Variant(fields.pdf)); });
    step([&] { state.requestSpareFlag = toBoolean(Variant(fields.spareFlag)); });

    // Fields 9 and 10: the spare text between the first bar and " |", and the tail after the
    // next bar.
    state.requestSpareText = fields.spareText;
    state.requestTail = fields.tail;

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
