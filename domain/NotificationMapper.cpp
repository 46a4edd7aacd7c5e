#include "domain/NotificationMapper.h"

#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/Notifications.h"

namespace Torvik::View3d {

Database::CAsyncNotificationMapper& sharedNotificationMapper()
{
    // Never destroyed: proxies of objects that outlive main() still refer to it.
    static auto* const mapper =
        new Database::CAsyncNotificationMapper(Database::CDatabaseLibrary::notificationManager());
    return *mapper;
}

} // namespace Torvik::View3d
