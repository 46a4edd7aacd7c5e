#include "geo/EpsgAreaDataset.h"

#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <stdexcept>

namespace {

const QString& notFound()
{
    static const QString text = QStringLiteral("Projection not found");
    return text;
}

/** Name of the system in the local GDAL; throws std::runtime_error when it has none. */
QString nameOf(int code)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    OGRSpatialReference system;
    if (system.importFromEPSG(code) != OGRERR_NONE)
        throw std::runtime_error("Projection not found");

    const char* name = system.GetAttrValue("PROJCS", 0);
    if (!name)
        name = system.GetAttrValue("GEOGCS", 0);
    if (!name)
        throw std::runtime_error("Projection name not found");
    return QString::fromUtf8(name);
}

QString detailedName(int code)
{
    try {
        return nameOf(code) + QStringLiteral(" - EPSG:") + QString::number(code);
    } catch (const std::runtime_error&) {
        return notFound();
    }
}

} // namespace

EpsgAreaDataset::EpsgAreaDataset(QObject* parent)
    : QObject(parent)
{
    populateWithHardcodedValues();
}

EpsgBounds EpsgAreaDataset::getBoundsByEpsgCode(int code) const
{
    const auto found = std::find_if(m_bounds.begin(), m_bounds.end(),
                                    [code](const EpsgBounds& bounds) { return bounds.code() == code; });
    return found == m_bounds.end() ? EpsgBounds() : *found;
}

void EpsgAreaDataset::addBounds(const EpsgBounds& bounds)
{
    m_bounds.push_back(bounds);
}

QVector<EpsgBounds> EpsgAreaDataset::findProjections(double latitude, double longitude) const
{
    QVector<EpsgBounds> found;
    for (const EpsgBounds& bounds : m_bounds) {
        if (bounds.contains(longitude, latitude))
            found.append(bounds);
    }
    return found;
}

QVector<EpsgBounds> EpsgAreaDataset::getProjections(const QString& country) const
{
    QVector<EpsgBounds> found;
    for (const EpsgBounds& bounds : m_bounds) {
        for (const QString& user : bounds.countries()) {
            if (user == country)
                found.append(bounds);
        }
    }
    return found;
}

QVariantList EpsgAreaDataset::findProjectionsWithDetails(double longitude, double latitude)
{
    QVariantList found;
    const QVector<EpsgBounds> candidates = findProjections(longitude, latitude);
    for (const EpsgBounds& bounds : candidates) {
        if (detailedName(bounds.code()) != notFound())
            found.append(QVariant::fromValue(bounds));
    }
    return found;
}

void EpsgAreaDataset::populateWithHardcodedValues()
{
    const auto add = [this](int code, const char* shortName, const char* countries, double west, double south,
                            double east, double north, const char* longName) {
        addBounds({code, QString::fromUtf8(shortName), QString::fromLatin1(countries).split(QLatin1Char(' ')), west,
                   south, east, north, QString::fromUtf8(longName)});
    };
    // The long names are shown to users who know them in this spelling.
    add(25832, "ETRS89 / UTM zone 32N", "DE ES AT DK NO BE", 6.0, 38.76, 12.0, 84.33,
        "Europe between 6°E and 12°E: Austria; Belgium; Denmark - onshore and offshore; Germany - onshore and "
        "offshore; "
        "Norway including - onshore and offshore; Spain - offshore.");
    add(31466, "DHDN / 3-degree Gauss-Kruger zone 2", "DE", 5.86, 49.11, 7.5, 53.81,
        "Germany - former West Germany onshore west of 7°30'E - states of Niedersachsen, Nordrhein-Westfalen, "
        "Rheinland-Pfalz, Saarland.");
    add(31467, "DHDN / 3-degree Gauss-Kruger zone 3", "DE", 7.5, 47.27, 10.51, 55.09,
        "Germany - former West Germany onshore between 7°30'E and 10°30'E - states of Baden-Wurtemberg, Bayern, "
        "Bremen, "
        "Hamberg, Hessen, Niedersachsen, Nordrhein-Westfalen, Rhineland-Pfalz, Schleswig-Holstein.");
    add(31468, "DHDN / 3-degree Gauss-Kruger zone 4", "DE", 10.5, 47.39, 13.51, 54.59,
        "Germany - former West Germany onshore between 10°30'E and 13°30'E - states of Bayern, Berlin, Niedersachsen, "
        "Schleswig-Holstein.");
    add(31469, "DHDN / 3-degree Gauss-Kruger zone 5", "DE", 13.5, 48.51, 13.84, 48.98,
        "Germany - former West Germany onshore east of 13°30'E - state of Bayern.");
    add(25831, "ETRS89 / UTM zone 31N", "AD ES BE DE DK NO", 0.0, 37.0, 6.01, 82.45,
        "Europe between 0°E and 6°E: Andorra; Belgium - onshore and offshore; Denmark - offshore; Germany - offshore; "
        "Jan Mayen - offshore; Norway including Svalbard - onshore and offshore; Spain - onshore and offshore.");
    add(25833, "ETRS89 / UTM zone 33N", "DK AT DE NO", 12.0, 46.4, 18.0, 84.42,
        "Europe between 12°E and 18°E: Austria; Denmark - offshore and offshore; Germany - onshore and offshore; "
        "Norway "
        "including Svalbard - onshore and offshore.");
}
