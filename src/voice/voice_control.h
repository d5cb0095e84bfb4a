#pragma once

#include "link/link.h"
#include "link/shell.h"

namespace kelo {

/// Voice control as the display and the link see it. There is no listening in this build yet: it
/// is what voice control is while it is off, and stays so.
class VoiceControl : public QObject, public Ears {
    Q_OBJECT
    Q_PROPERTY(bool on MEMBER on NOTIFY onChanged)
    Q_PROPERTY(QString status MEMBER status NOTIFY statusChanged)
    Q_PROPERTY(double level MEMBER level NOTIFY levelChanged)

    template <typename T> using Field = Published<T, VoiceControl>;

public:
    explicit VoiceControl(QObject *parent = nullptr);

    /// The instance of this process, made on first use; it needs the application object.
    static VoiceControl &shared();

    [[nodiscard]] bool isOn() const override { return on; }
    Q_INVOKABLE void begin() override;
    Q_INVOKABLE void stop() override;
    void listen() override { }
    void setVocabulary(const QStringList & /*phrases*/) override { }

    Field<bool> on{*this, &VoiceControl::onChanged}; ///< wanted and running
    Field<QString> status{*this, &VoiceControl::statusChanged, QStringLiteral("OFF")};
    Field<double> level{*this, &VoiceControl::levelChanged}; ///< loudness, 0 to 1

Q_SIGNALS:
    void willChange();
    void onChanged();
    void statusChanged();
    void levelChanged();
};

} // namespace kelo
