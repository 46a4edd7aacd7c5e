#include "network/Pipe.h"

#include "domain/boundary/CLogger.h"
#include "network/ChainMath.h"
#include "network/CylinderSegment.h"
#include "scene/Fuzzy.h"
#include "scene/Renderable.h"

#include <Qt3DCore/QTransform>

#include <algorithm>
#include <utility>

namespace Torvik::View3d {

using Logging::CLogger;

namespace {

constexpr float stubLength = 0.01F;
constexpr float bendTolerance = 0.01F;
const QString logCategory = QStringLiteral("View3d::Pipe");

void logError(const QString& message)
{
    CLogger::logMessage(Logging::LogError, logCategory, message);
}

} // namespace

Pipe* Pipe::create(Qt3DCore::QEntity* parent, QVector<QVector3D> points, float radius)
{
    Pipe* pipe = points.isEmpty() ? new Pipe(parent) : new Pipe(parent, std::move(points));
    pipe->setRadius(radius);
    return pipe;
}

float Pipe::initialSegmentLength()
{
    return stubLength;
}

Pipe::Pipe(Qt3DCore::QEntity* parent)
    : Pipe(parent, {QVector3D(), QVector3D(0.0F, 0.0F, stubLength)})
{
}

Pipe::Pipe(Qt3DCore::QEntity* parent, QVector<QVector3D> points)
    : Qt3DCore::QEntity(parent)
    , m_ownTransform(new Qt3DCore::QTransform(this))
{
    setParentTransform();
    addComponent(m_ownTransform);
    build(std::move(points));
}

void Pipe::build(QVector<QVector3D> points)
{
    buildSegmentsFromSegmentsPoints(std::move(points));
    m_pivot.setToIdentity();
    setPivotPoint();
    setParentPosition();
}

void Pipe::updatePoints(QVector<QVector3D> points)
{
    if (points.isEmpty())
        return;
    delAllPoints();
    build(std::move(points));
}

void Pipe::buildSegmentsFromSegmentsPoints(QVector<QVector3D> points)
{
    if (points.isEmpty())
        return;
    const QVector3D first = points.takeFirst();
    const QVector3D second =
        points.isEmpty() ? first + QVector3D(0.0F, 0.0F, initialSegmentLength()) : points.takeFirst();
    addFirstSegment(first, second);
    while (points.size() > 1) {
        appendSegment(newSegment(lastSegment(), lastPoint(), points.takeFirst(), Drawing::Later));
        drawTogether(segmentCount() - 1);
    }
    if (!points.isEmpty())
        addPoint(points.first());
}

void Pipe::addFirstSegment(const QVector3D& begin, const QVector3D& end)
{
    appendSegment(newSegment(nullptr, begin, end));
}

CylinderSegment* Pipe::newSegment(EntitySegment* prev, const QVector3D& begin, const QVector3D& end, Drawing drawing)
{
    auto* segment = new CylinderSegment(this, prev, begin, end, drawing);
    segment->setRadius(m_radius);
    segment->setLengthListener(this);
    return segment;
}

void Pipe::appendSegment(EntitySegment* segment)
{
    m_segments.append(segment);
    m_lengths.append(segment->length());
}

void Pipe::onSegmentLengthChanged(const EntitySegment* segment)
{
    // Mostly one near the end. One that is being built, or has left the chain, is not there.
    const auto place = std::find(m_segments.crbegin(), m_segments.crend(), segment);
    if (place != m_segments.crend())
        m_lengths.set(static_cast<int>(m_segments.crend() - place) - 1, segment->length());
}

void Pipe::insertSegment(int index, EntitySegment* segment)
{
    m_segments.insert(index, segment);
    m_lengths.insert(index, segment->length());
    if (index + 1 >= m_segments.size())
        return;
    m_segments[index + 1]->setPrevSegment(segment);
    auto* const next = qobject_cast<CylinderSegment*>(m_segments[index + 1]);
    if (next && !next->isDrawn())
        next->drawAlone();
}

void Pipe::drawTogether(int index)
{
    auto* const segment = qobject_cast<CylinderSegment*>(m_segments.value(index));
    if (!segment)
        return;
    // The first of a chain may name one that has left it.
    const bool follows = index > 0 && segment->prevSegment() == m_segments[index - 1];
    if (!follows || !segment->letPreviousDraw())
        segment->draw();
}

void Pipe::setParentTransform()
{
    if (const auto* holder = qobject_cast<Renderable*>(parentEntity()))
        m_parentTransform = holder->transform();
}

void Pipe::setPivotPoint()
{
    if (m_segments.isEmpty())
        return;
    m_pivot = ChainMath::pivot(firstPoint(), firstSegment()->rotation());
    m_ownTransform->setMatrix(ChainMath::inversePivot(firstPoint(), firstSegment()->rotation()));
}

void Pipe::setParentPosition()
{
    if (m_segments.isEmpty())
        return;
    const QVector3D position = firstPoint();
    const QQuaternion rotation = firstSegment()->rotation();
    if (const auto* holder = qobject_cast<Renderable*>(parentEntity())) {
        holder->transform()->setTranslation(position, 0);
        holder->transform()->setRotation(rotation, 0);
        return;
    }
    if (!parentEntity()) {
        logError(QStringLiteral("Object is not Renderable type"));
        return;
    }
    // One that an earlier chain has put there serves again: an entity has a single transform.
    if (!m_parentTransform) {
        m_parentTransform = new Qt3DCore::QTransform(parentEntity());
        parentEntity()->addComponent(m_parentTransform);
    }
    m_parentTransform->setTranslation(position);
    m_parentTransform->setRotation(rotation);
}

float Pipe::length() const
{
    return m_lengths.total();
}

void Pipe::setRadius(float radius)
{
    if (Fuzzy::equal(radius, m_radius))
        return;
    for (EntitySegment* segment : qAsConst(m_segments)) {
        if (auto* cylinder = qobject_cast<CylinderSegment*>(segment))
            cylinder->setRadiusAlong(radius);
    }
    m_radius = radius;
}

void Pipe::setColor(QColor color)
{
    for (EntitySegment* segment : qAsConst(m_segments)) {
        if (auto* cylinder = qobject_cast<CylinderSegment*>(segment))
            cylinder->setColorAlong(color);
        else
            segment->setColor(color);
    }
}

PipeAppearance Pipe::appearance() const
{
    PipeAppearance look;
    look.points = getShapePoints();
    look.radius = m_radius;
    for (const EntitySegment* segment : m_segments) {
        const auto* cylinder = qobject_cast<const CylinderSegment*>(segment);
        look.colors.append(cylinder ? cylinder->color() : QColor());
    }
    return look;
}

EntitySegment* Pipe::firstSegment() const
{
    return m_segments.value(0);
}

EntitySegment* Pipe::lastSegment() const
{
    return m_segments.value(m_segments.size() - 1);
}

EntitySegment* Pipe::beforeLastSegment() const
{
    return m_segments.value(m_segments.size() - 2);
}

QVector3D Pipe::firstPoint() const
{
    return m_segments.isEmpty() ? QVector3D() : firstSegment()->beginPoint();
}

QVector3D Pipe::lastPoint() const
{
    return m_segments.isEmpty() ? QVector3D() : lastSegment()->endPoint();
}

QVector<QVector3D> Pipe::getShapePoints() const
{
    if (m_segments.isEmpty())
        return {};
    const QMatrix4x4 world = worldMatrix();
    QVector<QVector3D> points {world * firstPoint()};
    for (const EntitySegment* segment : m_segments)
        points.append(world * segment->endPoint());
    return points;
}

QMatrix4x4 Pipe::worldMatrix() const
{
    return m_parentTransform ? m_parentTransform->matrix() * m_pivot.inverted() : QMatrix4x4();
}

bool Pipe::liesInside(float distance) const
{
    const float whole = length();
    return distance < whole && !Fuzzy::equal(distance, whole);
}

QMatrix4x4 Pipe::matrixAt(const EntitySegment* segment, float inner) const
{
    QMatrix4x4 local(segment->rotation().toRotationMatrix());
    local.setColumn(3, QVector4D(segment->beginPoint() + inner * segment->direction(), 1.0F));
    return worldMatrix() * local;
}

QMatrix4x4 Pipe::getTransformMatrixAtDistance(float distance) const
{
    if (!liesInside(distance) && !m_segments.isEmpty())
        return matrixAt(lastSegment(), lastSegment()->length());
    const int index = findSegmentIdxByDistance(distance);
    if (index < 0) {
        logError(QStringLiteral("Pipe transform return identity matrix but should NOT"));
        return {};
    }
    return matrixAt(m_segments[index], distance);
}

QMatrix4x4 Pipe::getTransformMatrixAtDistanceOrZero(float distance) const
{
    if (!liesInside(distance))
        return {};
    const int index = findSegmentIdxByDistance(distance);
    return index < 0 ? QMatrix4x4() : matrixAt(m_segments[index], distance);
}

int Pipe::findSegmentIdxByDistance(float& distance) const
{
    const ChainMath::Place place = m_lengths.placeAtDistance(distance);
    distance = place.inner;
    return place.index;
}

SegmentAction Pipe::getActionForNearestSegment(float distance) const
{
    return m_modifier.getActionForNearestSegment(m_segments, distance, bendTolerance);
}

void Pipe::addPoint()
{
    if (!m_segments.isEmpty())
        addPoint(lastPoint() + lastSegment()->direction());
}

EntitySegment* Pipe::addPoint(const QVector3D& point)
{
    if (m_segments.isEmpty())
        return nullptr;
    appendSegment(newSegment(lastSegment(), lastPoint(), point));
    drawTogether(segmentCount() - 2);
    return lastSegment();
}

int Pipe::delPoint(int /*index*/)
{
    return 0;
}

void Pipe::delAllPoints()
{
    while (!m_segments.isEmpty())
        takeSegment(segmentCount() - 1);
}

void Pipe::takeSegment(int index)
{
    m_lengths.remove(index);
    EntitySegment* const segment = m_segments.takeAt(index);
    if (auto* cylinder = qobject_cast<CylinderSegment*>(segment))
        cylinder->leaveStroke();
    segment->deleteLater();
}

void Pipe::removeSegment(int index)
{
    if (index <= 0) {
        logError(QStringLiteral("Trying to remove first segment in chain"));
        return;
    }
    if (index >= m_segments.size())
        return;
    EntitySegment* prev = m_segments[index - 1];
    prev->setLength(prev->length() + m_segments[index]->length());
    if (index + 1 < m_segments.size())
        m_segments[index + 1]->setPrevSegment(prev);
    takeSegment(index);
}

void Pipe::recalcChainFromIdx(int index)
{
    for (int i = std::max(index, 0); i < m_segments.size(); ++i)
        m_segments[i]->recalcPointsRotation();
}

void Pipe::translateChainFromIdx(int index, QVector3D vector)
{
    for (int i = std::max(index, 0); i < m_segments.size(); ++i)
        m_segments[i]->translateBy(vector);
}

void Pipe::translateAllSegments(QVector3D vector)
{
    translateChainFromIdx(0, vector);
}

} // namespace Torvik::View3d
