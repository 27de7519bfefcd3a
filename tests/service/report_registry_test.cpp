// The registry is the one list of report classes: the dispatcher, the print service and the
// command line all read it, so a duplicate or a wrong factory would misroute a report.

#include "service/report_registry.hpp"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace qr::service {
namespace {

TEST(ReportRegistry, NamesAreUniqueAndRequestNamesLowerCase) {
    std::set<std::string> classes, requests, methods;
    for (const auto& entry : reportRegistry()) {
        EXPECT_TRUE(classes.insert(entry.className).second) << entry.className;
        if (entry.requestName) {
            const std::string name = entry.requestName;
            EXPECT_TRUE(requests.insert(name).second) << name;
            for (char c : name)
                EXPECT_FALSE(c >= 'A' && c <= 'Z') << name;
        }
        if (entry.method) {
            EXPECT_TRUE(methods.insert(entry.method->name).second) << entry.method->name;
        }
    }
    // The host's interface: twenty typed methods and twenty-three request names.
    EXPECT_EQ(methods.size(), 20u);
    EXPECT_EQ(requests.size(), 23u);
}

TEST(ReportRegistry, EachFactoryMakesItsOwnClassAndExportsEndInTheirExtensions) {
    for (const auto& entry : reportRegistry()) {
        if (!entry.factory)
            continue;
        const auto report = entry.factory();
        EXPECT_EQ(report->className(), entry.className);
        if (entry.exports.pdf) {
            EXPECT_TRUE(std::string(entry.exports.spreadsheet).ends_with(".xls"))
                << entry.className;
            EXPECT_TRUE(std::string(entry.exports.pdf).ends_with(".pdf")) << entry.className;
        }
    }
}

TEST(ReportRegistry, LookupsFindByClassRequestAndMethod) {
    ASSERT_NE(registrationOfRequest("armarkup"), nullptr);
    EXPECT_STREQ(registrationOfRequest("armarkup")->className, "ARMarkup");
    EXPECT_EQ(registrationOfRequest("ARMarkup"), nullptr); // request names arrive lower-cased
    ASSERT_NE(registrationOfMethod("PrintCutLabelsSmallB"), nullptr);
    EXPECT_STREQ(registrationOfMethod("PrintCutLabelsSmallB")->className,
                 "arAvery5267BMetalLabels");
    EXPECT_TRUE(registrationOfRequest("aravery5267bglasslabels")->loadsLabelOffsets);
    EXPECT_EQ(registrationOfClass("NoSuchReport"), nullptr);
}

} // namespace
} // namespace qr::service
