#include "platform/engine/page/name_pool.hpp"

#include "platform/core/bytes_memo.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace qr::page {

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;

std::atomic<std::uint64_t> g_nextSerial{1};

/// Names this thread has already looked up, for the pool it used last: most lookups are
/// answered here without taking the pool's lock. Keys view the pool's own characters. In
/// front of the map, the names looked up lately sit in a small table by a short hash of their
/// characters: the names of a report's lines (its controls, its sections, their formats)
/// are found there with one comparison. The empty name, id 0 in every pool, fills it at first.
struct ThreadCache {
    struct Recent {
        std::string_view name;
        std::uint32_t id = 0;
    };
    static constexpr std::size_t kRecent = 256;

    std::uint64_t serial = 0;
    std::unordered_map<std::string_view, std::uint32_t> ids;
    std::array<Recent, kRecent> recent{};

    static std::size_t slotOf(std::string_view name) {
        return static_cast<std::size_t>(hashBytes(name) >> 56) & (kRecent - 1);
    }
};

thread_local ThreadCache t_cache;

} // namespace

NamePool& NamePool::shared() {
    // Never destroyed: ids stored in pages stay readable until the very end of the process.
    static NamePool* pool = new NamePool();
    return *pool;
}

NamePool::NamePool(std::size_t maxNames, std::size_t maxBytes)
    : m_maxNames(std::min(maxNames, kMaxNames)), m_maxBytes(maxBytes),
      m_serial(g_nextSerial.fetch_add(1)) {
    add(std::string_view());
}

NamePool::~NamePool() {
    for (auto& chunk : m_chunks)
        delete[] chunk.load(std::memory_order_relaxed);
}

std::optional<std::uint32_t> NamePool::intern(std::string_view name) {
    if (name.size() > kMaxNameLength)
        return std::nullopt;
    ThreadCache& cache = t_cache;
    ThreadCache::Recent& recent = cache.recent[ThreadCache::slotOf(name)];
    if (cache.serial != m_serial) {
        cache.ids.clear();
        cache.recent.fill({});
        cache.serial = m_serial;
    } else if (recent.name == name) {
        return recent.id;
    } else if (auto it = cache.ids.find(name); it != cache.ids.end()) {
        recent = {it->first, it->second};
        return it->second;
    }
    std::optional<std::uint32_t> id;
    {
        std::lock_guard lock(m_mutex);
        if (auto it = m_ids.find(name); it != m_ids.end())
            id = it->second;
        else
            id = add(name);
    }
    if (id) {
        cache.ids.emplace(this->name(*id), *id);
        recent = {this->name(*id), *id};
    }
    return id;
}

std::size_t NamePool::size() const {
    std::lock_guard lock(m_mutex);
    return m_count;
}

std::optional<std::uint32_t> NamePool::add(std::string_view name) {
    if (m_count >= m_maxNames || m_bytes + name.size() > m_maxBytes)
        return std::nullopt;
    const std::uint32_t id = m_count;
    std::atomic<std::string_view*>& slot = m_chunks[id >> kChunkBits];
    std::string_view* chunk = slot.load(std::memory_order_relaxed);
    if (chunk == nullptr) {
        chunk = new std::string_view[kChunkSize];
        slot.store(chunk, std::memory_order_release);
    }
    const std::string_view kept = store(name);
    chunk[id & (kChunkSize - 1)] = kept;
    m_ids.emplace(kept, id);
    m_bytes += name.size();
    ++m_count;
    return id;
}

std::string_view NamePool::store(std::string_view name) {
    if (name.empty())
        return {};
    if (m_blocks.empty() || m_blockUsed + name.size() > kBlockSize) {
        m_blocks.push_back(std::make_unique<char[]>(kBlockSize));
        m_blockUsed = 0;
    }
    char* at = m_blocks.back().get() + m_blockUsed;
    std::memcpy(at, name.data(), name.size());
    m_blockUsed += name.size();
    return {at, name.size()};
}

} // namespace qr::page
