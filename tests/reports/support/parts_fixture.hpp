#pragma once
// What the parts and metal report tests share: the process set up as the service sets it up
// (fonts, export filters), the clock and locale pinned, a recording host, a heading as a host
// fills it, and readers of what a report printed.

#include "platform/core/system_formats.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/host/report_data.hpp"
#include "reports/support/cost_fixture.hpp"
#include "service/component.hpp"
#include "support/host/recording_host.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace qr::test {

inline constexpr const char* kPartsJob = "Maple Street Dental";

/// The heading a host fills for the small storefront job.
inline host::PartsReportHeading partsHeading() {
    host::PartsReportHeading heading;
    heading.User = {1, "Dana Whitfield", "(360) 555-0148", "dana@cascadeglazing.example"};
    heading.Company = {"Cascade Glass & Glazing, Inc.", "(360) 555-0100", "(360) 555-0101",
                       "bids@cascadeglazing.example"};
    heading.Vendor = {"Pacific Architectural Aluminum"};
    heading.JobName = kPartsJob;
    heading.FinishColor = "Dark Bronze Anodized";
    return heading;
}

class PartsReportTest : public ::testing::Test {
  protected:
    void SetUp() override {
        service::initializeComponent();
        setSystemFormats(SystemFormats("en_US"));
        Clock::pin(Date::fromParts(2024, 3, 15, 14, 5));
    }
    void TearDown() override { Clock::unpin(); }

    /// The dialogs and message boxes shown so far, "title: text" each.
    std::vector<std::string> shown() const {
        std::vector<std::string> lines;
        for (const auto& message : m_host.messages->shown)
            lines.push_back(message.title + ": " + message.text);
        return lines;
    }

    RecordingHost m_host;
    TempDir m_dir;
};

/// The texts a control printed on every page, in order (a hidden control prints none).
inline std::vector<std::string> printed(const page::Pages& pages, const std::string& control) {
    return costTexts(pages, control);
}

/// How many items of any kind (text, line, frame) a control printed.
inline int timesPrinted(const page::Pages& pages, const std::string& control) {
    int count = 0;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            std::visit([&](const auto& i) { count += i.control == control ? 1 : 0; }, item);
        }
    }
    return count;
}

/// Every text of a page, in the order printed, joined by blanks.
inline std::string pageText(const page::Page& page) {
    std::string text;
    for (const page::Item& item : page.items) {
        if (const auto* t = std::get_if<page::TextItem>(&item); t && !t->text.empty())
            text += t->text + " ";
    }
    return text;
}

using Texts = std::vector<std::string>;

} // namespace qr::test
