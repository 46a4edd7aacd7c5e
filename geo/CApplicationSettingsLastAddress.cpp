#include "geo/CApplicationSettingsLastAddress.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/SqlTask.h"
#include "geo/GdalGeoProjector.h"
#include "scene/SceneEntities.h"

#include <cmath>

using namespace Torvik;
using QmlWrapper::CQmlDomainObject;
using View3d::GdalGeoProjector;

namespace {

const QString streetKey = QStringLiteral("LASTADDRESSPOSITIONSTREET");
const QString cityKey = QStringLiteral("LASTADDRESSPOSITIONCITY");
const QString countryKey = QStringLiteral("LASTADDRESSPOSITIONCOUNTRY");
const QString matchingAddressKey = QStringLiteral("LASTMATCHINGLATANDLONGADDRESS");
const QString latitudeKey = QStringLiteral("LASTADDRESSPOSITIONLAT");
const QString longitudeKey = QStringLiteral("LASTADDRESSPOSITIONLONG");

const QString unknownStreet = QStringLiteral("UNDEFINED_STREET");
const QString unknownCity = QStringLiteral("UNDEFINED_CITY");

// AND binds closer than OR here: a section with a start node counts even where that node has no shape.
const QString latestNodeStatement = QStringLiteral(
    "SELECT NODE.OBJ_Shape_WKT from SECINSP INNER JOIN SECTION ON SECINSP.INS_Section_FK = SECTION.OBJ_PK INNER JOIN "
    "NODE "
    "ON NODE.OBJ_PK = SECTION.OBJ_FromNode_REF OR NODE.OBJ_PK = SECTION.OBJ_ToNode_REF WHERE SECTION.OBJ_FromNode_REF "
    "IS "
    "NOT NULL OR SECTION.OBJ_ToNode_REF IS NOT NULL AND NODE.OBJ_Shape_WKT IS NOT NULL ORDER BY SECINSP.INS_TimeStamp "
    "DESC");

QString setting(const QString& key)
{
    return Base::CApplicationSettings::instance().getCustomSetting(key, QString());
}

/** Setting a value goes to the disk at once. */
void setSetting(const QString& key, const QString& value)
{
    if (Base::CApplicationSettings::instance().getCustomSetting(key, QStringLiteral("\n")) == value)
        return;
    Base::CApplicationSettings::instance().setCustomSetting(key, value);
}

QString matchingAddress(const QString& street, const QString& city)
{
    return street + QLatin1Char(',') + city;
}

QString sixDigits(float value)
{
    return QString::number(double(value), 'g', 6);
}

void log(Logging::LogLevel level, const char* message)
{
    Logging::CLogger::logMessage(level, QStringLiteral("View3d"), QLatin1String(message));
}

QStringList texts(const QVariantList& values)
{
    QStringList list;
    for (const QVariant& value : values)
        list.append(value.toString());
    return list;
}

} // namespace

CApplicationSettingsLastAddress& CApplicationSettingsLastAddress::instance()
{
    static CApplicationSettingsLastAddress settings;
    return settings;
}

void CApplicationSettingsLastAddress::initialize()
{
    static const bool following = [] {
        CApplicationSettingsLastAddress* const self = &instance();
        const auto follow = [self](const CDomainObjectPointer& object) {
            self->updateLastAddressWhenActiveInspOrSectionIsChanged(CQmlDomainObject(object));
        };
        connect(GdalGeoProjector::instance(), &GdalGeoProjector::geoLocationChanged, self,
                &CApplicationSettingsLastAddress::updateLastAddressWhenActiveProjectIsChanged);
        connect(&AppState::instance(), &AppState::activeInspectionChanged, self, follow);
        connect(&AppState::instance(), &AppState::activeStructureChanged, self, follow);
        return true;
    }();
    Q_UNUSED(following)
}

QVector3D CApplicationSettingsLastAddress::latLongFromWkt(QString wktString)
{
    return latLongFrom3dPosition(GdalGeoProjector::instance()->worldPosForWktString(wktString));
}

QStringList CApplicationSettingsLastAddress::loadLastAddressPosition()
{
    return {setting(streetKey), setting(cityKey), setting(countryKey)};
}

QStringList CApplicationSettingsLastAddress::loadLatAndLongPosition()
{
    return {setting(latitudeKey), setting(longitudeKey)};
}

void CApplicationSettingsLastAddress::saveLastAddressPosition(QString street, QString city, QString country)
{
    if (street.isEmpty() && city.isEmpty() && country.isEmpty())
        return;
    setSetting(streetKey, street);
    setSetting(cityKey, city);
    setSetting(countryKey, country);
}

void CApplicationSettingsLastAddress::saveLatAndLongPosition(QString street, QString city, QString latitude,
                                                             QString longitude)
{
    setSetting(matchingAddressKey, matchingAddress(street, city));
    setSetting(latitudeKey, latitude);
    setSetting(longitudeKey, longitude);
}

void CApplicationSettingsLastAddress::resetLatAndLongIfNeeded(QString currentStreet, QString currentCity)
{
    if (currentStreet.isEmpty() && currentCity.isEmpty())
        return;
    if (setting(matchingAddressKey) == matchingAddress(currentStreet, currentCity))
        return;
    setSetting(latitudeKey, QString());
    setSetting(longitudeKey, QString());
}

QString CApplicationSettingsLastAddress::getInspectionId(const CQmlDomainObject& object) const
{
    if (!object.isValid())
        return {};
    switch (object.objectType()) {
    case Database::PipeInspectionObjectType:
        return object.id();
    case Database::SectionObjectType:
    case Database::LateralObjectType: {
        const auto pipe = object.object().staticCast<Database::CGenericPipeObject>();
        return pipe->inspectionCount() > 0 ? pipe->inspection(0)->id() : QString();
    }
    default:
        return {};
    }
}

QVector3D CApplicationSettingsLastAddress::latLongFrom3dPosition(QVector3D position)
{
    const QVector3D lonLat = GdalGeoProjector::instance()->geoCoordsDegFromPointOnGround(
        double(position.x()), double(position.y()), double(position.z()), QVector3D(0, 1, 0));
    return {lonLat.y(), lonLat.x(), lonLat.z()};
}

QVariant CApplicationSettingsLastAddress::getLatLongOfNodeFromSectionId(const QString& sectionId)
{
    const QVariant position = View3d::SceneEntities::instance().getPositionOfAnyNodeFromSection(sectionId);
    return position.isValid() ? QVariant(latLongFrom3dPosition(position.value<QVector3D>())) : QVariant();
}

void CApplicationSettingsLastAddress::ifVariantIsCorrectLatAndLongThenSave(const QVariant& value)
{
    if (!value.canConvert<QVector3D>())
        return;
    const auto place = value.value<QVector3D>();
    // So it reads where a coordinate system knows no way to degrees; the place that is known is worth more.
    if (!std::isfinite(place.x()) || !std::isfinite(place.y()) || (qIsNull(place.x()) && qIsNull(place.y())))
        return;
    saveLatAndLongPosition(unknownStreet, unknownCity, sixDigits(place.x()), sixDigits(place.y()));
}

bool CApplicationSettingsLastAddress::addressTableIsFilled(const QStringList& list) const
{
    return list.size() >= 3 && !(list[0].isEmpty() && list[1].isEmpty() && list[2].isEmpty());
}

QVariant CApplicationSettingsLastAddress::getLatLongOfNodeFromProject()
{
    Database::SqlUserTask task(latestNodeStatement);
    task.executeNow();
    for (const QSqlRecord& record : task.result().data()) {
        const QVariant shape = record.value(0);
        if (!shape.isValid() || shape.isNull())
            continue;
        const QString wkt = shape.toString();
        if (!wkt.isEmpty())
            return latLongFromWkt(wkt);
        log(Logging::LogError, "Node with position was found but WKT was empty");
        return {};
    }
    log(Logging::LogWarning, "Node with position was not found in the project");
    return {};
}

void CApplicationSettingsLastAddress::updateLastAddressWhenActiveInspOrSectionIsChanged(const CQmlDomainObject& object)
{
    if (!object.isValid())
        return;
    ifVariantIsCorrectLatAndLongThenSave(getLatLongOfNodeFromSectionId(object.id()));
    for (const QStringList& address :
         {texts(object.queryAddressDetailsOfStartingNode()), texts(object.queryAddressDetails())}) {
        if (addressTableIsFilled(address)) {
            saveLastAddressPosition(address[0], address[1], address[2]);
            return;
        }
    }
}

void CApplicationSettingsLastAddress::updateLastAddressWhenActiveProjectIsChanged()
{
    if (AppState::instance().getActiveProject())
        ifVariantIsCorrectLatAndLongThenSave(getLatLongOfNodeFromProject());
}
