#pragma once
// Names that page items repeat on every line (the control, the section, the output format)
// are kept once, process-wide, and items store a small number in their place.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qr::page {

/// A grow-only table of names. A name once added keeps its id and its characters for the rest
/// of the process, so ids can be stored and read back on any thread without a lock.
///
/// Adding takes a lock (and is usually answered from a per-thread cache without one); reading
/// a name back never locks. To stay small whatever a report does, the pool refuses names
/// longer than kMaxNameLength and stops taking new names once it holds its most names or
/// characters; callers then keep such a name themselves.
class NamePool {
  public:
    static constexpr std::size_t kMaxNameLength = 128;
    static constexpr std::size_t kChunkBits = 12;
    static constexpr std::size_t kChunkSize = std::size_t{1} << kChunkBits;
    static constexpr std::size_t kMaxChunks = 64;
    static constexpr std::size_t kMaxNames = kChunkSize * kMaxChunks;
    static constexpr std::size_t kMaxBytes = std::size_t{8} << 20;

    /// The pool shared by every page of the process. The empty name has id 0.
    static NamePool& shared();

    /// A pool that takes at most `maxNames` names (at most kMaxNames) and `maxBytes`
    /// characters in all.
    explicit NamePool(std::size_t maxNames = kMaxNames, std::size_t maxBytes = kMaxBytes);
    ~NamePool();
    NamePool(const NamePool&) = delete;
    NamePool& operator=(const NamePool&) = delete;

    /// The id of `name`, added when new; nothing when the pool does not take it (too long,
    /// or the pool is full).
    std::optional<std::uint32_t> intern(std::string_view name);

    /// The name with id `id`, which must have come from intern() on this pool. The view stays
    /// valid as long as the pool.
    std::string_view name(std::uint32_t id) const {
        const std::string_view* chunk = m_chunks[id >> kChunkBits].load(std::memory_order_acquire);
        return chunk[id & (kChunkSize - 1)];
    }

    /// How many names the pool holds.
    std::size_t size() const;

  private:
    std::optional<std::uint32_t> add(std::string_view name);
    std::string_view store(std::string_view name);

    mutable std::mutex m_mutex;
    std::unordered_map<std::string_view, std::uint32_t> m_ids; // views into m_blocks
    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::size_t m_blockUsed = 0;
    std::size_t m_bytes = 0;
    std::uint32_t m_count = 0;
    std::atomic<std::string_view*> m_chunks[kMaxChunks] = {};
    const std::size_t m_maxNames;
    const std::size_t m_maxBytes;
    const std::uint64_t m_serial; // tells pools apart in the per-thread caches
};

} // namespace qr::page
