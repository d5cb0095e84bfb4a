#pragma once

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace kelo {

/// Where a command differs between modes.
struct CommandVariants {
    std::optional<QString> compose = std::nullopt;
    std::optional<QString> only = std::nullopt;
};

/// One command of the display: the key that gives it and the button that gives it too.
class Command {
    Q_GADGET
    QML_VALUE_TYPE(command)
    Q_PROPERTY(QString key MEMBER key CONSTANT)
    Q_PROPERTY(QString send MEMBER send CONSTANT)

public:
    Command() = default;
    Command(QString capLabel, QString sentText, QString description, CommandVariants variants = {});

    /// What the command does, in words, while the mode is "compose" or any other.
    Q_INVOKABLE [[nodiscard]] QString description(bool composing) const;
    /// Whether the command is on offer in `mode`.
    Q_INVOKABLE [[nodiscard]] bool listed(const QString &mode) const;

    QUuid id; ///< fresh for each record
    QString key; ///< the label on its key cap
    QString send; ///< what `Link::send` is given, to the byte
    QString lesson; ///< its description in every mode but "compose"
    std::optional<QString> compose; ///< its description in "compose", where that differs
    std::optional<QString> only; ///< the one mode that lists it
};

/// Commands under one heading.
class CommandGroup {
    Q_GADGET
    QML_VALUE_TYPE(commandGroup)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QList<kelo::Command> commands MEMBER commands CONSTANT)

public:
    QString title;
    QList<Command> commands;
};

/// Every command, in the order of the display. Built on first use with the assistant's name as it
/// is then, and the same from there on.
[[nodiscard]] const QList<CommandGroup> &commandGroups();

/// Commands for practising that an engine may know beyond those.
[[nodiscard]] const CommandGroup &practiceGroup();

/// The jazz lessons on offer as commands, numbered from 1.
[[nodiscard]] QList<Command> jazzLessons(const QStringList &names);

/// A command key of the piano and what it does.
class ButtonJob {
    Q_GADGET
    QML_VALUE_TYPE(buttonJob)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString job MEMBER job CONSTANT)

public:
    QString label;
    QString job;

    friend bool operator==(const ButtonJob &, const ButtonJob &) = default;
};

/// What the ten command keys of the piano do in `mode`, in the order of the keys.
[[nodiscard]] QList<ButtonJob> buttonJobs(const QString &mode);

} // namespace kelo
