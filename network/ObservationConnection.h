#pragma once

#include "network/Observation.h"

#include <QSharedPointer>

namespace Torvik::View3d {

class Connection;
class ConnectionPoint;

/** A connection: a stub and a sphere where a lateral joins the pipe. It carries that lateral unless the record names
 *  none, names the section itself, or names one that another connection has already. */
class KXVIEW3D_EXPORT ObservationConnection : public Observation {
    Q_OBJECT

public:
    ObservationConnection(Section* section, ObservationAdapter* adapter, bool fromDB);
    ~ObservationConnection() override;

    Observation* modify() override;
    /** Lets the lateral go. */
    void performCleanup() override;
    void onSectionGeometryChanged() override;
    /** Frame of the joint on the pipe, in which a lateral begins. */
    QMatrix4x4 transformMatrix() const override;

    QSharedPointer<ConnectionPoint> getConnectionPoint() const { return m_connectionPoint; }
    QSharedPointer<Connection> getConnection() const { return m_connection; }
    void hideConnection();
    void showConnection();

private:
    void addConnectionEntity();
    void readLateralRef();
    bool carriesLateral() const;
    bool isConnectedToItself() const;
    bool isAlreadyConnected() const;

    QSharedPointer<Connection> m_connection;
    QSharedPointer<ConnectionPoint> m_connectionPoint;
};

} // namespace Torvik::View3d
