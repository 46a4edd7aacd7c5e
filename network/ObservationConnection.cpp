#include "network/ObservationConnection.h"

#include "domain/ObservationAdapter.h"
#include "domain/SectionAdapterBase.h"
#include "network/Connection.h"
#include "network/ConnectionPoint.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

namespace Torvik::View3d {

ObservationConnection::ObservationConnection(Section* section, ObservationAdapter* adapter, bool /*fromDB*/)
    : Observation(section, adapter)
{
    addConnectionEntity();
    readLateralRef();
}

ObservationConnection::~ObservationConnection() = default;

void ObservationConnection::addConnectionEntity()
{
    m_connection = QSharedPointer<Connection>::create(this);
    m_connectionPoint = QSharedPointer<ConnectionPoint>::create(this);
}

void ObservationConnection::readLateralRef()
{
    m_lateralRef = m_adapter->lateralSectionRef().toString();
    if (carriesLateral())
        m_section->addLateralConnection(m_lateralRef, this);
}

bool ObservationConnection::carriesLateral() const
{
    return m_section && !m_lateralRef.isEmpty() && !isConnectedToItself() && !isAlreadyConnected();
}

bool ObservationConnection::isConnectedToItself() const
{
    return m_lateralRef == m_section->guid() || m_lateralRef == m_section->getProps()->sectionId();
}

bool ObservationConnection::isAlreadyConnected() const
{
    // A lateral has one connection, and the first that claims it keeps it.
    const ObservationConnection* const holder = SceneEntities::instance().getLateralConnections().value(m_lateralRef);
    return holder && holder != this;
}

void ObservationConnection::performCleanup()
{
    if (carriesLateral())
        m_section->removeLateralConnection(m_lateralRef);
}

Observation* ObservationConnection::modify()
{
    if (!m_section)
        return this;
    if (!hasType(connectionBits) || m_adapter->lateralSectionRef().toString() != m_lateralRef) {
        performCleanup();
        return replacement();
    }
    init();
    m_connection->refreshData();
    m_connectionPoint->refreshData();
    if (carriesLateral()) {
        // A new clock or angle gives the lateral a new direction; else it keeps the one that the user gave it.
        if (paramsChanged())
            m_section->refreshLateralFromObservationConnection(m_lateralRef);
        else
            m_section->refreshLateral(m_lateralRef);
    }
    resetPrev();
    return this;
}

void ObservationConnection::onSectionGeometryChanged()
{
    Observation::onSectionGeometryChanged();
    m_connection->refreshData();
    if (carriesLateral())
        m_section->refreshLateral(m_lateralRef);
}

void ObservationConnection::hideConnection()
{
    if (m_connection)
        m_connection->setVisible(false);
}

void ObservationConnection::showConnection()
{
    if (m_connection)
        m_connection->setVisible(true);
}

QMatrix4x4 ObservationConnection::transformMatrix() const
{
    QMatrix4x4 joint;
    joint.translate(position());
    if (m_connection)
        joint.rotate(m_connection->orientation());
    return joint;
}

} // namespace Torvik::View3d
