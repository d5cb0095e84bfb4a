#pragma once

#include "voice/recognition/recogniser.h"

#include <QObject>
#include <QThreadPool>

#include <functional>

namespace kelo {

/// Teaches the recogniser the assistant's name, once a name, in the background. Does nothing where
/// the recogniser cannot be taught. Used on the GUI thread.
class WakeModel : public QObject {
    Q_OBJECT

public:
    /// Models are kept in `folder`, made when missing; `log` takes lines for the voice log.
    WakeModel(Recogniser *recogniser, QString folder, std::function<void(const QString &)> log,
        QObject *parent = nullptr);
    ~WakeModel() override;

    /// Makes sure that there is a model for `name`. `then` is called once one was newly made, and
    /// never when it is there already, when another is being built, or when that failed.
    void prepare(const QString &name, std::function<void()> then);
    /// Adds the model to `request` if it is one for `name`.
    void apply(RecognitionRequest &request, const QString &name) const;

    [[nodiscard]] bool isBuilding() const { return building_; }

private:
    void build(const QString &name, const Teacher &teach, const std::function<void()> &then);

    Recogniser *recogniser_;
    QString folder_;
    std::function<void(const QString &)> log_;
    std::optional<TaughtModel> ready_;
    QString builtFor_;
    QString lastFailure_; // of which name and why
    bool building_ = false;
    std::stop_source stop_; // the end of this
    QThreadPool background_;
};

} // namespace kelo
