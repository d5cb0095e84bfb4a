#pragma once

#include <QObject>

#include <utility>

namespace kelo {

/// A field that its owner's observers are told about: `Owner::willChange` is emitted before a
/// value is stored and the field's own signal after, so that observers of the whole object see
/// the old value and bindings read the new one. Storing an equal value announces it too.
template <typename T, typename Owner> class Published {
public:
    using Changed = void (Owner::*)();

    Published(Owner &owner, Changed changed, T initial = {})
        : owner_(owner)
        , changed_(changed)
        , value_(std::move(initial))
    {
    }
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;
    ~Published() = default;

    [[nodiscard]] const T &get() const { return value_; }
    operator const T &() const { return value_; } // NOLINT(google-explicit-constructor)
    const T *operator->() const { return &value_; }

    Published &operator=(T value)
    {
        change([&](T &stored) { stored = std::move(value); });
        return *this;
    }

    /// Changes the value in place, announced like an assignment.
    template <typename Edit> void change(Edit edit)
    {
        Q_EMIT owner_.willChange();
        edit(value_);
        Q_EMIT(owner_.*changed_)();
    }

    friend bool operator==(const Published &field, const T &value) { return field.value_ == value; }

private:
    Owner &owner_;
    Changed changed_;
    T value_;
};

} // namespace kelo
