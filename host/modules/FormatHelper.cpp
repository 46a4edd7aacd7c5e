#include "host/modules/FormatHelper.h"

#include "host/domain/Foot.h"
#include "host/domain/ShownUnit.h"
#include "host/modules/Language.h"

#include <QLocale>
#include <QtNumeric>

namespace Torvik::Viewer {

namespace {
double metresOf(const QString& unit)
{
    return unit == QLatin1String("ft") ? metresPerFoot : 1.0;
}

} // namespace

FormatHelper::FormatHelper(QObject* parent)
    : QObject(parent)
{
    connect(&Base::ShownUnit::instance(), &Base::ShownUnit::changed, this, &FormatHelper::distanceUnitChanged);
    connect(&Language::instance(), &Language::changed, this, &FormatHelper::localeChanged);
}

QString FormatHelper::distanceUnitString() const
{
    return Base::ShownUnit::instance().name();
}

QString FormatHelper::currentLocaleName() const
{
    return QLocale().name();
}

double FormatHelper::convertLength(const QString& from, const QString& to, const QVariant& length) const
{
    bool known = false;
    double value = length.toDouble(&known);
    if (!known) {
        value = QLocale().toDouble(length.toString(), &known);
    }
    if (!known) {
        return qQNaN();
    }
    return value * metresOf(from) / metresOf(to);
}

} // namespace Torvik::Viewer
