#include "platform/db/connection.hpp"
#include "service/print_service.hpp"
#include "service/report_objects.hpp"
#include "service/run_sequence.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <cstdlib>
#include <gtest/gtest.h>

namespace qr::service {
namespace {

host::ConnectionRef memoryDatabase() {
    return std::make_shared<db::Connection>("sqlite::memory:");
}

TEST(PrintReport, RefusesToRunWithoutBothConnections) {
    test::RecordingHost recording;
    struct Case {
        bool vendor, master;
    };
    for (Case c : {Case{false, false}, Case{true, false}, Case{false, true}}) {
        PrintService service;
        if (c.vendor)
            service.setVendorConnection(memoryDatabase());
        if (c.master)
            service.setMasterConnection(memoryDatabase());
        host::moduleState().requestTable = "earlier";
        std::string args = "armarkup t true 12 345 false true false |x |a;b";
        try {
            service.PrintReport(args);
            ADD_FAILURE() << "no error raised";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 999);
            EXPECT_EQ(e.source(), "QuarvexReports.PrintService");
            EXPECT_EQ(e.description(), "Cannot call PrintReport() without setting the "
                                       "VendorConnection and MasterConnection properties first");
        }
        EXPECT_EQ(host::moduleState().requestTable, "earlier") << "no module state changes";
        EXPECT_FALSE(host::moduleState().requestVendorConnection);
        EXPECT_TRUE(recording.messages->shown.empty());
    }
}

TEST(PrintReport, ClearsTheRequestConnectionsAfterTheCall) {
    test::RecordingHost recording;
    PrintService service;
    service.setVendorConnection(memoryDatabase());
    service.setMasterConnection(memoryDatabase());
    for (std::string args :
         {std::string(), std::string("nosuchreport t true 1 1 false false false |x |")}) {
        service.PrintReport(args);
        EXPECT_FALSE(host::moduleState().requestVendorConnection);
        EXPECT_FALSE(host::moduleState().requestMasterConnection);
    }
    ASSERT_GE(recording.messages->shown.size(), 2u);
    EXPECT_EQ(recording.messages->shown.front().text,
              "Invalid input string passed to PrintReport procedure");
}

TEST(PrintService, ContainerSetterBecomesTheThreadsSharedContainer) {
    test::RecordingHost recording;
    host::moduleState().sharedContainer.reset();
    PrintService first, second;
    first.setContainer(recording.host);
    EXPECT_EQ(host::moduleState().sharedContainer, recording.host);
    EXPECT_EQ(second.Container(), nullptr) << "the property itself belongs to each object";
}

TEST(TypedMethods, AFailureShowsOneDialogNamingTheMethodAndReturns) {
    test::RecordingHost recording;
    PrintService service;
    host::JobPartsReportData data;
    // The report runs; printing it fails.
    ::setenv("QUARVEX_PRINTER", "file:", 1);
    EXPECT_NO_THROW(service.PrintJobPartsReport(data, false));
    ::unsetenv("QUARVEX_PRINTER");
    const std::string failure = "QUARVEX_PRINTER asks for a file but names none (write file:PATH).";
    ASSERT_EQ(recording.messages->shown.size(), 1u);
    EXPECT_EQ(recording.messages->shown[0].title, "Quarvex Error");
    EXPECT_EQ(recording.messages->shown[0].text,
              "Description: " + failure +
                  "\r\nModule: PrintService\r\nFunction: PrintJobPartsReport");
    auto entries = recording.host->usageEntries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].error, failure + "\r\n in 'PrintService.PrintJobPartsReport'");
}

TEST(TypedMethods, ElevationPartsReportShowsTheErrorEncounteredBoxInstead) {
    test::RecordingHost recording;
    PrintService service;
    // A vendor database without its Vendor table: the vendor record cannot be read.
    service.setVendorConnection(memoryDatabase());
    host::User user;
    host::ElevationData elevation;
    host::PartsReportListItems items;
    std::string vendorPath = "/data/vendor";
    service.PrintElevationPartsReport(user, elevation, items, vendorPath);
    ASSERT_EQ(recording.messages->shown.size(), 1u);
    EXPECT_EQ(recording.messages->shown[0].title, "Error Encountered");
    EXPECT_EQ(recording.messages->shown[0].icon, host::MessageIcon::Information);
    EXPECT_EQ(host::moduleState().vendorPath, "/data/vendor");
    EXPECT_EQ(vendorPath, "/data/vendor");
}

} // namespace
} // namespace qr::service
