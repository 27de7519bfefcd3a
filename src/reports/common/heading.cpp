#include "reports/common/heading.hpp"

#include "platform/core/date.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/host/module_state.hpp"

namespace qr::reports {

namespace {

HeadingTexts headingOf(const host::User& user, const host::Company& company,
                       const std::string& job) {
    HeadingTexts texts;
    texts.firm = company.name;
    texts.user = user.name;
    texts.phone = user.phone.empty() ? company.phone : user.phone;
    texts.email = user.email;
    texts.fax = company.fax;
    texts.job = job;
    return texts;
}

} // namespace

HeadingTexts headingOf(const host::ReportHeading& data) {
    return headingOf(data.User, data.Company, data.Job.JobName);
}

HeadingTexts headingOf(const host::PartsReportHeading& data) {
    return headingOf(data.User, data.Company, data.JobName);
}

HeadingTexts requestHeading() {
    const auto& state = host::moduleState();
    return {state.firmName,  state.userName, state.firmPhone,
            state.userEmail, state.firmFax,  state.currentJobName};
}

void showHeading(engine::Report& report, const HeadingTexts& texts, const HeadingControls& names) {
    const auto show = [&](const char* name, const std::string& text) {
        if (name)
            report.label(name).setCaption(text);
    };
    show(names.firm, texts.firm);
    show(names.user, texts.user);
    show(names.phone, texts.phone);
    show(names.email, texts.email);
    show(names.fax, texts.fax);
    show(names.job, texts.job);
}

void showReportDateTime(engine::Report& report) {
    const Date now = Clock::now();
    report.label("RptDate").setCaption(systemFormats().shortDate(now));
    report.label("RptTime").setCaption(systemFormats().shortTime(now));
}

std::vector<engine::ControlDesign> dateTimeLabels(page::Rect date, double size, page::Align align) {
    page::Rect time = date;
    time.y += date.height;
    auto dateLabel = engine::label("RptDate", date, "").size(size);
    auto timeLabel = engine::label("RptTime", time, "").size(size);
    dateLabel.align = align;
    timeLabel.align = align;
    return {std::move(dateLabel), std::move(timeLabel)};
}

} // namespace qr::reports
