#pragma once

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "host/modules/Video.h"

#include <QObject>

namespace Torvik::Viewer {

/** What the application works on at present, for QML. Follows AppState. */
class AppStateData : public QObject {
    Q_OBJECT
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject activeProject READ activeProject NOTIFY activeProjectChanged)
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject activeInspection READ activeInspection WRITE setActiveInspection
                   NOTIFY activeInspectionChanged)
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject activeStructure READ activeStructure NOTIFY activeStructureChanged)
    Q_PROPERTY(bool project3dActive READ project3dActive NOTIFY activeProjectChanged)

public:
    explicit AppStateData(QObject* parent = nullptr);

    QmlWrapper::CQmlDomainObject activeProject() const;
    QmlWrapper::CQmlDomainObject activeInspection() const;
    /** An invalid object ends the inspection. */
    void setActiveInspection(const QmlWrapper::CQmlDomainObject& inspection);
    QmlWrapper::CQmlDomainObject activeStructure() const;
    bool project3dActive() const;

signals:
    void activeProjectChanged();
    void activeInspectionChanged();
    void activeStructureChanged();
};

/** Gives texts in the user's language. */
class TranslationHelper : public QObject {
    Q_OBJECT
    /** Whoever reads it beside a text has the text anew when the language changes. */
    Q_PROPERTY(QString languageCode READ languageCode NOTIFY languageChanged)

public:
    explicit TranslationHelper(QObject* parent = nullptr);

    QString languageCode() const;

    /** The translation of the key, or the default text where there is none. */
    Q_INVOKABLE QString translated(const QString& className, const QString& key, const QString& defaultText) const;
    /** What the user is told about an error. */
    Q_INVOKABLE QString errorMessageFromErrorCode(const Torvik::Base::CErrorCode& errorCode) const;

signals:
    void languageChanged();
};

/** The application, as QML knows it under the name "belmora". */
class Belmora : public QObject {
    Q_OBJECT
    Q_PROPERTY(QObject* appStateData READ appStateData CONSTANT)
    Q_PROPERTY(QObject* translationHelper READ translationHelper CONSTANT)
    Q_PROPERTY(Torvik::Viewer::VideoCreationHandler* videoCreationHandler READ videoCreationHandler CONSTANT)
    Q_PROPERTY(Torvik::Viewer::VideoRecorder* videoRecorder READ videoRecorder CONSTANT)

public:
    explicit Belmora(QObject* parent = nullptr);

    QObject* appStateData() const { return m_appStateData; }
    QObject* translationHelper() const { return m_translationHelper; }
    VideoCreationHandler* videoCreationHandler() const { return m_videoCreationHandler; }
    VideoRecorder* videoRecorder() const { return m_videoRecorder; }

private:
    AppStateData* m_appStateData;
    TranslationHelper* m_translationHelper;
    VideoCreationHandler* m_videoCreationHandler;
    VideoRecorder* m_videoRecorder;
};

} // namespace Torvik::Viewer
