#pragma once

#include "geo/EpsgBounds.h"

#include <QObject>
#include <QVariantList>
#include <QVector>

#include <vector>

/** The coordinate systems that the application offers, each with the area and the countries that it serves.
 *  Main thread only; the list stands from construction. */
class KXVIEW3D_EXPORT EpsgAreaDataset : public QObject {
    Q_OBJECT

public:
    explicit EpsgAreaDataset(QObject* parent = nullptr);

    /** The first entry with that code; a default value when there is none. */
    EpsgBounds getBoundsByEpsgCode(int code) const;
    void addBounds(const EpsgBounds& bounds);
    /** Entries whose area holds the place, in the order of the list. Degrees; the latitude comes first. */
    QVector<EpsgBounds> findProjections(double latitude, double longitude) const;
    /** Entries of a country (ISO code, exact), in the order of the list. */
    QVector<EpsgBounds> getProjections(const QString& country) const;
    /** What findProjections() finds for the two arguments in the order given here, without the systems that the local
     *  GDAL does not know. So the argument named `longitude` is compared with the limits of latitude: callers hand over
     *  the latitude first. */
    Q_INVOKABLE QVariantList findProjectionsWithDetails(double longitude, double latitude);

private:
    void populateWithHardcodedValues();

    std::vector<EpsgBounds> m_bounds;
};
