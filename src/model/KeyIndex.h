#pragma once

#include <VarnelAPI/Forms/detail/PropertyVisitor.h>

#include <algorithm>
#include <vector>

namespace VarnelAPI::Forms::model::detail {

/// A class's keys, sorted, each with its place in the declaration order.
class KeyIndex {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// `keys` are those of a `describe`, in its order: literals, so that they need no copy.
    explicit KeyIndex(const std::vector<Key>& keys) {
        for (const Key key : keys) {
            m_Sorted.push_back({key, m_Sorted.size()});
        }
        std::sort(m_Sorted.begin(), m_Sorted.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    }

    std::size_t size() const { return m_Sorted.size(); }

    /// The place of `key` in the declaration order, or `npos`.
    std::size_t placeOf(Key key) const {
        std::size_t cursor = 0;
        return placeOf(key, cursor);
    }

    /// The same, for one key after the other of an object: `cursor` begins at 0. The members of a parsed object are
    /// sorted, so that the two lists run side by side; a key out of order, or repeated, is found too, by search.
    std::size_t placeOf(Key key, std::size_t& cursor) const {
        const std::size_t begin = cursor;
        while (cursor != m_Sorted.size()) {
            const int order = m_Sorted[cursor].key.compare(key);
            if (order == 0) {
                return m_Sorted[cursor++].place;
            }
            if (order > 0) {
                break;
            }
            ++cursor;
        }
        // Past smaller keys only: what was passed before may still be it, unless something was passed just now.
        if (cursor == begin && cursor != 0 && key <= m_Sorted[cursor - 1].key) {
            const auto found = std::lower_bound(m_Sorted.begin(), m_Sorted.end(), key,
                                                [](const Entry& entry, Key wanted) { return entry.key < wanted; });
            cursor = static_cast<std::size_t>(found - m_Sorted.begin());
            return found->key == key ? m_Sorted[cursor++].place : npos;
        }
        return npos;
    }

private:
    struct Entry {
        Key key;
        std::size_t place;
    };
    std::vector<Entry> m_Sorted;
};

} // namespace VarnelAPI::Forms::model::detail
