#pragma once

#include <QMutex>
#include <QVector>

// A growable array of plain values, with the contract's names over QVector. Positions must be in range.
template <typename T>
class CCA_ArrayTemplate
{
public:
    int GetSize() const { return items.size(); }
    bool IsEmpty() const { return items.isEmpty(); }
    const T& operator[](int position) const { return items.at(position); }
    T& operator[](int position) { return items[position]; }
    void Add(const T& value) { items.append(value); }
    // Room for as many; only spares growing.
    void Reserve(int count) { items.reserve(count); }
    void RemoveAt(int position) { items.remove(position); }
    void RemoveAll() { items.clear(); }
    auto begin() const { return items.constBegin(); }
    auto end() const { return items.constEnd(); }

private:
    QVector<T> items;
};

// A growable array whose single calls are atomic. Walking it while another thread writes needs a copy: Values().
template <typename T>
class CCA_LockedArray
{
public:
    CCA_LockedArray() = default;
    CCA_LockedArray(const CCA_LockedArray& other)
        : items(other.Values())
    {
    }
    CCA_LockedArray& operator=(const CCA_LockedArray& other)
    {
        const QVector<T> copy = other.Values();
        const QMutexLocker lock(&mutex);
        items = copy;
        return *this;
    }

    int GetSize() const
    {
        const QMutexLocker lock(&mutex);
        return items.size();
    }
    // The value at the position; a default value when the position is out of range.
    T GetAt(int position) const
    {
        const QMutexLocker lock(&mutex);
        return items.value(position);
    }
    // At the end.
    void Add(const T& value)
    {
        const QMutexLocker lock(&mutex);
        items.append(value);
    }
    void RemoveAll()
    {
        const QMutexLocker lock(&mutex);
        items.clear();
    }
    // A copy of all values, taken at one moment.
    QVector<T> Values() const
    {
        const QMutexLocker lock(&mutex);
        return items;
    }

private:
    mutable QMutex mutex;
    QVector<T> items;
};
