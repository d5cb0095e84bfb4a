#pragma once

#include "hud/command_table.h"
#include "link/link.h"
#include "voice/voice_control.h"

#include <QtQml/qqml.h>

namespace kelo {

/// The shared state as QML sees it. It is handed in, never made there.
struct LinkInQml {
    Q_GADGET
    QML_FOREIGN(kelo::Link)
    QML_NAMED_ELEMENT(Link)
    QML_UNCREATABLE("handed to the display by the application")
};

/// Voice control as QML sees it. It is handed in, never made there.
struct VoiceControlInQml {
    Q_GADGET
    QML_FOREIGN(kelo::VoiceControl)
    QML_NAMED_ELEMENT(VoiceControl)
    QML_UNCREATABLE("handed to the display by the application")
};

/// The command table for QML.
class CommandTable : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QList<kelo::CommandGroup> groups READ groups CONSTANT)

public:
    [[nodiscard]] static QList<CommandGroup> groups()
    {
        return commandGroups() + QList{practiceGroup()};
    }
    Q_INVOKABLE [[nodiscard]] static QList<kelo::Command> lessons(const QStringList &names)
    {
        return jazzLessons(names);
    }
    Q_INVOKABLE [[nodiscard]] static QList<kelo::ButtonJob> jobs(const QString &mode)
    {
        return buttonJobs(mode);
    }
    /// The same as one line of text: "1 OPEN IT, 2 LIST CHOICES, ...".
    Q_INVOKABLE [[nodiscard]] static QString jobsInWords(const QString &mode);
};

} // namespace kelo
