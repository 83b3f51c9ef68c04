#pragma once

#include <QVector>

#include <utility>

// A map from pointers to small values in one piece of memory. A refill writes a hundred thousand entries into several
// of these and throws the old ones away; a node of its own for each entry, as Qt's containers have, costs more than the
// rows themselves. Entries are added and replaced, never taken out singly; the order is none. A null key is not stored.
template <typename Pointer, typename Value>
class PointerTable
{
    struct Slot
    {
        Pointer key = nullptr;
        Value value{};
    };

public:
    class const_iterator
    {
    public:
        const_iterator(const Slot* at, const Slot* last)
            : at(at)
            , last(last)
        {
            SkipFree();
        }
        Pointer key() const { return at->key; }
        Value value() const { return at->value; }
        const_iterator& operator++()
        {
            ++at;
            SkipFree();
            return *this;
        }
        bool operator!=(const const_iterator& other) const { return at != other.at; }
        bool operator==(const const_iterator& other) const { return at == other.at; }

    private:
        void SkipFree()
        {
            while (at != last && !at->key)
                ++at;
        }
        const Slot* at;
        const Slot* last;
    };

    int size() const { return count; }
    bool isEmpty() const { return count == 0; }
    const_iterator cbegin() const { return {table.constData(), table.constData() + table.size()}; }
    const_iterator cend() const
    {
        const Slot* last = table.constData() + table.size();
        return {last, last};
    }
    bool contains(Pointer key) const { return Find(key) != nullptr; }
    // The default when the key is not there. Keys are compared and never followed.
    Value value(Pointer key, Value defaultValue = Value()) const
    {
        const Slot* slot = Find(key);
        return slot ? slot->value : defaultValue;
    }
    // Replaces an earlier value of the key.
    void insert(Pointer key, Value value)
    {
        if (!key)
            return;
        if (2 * (count + 1) > table.size())
            Grow(count + 1);
        Slot& slot = table[Place(key)];
        if (!slot.key)
            ++count;
        slot = {key, value};
    }
    // Makes room for so many entries.
    void reserve(int wanted)
    {
        if (2 * wanted > table.size())
            Grow(wanted);
    }
    void clear()
    {
        table.clear();
        count = 0;
    }
    void swap(PointerTable& other)
    {
        table.swap(other.table);
        std::swap(count, other.count);
    }

private:
    // The slot of the key, or the free one where it belongs. At least half of the table are free.
    int Place(Pointer key) const
    {
        const auto bits = static_cast<quint64>(reinterpret_cast<quintptr>(key));
        const auto last = static_cast<quint64>(table.size() - 1);
        // Multiplied by the golden ratio: the lowest bits of addresses are all alike.
        quint64 at = (bits * 0x9E3779B97F4A7C15U >> 32) & last;
        while (table.at(static_cast<int>(at)).key && table.at(static_cast<int>(at)).key != key)
            at = (at + 1) & last;
        return static_cast<int>(at);
    }
    const Slot* Find(Pointer key) const
    {
        if (!key || count == 0)
            return nullptr;
        const Slot& slot = table.at(Place(key));
        return slot.key ? &slot : nullptr;
    }
    void Grow(int wanted)
    {
        int size = 16;
        while (size < 2 * wanted)
            size *= 2;
        PointerTable larger;
        larger.table.resize(size);
        for (const Slot& slot : qAsConst(table)) {
            if (slot.key)
                larger.insert(slot.key, slot.value);
        }
        swap(larger);
    }

    QVector<Slot> table; // a power of two of them
    int count = 0;
};
