#pragma once
// Module state: the values a print request leaves for the reports it runs, the connections a
// request borrows, the container error dialogs go through, and the export folder. One copy per
// thread, shared by every PrintService object and report on that thread; nothing is locked
// because calls on one thread never overlap.

#include "platform/host/services.hpp"

#include <cstdint>
#include <string>
#include <utility>

namespace qr::host {

struct ModuleState {
    ConnectionRef requestVendorConnection; // set only during PrintReport
    ConnectionRef requestMasterConnection; // set only during PrintReport
    std::shared_ptr<ServiceContainer> sharedContainer;
    std::string vendorPath;
    std::string currentJobName;

    std::string requestTable;
    std::string requestUserId;
    std::string requestJobId;
    bool requestExcel = false;
    bool requestPdf = false;
    bool requestSpareFlag = false;
    std::string requestSpareText;
    std::string requestTail;

    std::string firmName;
    std::string firmPhone;
    std::string firmFax;
    std::string userEmail;
    std::string userName;
    std::string vendorName;
    std::string vendorSource;

    std::int16_t labelTopOffset = 0;
    std::int16_t labelLeftOffset = 0;
};

/// This thread's module state.
ModuleState& moduleState();

/// Lends a request's two connections to this thread's module state for one call: set when made,
/// cleared when it goes, however the call ends.
class RequestConnectionsScope {
public:
    RequestConnectionsScope(ConnectionRef vendor, ConnectionRef master) {
        ModuleState& state = moduleState();
        state.requestVendorConnection = std::move(vendor);
        state.requestMasterConnection = std::move(master);
    }
    ~RequestConnectionsScope() {
        ModuleState& state = moduleState();
        state.requestMasterConnection.reset();
        state.requestVendorConnection.reset();
    }
    RequestConnectionsScope(const RequestConnectionsScope&) = delete;
    RequestConnectionsScope& operator=(const RequestConnectionsScope&) = delete;
};

} // namespace qr::host
