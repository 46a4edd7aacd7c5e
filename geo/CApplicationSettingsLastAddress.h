#pragma once

#include "domain/boundary/CQmlDomainObject.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QStringList>
#include <QVariant>
#include <QVector3D>

/** The last address and the last place on earth that the user worked at, kept in the application's settings, so that a
 *  new project starts where the last one was. One for the process; QML has it as `AppSettingsLastAddress`, which the
 * host binds. Places are latitude and longitude in degrees. Main thread only. */
class KXVIEW3D_EXPORT CApplicationSettingsLastAddress : public QObject {
    Q_OBJECT

public:
    static CApplicationSettingsLastAddress& instance();
    /** Follows the active project, inspection and structure from now on. Called by the host; once is enough. */
    static void initialize();

    /** Latitude, longitude and altitude of a stored point, in the projector's present tie. */
    Q_INVOKABLE QVector3D latLongFromWkt(QString wktString);
    /** Street, city, country; each empty when unknown. */
    Q_INVOKABLE QStringList loadLastAddressPosition();
    /** Latitude, longitude; each empty when unknown. */
    Q_INVOKABLE QStringList loadLatAndLongPosition();
    /** Nothing if all three are empty. */
    Q_INVOKABLE void saveLastAddressPosition(QString street, QString city, QString country);
    /** The place, and the address that it belongs to. */
    Q_INVOKABLE void saveLatAndLongPosition(QString street, QString city, QString latitude, QString longitude);
    /** Forgets the place if it belongs to another address. */
    Q_INVOKABLE void resetLatAndLongIfNeeded(QString currentStreet, QString currentCity);

    /** Id of an inspection, or of a pipe's first one; empty for anything else. */
    QString getInspectionId(const Torvik::QmlWrapper::CQmlDomainObject& object) const;
    /** Latitude, longitude and altitude of a scene point. */
    QVector3D latLongFrom3dPosition(QVector3D position);
    /** As a QVector3D; invalid when no node of the section has a position. */
    QVariant getLatLongOfNodeFromSectionId(const QString& sectionId);
    /** Saves a QVector3D's first two components, with six digits; ignores anything else. */
    void ifVariantIsCorrectLatAndLongThenSave(const QVariant& value);
    bool addressTableIsFilled(const QStringList& list) const;
    /** Place of a node of the pipe that was inspected last, as a QVector3D; invalid without one. Asks the database. */
    QVariant getLatLongOfNodeFromProject();

public slots:
    void updateLastAddressWhenActiveInspOrSectionIsChanged(const Torvik::QmlWrapper::CQmlDomainObject& object);
    void updateLastAddressWhenActiveProjectIsChanged();

private:
    CApplicationSettingsLastAddress() = default;
};
