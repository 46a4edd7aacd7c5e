#include "plans/PlanSettingsIO.h"

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CLogger.h"
#include "geo/GdalGeoProjector.h"
#include "plans/KodraUnitConverter.h"
#include "plans/PlanPath.h"
#include "plans/PlanPlace.h"
#include "plans/PlanXml.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <Qt3DCore/QTransform>

using Torvik::Base::CFileSystemNames;
using Torvik::Logging::LogLevel;

namespace Torvik::View3d {

namespace {

/** What the user reads, in the user's language. */
struct Text {
    Q_DECLARE_TR_FUNCTIONS(Torvik::View3d::PlanSettingsIO)
};

constexpr auto planFile = KodraUnitConverter::CoordinateSystem::PlanFile;
constexpr auto scene = KodraUnitConverter::CoordinateSystem::Scene;

void log(LogLevel level, const QString& message)
{
    Logging::CLogger::logMessage(level, QStringLiteral("View3DLibrary::PlanSettingsIO"), message);
}

QString filePath(const QString& projectPath)
{
    return projectPath + CFileSystemNames::graphics3DPathPart() + QStringLiteral("plan.xml");
}

/** As much as tells that a file is too large. */
QByteArray content(QFile& file)
{
    return file.read(PlanXml::largestFile + 1);
}

QVector3D vector(const PlanXml::Triple& triple)
{
    return {float(triple[0]), float(triple[1]), float(triple[2])};
}

Vector3D<double> originInFile()
{
    return KodraUnitConverter().getPlanReferencePointInCoordinateSystem(GdalGeoProjector::instance()->origin(), scene,
                                                                        planFile);
}

PlanXml::Triple triple(const Vector3D<double>& v)
{
    return {{v.x(), v.y(), v.z()}};
}

PlanXml::Values valuesOf(const Vector3D<double>& place, double turnDeg, const QVector3D& planScale)
{
    PlanXml::Values values;
    values.mqTranslation = triple(originInFile() * -1.0);
    values.translation = triple(place);
    values.scale =
        triple(Vector3D<double>(KodraUnitConverter().getRotationOrScaleInCoordinateSystem(planScale, scene, planFile)));
    values.rotation = {{0.0, 0.0, turnDeg}};
    return values;
}

/** Why these values could not be read back; empty when they can. */
QString obstacle(const PlanXml::Values& values, const QByteArray& bytes, const QString& planFullPath)
{
    const PlanXml::Reading back = PlanXml::read(bytes);
    if (!back.badVectors.isEmpty())
        return QStringLiteral("the plan has no place that can be stored: \"%1\"").arg(back.badVectors.first());
    const bool nameHolds = back.error.isEmpty() && back.values.planData == values.planData &&
                           !planFullPath.section(QLatin1Char('/'), -1).contains(QLatin1Char('\\'));
    return nameHolds ? QString()
                     : QStringLiteral("the file name of the plan %1 cannot be stored; rename it").arg(planFullPath);
}

/** What cannot be read may still be of use to somebody. */
bool keepDamaged(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !PlanXml::read(content(file)).damaged())
        return true;
    const QString kept = path + QStringLiteral(".damaged");
    if (QFile::exists(kept) || !QFile::copy(path, kept))
        return QFile::exists(kept);
    log(Logging::LogWarning, QStringLiteral("The damaged plan.xml was kept as %1").arg(kept));
    return true;
}

bool cannotSave(const QString& reason)
{
    log(Logging::LogInformation, QStringLiteral("Cannot save plan.xml"));
    log(Logging::LogWarning, reason);
    return false;
}

bool write(const QString& projectPath, PlanXml::Values values, const QString& planFullPath)
{
    values.planData = PlanPath::stored(planFullPath, CFileSystemNames::documentationPathPart());
    const QByteArray bytes = PlanXml::write(values);
    const QString hindered = obstacle(values, bytes, planFullPath);
    if (!hindered.isEmpty())
        return cannotSave(hindered);

    QSaveFile file(filePath(projectPath));
    if (!file.open(QIODevice::WriteOnly))
        return cannotSave(QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
    if (!keepDamaged(file.fileName()))
        return cannotSave(QStringLiteral("%1: damaged, and no copy of it can be made").arg(file.fileName()));
    // commit() alone does not notice when the buffer could not be written.
    if (file.write(bytes) != bytes.size() || !file.flush() || !file.commit())
        return cannotSave(
            QStringLiteral("%1: not written whole, the disk may be full: %2").arg(file.fileName(), file.errorString()));
    return true;
}

} // namespace

void PlanSettingsIO::resetPreviouslyReadValues()
{
    m_read = PlanSettings();
    m_readTranslation = {};
    m_readTurn = 0.0;
    m_problem.clear();
}

void PlanSettingsIO::tryToLoadPlanSettings(const QString& projectPath)
{
    resetPreviouslyReadValues();
    m_read.projectPath = projectPath.trimmed();
    QFile file(filePath(m_read.projectPath));
    if (!file.open(QIODevice::ReadOnly)) {
        log(Logging::LogInformation, QStringLiteral("plan.xml was not found"));
        if (file.exists())
            m_problem = QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
        return;
    }
    const PlanXml::Reading reading = PlanXml::read(content(file));
    if (!reading.error.isEmpty()) {
        m_problem = QStringLiteral("%1: %2").arg(file.fileName(), reading.error);
        log(Logging::LogError, m_problem);
        return;
    }
    for (const QString& text : reading.badVectors) {
        log(Logging::LogError, QStringLiteral("Failed to convert \"%1\" to vector.").arg(text));
        m_problem = Text::tr("%1: \"%2\" should be three numbers with commas between them").arg(file.fileName(), text);
    }
    const PlanXml::Triple& reference = reading.values.mqTranslation;
    m_read.referencePoint =
        reading.badReference ? originInFile() : Vector3D<double>(reference[0], reference[1], reference[2]) * -1.0;
    m_read.translation = vector(reading.values.translation);
    m_read.scale = vector(reading.values.scale);
    m_read.rotation = vector(reading.values.rotation);
    const PlanXml::Triple& place = reading.values.translation;
    m_readTranslation = Vector3D<double>(place[0], place[1], place[2]);
    m_readTurn = reading.values.rotation[2];
    m_read.planPath =
        PlanPath::resolved(reading.values.planData, m_read.projectPath, CFileSystemNames::documentationPathPart());
}

QString PlanSettingsIO::getPathToPlanImage() const
{
    return m_read.planPath;
}

Vector3D<double> PlanSettingsIO::getPlanReferencePoint() const
{
    return KodraUnitConverter().getPlanReferencePointInCoordinateSystem(m_read.referencePoint, planFile, scene);
}

QVector3D PlanSettingsIO::getPlanTranslation() const
{
    return KodraUnitConverter().getTranslationInCoordinateSystem(m_read.translation, planFile, scene);
}

QVector3D PlanSettingsIO::getPlanScale() const
{
    return KodraUnitConverter().getRotationOrScaleInCoordinateSystem(m_read.scale, planFile, scene);
}

QVector3D PlanSettingsIO::getPlanRotation() const
{
    return KodraUnitConverter().getRotationOrScaleInCoordinateSystem(m_read.rotation, planFile, scene);
}

PlanSettings PlanSettingsIO::getPlanSettings() const
{
    PlanSettings settings = m_read;
    settings.referencePoint = getPlanReferencePoint();
    settings.translation = getPlanTranslation();
    settings.scale = getPlanScale();
    settings.rotation = getPlanRotation();
    // The same conversion as the translation's, in double precision.
    const Vector3D<double> exact =
        KodraUnitConverter().getPlanReferencePointInCoordinateSystem(m_readTranslation, planFile, scene);
    settings.translationRest = exact - Vector3D<double>(settings.translation);
    settings.turnRest = m_readTurn - double(settings.rotation.y());
    return settings;
}

bool PlanSettingsIO::savePlanFile(const QString& projectPath, const Qt3DCore::QTransform& transform,
                                  const QString& planFullPath, const QVector3D& additionalTranslationCorrect)
{
    // Turned and scaled about its anchor corner, a plan leaves that corner where it is: its position tells, together
    // with scale and rotation, where the plan lies.
    const QVector3D corner = transform.matrix().map(additionalTranslationCorrect);
    const QVector3D stored = KodraUnitConverter().getTranslationInCoordinateSystem(corner, scene, planFile);
    return write(projectPath, valuesOf(Vector3D<double>(stored), double(transform.rotationY()), transform.scale3D()),
                 planFullPath);
}

bool PlanSettingsIO::savePlanFile(const QString& projectPath, const PlanPlace& place, const QString& planFullPath)
{
    const Vector3D<double> stored =
        KodraUnitConverter().getPlanReferencePointInCoordinateSystem(place.position, scene, planFile);
    return write(projectPath, valuesOf(stored, place.turnDeg, place.scale), planFullPath);
}

void PlanSettingsIO::deleteOldPlanFile(const QString& path)
{
    if (!path.isEmpty() && QFile::exists(path))
        QFile::remove(path);
}

} // namespace Torvik::View3d
