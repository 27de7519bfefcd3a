#pragma once
// The values a page is made of: text, lines, rectangles and check boxes, coordinates in twips
// (1/1440 inch) from the top-left corner of the paper. These are the plain, decoded forms; a
// page keeps them packed in an ItemList and hands them out as these values.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace qr::page {

inline constexpr int kTwipsPerInch = 1440;
inline constexpr int kTwipsPerPoint = 20;
inline constexpr int kLetterWidth = 12240;
inline constexpr int kLetterHeight = 15840;

struct Rect {
    int x = 0, y = 0, width = 0, height = 0;
    bool operator==(const Rect&) const = default;
};

/// A font as the designs name it ("Arial" is drawn with Liberation Sans).
struct FontSpec {
    std::string family = "Arial";
    double sizePoints = 10.0;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool operator==(const FontSpec&) const = default;
};

/// RGB colour, 0xRRGGBB.
using Color = std::uint32_t;
inline constexpr Color kBlack = 0x000000;

enum class Align { Left, Center, Right };

/// Where on its page an item was printed: in the body, or in the page header or page footer
/// that every page repeats. Outputs that are not paged (the workbook) show the body once and
/// treat the repeated parts apart.
enum class PageBand : std::uint8_t { Body, Header, Footer };

/// One laid-out line of text: its left end at x and its baseline at y.
struct TextRun {
    int x = 0;
    int baseline = 0;
    int width = 0; // measured advance, twips
    std::string text;
    bool operator==(const TextRun&) const = default;
};

/// A label or text box as printed. `runs` are the lines the engine placed inside `box`.
/// `numericValue` holds the number behind the text when the control showed a number (a bound
/// or summed value, or a number a handler set through a format), and `format` the output
/// format it was shown with, so the workbook can write a numeric cell with the same format.
struct TextItem {
    Rect box;
    int font = 0; // index into Pages::fonts
    Align align = Align::Left;
    Color color = kBlack;
    std::optional<Color> background;
    std::vector<TextRun> runs;
    std::string text; // the whole text, line breaks as "\n"
    std::optional<double> numericValue;
    std::string format;
    std::string control; // design name of the control, for dumps and tests
    std::string section; // design name of the section that printed it
    PageBand pageBand = PageBand::Body;
    bool operator==(const TextItem&) const = default;
};

struct LineItem {
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    int thickness = 15; // twips
    Color color = kBlack;
    std::string control;
    std::string section; // design name of the section that printed it
    bool operator==(const LineItem&) const = default;
};

struct RectItem {
    Rect box;
    int thickness = 15;
    Color lineColor = kBlack;
    std::optional<Color> fill;
    bool rounded = false;
    std::string control;
    std::string section; // design name of the section that printed it
    bool operator==(const RectItem&) const = default;
};

struct CheckBoxItem {
    Rect box; // the square
    bool checked = false;
    std::string control;
    std::string section; // design name of the section that printed it
    PageBand pageBand = PageBand::Body;
    bool operator==(const CheckBoxItem&) const = default;
};

using Item = std::variant<TextItem, LineItem, RectItem, CheckBoxItem>;

} // namespace qr::page
