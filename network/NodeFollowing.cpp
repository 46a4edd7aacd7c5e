#include "network/Node.h"

#include "domain/NodeAdapter.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/Vector3D.h"
#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "network/OutletMath.h"
#include "network/Section.h"
#include "scene/Fuzzy.h"

/** How a node follows its sections: the second half of Node's source. */
namespace Torvik::View3d {

namespace {

void logMissingSection()
{
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("View3d::Node"),
                                 QStringLiteral("Node::calculateTranslation Section is null"));
}

QVector3D raised(const QVector3D& point, float height)
{
    return {point.x(), point.y() + height, point.z()};
}

} // namespace

void Node::connectSection(Section* section)
{
    if (!section)
        return;
    m_sections.insert(section);
    section->addTiedNode(this);
    ensureVisibility();
}

void Node::disconnectSection(Section* section)
{
    if (m_sections.remove(section))
        section->removeTiedNode(this);
    disconnect(m_startLink);
    ensureVisibility();
}

void Node::forgetSection(Section* section)
{
    m_sections.remove(section);
    if (m_snappedSection == section)
        m_snappedSection = nullptr;
}

Section* Node::snappedSection() const
{
    return m_snappedSection;
}

void Node::moveToStart(Section* section)
{
    if (!section) {
        logMissingSection();
        return;
    }
    transform()->setTranslation(raised(section->position(), section->toNodeDepth()), TransformFlags::Observations);
}

void Node::moveToEnd()
{
    if (m_isVirtual)
        moveToEndOfThePipe();
    else
        moveToEndInspObservation();
}

void Node::moveToEndOfThePipe()
{
    if (transform()->positionBound())
        return;
    if (!m_snappedSection) {
        logMissingSection();
        return;
    }
    const QMatrix4x4 end = m_snappedSection->pipeTransMatrixAtDistance(static_cast<float>(m_snappedSection->length()));
    transform()->setTranslation(raised(end.column(3).toVector3D(), m_snappedSection->toNodeDepth()),
                                TransformFlags::Observations);
}

void Node::moveToEndInspObservation()
{
    if (transform()->positionBound())
        return;
    QMetaObject::invokeMethod(this, "setEventLoopFinished", Qt::QueuedConnection);
    if (!m_eventLoopFinished)
        return;
    m_eventLoopFinished = false;
    if (!m_snappedSection) {
        logMissingSection();
        return;
    }
    const QVector3D pipeEnd = m_snappedSection->pipeTransMatrixAtEndNodeObs().column(3).toVector3D();
    const float depthOffset = m_snappedSection->getOutletDepthOffset(this);
    const Database::WktPoint point(m_props ? m_props->shape().toString() : QString());
    const auto* const projector = GdalGeoProjector::instance();
    const QVector3D stored = Vector3D<double>(point, 1.0).toQVector3D();
    const QVector3D inScene = (Vector3D<double>(point, projector->scale()) - projector->origin()).toQVector3D();
    const QVector3D place = OutletMath::endNodePosition(pipeEnd, depthOffset, stored, inScene);

    if (Fuzzy::equal(place, transform()->translation()))
        transform()->resetFlags(TransformFlags::Observations);
    else
        transform()->setTranslation(place, TransformFlags::Observations);
}

void Node::setEventLoopFinished()
{
    m_eventLoopFinished = true;
}

void Node::moveToRenderable(Renderable* other)
{
    const FlaggedTransform* const source = other->transform();
    transform()->setTranslation(source->translation(), TransformFlags::Observations);
    transform()->setRotation(source->rotation(), 0);
}

void Node::snapToSection(Section* section)
{
    if (!section || transform()->positionBound() || m_snappedSection)
        return;
    transform()->addFlagsSilently(TransformFlags::Observations);
    m_snappedSection = section;
    moveToEnd();
    connect(section->transform(), &FlaggedTransform::translationChanged, this, &Node::moveToEnd, Qt::UniqueConnection);
    connect(section->transform(), &FlaggedTransform::rotationChanged, this, &Node::moveToEnd, Qt::UniqueConnection);
    connect(section, &Section::sectionGeometryChanged, this, &Node::moveToEnd, Qt::UniqueConnection);
}

void Node::unSnapFromSection(Section* section)
{
    if (section != m_snappedSection)
        return;
    if (section)
        disconnect(section->transform(), nullptr, this, nullptr);
    m_snappedSection = nullptr;
}

void Node::linkToBegining(Section* section)
{
    if (m_startLink || !section)
        return;
    m_startLink = connect(section->transform(), &FlaggedTransform::translationChanged, this, [this, section] {
        if ((section->transformFlags() & transformFlags() & TransformFlags::Observations) != 0)
            moveToStart(section);
    });
}

void Node::move(QVector3D vector, MeasurementType flags)
{
    Renderable::move(vector, flags);
    setTransformFlags(TransformFlags::Manual);
    unSnapFromSection(m_snappedSection);
}

} // namespace Torvik::View3d
