#include "host/drawing/DrawingTree.h"
#include "host/drawing/DrawingEntities.h"

#include <QTimerEvent>

namespace Torvik::DXF {

namespace {

/** A pixel of a picture may be drawn so many pixels wide before what is finer takes its place. */
constexpr double widestTexel = 1.5;
/** So much goes to the graphics card before it gets a pause to draw. */
constexpr int bytesATime = 4 << 20;
constexpr int pauseMs = 15;

} // namespace

DrawingTree::DrawingTree(DrawingMeshes meshes)
    : m_meshes(std::move(meshes))
{
    setObjectName(QStringLiteral("Drawing"));
    if (m_meshes.cropOffset)
        setProperty("dxfCropOffset", *m_meshes.cropOffset);
    if (m_meshes.pictures.isEmpty())
        return;
    for (int level = 0; level <= pictureLevels; ++level) {
        m_levels[level] = new Qt3DCore::QEntity(this);
        m_levels[level]->setEnabled(level == 0);
    }
}

bool DrawingTree::makeNext()
{
    return makePictureOf(0) || makeMeshOf(true);
}

bool DrawingTree::makeMoreOf(int level)
{
    return level < pictureLevels ? makePictureOf(level) : makeMeshOf(false);
}

bool DrawingTree::makeMeshOf(bool always)
{
    for (int& next = m_nextMesh[always ? 0 : 1]; next < m_meshes.meshes.size(); ++next) {
        if (m_meshes.meshes[next].always != always)
            continue;
        makeMesh(m_meshes.meshes[next++]);
        return true;
    }
    return false;
}

void DrawingTree::makeMesh(DrawingMesh& mesh)
{
    Qt3DRender::QMaterial*& material = m_materials[mesh.kind];
    if (!material)
        material = makeDrawingMaterial(mesh.kind, this);
    makeMeshEntity(mesh, material, mesh.always ? this : m_levels[pictureLevels]);
    m_madeBytes += mesh.vertices.size();
    mesh.vertices.clear();
}

bool DrawingTree::makePictureOf(int level)
{
    int met = 0;
    for (DrawingPicture& picture : m_meshes.pictures) {
        if (picture.level != level || met++ < m_madePictures[level])
            continue;
        ++m_madePictures[level];
        if (!m_pictureEffect)
            m_pictureEffect = makePictureEffect(this);
        makePictureEntity(picture, m_meshes.cropOffset.value_or(QVector3D()), m_pictureEffect, m_levels[level]);
        m_madeBytes += picture.pixels.size();
        picture.pixels.clear();
        return true;
    }
    return false;
}

int DrawingTree::levelFor(float unitsPerPixel) const
{
    const double coarsest = m_meshes.pictures.first().region.side / coarsestSide;
    for (int level = 0; level < pictureLevels; ++level) {
        if (coarsest / (1 << level) <= widestTexel * double(unitsPerPixel))
            return level;
    }
    return pictureLevels;
}

void DrawingTree::setUnitsPerPixel(float units)
{
    if (m_meshes.pictures.isEmpty() || !(units > 0.0F))
        return;
    m_wanted = levelFor(units);
    if (m_wanted != m_shown && !m_timer.isActive())
        m_timer.start(0, this);
}

void DrawingTree::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QEntity::timerEvent(event);
        return;
    }
    for (m_madeBytes = 0; makeMoreOf(m_wanted);) {
        if (m_madeBytes < bytesATime)
            continue;
        m_timer.start(pauseMs, this);
        return;
    }
    m_timer.stop();
    show(m_wanted);
}

void DrawingTree::show(int level)
{
    if (m_shown == level)
        return;
    m_levels[m_shown]->setEnabled(false);
    m_levels[level]->setEnabled(true);
    m_shown = level;
}

} // namespace Torvik::DXF
