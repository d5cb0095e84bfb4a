#include "link/mode_name.h"

#include <array>

namespace kelo {

namespace {

struct ModeName {
    QStringView mode;
    QStringView name;
};

constexpr std::array modeNames{
    ModeName{u"talk", u"TALK"},
    ModeName{u"teach", u"LESSON"},
    ModeName{u"compose", u"COMPOSE"},
    ModeName{u"menu", u"SONG MENU"},
    ModeName{u"score", u"SCORE"},
    ModeName{u"follow", u"FOLLOW ME"},
    ModeName{u"jazz", u"JAZZ"},
    ModeName{u"logic", u"LOGIC CONTROL"},
    ModeName{u"reaper", u"REAPER CONTROL"},
};

} // namespace

QString modeName(QStringView mode)
{
    for (const ModeName &known : modeNames) {
        if (mode == known.mode)
            return known.name.toString();
    }
    return QStringLiteral("STANDBY");
}

} // namespace kelo
