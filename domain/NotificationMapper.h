#pragma once

namespace Torvik::Database {
class CAsyncNotificationMapper;
}

namespace Torvik::View3d {

/** The one mapper that watches objects for the view's adapters; lives as long as the process. */
Database::CAsyncNotificationMapper& sharedNotificationMapper();

} // namespace Torvik::View3d
