#include "domain/boundary/CDatabaseLibrary.h"

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CColumnNameResolver.h"
#include "domain/boundary/CLogger.h"
#include "host/domain/Foot.h"
#include "host/domain/HostSettings.h"
#include "host/domain/NotificationManager.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/StoreTrouble.h"
#include "host/domain/WaitingObjects.h"

namespace Torvik::Database {

class DbAccessManager : public CProjectDBAccessManager {
public:
    // Before whoever waits for its writes at the end: it has to hear of the end first.
    DbAccessManager() { StoreTrouble::instance(); }

    void updateObject(const CDomainObjectPointer& object, int origin) override
    {
        if (!object) {
            return;
        }
        const StoreStatus written = WaitingObjects::instance().write(object, origin);
        if (!written) {
            const QString message = QStringLiteral("%1 could not be stored: %2").arg(object->id(), written.error);
            Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::Database"), message);
            emit ProjectStore::instance().writeFailed(message);
        }
    }
};

IDomainNotificationManager& CDatabaseLibrary::notificationManager()
{
    return NotificationManager::instance();
}

CProjectDBAccessManager* CDatabaseLibrary::dbAccessManager()
{
    static DbAccessManager manager;
    return &manager;
}

QVariant CColumnNameResolver::sizeToProjectUnit(const CDomainObjectPointer& object, const QString& key)
{
    constexpr double millimetresPerMetre = 1000.0;
    const QVariant size = object ? object->readValue(key) : QVariant();
    bool ok = false;
    const double millimetres = size.toDouble(&ok);
    if (!ok || size.isNull()) {
        return {};
    }
    const bool feet = Base::CLocaleSupport::getDistanceUnit() == Base::HostSettings::unitFeet;
    return millimetres / (millimetresPerMetre * (feet ? metresPerFoot : 1.0));
}

} // namespace Torvik::Database
