// The memo behind the workbook's and the text layout's caches: one value per distinct key,
// found again however many keys came in between, and never one key's value for another.
#include "platform/core/bytes_memo.hpp"

#include <gtest/gtest.h>
#include <string>

namespace qr {
namespace {

TEST(BytesMemo, EachDistinctKeyHasOneValueFoundAgainAsItGrows) {
    BytesMemo<std::string> memo(20000, 1 << 20);
    // Keys that differ only in their tag, in a last byte, in length or by being empty.
    const std::pair<std::uint32_t, std::string> keys[] = {
        {0, ""}, {1, ""}, {0, "ab"}, {0, "abc"}, {7, "abc"}, {0, std::string("a\0c", 3)}};
    for (const auto& [tag, bytes] : keys) {
        const auto [index, added] = memo.findOrAdd(tag, bytes);
        ASSERT_TRUE(added) << tag << " " << bytes;
        memo[index] = std::to_string(tag) + ":" + bytes;
    }
    for (int i = 0; i < 10000; ++i) // enough to grow the index many times
        memo[memo.findOrAdd(9, "key " + std::to_string(i)).first] = std::to_string(i);
    for (const auto& [tag, bytes] : keys) {
        const auto [index, added] = memo.findOrAdd(tag, bytes);
        EXPECT_FALSE(added);
        EXPECT_EQ(memo[index], std::to_string(tag) + ":" + bytes);
    }
    for (int i = 0; i < 10000; ++i)
        ASSERT_EQ(memo[memo.findOrAdd(9, "key " + std::to_string(i)).first], std::to_string(i));
    EXPECT_EQ(memo.size(), 10006U);
}

TEST(BytesMemo, AFullMemoRefusesNewKeysUntilCleared) {
    BytesMemo<int> byCount(3, 1000);
    BytesMemo<int> byBytes(1000, 8);
    for (int i = 0; i < 3; ++i) {
        byCount.findOrAdd(0, std::to_string(i));
        byBytes.findOrAdd(0, "four" + std::to_string(i));
    }
    EXPECT_TRUE(byCount.full());
    EXPECT_TRUE(byBytes.full());
    EXPECT_EQ(byCount.findOrAdd(0, "new"), std::make_pair(BytesMemo<int>::kNone, false));
    EXPECT_EQ(byCount.findOrAdd(0, "1").second, false); // a known key is still found
    byCount.clear();
    EXPECT_FALSE(byCount.full());
    EXPECT_EQ(byCount.findOrAdd(0, "1"), std::make_pair(std::uint32_t{0}, true));
}

} // namespace
} // namespace qr
