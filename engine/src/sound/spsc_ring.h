#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace kelo::engine {

/// A queue from one thread to one other that never locks, waits or allocates.
template <typename T, std::size_t Capacity> class SpscRing {
public:
    /// False when it is full; `item` is then left out.
    bool push(const T &item)
    {
        const std::size_t end = written_.load(std::memory_order_relaxed);
        if (end - read_.load(std::memory_order_acquire) == Capacity)
            return false;
        items_[end % Capacity] = item;
        written_.store(end + 1, std::memory_order_release);
        return true;
    }

    /// The oldest item, or null when it is empty. Stays until `pop`.
    [[nodiscard]] const T *front() const
    {
        const std::size_t begin = read_.load(std::memory_order_relaxed);
        return begin == written_.load(std::memory_order_acquire) ? nullptr
                                                                 : &items_[begin % Capacity];
    }

    void pop() { read_.fetch_add(1, std::memory_order_release); }

private:
    std::array<T, Capacity> items_{};
    std::atomic<std::size_t> written_ = 0;
    std::atomic<std::size_t> read_ = 0;
};

} // namespace kelo::engine
