#pragma once

#include "link/link.h"

namespace kelo {

/// The one way in which the engine's lines change the link and call on the rooms above it.
class LinkEditor {
public:
    explicit LinkEditor(Link &link)
        : link_(link)
    {
    }

    [[nodiscard]] const LinkState &state() const { return link_.state_; }
    /// Lets `edit` change the state, and tells the observers of the published fields it stores:
    /// before all stores that something changes, after them by each field's own signal.
    template <typename Edit> void change(std::initializer_list<Link::Changed> fields, Edit edit)
    {
        link_.change(fields, edit);
    }
    /// Lets `edit` change what is polled and never announced.
    template <typename Edit> void poke(Edit edit) { edit(link_.state_); }

    /// Emits a signal that belongs to no published field.
    void tell(Link::Changed signal) { Q_EMIT(link_.*signal)(); }

    [[nodiscard]] TimeSource &time() const { return link_.setup_.time; }
    [[nodiscard]] Shell *shell() const { return link_.shell_; }
    [[nodiscard]] VoiceInput *voiceInput() const { return link_.voiceInput_; }
    [[nodiscard]] NoteListener *scene() const { return link_.scene(); }
    [[nodiscard]] QObject *context() const { return &link_; }

    void setOnline() { link_.engineIs(EngineState::Online); }
    void send(const QString &text) { link_.send(text); }
    void setAccess(const QString &key, bool on) { link_.setAccess(key, on); }
    void expectEngineEnd() { link_.engine_.expectEnd(); }
    void condemnEngine() { link_.engine_.condemn(); }

private:
    Link &link_;
};

} // namespace kelo
