#include "app/desktop/login_item.h"

#include "app/desktop/autostart_file.h"
#include "app/desktop/background_portal.h"
#include "app/desktop/sandbox.h"

namespace kelo {

std::unique_ptr<LoginItem> LoginItem::make(QSettings &settings)
{
    if (insideSandbox())
        return std::make_unique<BackgroundPortal>(settings);
    return std::make_unique<AutostartFile>();
}

} // namespace kelo
