#pragma once

#include "domain/boundary/CPipeObjects.h"

#include <QObject>

namespace Torvik::Database {
class CDomainObjectProxy;
}

namespace Torvik::View3d {

/** Gives the values of an observation's record names and types. The distance is the only value whose unit it converts;
 *  the unit is that in force when the adapter was made. An object that has gone reads as empty. */
class ObservationAdapter : public QObject {
    Q_OBJECT

public:
    /** Refers to the proxy and leaves it where it is. */
    ObservationAdapter(Database::CDomainObjectProxy* proxy, QObject* parent);

    /** 0x400 bend, 0x4 end of inspection, 0x2018 connection. */
    unsigned codeTypeFlags() const;
    QString code() const;
    QString observationId() const;
    /** Along the pipe. */
    float distanceMeters() const;
    /** Id of the lateral that a connection leads to. */
    QVariant lateralSectionRef() const;
    QVariant bendClock() const;
    QVariant jointAngle() const;
    QVariant q1Value() const;
    QVariant clockPos1() const;
    QWeakPointer<Database::CDomainObject> getDomainObject() const { return m_object; }

private:
    QSharedPointer<Database::CPipeObservationObject> observation() const;
    QVariant value(const char* key) const;

    QWeakPointer<Database::CDomainObject> m_object;
    Database::CDomainObjectProxy* m_proxy;
    float m_metresPerUnit;
};

} // namespace Torvik::View3d
