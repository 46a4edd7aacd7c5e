#include "host/modules/Belmora.h"

#include "domain/boundary/AppState.h"
#include "host/modules/Language.h"

#include <QCoreApplication>

namespace Torvik::Viewer {

using QmlWrapper::CQmlDomainObject;

AppStateData::AppStateData(QObject* parent)
    : QObject(parent)
{
    AppState& state = AppState::instance();
    connect(&state, &AppState::activeProjectChanged, this, &AppStateData::activeProjectChanged);
    connect(&state, &AppState::activeInspectionChanged, this, &AppStateData::activeInspectionChanged);
    connect(&state, &AppState::activeStructureChanged, this, &AppStateData::activeStructureChanged);
}

CQmlDomainObject AppStateData::activeProject() const
{
    return CQmlDomainObject(AppState::instance().getActiveProject());
}

CQmlDomainObject AppStateData::activeInspection() const
{
    return CQmlDomainObject(AppState::instance().getActiveInspection());
}

void AppStateData::setActiveInspection(const CQmlDomainObject& inspection)
{
    AppState::instance().setActiveInspection(inspection.object());
}

CQmlDomainObject AppStateData::activeStructure() const
{
    return CQmlDomainObject(AppState::instance().getActiveStructure());
}

bool AppStateData::project3dActive() const
{
    return AppState::instance().is3dProjectActive();
}

TranslationHelper::TranslationHelper(QObject* parent)
    : QObject(parent)
{
    connect(&Language::instance(), &Language::changed, this, &TranslationHelper::languageChanged);
}

QString TranslationHelper::languageCode() const
{
    return Language::instance().code();
}

QString TranslationHelper::translated(const QString& className, const QString& key, const QString& defaultText) const
{
    const QByteArray source = key.toUtf8();
    const QString found = QCoreApplication::translate(className.toUtf8().constData(), source.constData());
    return found == key ? defaultText : found;
}

QString TranslationHelper::errorMessageFromErrorCode(const Base::CErrorCode& errorCode) const
{
    const QString text = translated(QStringLiteral("Torvik.ErrorCodes"), QStringLiteral("ErrorCode"),
                                    QStringLiteral("An error occurred (code 0x%1)."));
    return text.arg(errorCode.code(), 0, 16);
}

Belmora::Belmora(QObject* parent)
    : QObject(parent)
    , m_appStateData(new AppStateData(this))
    , m_translationHelper(new TranslationHelper(this))
    , m_videoCreationHandler(new VideoCreationHandler(this))
    , m_videoRecorder(new VideoRecorder(this))
{
}

} // namespace Torvik::Viewer
