#include "host/domain/ShownUnit.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/BaseServices.h"
#include "host/domain/Foot.h"
#include "host/domain/HostSettings.h"

#include <QLocale>

namespace Torvik::Base {

ShownUnit::ShownUnit()
{
    connect(&AppState::instance(), &AppState::activeProjectChanged, this, &ShownUnit::takeOfProject);
    connect(&GlobalLocaleData::instance(), &GlobalLocaleData::localeChanged, this, &ShownUnit::takeOfProject);
    takeOfProject();
}

ShownUnit& ShownUnit::instance()
{
    static ShownUnit unit;
    return unit;
}

void ShownUnit::setImperial(bool imperial)
{
    if (m_imperial == imperial) {
        return;
    }
    m_imperial = imperial;
    emit changed();
}

QString ShownUnit::name() const
{
    return m_imperial ? QStringLiteral("ft") : QStringLiteral("m");
}

QString ShownUnit::length(double metres, int decimals) const
{
    return QStringLiteral("%1 %2").arg(QLocale().toString(m_imperial ? metres / metresPerFoot : metres, 'f', decimals),
                                       name());
}

void ShownUnit::takeOfProject()
{
    setImperial(CLocaleSupport::getDistanceUnit() == HostSettings::unitFeet);
}

} // namespace Torvik::Base
