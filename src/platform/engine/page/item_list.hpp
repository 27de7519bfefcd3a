#pragma once
// The items of one page, packed. A long report holds millions of items until its last page
// is printed or exported, so they are not kept as the value types of items.hpp (a text item
// alone is over 200 bytes there, plus the heap behind its strings) but encoded into one byte
// buffer per page, about 40 bytes for a typical table cell:
// - names that repeat on every line (control, section, output format) become ids in the
//   process-wide NamePool;
// - numbers are variable-length, coordinates of text runs relative to their item's box;
// - a text whose lines are exactly its text split at line breaks (nearly every text) stores
//   its text once and its lines only as positions and widths;
// - a number behind a text is stored as a small decimal where that gives back the same double.
//
// Reading decodes a fresh value: `list[i]` and iteration give an Item by value, and a
// pointer or reference into one lives only as long as that value. Changing an item is
// `set(i, item)`.

#include "platform/engine/page/items.hpp"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <span>
#include <type_traits>
#include <variant>
#include <vector>

namespace qr::page {

/// What ItemList::decodeInto fills in: the names of an item's control and section, the texts
/// of a text's runs where they are pieces of its whole text, and a text's number format.
inline constexpr unsigned kDecodeNames = 1;
inline constexpr unsigned kDecodeRunTexts = 2;
inline constexpr unsigned kDecodeFormat = 4;
inline constexpr unsigned kDecodeAll = kDecodeNames | kDecodeRunTexts | kDecodeFormat;

/// The index of alternative `T` in Item, as PlacedItem::kind gives it.
template <class T, std::size_t I = 0> constexpr std::size_t itemKind() {
    if constexpr (std::is_same_v<std::variant_alternative_t<I, Item>, T>)
        return I;
    else
        return itemKind<T, I + 1>();
}

/// An item told apart from where it stands, read without decoding the rest of it. `kind` is
/// the index of the alternative the item holds in Item; `box` is the box of a text,
/// rectangle or check box, and for a line the box from its first end to its second. `flags`
/// and `content` are the encoded item without its box and its control and section names:
/// items with equal flags and content differ in nothing else, so a reader that derives the
/// same from such items can decode each distinct one once (unequal content may still be an
/// equal item). `content` points into the list and lives as long as the list is unchanged.
struct PlacedItem {
    std::size_t kind = 0;
    Rect box;
    std::uint8_t flags = 0;
    std::span<const std::uint8_t> content;
};

class ItemList {
  public:
    /// Walks the items in order, decoding each one when it is read.
    class const_iterator {
      public:
        using iterator_concept = std::random_access_iterator_tag;
        using iterator_category = std::input_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using reference = const Item;
        using pointer = void;

        const_iterator() = default;
        const_iterator(const ItemList* list, std::size_t index) : m_list(list), m_index(index) {}

        const Item operator*() const { return m_list->decode(m_index); }
        const Item operator[](difference_type n) const {
            return m_list->decode(m_index + static_cast<std::size_t>(n));
        }
        /// Position of the item this iterator stands on.
        std::size_t index() const { return m_index; }

        const_iterator& operator++() {
            ++m_index;
            return *this;
        }
        const_iterator operator++(int) {
            const_iterator old = *this;
            ++m_index;
            return old;
        }
        const_iterator& operator--() {
            --m_index;
            return *this;
        }
        const_iterator operator--(int) {
            const_iterator old = *this;
            --m_index;
            return old;
        }
        const_iterator& operator+=(difference_type n) {
            m_index += static_cast<std::size_t>(n);
            return *this;
        }
        const_iterator& operator-=(difference_type n) {
            m_index -= static_cast<std::size_t>(n);
            return *this;
        }
        friend const_iterator operator+(const_iterator it, difference_type n) { return it += n; }
        friend const_iterator operator+(difference_type n, const_iterator it) { return it += n; }
        friend const_iterator operator-(const_iterator it, difference_type n) { return it -= n; }
        friend difference_type operator-(const const_iterator& a, const const_iterator& b) {
            return static_cast<difference_type>(a.m_index) -
                   static_cast<difference_type>(b.m_index);
        }
        friend bool operator==(const const_iterator& a, const const_iterator& b) {
            return a.m_index == b.m_index;
        }
        friend auto operator<=>(const const_iterator& a, const const_iterator& b) {
            return a.m_index <=> b.m_index;
        }

      private:
        const ItemList* m_list = nullptr;
        std::size_t m_index = 0;
    };
    using iterator = const_iterator;
    using value_type = Item;
    using size_type = std::size_t;

    ItemList() = default;
    ItemList(std::initializer_list<Item> items);
    /// The items of `items`, packed (a page built from a plain list converts implicitly).
    ItemList(const std::vector<Item>& items);

    std::size_t size() const { return m_offsets.size(); }
    bool empty() const { return m_offsets.empty(); }

    /// Room for `count` items of typical size, so filling a page does not reallocate.
    void reserve(std::size_t count);
    /// Gives back the room reserve() and growth left unused.
    void shrinkToFit();
    void clear();

    /// Appends `item`. Raises qr::Error if the page's buffer would pass 4 GiB.
    void push_back(const Item& item);
    template <class... Args> void emplace_back(Args&&... args) {
        push_back(Item(std::forward<Args>(args)...));
    }

    /// A copy of item `index`; qr::Error (subscript out of range) past the end.
    const Item operator[](std::size_t index) const { return at(index); }
    const Item at(std::size_t index) const;
    const Item front() const { return at(0); }
    const Item back() const;
    /// Decodes item `index` into `out`, reusing the strings and runs `out` already holds:
    /// the cheap way to walk many items with one scratch value. Same range check as at().
    /// `parts` may leave out what a reader does not look at (kDecodeAll: everything).
    void decodeInto(std::size_t index, Item& out, unsigned parts = kDecodeAll) const;

    /// Item `index` as where it stands and what else it is (see PlacedItem). Same range
    /// check as at().
    PlacedItem placed(std::size_t index) const;

    /// Replaces item `index` with `item`; the items after it keep their order.
    void set(std::size_t index, const Item& item);

    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, size()}; }

    /// Bytes held for the items (encoded items and their offsets), counting reserved room.
    std::size_t capacityBytes() const;
    /// Bytes the encoded items take, without offsets or unused room.
    std::size_t encodedBytes() const { return m_bytes.size(); }

    /// A digest of the encoded items: equal lists have equal digests, and lists that differ
    /// practically never do. Cheap beside drawing them (one pass over the bytes).
    std::uint64_t digest() const;

    /// Same items in the same order.
    friend bool operator==(const ItemList& a, const ItemList& b);

  private:
    Item decode(std::size_t index) const;
    void checkIndex(std::size_t index, const char* what) const;
    std::size_t endOf(std::size_t index) const {
        return index + 1 < m_offsets.size() ? m_offsets[index + 1] : m_bytes.size();
    }

    std::vector<std::uint8_t> m_bytes;
    std::vector<std::uint32_t> m_offsets; // where each item's bytes start in m_bytes
};

} // namespace qr::page
