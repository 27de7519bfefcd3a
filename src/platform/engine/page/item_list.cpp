#include "platform/engine/page/item_list.hpp"

#include "platform/core/error.hpp"
#include "platform/engine/page/name_pool.hpp"

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>

namespace qr::page {

// Layout of one encoded item. The first byte holds the kind in its low two bits and flags
// above them; then come the item's fields in a fixed order, those in brackets only when their
// flag is set. Unsigned numbers are LEB128 varints, signed ones zigzag varints; strings are a
// length and their bytes; a name is a varint whose low bit says whether the rest is a
// NamePool id (0) or the length of the name's bytes that follow (1).
//
//   text   control section box font+band [color] [background] text runs... [number] format
//   line   control section x1 y1 (x2-x1) (y2-y1) [thickness] [color]
//   rect   control section box [thickness] [lineColor] [fill]
//   check  control section box
//
// A text's font index and page band share one varint: the zigzag font index shifted left by
// two bits, the band in the low bits (one byte for the first 32 fonts). A check box keeps its
// band in two flag bits.
// A box's coordinates are plain varints unless one of them is negative (a flag). A text's
// runs start with a count: 0 when the runs are exactly the text's lines, which then store no
// text of their own; otherwise the number of runs plus one, and each run's text is a
// reference into the item's text (a distance past the previous run's end, plus one, and a
// length) or, at 0, a string of its own. Run positions are relative to the box. A number is
// a scale byte k and the zigzag integer m with value m / 10^k, or kRawNumber and the double's
// eight bytes.

namespace {

enum Kind : std::uint8_t { kText = 0, kLine = 1, kRect = 2, kCheck = 3 };

constexpr std::uint8_t kKindMask = 0x03;

// Text flags; bits 2-3 hold the alignment.
constexpr std::uint8_t kTextAlignShift = 2;
constexpr std::uint8_t kTextBackground = 0x10;
constexpr std::uint8_t kTextColor = 0x20;
constexpr std::uint8_t kTextNumber = 0x40;
constexpr std::uint8_t kTextSignedBox = 0x80;
// Line flags.
constexpr std::uint8_t kLineColor = 0x04;
constexpr std::uint8_t kLineSigned = 0x08;
constexpr std::uint8_t kLineThickness = 0x10;
// Rectangle flags.
constexpr std::uint8_t kRectColor = 0x04;
constexpr std::uint8_t kRectFill = 0x08;
constexpr std::uint8_t kRectRounded = 0x10;
constexpr std::uint8_t kRectThickness = 0x20;
constexpr std::uint8_t kRectSignedBox = 0x40;
// Check box flags; bits 4-5 hold the page band.
constexpr std::uint8_t kCheckChecked = 0x04;
constexpr std::uint8_t kCheckSignedBox = 0x08;
constexpr std::uint8_t kCheckBandShift = 4;

constexpr std::uint8_t kBandMask = 0x03;
constexpr int kFontBandBits = 2;

constexpr int kDefaultThickness = 15;
constexpr std::uint8_t kRawNumber = 0xFF;
constexpr int kMaxScale = 9;
constexpr double kPow10[kMaxScale + 1] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
// Largest magnitude a scaled number may have and still be held exactly by a double.
constexpr double kMaxScaled = 9.0e15;

// Room reserve() sets aside per item: a little more than a typical table cell takes.
constexpr std::size_t kTypicalItemBytes = 40;

constexpr const char* kSource = "Page items";

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

double fromDecimal(std::int64_t m, int scale) {
    return scale == 0 ? static_cast<double>(m) : static_cast<double>(m) / kPow10[scale];
}

/// Finds k and m with m / 10^k giving back exactly `value`, smallest k first.
bool toDecimal(double value, int& scale, std::int64_t& m) {
    if (!(std::fabs(value) < kMaxScaled))
        return false; // also NaN and infinities
    for (int k = 0; k <= kMaxScale; ++k) {
        const double scaled = value * kPow10[k];
        if (!(std::fabs(scaled) < kMaxScaled))
            return false;
        const auto rounded = static_cast<std::int64_t>(std::nearbyint(scaled));
        if (sameBits(fromDecimal(rounded, k), value)) {
            scale = k;
            m = rounded;
            return true;
        }
    }
    return false;
}

bool hasNegative(const Rect& r) {
    return (r.x | r.y | r.width | r.height) < 0;
}

/// True when `runs` are exactly `text` cut at its line breaks, one run a line.
bool runsAreLines(const std::vector<TextRun>& runs, std::string_view text) {
    std::size_t pos = 0;
    for (const TextRun& run : runs) {
        if (pos > text.size())
            return false;
        std::size_t end = text.find('\n', pos);
        if (end == std::string_view::npos)
            end = text.size();
        if (text.substr(pos, end - pos) != run.text)
            return false;
        pos = end + 1;
    }
    return pos == text.size() + 1;
}

class Writer {
  public:
    explicit Writer(std::vector<std::uint8_t>& out) : m_out(out) {}
    ~Writer() { flush(); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void byte(std::uint8_t b) {
        room(1);
        m_buffer[m_used++] = b;
    }
    void varint(std::uint64_t v) {
        room(10);
        while (v >= 0x80) {
            m_buffer[m_used++] = static_cast<std::uint8_t>(v | 0x80);
            v >>= 7;
        }
        m_buffer[m_used++] = static_cast<std::uint8_t>(v);
    }
    void zigzag(std::int64_t v) { varint(zigzagged(v)); }
    static std::uint64_t zigzagged(std::int64_t v) {
        return (static_cast<std::uint64_t>(v) << 1) ^ static_cast<std::uint64_t>(v >> 63);
    }
    void raw(const void* data, std::size_t size) {
        const auto* p = static_cast<const std::uint8_t*>(data);
        if (size > sizeof m_buffer / 2) {
            flush();
            m_out.insert(m_out.end(), p, p + size);
            return;
        }
        room(size);
        std::memcpy(m_buffer + m_used, p, size);
        m_used += size;
    }
    /// Moves what is gathered to the output.
    void flush() {
        m_out.insert(m_out.end(), m_buffer, m_buffer + m_used);
        m_used = 0;
    }
    void string(std::string_view s) {
        varint(s.size());
        raw(s.data(), s.size());
    }
    void name(std::string_view s) {
        if (auto id = NamePool::shared().intern(s)) {
            varint(std::uint64_t{*id} << 1);
        } else {
            varint((std::uint64_t{s.size()} << 1) | 1);
            raw(s.data(), s.size());
        }
    }
    void coordinate(int v, bool isSigned) {
        if (isSigned)
            zigzag(v);
        else
            varint(static_cast<std::uint32_t>(v));
    }
    void box(const Rect& r, bool isSigned) {
        coordinate(r.x, isSigned);
        coordinate(r.y, isSigned);
        coordinate(r.width, isSigned);
        coordinate(r.height, isSigned);
    }
    void number(double value) {
        int scale = 0;
        std::int64_t m = 0;
        if (toDecimal(value, scale, m)) {
            byte(static_cast<std::uint8_t>(scale));
            zigzag(m);
        } else {
            byte(kRawNumber);
            raw(&value, sizeof value);
        }
    }

  private:
    /// Makes room for `size` more bytes in the gathering buffer.
    void room(std::size_t size) {
        if (m_used + size > sizeof m_buffer)
            flush();
    }

    // An item's bytes are gathered here and appended in one go (a long text goes straight
    // through): the output grows once per item instead of once per byte.
    std::vector<std::uint8_t>& m_out;
    std::uint8_t m_buffer[256];
    std::size_t m_used = 0;
};

class Reader {
  public:
    explicit Reader(const std::uint8_t* at) : m_at(at) {}

    std::uint8_t byte() { return *m_at++; }
    std::uint64_t varint() {
        if (*m_at < 0x80) // most values: one byte
            return *m_at++;
        std::uint64_t v = 0;
        int shift = 0;
        std::uint8_t b;
        do {
            b = *m_at++;
            v |= std::uint64_t{b & 0x7Fu} << shift;
            shift += 7;
        } while (b & 0x80);
        return v;
    }
    std::int64_t zigzag() { return unzigzagged(varint()); }
    static std::int64_t unzigzagged(std::uint64_t v) {
        return static_cast<std::int64_t>((v >> 1) ^ (~(v & 1) + 1));
    }
    int integer() { return static_cast<int>(zigzag()); }
    std::string_view string() {
        const auto size = static_cast<std::size_t>(varint());
        std::string_view s(reinterpret_cast<const char*>(m_at), size);
        m_at += size;
        return s;
    }
    std::string_view name() {
        const std::uint64_t v = varint();
        if ((v & 1) == 0)
            return NamePool::shared().name(static_cast<std::uint32_t>(v >> 1));
        const auto size = static_cast<std::size_t>(v >> 1);
        std::string_view s(reinterpret_cast<const char*>(m_at), size);
        m_at += size;
        return s;
    }
    /// Steps over a name without looking it up.
    void skipName() {
        const std::uint64_t v = varint();
        if (v & 1)
            m_at += static_cast<std::size_t>(v >> 1);
    }
    const std::uint8_t* position() const { return m_at; }
    int coordinate(bool isSigned) {
        return isSigned ? integer() : static_cast<int>(static_cast<std::uint32_t>(varint()));
    }
    Rect box(bool isSigned) {
        Rect r;
        r.x = coordinate(isSigned);
        r.y = coordinate(isSigned);
        r.width = coordinate(isSigned);
        r.height = coordinate(isSigned);
        return r;
    }
    double number() {
        const std::uint8_t scale = byte();
        if (scale != kRawNumber)
            return fromDecimal(zigzag(), scale);
        double value;
        std::memcpy(&value, m_at, sizeof value);
        m_at += sizeof value;
        return value;
    }

  private:
    const std::uint8_t* m_at;
};

// ---- Encoding -------------------------------------------------------------------------------

void encodeRunText(Writer& w, const TextRun& run, std::string_view text, std::size_t& from) {
    const std::size_t at = from <= text.size() ? text.find(run.text, from) : std::string_view::npos;
    if (at == std::string_view::npos) {
        w.varint(0);
        w.string(run.text);
        return;
    }
    w.varint(at - from + 1);
    w.varint(run.text.size());
    from = at + run.text.size();
}

void encode(Writer& w, const TextItem& t) {
    const bool signedBox = hasNegative(t.box);
    std::uint8_t head =
        kText | static_cast<std::uint8_t>(static_cast<int>(t.align) << kTextAlignShift);
    head |= t.background ? kTextBackground : 0;
    head |= t.color != kBlack ? kTextColor : 0;
    head |= t.numericValue ? kTextNumber : 0;
    head |= signedBox ? kTextSignedBox : 0;
    w.byte(head);
    w.name(t.control);
    w.name(t.section);
    w.box(t.box, signedBox);
    w.varint(Writer::zigzagged(t.font) << kFontBandBits | static_cast<std::uint8_t>(t.pageBand));
    if (t.color != kBlack)
        w.varint(t.color);
    if (t.background)
        w.varint(*t.background);
    w.string(t.text);
    const bool lines = runsAreLines(t.runs, t.text);
    w.varint(lines ? 0 : t.runs.size() + 1);
    std::size_t from = 0;
    for (const TextRun& run : t.runs) {
        w.zigzag(std::int64_t{run.x} - t.box.x);
        w.zigzag(std::int64_t{run.baseline} - t.box.y);
        w.zigzag(run.width);
        if (!lines)
            encodeRunText(w, run, t.text, from);
    }
    if (t.numericValue)
        w.number(*t.numericValue);
    w.name(t.format);
}

void encode(Writer& w, const LineItem& l) {
    const bool isSigned = (l.x1 | l.y1) < 0;
    const bool thick = l.thickness != kDefaultThickness;
    std::uint8_t head = kLine;
    head |= l.color != kBlack ? kLineColor : 0;
    head |= isSigned ? kLineSigned : 0;
    head |= thick ? kLineThickness : 0;
    w.byte(head);
    w.name(l.control);
    w.name(l.section);
    w.coordinate(l.x1, isSigned);
    w.coordinate(l.y1, isSigned);
    w.zigzag(std::int64_t{l.x2} - l.x1);
    w.zigzag(std::int64_t{l.y2} - l.y1);
    if (thick)
        w.zigzag(l.thickness);
    if (l.color != kBlack)
        w.varint(l.color);
}

void encode(Writer& w, const RectItem& r) {
    const bool signedBox = hasNegative(r.box);
    const bool thick = r.thickness != kDefaultThickness;
    std::uint8_t head = kRect;
    head |= r.lineColor != kBlack ? kRectColor : 0;
    head |= r.fill ? kRectFill : 0;
    head |= r.rounded ? kRectRounded : 0;
    head |= thick ? kRectThickness : 0;
    head |= signedBox ? kRectSignedBox : 0;
    w.byte(head);
    w.name(r.control);
    w.name(r.section);
    w.box(r.box, signedBox);
    if (thick)
        w.zigzag(r.thickness);
    if (r.lineColor != kBlack)
        w.varint(r.lineColor);
    if (r.fill)
        w.varint(*r.fill);
}

void encode(Writer& w, const CheckBoxItem& c) {
    const bool signedBox = hasNegative(c.box);
    std::uint8_t head = kCheck;
    head |= c.checked ? kCheckChecked : 0;
    head |= signedBox ? kCheckSignedBox : 0;
    head |= static_cast<std::uint8_t>(static_cast<std::uint8_t>(c.pageBand) << kCheckBandShift);
    w.byte(head);
    w.name(c.control);
    w.name(c.section);
    w.box(c.box, signedBox);
}

void encodeItem(std::vector<std::uint8_t>& out, const Item& item) {
    Writer w(out);
    std::visit([&w](const auto& value) { encode(w, value); }, item);
}

// ---- Decoding -------------------------------------------------------------------------------

template <class T> T& holding(Item& out) {
    if (auto* value = std::get_if<T>(&out))
        return *value;
    return out.emplace<T>();
}

std::size_t lineCount(std::string_view text) {
    std::size_t count = 1;
    for (char c : text)
        count += c == '\n';
    return count;
}

// Reads a name into `to`, or steps over it and leaves `to` empty when names are not wanted.
void readName(Reader& r, std::string& to, bool wanted) {
    if (wanted) {
        to.assign(r.name());
    } else {
        r.skipName();
        to.clear();
    }
}

void decodeText(Reader& r, std::uint8_t head, Item& out, unsigned parts) {
    TextItem& t = holding<TextItem>(out);
    const bool names = (parts & kDecodeNames) != 0;
    t.align = static_cast<Align>((head >> kTextAlignShift) & 0x03);
    readName(r, t.control, names);
    readName(r, t.section, names);
    t.box = r.box((head & kTextSignedBox) != 0);
    const std::uint64_t fontAndBand = r.varint();
    t.font = static_cast<int>(Reader::unzigzagged(fontAndBand >> kFontBandBits));
    t.pageBand = static_cast<PageBand>(fontAndBand & kBandMask);
    t.color = (head & kTextColor) ? static_cast<Color>(r.varint()) : kBlack;
    if (head & kTextBackground)
        t.background = static_cast<Color>(r.varint());
    else
        t.background.reset();
    t.text.assign(r.string());
    const std::uint64_t runsField = r.varint();
    const bool lines = runsField == 0;
    t.runs.resize(lines ? lineCount(t.text) : static_cast<std::size_t>(runsField - 1));
    // Without run texts the runs keep their places; a run stored on its own (not a piece of
    // the whole text) is still read, since nothing else holds its characters.
    const bool runTexts = (parts & kDecodeRunTexts) != 0 || t.text.empty();
    std::size_t from = 0; // lines: start of the next line; else end of the previous run
    for (TextRun& run : t.runs) {
        run.x = static_cast<int>(t.box.x + r.zigzag());
        run.baseline = static_cast<int>(t.box.y + r.zigzag());
        run.width = r.integer();
        if (!runTexts) {
            run.text.clear();
            if (lines) {
                continue;
            } else if (r.varint() == 0) {
                run.text.assign(r.string());
            } else {
                r.varint(); // the piece's length
            }
            continue;
        }
        if (lines) {
            std::size_t end = t.text.find('\n', from);
            if (end == std::string::npos)
                end = t.text.size();
            run.text.assign(t.text, from, end - from);
            from = end + 1;
        } else if (const std::uint64_t ref = r.varint(); ref == 0) {
            run.text.assign(r.string());
        } else {
            const std::size_t at = from + static_cast<std::size_t>(ref - 1);
            const auto size = static_cast<std::size_t>(r.varint());
            run.text.assign(t.text, at, size);
            from = at + size;
        }
    }
    if (head & kTextNumber)
        t.numericValue = r.number();
    else
        t.numericValue.reset();
    readName(r, t.format, (parts & kDecodeFormat) != 0);
}

void decodeLine(Reader& r, std::uint8_t head, Item& out) {
    LineItem& l = holding<LineItem>(out);
    const bool isSigned = (head & kLineSigned) != 0;
    l.control.assign(r.name());
    l.section.assign(r.name());
    l.x1 = r.coordinate(isSigned);
    l.y1 = r.coordinate(isSigned);
    l.x2 = static_cast<int>(l.x1 + r.zigzag());
    l.y2 = static_cast<int>(l.y1 + r.zigzag());
    l.thickness = (head & kLineThickness) ? r.integer() : kDefaultThickness;
    l.color = (head & kLineColor) ? static_cast<Color>(r.varint()) : kBlack;
}

void decodeRect(Reader& r, std::uint8_t head, Item& out) {
    RectItem& rect = holding<RectItem>(out);
    rect.control.assign(r.name());
    rect.section.assign(r.name());
    rect.box = r.box((head & kRectSignedBox) != 0);
    rect.thickness = (head & kRectThickness) ? r.integer() : kDefaultThickness;
    rect.lineColor = (head & kRectColor) ? static_cast<Color>(r.varint()) : kBlack;
    if (head & kRectFill)
        rect.fill = static_cast<Color>(r.varint());
    else
        rect.fill.reset();
    rect.rounded = (head & kRectRounded) != 0;
}

void decodeCheck(Reader& r, std::uint8_t head, Item& out, unsigned parts) {
    CheckBoxItem& c = holding<CheckBoxItem>(out);
    const bool names = (parts & kDecodeNames) != 0;
    readName(r, c.control, names);
    readName(r, c.section, names);
    c.box = r.box((head & kCheckSignedBox) != 0);
    c.checked = (head & kCheckChecked) != 0;
    c.pageBand = static_cast<PageBand>((head >> kCheckBandShift) & kBandMask);
}

void decodeItem(const std::uint8_t* at, Item& out, unsigned parts = kDecodeAll) {
    Reader r(at);
    const std::uint8_t head = r.byte();
    switch (head & kKindMask) {
    case kText:
        decodeText(r, head, out, parts);
        break;
    case kLine:
        decodeLine(r, head, out);
        break;
    case kRect:
        decodeRect(r, head, out);
        break;
    default:
        decodeCheck(r, head, out, parts);
        break;
    }
}

} // namespace

// ---- ItemList -------------------------------------------------------------------------------

ItemList::ItemList(std::initializer_list<Item> items) {
    reserve(items.size());
    for (const Item& item : items)
        push_back(item);
}

ItemList::ItemList(const std::vector<Item>& items) {
    reserve(items.size());
    for (const Item& item : items)
        push_back(item);
}

void ItemList::reserve(std::size_t count) {
    m_offsets.reserve(count);
    m_bytes.reserve(count * kTypicalItemBytes);
}

void ItemList::shrinkToFit() {
    m_offsets.shrink_to_fit();
    m_bytes.shrink_to_fit();
}

void ItemList::clear() {
    m_offsets.clear();
    m_bytes.clear();
}

void ItemList::push_back(const Item& item) {
    const std::size_t start = m_bytes.size();
    if (start > std::numeric_limits<std::uint32_t>::max())
        throw Error(errc::kOverflow, kSource, "A page holds more than 4 GiB of items.");
    encodeItem(m_bytes, item);
    m_offsets.push_back(static_cast<std::uint32_t>(start));
}

void ItemList::checkIndex(std::size_t index, const char* what) const {
    if (index >= size()) {
        throw Error(errc::kSubscriptOutOfRange, kSource,
                    std::string(what) + ": item " + std::to_string(index) + " of a page with " +
                        std::to_string(size()) + " items.");
    }
}

Item ItemList::decode(std::size_t index) const {
    Item item;
    decodeItem(m_bytes.data() + m_offsets[index], item);
    return item;
}

const Item ItemList::at(std::size_t index) const {
    checkIndex(index, "Reading");
    return decode(index);
}

const Item ItemList::back() const {
    if (empty())
        throw Error(errc::kSubscriptOutOfRange, kSource, "Reading the last item of an empty page.");
    return decode(size() - 1);
}

void ItemList::decodeInto(std::size_t index, Item& out, unsigned parts) const {
    checkIndex(index, "Reading");
    decodeItem(m_bytes.data() + m_offsets[index], out, parts);
}

PlacedItem ItemList::placed(std::size_t index) const {
    checkIndex(index, "Reading");
    Reader r(m_bytes.data() + m_offsets[index]);
    PlacedItem out;
    out.flags = r.byte();
    r.skipName(); // control
    r.skipName(); // section
    switch (out.flags & kKindMask) {
    case kText:
        out.kind = itemKind<TextItem>();
        out.box = r.box((out.flags & kTextSignedBox) != 0);
        break;
    case kLine: {
        out.kind = itemKind<LineItem>();
        const bool isSigned = (out.flags & kLineSigned) != 0;
        out.box.x = r.coordinate(isSigned);
        out.box.y = r.coordinate(isSigned);
        out.box.width = r.integer();
        out.box.height = r.integer();
        break;
    }
    case kRect:
        out.kind = itemKind<RectItem>();
        out.box = r.box((out.flags & kRectSignedBox) != 0);
        break;
    default:
        out.kind = itemKind<CheckBoxItem>();
        out.box = r.box((out.flags & kCheckSignedBox) != 0);
        break;
    }
    out.content = {r.position(), m_bytes.data() + endOf(index)};
    return out;
}

void ItemList::set(std::size_t index, const Item& item) {
    checkIndex(index, "Replacing");
    std::vector<std::uint8_t> encoded;
    encodeItem(encoded, item);
    const std::size_t start = m_offsets[index];
    const std::size_t oldSize = endOf(index) - start;
    if (encoded.size() != oldSize) {
        if (m_bytes.size() - oldSize + encoded.size() > std::numeric_limits<std::uint32_t>::max())
            throw Error(errc::kOverflow, kSource, "A page holds more than 4 GiB of items.");
        const auto delta =
            static_cast<std::int64_t>(encoded.size()) - static_cast<std::int64_t>(oldSize);
        if (delta > 0 && m_bytes.size() + static_cast<std::size_t>(delta) > m_bytes.capacity())
            m_bytes.reserve(m_bytes.size() + static_cast<std::size_t>(delta)); // no spare room
        if (delta > 0)
            m_bytes.insert(m_bytes.begin() + static_cast<std::ptrdiff_t>(start + oldSize),
                           static_cast<std::size_t>(delta), 0);
        else
            m_bytes.erase(m_bytes.begin() + static_cast<std::ptrdiff_t>(start + encoded.size()),
                          m_bytes.begin() + static_cast<std::ptrdiff_t>(start + oldSize));
        for (std::size_t i = index + 1; i < m_offsets.size(); ++i)
            m_offsets[i] = static_cast<std::uint32_t>(m_offsets[i] + delta);
    }
    std::memcpy(m_bytes.data() + start, encoded.data(), encoded.size());
}

std::size_t ItemList::capacityBytes() const {
    return m_bytes.capacity() + m_offsets.capacity() * sizeof(std::uint32_t);
}

std::uint64_t ItemList::digest() const {
    const std::hash<std::string_view> hash;
    const std::uint64_t bytes =
        hash({reinterpret_cast<const char*>(m_bytes.data()), m_bytes.size()});
    const std::uint64_t offsets = hash({reinterpret_cast<const char*>(m_offsets.data()),
                                        m_offsets.size() * sizeof(std::uint32_t)});
    return bytes ^ (offsets + 0x9E3779B97F4A7C15ULL + (bytes << 6) + (bytes >> 2));
}

bool operator==(const ItemList& a, const ItemList& b) {
    if (a.size() != b.size())
        return false;
    if (a.m_bytes == b.m_bytes && a.m_offsets == b.m_offsets)
        return true;
    Item x, y;
    for (std::size_t i = 0; i < a.size(); ++i) {
        a.decodeInto(i, x);
        b.decodeInto(i, y);
        if (x != y)
            return false;
    }
    return true;
}

} // namespace qr::page
