#pragma once

#include <QList>
#include <QStringList>

namespace kelo {

/// What people say to each other that is as short as a request, so that a search for requests has
/// something else to find. In lower case, word by word.
[[nodiscard]] const QList<QStringList> &shortTalk();

} // namespace kelo
