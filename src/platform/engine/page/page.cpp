#include "platform/engine/page/page.hpp"

#include <cstdio>

namespace qr::page {

int Pages::fontIndex(const FontSpec& font) {
    for (size_t i = 0; i < fonts.size(); ++i) {
        if (fonts[i] == font)
            return static_cast<int>(i);
    }
    fonts.push_back(font);
    return static_cast<int>(fonts.size() - 1);
}

namespace {

void appendQuoted(std::string& out, const std::string& text) {
    out += '"';
    for (char c : text) {
        switch (c) {
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        default:
            out += c;
        }
    }
    out += '"';
}

void appendName(std::string& out, const std::string& section, const std::string& control) {
    out += section;
    out += '/';
    out += control;
}

void appendBox(std::string& out, const Rect& r) {
    out += " [" + std::to_string(r.x) + ',' + std::to_string(r.y) + ' ' + std::to_string(r.width) +
           'x' + std::to_string(r.height) + ']';
}

std::string hexColor(Color c) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%06X", static_cast<unsigned>(c & 0xFFFFFF));
    return buffer;
}

const char* alignCode(Align a) {
    switch (a) {
    case Align::Left:
        return "L";
    case Align::Center:
        return "C";
    case Align::Right:
        return "R";
    }
    return "L";
}

struct ItemDumper {
    std::string& out;

    void operator()(const TextItem& t) const {
        out += "text  ";
        appendName(out, t.section, t.control);
        appendBox(out, t.box);
        out += ' ';
        out += alignCode(t.align);
        out += ' ';
        appendQuoted(out, t.text);
    }
    void operator()(const LineItem& l) const {
        out += "line  ";
        appendName(out, l.section, l.control);
        out += " (" + std::to_string(l.x1) + ',' + std::to_string(l.y1) + ")-(" +
               std::to_string(l.x2) + ',' + std::to_string(l.y2) + ')';
    }
    void operator()(const RectItem& r) const {
        out += "rect  ";
        appendName(out, r.section, r.control);
        appendBox(out, r.box);
        if (r.rounded)
            out += " rounded";
        if (r.fill)
            out += " fill " + hexColor(*r.fill);
    }
    void operator()(const CheckBoxItem& c) const {
        out += "check ";
        appendName(out, c.section, c.control);
        appendBox(out, c.box);
        out += c.checked ? " x" : " -";
    }
};

} // namespace

std::string dump(const Page& page) {
    std::string out;
    for (const Item& item : page.items) {
        std::visit(ItemDumper{out}, item);
        out += '\n';
    }
    return out;
}

std::string dump(const Pages& pages) {
    std::string out;
    const size_t count = pages.pages.size();
    for (size_t i = 0; i < count; ++i) {
        out += "page " + std::to_string(i + 1) + " of " + std::to_string(count) + '\n';
        out += dump(pages.pages[i]);
    }
    return out;
}

} // namespace qr::page
