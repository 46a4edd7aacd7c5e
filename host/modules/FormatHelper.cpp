#include "host/modules/FormatHelper.h"

#include "domain/boundary/BaseServices.h"

namespace Torvik::Viewer {

namespace {
constexpr int kFeet = 2;
}

QString FormatHelper::distanceUnitString() const
{
    return Base::CLocaleSupport::getDistanceUnit() == kFeet ? QStringLiteral("ft") : QStringLiteral("m");
}

} // namespace Torvik::Viewer
