#pragma once

#include <QObject>
#include <QString>

namespace Torvik::Viewer {

/** What the receiver of satellites says. */
class GpsData : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(double latitude READ latitude NOTIFY changed)
    Q_PROPERTY(double longitude READ longitude NOTIFY changed)

public:
    using QObject::QObject;

    /** "No Fix", "2D Fix", "3D Fix" or "Estimated Fix". */
    QString status() const { return m_status; }
    /** Degrees; of no meaning without a fix. */
    double latitude() const { return m_latitude; }
    double longitude() const { return m_longitude; }

    void set(const QString& status, double latitude, double longitude);

signals:
    void changed();

private:
    QString m_status = QStringLiteral("No Fix");
    double m_latitude = 0.0;
    double m_longitude = 0.0;
};

/** The device that the application runs on. */
class DeviceSystem : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool gpsEnabled READ gpsEnabled WRITE setGpsEnabled NOTIFY gpsEnabledChanged)
    Q_PROPERTY(Torvik::Viewer::GpsData* gpsData READ gpsData CONSTANT)

public:
    explicit DeviceSystem(QObject* parent = nullptr);

    bool gpsEnabled() const { return m_gpsEnabled; }
    void setGpsEnabled(bool enabled);
    GpsData* gpsData() const { return m_gpsData; }

signals:
    void gpsEnabledChanged();

private:
    bool m_gpsEnabled = false;
    GpsData* m_gpsData;
};

/** Services of the application's surface. */
class UiHelper : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /** The measurement of the pipe's inclination ends: readings in real time are no longer taken. */
    Q_INVOKABLE void stopInclinationMeasurement() const;
};

/** The device and its surface, as QML knows them under the name "ostel". */
class Ostel : public QObject {
    Q_OBJECT
    Q_PROPERTY(Torvik::Viewer::DeviceSystem* system READ system CONSTANT)
    Q_PROPERTY(Torvik::Viewer::UiHelper* uiHelper READ uiHelper CONSTANT)

public:
    explicit Ostel(QObject* parent = nullptr);

    DeviceSystem* system() const { return m_system; }
    UiHelper* uiHelper() const { return m_uiHelper; }

private:
    DeviceSystem* m_system;
    UiHelper* m_uiHelper;
};

} // namespace Torvik::Viewer
