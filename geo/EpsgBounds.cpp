#include "geo/EpsgBounds.h"

EpsgBounds::EpsgBounds(int code, const QString& shortName, const QStringList& countries, double leftLongitude,
                       double leftLatitude, double rightLongitude, double rightLatitude, const QString& longName)
    : m_leftLongitude(leftLongitude)
    , m_leftLatitude(leftLatitude)
    , m_rightLongitude(rightLongitude)
    , m_rightLatitude(rightLatitude)
    , m_code(code)
    , m_countries(countries)
    , m_shortName(shortName)
    , m_longName(longName)
{
}

bool EpsgBounds::contains(double longitude, double latitude) const
{
    return longitude >= m_leftLongitude && longitude <= m_rightLongitude && latitude >= m_leftLatitude &&
           latitude <= m_rightLatitude;
}
