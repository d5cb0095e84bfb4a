#pragma once

namespace kelo {

/// A published value of somebody else, for reading only. It stands for its value wherever one is
/// expected; called like a function it serves as the getter of a property.
template <typename T> class Reading {
public:
    explicit Reading(const T &value)
        : value_(value)
    {
    }
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;
    ~Reading() = default;

    [[nodiscard]] const T &get() const { return value_; }
    [[nodiscard]] const T &operator()() const { return value_; }
    operator const T &() const { return value_; } // NOLINT(google-explicit-constructor)
    const T *operator->() const { return &value_; }

    friend bool operator==(const Reading &reading, const T &value)
    {
        return reading.value_ == value;
    }

private:
    const T &value_;
};

} // namespace kelo
