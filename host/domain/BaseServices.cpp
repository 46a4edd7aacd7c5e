#include "domain/boundary/BaseServices.h"

#include "domain/boundary/CLogger.h"
#include "domain/boundary/GUID.h"
#include "domain/boundary/GeoCoord.h"
#include "host/domain/HostSettings.h"

#include <QFileInfo>
#include <QSettings>
#include <QUuid>

#include <cmath>
#include <memory>

namespace Torvik::Base {

namespace {

const QString lineHeightKey = QStringLiteral("DEFAULTLABELLINEHEIGHT");
constexpr float defaultLineHeight = 10.0F;

int g_distanceUnit = HostSettings::unitMetres;

std::unique_ptr<QSettings>& settingsStore()
{
    static std::unique_ptr<QSettings> store = std::make_unique<QSettings>(
        QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Torvik"), QStringLiteral("kxviewer"));
    return store;
}

/** Custom settings stand in a group of their own, so that no key of the view meets one of the application. */
QString customKey(const QString& key)
{
    return QStringLiteral("custom/") + key;
}

void store(const QString& key, const QVariant& value)
{
    QSettings& settings = *settingsStore();
    settings.setValue(key, value);
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::Settings"),
                                     QStringLiteral("Settings cannot be written to %1").arg(settings.fileName()));
    }
}

} // namespace

QString CFileSystemNames::documentationPathPart()
{
    return QStringLiteral("Documentation/");
}

QString CFileSystemNames::graphics3DPathPart()
{
    return QStringLiteral("Documentation/Graphics3D/");
}

int CLocaleSupport::getDistanceUnit()
{
    return g_distanceUnit;
}

GlobalLocaleData& GlobalLocaleData::instance()
{
    static GlobalLocaleData data;
    return data;
}

CApplicationSettings& CApplicationSettings::instance()
{
    static CApplicationSettings settings;
    return settings;
}

QString CApplicationSettings::getCustomSetting(const QString& key, const QString& defaultValue) const
{
    const QVariant value = settingsStore()->value(customKey(key), defaultValue);
    // A text with commas that was written by hand, without quotes, is read as a list.
    return value.type() == QVariant::StringList ? value.toStringList().join(QStringLiteral(", ")) : value.toString();
}

void CApplicationSettings::setCustomSetting(const QString& key, const QString& value) const
{
    store(customKey(key), value);
}

float CApplicationSettings::getDefaultLabelLineHeight() const
{
    bool ok = false;
    const float height = settingsStore()->value(lineHeightKey).toFloat(&ok);
    return ok && std::isfinite(height) && height > 0.0F ? height : defaultLineHeight;
}

void CApplicationSettings::setDefaultLabelLineHeight(const float& height)
{
    store(lineHeightKey, QString::number(double(height), 'g', 9));
}

void HostSettings::setDistanceUnit(int unit)
{
    if (g_distanceUnit != unit) {
        g_distanceUnit = unit;
        emit GlobalLocaleData::instance().localeChanged();
    }
}

QString HostSettings::settingsFolder()
{
    return QFileInfo(settingsStore()->fileName()).path();
}

void HostSettings::setSettingsFile(const QString& path)
{
    settingsStore() = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

} // namespace Torvik::Base

namespace Torvik::Database {

QString CGuidHelper::createGuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace Torvik::Database

namespace Torvik::View3d {

QString GeoProjectorSettings::getDefaultPseudoMercatorWKT()
{
    return QStringLiteral(R"(PROJCS["WGS 84 / Pseudo-Mercator",)"
                          R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,)"
                          R"(AUTHORITY["EPSG","7030"]],AUTHORITY["EPSG","6326"]],)"
                          R"(PRIMEM["Greenwich",0,AUTHORITY["EPSG","8901"]],)"
                          R"(UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],AUTHORITY["EPSG","4326"]],)"
                          R"(PROJECTION["Mercator_1SP"],PARAMETER["central_meridian",0],PARAMETER["scale_factor",1],)"
                          R"(PARAMETER["false_easting",0],PARAMETER["false_northing",0],)"
                          R"(UNIT["metre",1,AUTHORITY["EPSG","9001"]],AXIS["Easting",EAST],AXIS["Northing",NORTH],)"
                          R"(EXTENSION["PROJ4","+proj=merc +a=6378137 +b=6378137 +lat_ts=0 +lon_0=0 +x_0=0 +y_0=0 )"
                          R"(+k=1 +units=m +nadgrids=@null +wktext +no_defs"],AUTHORITY["EPSG","3857"]])");
}

QString GeoProjectorSettings::getValidPseudoMercatorWKT()
{
    return getDefaultPseudoMercatorWKT();
}

} // namespace Torvik::View3d
