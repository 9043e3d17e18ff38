#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace vellumry::expression {

/// A growing array of plain values whose first `Inline` need no memory of their own: short
/// expressions are parsed and evaluated on the stack of the thread.
template <typename T, std::size_t Inline>
class SmallVector {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    SmallVector() : items(local.values) {} // NOLINT: the values are left uninitialised
    SmallVector(const SmallVector&) = delete;
    SmallVector& operator=(const SmallVector&) = delete;

    [[nodiscard]] std::size_t size() const { return count; }
    [[nodiscard]] bool empty() const { return count == 0; }
    [[nodiscard]] T* data() { return items; }
    [[nodiscard]] T& operator[](std::size_t index) { return items[index]; }
    [[nodiscard]] const T& operator[](std::size_t index) const { return items[index]; }
    [[nodiscard]] T& back() { return items[count - 1]; }
    [[nodiscard]] const T& back() const { return items[count - 1]; }

    void push_back(const T& value)
    {
        const T copy = value; // it may be one of ours
        if (count == capacity)
            grow();
        items[count++] = copy;
    }
    /// Makes a value in its place: written once, not copied.
    template <typename... Arguments>
    void emplace_back(Arguments&&... arguments)
    {
        if (count == capacity)
            grow();
        new (items + count) T(std::forward<Arguments>(arguments)...);
        ++count;
    }
    void pop_back() { --count; }
    /// Leaves the first `size` values.
    void shrink(std::size_t size) { count = size; }

private:
    void grow()
    {
        capacity = std::max(capacity * 2, 2 * Inline);
        auto larger = std::make_unique_for_overwrite<T[]>(capacity);
        std::copy_n(items, count, larger.get());
        heap = std::move(larger);
        items = heap.get();
    }

    union Storage {
        Storage() {} // NOLINT: leaves the values uninitialised
        T values[Inline];
    };

    T* items;
    std::size_t count = 0;
    std::size_t capacity = Inline;
    std::unique_ptr<T[]> heap;
    Storage local;
};

} // namespace vellumry::expression
