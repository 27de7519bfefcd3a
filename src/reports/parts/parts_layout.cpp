#include "reports/parts/parts_layout.hpp"

#include "reports/common/page_footer.hpp"

#include <algorithm>

namespace qr::reports::parts {

namespace {

constexpr int kTitleHeight = 400;
constexpr int kFirmTop = 460;
constexpr int kFirmHeight = 270;
constexpr int kHeadingRow = 240;
constexpr int kCaptionWidth = 1300;
constexpr int kDateTimeWidth = 2400;

page::FontSpec arial(double size, bool bold = false) {
    page::FontSpec font;
    font.sizePoints = size;
    font.bold = bold;
    return font;
}

/// One column of captioned lines starting at (x, top), `width` wide.
void addHeadingLines(std::vector<engine::ControlDesign>& controls,
                     const std::vector<HeadingLine>& lines, int x, int top, int width,
                     CaptionMaker& captions) {
    int y = top;
    for (const HeadingLine& line : lines) {
        controls.push_back(captions({x, y, kCaptionWidth, kHeadingRow}, line.caption));
        controls.push_back(textLabel(line.valueLabel,
                                     {x + kCaptionWidth, y, width - kCaptionWidth, kHeadingRow},
                                     kHeadingTextSize, "xx"));
        y += kHeadingRow;
    }
}

} // namespace

int addHeadingBlock(std::vector<engine::ControlDesign>& controls, const HeadingBlock& block,
                    CaptionMaker& captions) {
    const double size = captions.size();
    captions.setSize(14);
    controls.push_back(
        captions.bold({0, 0, block.width - kDateTimeWidth, kTitleHeight}, block.title));
    captions.setSize(size);
    for (auto& c :
         dateTimeLabels({block.width - kDateTimeWidth, 0, kDateTimeWidth, 220}, kHeadingTextSize))
        controls.push_back(std::move(c));

    const int half = block.width / 2;
    int top = kFirmTop;
    if (block.subheading) {
        auto subheading = textLabel(block.subheading, {0, kTitleHeight, half, kHeadingRow},
                                    kHeadingTextSize, block.subheadingText)
                              .bold();
        if (!block.subheadingShown)
            subheading.hidden();
        controls.push_back(std::move(subheading));
        top += kHeadingRow;
    }
    controls.push_back(textLabel("lGlassfirm", {0, top, half, kFirmHeight}, 11, "xx").bold());
    top += kFirmHeight;
    if (block.userName) {
        controls.push_back(
            textLabel("lUserName", {0, top, half, kHeadingRow}, kHeadingTextSize, "xx"));
        top += kHeadingRow;
    }
    top += 60;
    addHeadingLines(controls, block.left, 0, top, half - 200, captions);
    addHeadingLines(controls, block.right, half, top, block.width - half, captions);
    const auto rows = std::max(block.left.size(), block.right.size());
    return top + static_cast<int>(rows) * kHeadingRow + 60;
}

void addColumnCaptions(std::vector<engine::ControlDesign>& controls,
                       const std::vector<Column>& columns, int top, CaptionMaker& captions) {
    for (const Column& column : columns) {
        const int lines = static_cast<int>(column.captions.size());
        const int rows = column.captionRows > 0 ? column.captionRows : lines;
        const int firstRow = top + (kCaptionRows - rows) * kCaptionRowHeight;
        auto place = [&](engine::ControlDesign caption) {
            caption.withFont(arial(kLineTextSize, true));
            caption.align = column.align;
            controls.push_back(std::move(caption));
        };
        if (!column.captionName.empty() || rows != lines) {
            std::string text;
            for (const std::string& line : column.captions)
                text += (text.empty() ? "" : " ") + line;
            const page::Rect box{column.x, firstRow, column.width, rows * kCaptionRowHeight};
            place(column.captionName.empty() ? captions(box, text)
                                             : engine::label(column.captionName, box, text));
            continue;
        }
        for (int i = 0; i < lines; ++i) {
            place(captions(
                {column.x, firstRow + i * kCaptionRowHeight, column.width, kCaptionRowHeight},
                column.captions[static_cast<std::size_t>(i)]));
        }
    }
}

Column growing(Column column) {
    column.grows = true;
    return column;
}

engine::SectionDesign lineOf(const std::vector<Column>& columns) {
    std::vector<engine::ControlDesign> controls;
    for (const Column& column : columns) {
        const page::Rect box{column.x, 0, column.width, kLineHeight};
        engine::ControlDesign control = column.field.empty()
                                            ? engine::label(column.control, box, "")
                                            : engine::textBox(column.control, box, column.field);
        if (!column.format.empty())
            control.format(column.format);
        if (column.grows)
            control.grow();
        control.size(kLineTextSize);
        control.align = column.align;
        controls.push_back(std::move(control));
    }
    return engine::detail("Detail", kLineHeight, std::move(controls));
}

engine::SectionDesign partsPageFooter(int width, const char* rule) {
    engine::SectionDesign footer =
        pageNumberFooter({width - 3000, 100, 3000, 220}, kLineTextSize, page::Align::Right, 360);
    if (rule)
        footer.controls.push_back(engine::line(rule, 0, 60, width, 60).weight(10));
    return footer;
}

void showPartsHeading(engine::Report& report, const host::PartsReportHeading& data,
                      const HeadingLabels& labels) {
    showHeading(report, headingOf(data),
                HeadingControls{.firm = "lGlassfirm",
                                .user = labels.user,
                                .phone = "lPhone",
                                .email = labels.email,
                                .fax = labels.fax,
                                .job = "lJobName"});
    report.label("lVendor").setCaption(data.Vendor.name);
    if (labels.finish)
        report.label(labels.finish).setCaption(data.FinishColor);
    showReportDateTime(report);
}

} // namespace qr::reports::parts
