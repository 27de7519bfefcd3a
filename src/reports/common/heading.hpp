#pragma once
// The heading block the reports share: who prints the report (the firm, the user, the phone
// with its fallback, the e-mail and fax) for which job, and when (RptDate and RptTime, always
// labels). Each design places these controls where its layout wants them; the texts come from
// the typed route's report data or the request route's module state, filled by one function.

#include "platform/engine/design/report_design.hpp"
#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"

#include <string>
#include <vector>

namespace qr::reports {

/// The texts of a heading block.
struct HeadingTexts {
    std::string firm;
    std::string user;
    /// The user's phone, or the firm's when the user's is empty (a blank one is the user's
    /// choice and stays).
    std::string phone;
    std::string email;
    std::string fax;
    std::string job;
};

/// The heading of a typed method's report data, with the phone's fallback applied.
HeadingTexts headingOf(const host::ReportHeading& data);
/// The same for the parts and metal report data, whose job is a name of its own.
HeadingTexts headingOf(const host::PartsReportHeading& data);
/// The heading of the current request: the look-ups the dispatcher made (it applied the
/// fallbacks) and the job name of the request.
HeadingTexts requestHeading();

/// The names a design gives its heading controls; nullptr where the design has none.
struct HeadingControls {
    const char* firm = "lGlassfirm";
    const char* user = "lUserName";
    const char* phone = "lPhone";
    const char* email = "lEmail";
    const char* fax = nullptr;
    const char* job = "lJobName";
};

/// Sets the captions of the heading labels the design names.
void showHeading(engine::Report& report, const HeadingTexts& texts, const HeadingControls& names);

/// Sets RptDate and RptTime to the report clock's date and time in the system's short formats.
void showReportDateTime(engine::Report& report);

/// The RptDate label at `date` and the RptTime label right under it, both `size` points.
std::vector<engine::ControlDesign> dateTimeLabels(page::Rect date, double size,
                                                  page::Align align = page::Align::Right);

} // namespace qr::reports
