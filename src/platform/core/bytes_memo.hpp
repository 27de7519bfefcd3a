#pragma once
// Values derived from short byte strings (a page item's encoding, a text to measure), kept so
// that what a long report repeats line after line is derived once.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace qr {

/// A hash of a short byte string, a word at a time: the keys here are tens of bytes, where
/// the standard library's string hash spends more on its setup than on the bytes.
inline std::uint64_t hashBytes(std::string_view bytes) {
    constexpr std::uint64_t kMul = 0x9E3779B97F4A7C15ULL;
    const char* p = bytes.data();
    std::size_t n = bytes.size();
    std::uint64_t h = n * kMul;
    const auto mix = [&h](std::uint64_t word) {
        h = (h ^ word) * kMul;
        h ^= h >> 32;
    };
    for (; n >= 8; p += 8, n -= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        mix(word);
    }
    if (n >= 4) {
        std::uint32_t first, last;
        std::memcpy(&first, p, 4);
        std::memcpy(&last, p + n - 4, 4);
        mix(std::uint64_t{first} << 32 | last);
    } else if (n > 0) {
        mix(std::uint64_t{static_cast<unsigned char>(p[0])} << 16 |
            std::uint64_t{static_cast<unsigned char>(p[n / 2])} << 8 |
            static_cast<unsigned char>(p[n - 1]));
    }
    h ^= h >> 29;
    return h * kMul;
}

/// One value per distinct key, a key being a small tag and a byte string. The keys are copied
/// side by side into one buffer and found through an open-addressing index that grows with
/// them, so a look-up reads that buffer and the key asked for, nothing the key came from.
/// Bounded: it takes at most `maxValues` values, and full() says when the owner should clear
/// it (at that many values or `maxBytes` of keys), at a moment no index it handed out is in
/// use any more.
template <class Value> class BytesMemo {
  public:
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    BytesMemo(std::size_t maxValues, std::size_t maxBytes)
        : m_maxValues(maxValues), m_maxBytes(maxBytes) {}

    /// The index of the value for (`tag`, `bytes`): a new default value when the key is new
    /// (then `added`), or kNone when it is new and the memo holds its most values.
    std::pair<std::uint32_t, bool> findOrAdd(std::uint32_t tag, std::string_view bytes) {
        const std::uint64_t hash = hashBytes(bytes) ^ (std::uint64_t{tag} * 0x9E3779B97F4A7C15ULL);
        if (!m_slots.empty()) {
            const std::size_t at = find(hash, tag, bytes);
            if (m_slots[at].value != kNone) {
                return {m_slots[at].value, false};
            }
        }
        if (m_values.size() >= m_maxValues) {
            return {kNone, false};
        }
        if (2 * (m_values.size() + 1) > m_slots.size()) {
            grow();
        }
        const auto value = static_cast<std::uint32_t>(m_values.size());
        m_slots[find(hash, tag, bytes)] = {hash, static_cast<std::uint32_t>(m_bytes.size()),
                                           static_cast<std::uint32_t>(bytes.size()), tag, value};
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        m_values.emplace_back();
        return {value, true};
    }

    Value& operator[](std::uint32_t index) { return m_values[index]; }
    std::size_t size() const { return m_values.size(); }

    bool full() const { return m_values.size() >= m_maxValues || m_bytes.size() >= m_maxBytes; }
    void clear() {
        m_values.clear();
        m_bytes.clear();
        std::fill(m_slots.begin(), m_slots.end(), Slot{});
    }

  private:
    struct Slot {
        std::uint64_t hash = 0;
        std::uint32_t start = 0; // of the key's bytes in m_bytes
        std::uint32_t size = 0;
        std::uint32_t tag = 0;
        std::uint32_t value = kNone; // kNone: a free slot
    };

    /// The slot holding the key, or the free slot where it would go.
    std::size_t find(std::uint64_t hash, std::uint32_t tag, std::string_view bytes) const {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = hash & mask;
        for (; m_slots[at].value != kNone; at = (at + 1) & mask) {
            const Slot& slot = m_slots[at];
            if (slot.hash == hash && slot.tag == tag && slot.size == bytes.size() &&
                (bytes.empty() ||
                 std::memcmp(m_bytes.data() + slot.start, bytes.data(), bytes.size()) == 0)) {
                break;
            }
        }
        return at;
    }

    /// Twice the slots (64 at first), the keys placed again by their hashes.
    void grow() {
        std::vector<Slot> old(std::max<std::size_t>(64, 2 * m_slots.size()));
        old.swap(m_slots);
        const std::size_t mask = m_slots.size() - 1;
        for (const Slot& slot : old) {
            if (slot.value != kNone) {
                std::size_t at = slot.hash & mask;
                while (m_slots[at].value != kNone) {
                    at = (at + 1) & mask;
                }
                m_slots[at] = slot;
            }
        }
    }

    std::size_t m_maxValues;
    std::size_t m_maxBytes;
    std::vector<Slot> m_slots; // a power of two of them, at most half taken
    std::vector<char> m_bytes;
    std::vector<Value> m_values;
};

} // namespace qr
