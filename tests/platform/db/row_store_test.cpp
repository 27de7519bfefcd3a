// Packed rows give back every cell exactly as it went in, Variants and driver values alike,
// and a rewritten cell leaves its neighbours and the other rows as they were.
#include "platform/db/row_store.hpp"

#include <QDate>
#include <QDateTime>
#include <gtest/gtest.h>

#include <limits>

namespace qr::test {
namespace {

using db::RowStore;

const std::vector<Variant>& sampleVariants() {
    static const std::vector<Variant> values{
        Variant(),
        Variant::null(),
        Variant(true),
        Variant(false),
        Variant(std::int16_t{-32768}),
        Variant(std::numeric_limits<std::int32_t>::min()),
        Variant(std::int32_t{1234567}),
        Variant(1.5f),
        Variant(-0.1),
        Variant(std::numeric_limits<double>::max()),
        Variant(Currency::fromTicks(std::numeric_limits<std::int64_t>::min())),
        Variant(Currency::fromTicks(123456789)),
        Variant(Date::fromParts(2024, 3, 15, 14, 30, 0)),
        Variant(std::string()),
        Variant(std::string(300, 'x') + "\r\n\xC3\xA9"), // longer than one length byte holds
        Variant(std::string("nul\0inside", 10)),
    };
    return values;
}

TEST(RowStore, VariantsComeBackAsTheyWentIn) {
    const auto& values = sampleVariants();
    RowStore store(values.size());
    for (int row = 0; row < 3; ++row) {
        store.beginRow();
        // Each row shifted by one, so that every value stands in every position somewhere.
        for (std::size_t c = 0; c < values.size(); ++c)
            store.append(values[(c + row) % values.size()]);
    }
    ASSERT_EQ(store.rows(), 3u);
    // Column after column, backwards, and across the rows: reading goes on from the cell read
    // last only where that is the same row further on.
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t c = 0; c < values.size(); ++c)
            EXPECT_EQ(store.value(row, c), values[(c + row) % values.size()])
                << "row " << row << " column " << c;
    for (std::size_t c = values.size(); c-- > 0;)
        for (std::size_t row : {2u, 0u, 1u})
            EXPECT_EQ(store.value(row, c), values[(c + row) % values.size()])
                << "row " << row << " column " << c;
}

TEST(RowStore, DriverValuesKeepTheirTypeAndNullness) {
    const std::vector<QVariant> values{
        QVariant(),
        QVariant(QMetaType(QMetaType::LongLong)), // a null of the column's type
        QVariant(true),
        QVariant(int{-7}),
        QVariant(qlonglong{std::numeric_limits<qlonglong>::max()}),
        QVariant(qulonglong{std::numeric_limits<qulonglong>::max()}),
        QVariant(2.675),
        QVariant(QString::fromUtf8("Caf\xC3\xA9 \xF0\x9F\x98\x80")), // a surrogate pair
        QVariant(QByteArray("\x00\x01\xff", 3)),
        QVariant(QDate(2024, 2, 29)),
    };
    RowStore store(values.size());
    store.beginRow();
    for (const QVariant& v : values)
        store.append(v);
    for (std::size_t c = 0; c < values.size(); ++c) {
        const QVariant back = store.raw(0, c);
        EXPECT_EQ(back.isValid(), values[c].isValid()) << c;
        EXPECT_EQ(back.isNull(), values[c].isNull()) << c;
        EXPECT_EQ(back.metaType(), values[c].metaType()) << c;
        EXPECT_EQ(back, values[c]) << c;
    }
}

TEST(RowStore, ASetCellRewritesOnlyThatCell) {
    RowStore store(3);
    for (int row = 0; row < 2; ++row) {
        store.beginRow();
        store.append(Variant(std::int32_t{row}));
        store.append(Variant("short"));
        store.append(Variant(2.5 * row));
    }
    EXPECT_EQ(store.value(0, 1), Variant("short")); // read before the row moves
    store.set(0, 1, Variant(std::string(200, 'w'))); // longer than the cell it replaces
    EXPECT_EQ(store.value(0, 1), Variant(std::string(200, 'w')));
    store.set(0, 1, Variant::null());
    EXPECT_EQ(store.value(0, 0), Variant(std::int32_t{0}));
    EXPECT_EQ(store.value(0, 1), Variant::null());
    EXPECT_EQ(store.value(0, 2), Variant(0.0));
    EXPECT_EQ(store.value(1, 1), Variant("short"));
    EXPECT_EQ(store.value(1, 2), Variant(2.5));

    store.clear();
    EXPECT_EQ(store.rows(), 0u);
    EXPECT_EQ(store.bytes(), 0u);
    store.beginRow();
    store.append(Variant("a"));
    store.append(Variant("b"));
    store.append(Variant("c"));
    EXPECT_EQ(store.value(0, 2), Variant("c"));
}

} // namespace
} // namespace qr::test
