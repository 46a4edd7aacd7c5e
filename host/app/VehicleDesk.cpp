#include "host/app/VehicleDesk.h"

#include "measurement/SystemControlProxy.h"
#include "scene/GlobalNav.h"

namespace Torvik::Viewer {

using Vehicle::Replay;
using Vehicle::VehicleServer;
using View3d::GlobalNav;
using View3d::SystemControlProxy;

VehicleDesk::VehicleDesk(QObject* parent)
    : QObject(parent)
{
    connect(&m_replay, &Replay::reading, &m_feed, &Vehicle::VehicleFeed::take);
    connect(&m_replay, &Replay::loaded, this, &VehicleDesk::activeChanged);
    connect(&m_replay, &Replay::playingChanged, this, &VehicleDesk::playingChanged);
    connect(&m_replay, &Replay::speedChanged, this, &VehicleDesk::speedChanged);
    connect(&m_replay, &Replay::positionChanged, this, &VehicleDesk::positionChanged);

    connect(&m_server, &VehicleServer::reading, &m_feed, &Vehicle::VehicleFeed::take);
    connect(&m_server, &VehicleServer::problem, this, &VehicleDesk::malformedLine);
    connect(&m_server, &VehicleServer::reading, this, &VehicleDesk::connectionChanged);
    connect(&m_server, &VehicleServer::problem, this, &VehicleDesk::connectionChanged);
    connect(&m_server, &VehicleServer::connected, this, &VehicleDesk::connectionChanged);
    connect(&m_server, &VehicleServer::disconnected, this, &VehicleDesk::connectionChanged);

    connect(&SystemControlProxy::instance(), &SystemControlProxy::sectionDistanceCounterChanged, this,
            &VehicleDesk::counterChanged);
    connect(GlobalNav::instance(), &GlobalNav::realTimeEnabledChanged, this, &VehicleDesk::measuringChanged);
}

double VehicleDesk::counter() const
{
    return double(SystemControlProxy::instance().sectionDistanceCounter());
}

QString VehicleDesk::listen(const QHostAddress& address, quint16 port)
{
    const QString error = m_server.listen(address, port);
    emit activeChanged();
    emit connectionChanged();
    return error;
}

void VehicleDesk::stop()
{
    m_replay.pause();
    m_server.close();
    setMeasuring(false);
}

QString VehicleDesk::connectionText() const
{
    if (!m_server.isListening())
        return {};
    const QString who = m_server.isConnected() ? tr("connected") : tr("nobody there");
    QString text = tr("Port %1: %2, %3 readings").arg(m_server.port()).arg(who).arg(m_server.readingCount());
    if (m_server.problemCount() > 0)
        text += tr(", %1 malformed").arg(m_server.problemCount());
    return text;
}

} // namespace Torvik::Viewer
