#pragma once

#include <VarnelAPI/Forms/model/PropertyVisitor.h>

#include <vector>

namespace VarnelAPI::Forms::model::detail {

/// A class's keys, each with its place in the declaration order: a hash table that is never full, since it is asked for
/// each member of each object that is read.
class KeyIndex {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// `keys` are those of a `describe`, in its order: literals, so that they need no copy, and none of them empty.
    explicit KeyIndex(const std::vector<Key>& keys) : m_Size(keys.size()), m_Slots(32) {
        while (m_Slots.size() < 4 * m_Size) {
            m_Slots.resize(2 * m_Slots.size());
        }
        for (std::size_t place = 0; place != m_Size; ++place) {
            m_Slots[slotOf(keys[place])] = {keys[place], place};
        }
    }

    std::size_t size() const { return m_Size; }

    /// The place of `key` in the declaration order, or `npos`.
    std::size_t placeOf(Key key) const { return key.empty() ? npos : m_Slots[slotOf(key)].place; }

private:
    struct Slot {
        Key key;
        std::size_t place = npos;
    };

    /// The slot of a key, or the free one where it would be.
    std::size_t slotOf(Key key) const {
        const std::size_t size = key.size();
        const auto at = [key](std::size_t i) { return static_cast<std::size_t>(key[i]); };
        // The keys of a class differ in these. They are no secret: whoever sends others meets full comparisons at most.
        std::size_t slot = size * 7 + at(size / 2) * 5 + at(size - 1) * 3 + at(size > 1 ? 1 : 0) * 17;
        for (slot &= m_Slots.size() - 1; !m_Slots[slot].key.empty() && m_Slots[slot].key != key;) {
            slot = (slot + 1) & (m_Slots.size() - 1);
        }
        return slot;
    }

    std::size_t m_Size;
    std::vector<Slot> m_Slots;
};

} // namespace VarnelAPI::Forms::model::detail
