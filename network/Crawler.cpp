#include "network/Crawler.h"

#include "domain/boundary/CLogger.h"
#include "geo/GdalGeoProjector.h"
#include "network/Section.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QConeMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QMesh>

namespace Torvik::View3d {

namespace {

/** The model is one unit wide; this many times the pipe's radius it shows around the pipe. */
constexpr float scaleOfRadius = 6.2F;

constexpr float coneBottomRadius = 1.0F;
constexpr float coneTopRadius = 0.23F;
constexpr float coneLength = 1.7F;
constexpr float coneTurnX = -90.0F; ///< degrees
constexpr float coneAhead = 1.2F;
constexpr float bodyScale = 1.8F;
constexpr float bodyBehindCone = 1.15F;

const QColor coneCool(13, 13, 13);
const QColor coneWarm(64, 64, 64);
const QColor bodyColour(39, 92, 168);

void log(Logging::LogLevel level, const QString& message)
{
    Logging::CLogger::logMessage(level, QStringLiteral("View3d::Crawler"), message);
}

QString number(float value)
{
    return QString::number(static_cast<double>(value), 'g', 6);
}

} // namespace

Crawler::Crawler(Qt3DCore::QEntity* parent)
    : Renderable(parent)
{
    // It has no stored shape that a new tie to the earth would have to be written for.
    disconnect(GdalGeoProjector::instance(), &GdalGeoProjector::geoLocationChanged, this, &Renderable::editingFinished);
    init3d();
}

void Crawler::init3d()
{
    if (m_modelEntity)
        return;
    m_modelEntity = new Qt3DCore::QEntity(this);
    auto* const cone = new Qt3DExtras::QConeMesh(m_modelEntity);
    cone->setBottomRadius(coneBottomRadius);
    cone->setTopRadius(coneTopRadius);
    cone->setLength(coneLength);
    auto* const material = new Qt3DExtras::QGoochMaterial(m_modelEntity);
    material->setAlpha(0.12F);
    material->setBeta(1.0F);
    material->setCool(coneCool);
    material->setWarm(coneWarm);
    material->setDiffuse(Qt::black);
    material->setSpecular(Qt::black);
    m_coneTransform = new Qt3DCore::QTransform(m_modelEntity);
    m_coneTransform->setRotationX(coneTurnX);
    m_coneTransform->setTranslation({0.0F, 0.0F, coneAhead});
    m_modelEntity->addComponent(cone);
    m_modelEntity->addComponent(material);
    m_modelEntity->addComponent(m_coneTransform);
    addBody();
    m_modelEntity->setEnabled(m_active);
}

void Crawler::addBody()
{
    auto* const body = new Qt3DCore::QEntity(m_modelEntity);
    auto* const mesh = new Qt3DRender::QMesh(body);
    mesh->setSource(QUrl(QStringLiteral("qrc:/models/roundedCylinder.obj")));
    auto* const material = new Qt3DExtras::QPhongMaterial(body);
    material->setDiffuse(bodyColour);
    auto* const place = new Qt3DCore::QTransform(body);
    place->setScale(bodyScale);
    place->setTranslation({0.0F, bodyBehindCone, 0.0F});
    body->addComponent(mesh);
    body->addComponent(material);
    body->addComponent(place);
}

QString Crawler::renderableType() const
{
    return QStringLiteral("crawler");
}

QQuaternion Crawler::orientation() const
{
    return {};
}

void Crawler::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    m_modelEntity->setEnabled(active);
    if (active)
        refreshPosition();
    emit activeChanged();
}

Section* Crawler::section() const
{
    return m_section;
}

void Crawler::attachToSection(Section* section)
{
    disconnectSignals();
    if (m_section == section)
        return;
    m_section = section;
    if (!section) {
        log(Logging::LogError, QStringLiteral("crawlerTransform is null"));
        return;
    }
    m_connections << connect(section->transform(), &FlaggedTransform::translationChanged, this,
                             &Crawler::refreshPosition)
                  << connect(section->transform(), &FlaggedTransform::rotationChanged, this, &Crawler::refreshPosition)
                  << connect(section, &Section::realTimeDataChanged, this, &Crawler::refreshPosition);
    refreshPosition();
}

void Crawler::detachFromSection()
{
    m_section = nullptr;
}

void Crawler::disconnectSignals()
{
    for (const QMetaObject::Connection& connection : m_connections)
        disconnect(connection);
}

void Crawler::refreshPosition()
{
    if (!m_section || !m_active)
        return;
    const CrawlerTransform& pipe = *m_section;
    transform()->setMatrix(pipe.crawlerTransformMatrix(), 0);
    transform()->setScale(pipe.pipeScale() * scaleOfRadius);
    const QVector3D place = transform()->translation();
    log(Logging::LogTrace, QStringLiteral("Crawler camera position , %1, %2, %3")
                               .arg(number(place.x()), number(place.y()), number(place.z())));
}

} // namespace Torvik::View3d
