#pragma once

#include "scene/KxView3dExport.h"

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>

/** A coordinate system with the area on earth in which it is valid. Limits are degrees; a default value has all limits
 *  and the code 0 and no names. A value: QML reads it, nobody there makes one. */
class KXVIEW3D_EXPORT EpsgBounds {
    Q_GADGET
    Q_PROPERTY(double leftLongitude READ leftLongitude CONSTANT)
    Q_PROPERTY(double leftLatitude READ leftLatitude CONSTANT)
    Q_PROPERTY(double rightLongitude READ rightLongitude CONSTANT)
    Q_PROPERTY(double rightLatitude READ rightLatitude CONSTANT)
    Q_PROPERTY(int code READ code CONSTANT)
    Q_PROPERTY(QString shortName READ shortName CONSTANT)
    Q_PROPERTY(QString longName READ longName CONSTANT)

public:
    EpsgBounds() = default;
    EpsgBounds(int code, const QString& shortName, const QStringList& countries, double leftLongitude,
               double leftLatitude, double rightLongitude, double rightLatitude, const QString& longName);

    double leftLongitude() const { return m_leftLongitude; }
    double leftLatitude() const { return m_leftLatitude; }
    double rightLongitude() const { return m_rightLongitude; }
    double rightLatitude() const { return m_rightLatitude; }
    int code() const { return m_code; }
    /** ISO codes of the countries that use the system. */
    const QStringList& countries() const { return m_countries; }
    QString shortName() const { return m_shortName; }
    /** Describes the area. */
    QString longName() const { return m_longName; }

    /** True inside the limits, which count as inside. Degrees. */
    bool contains(double longitude, double latitude) const;

private:
    double m_leftLongitude = 0;
    double m_leftLatitude = 0;
    double m_rightLongitude = 0;
    double m_rightLatitude = 0;
    int m_code = 0;
    QStringList m_countries;
    QString m_shortName;
    QString m_longName;
};

Q_DECLARE_METATYPE(EpsgBounds)
