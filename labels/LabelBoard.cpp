#include "labels/LabelBoard.h"

#include "interaction/Utils3d.h"
#include "labels/ImageLabel.h"
#include "labels/LabelPointerEffect.h"
#include "labels/LabelRoom.h"
#include "labels/LabelTextEffect.h"
#include "labels/LabelsPositionsLoader.h"
#include "labels/LabelsSignalRouter.h"
#include "labels/NameTag.h"
#include "plans/PlaneVertexShape.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <Qt3DExtras/QPlaneMesh>

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Torvik::View3d {

namespace {

/** Changes of objects that come within this time are looked at together. */
constexpr int soonMs = 100;
/** Faces that are painted in one turn of the event loop. */
constexpr int facesATurn = 40;
/** Part of the way to the far plane. */
constexpr float depthPart = 0.9F;
/** What every renderer takes as a texture. */
constexpr int longestTexture = 4096;
/** Part of the depth range between labels that may lie on one another: more than the steps of 16 bits. */
constexpr float layer = 1e-4F;

double deviceRatio()
{
    return qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
}

} // namespace

LabelBoard& LabelBoard::instance()
{
    static LabelBoard board;
    return board;
}

LabelBoard::LabelBoard()
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(soonMs);
    connect(&m_soon, &QTimer::timeout, this, &LabelBoard::arrange);
    m_drawNext.setSingleShot(true);
    m_drawNext.setInterval(0);
    connect(&m_drawNext, &QTimer::timeout, this, &LabelBoard::drawSome);
    auto& router = LabelsSignalRouter::instance();
    connect(&router, &LabelsSignalRouter::hideLabels, this, &LabelBoard::hideLabels);
    connect(&router, &LabelsSignalRouter::showLabels, this, &LabelBoard::showLabels);
    connect(GlobalNav::instance(), &GlobalNav::labelsVisibleChanged, this, &LabelBoard::schedule);
    connect(&LabelsPositionsLoader::instance(), &LabelsPositionsLoader::labelsPositionsReset, this, [this] {
        closeGaps();
        for (NameTag* const tag : qAsConst(m_tags))
            tag->lookUpStoredPosition();
        schedule();
    });
}

void LabelBoard::watch(SceneRoot* root, Qt3DRender::QCamera* camera)
{
    if (m_root != root) {
        // One that goes must not take the camera of the one that came.
        if (!camera)
            return;
        leaveRoot();
        m_root = root;
        connect(root, &SceneRoot::sceneHeightChanged, this, &LabelBoard::schedule);
        connect(root, &SceneRoot::sceneWidthChanged, this, &LabelBoard::schedule);
    }
    auto* const router = &LabelsSignalRouter::instance();
    if (m_camera && m_camera != camera)
        disconnect(m_camera, nullptr, router, nullptr);
    m_camera = camera;
    if (!camera)
        return;
    connect(camera, &Qt3DRender::QCamera::viewMatrixChanged, router, &LabelsSignalRouter::onLabelPositionChanged,
            Qt::UniqueConnection);
    connect(camera, &Qt3DRender::QCamera::viewVectorChanged, router, &LabelsSignalRouter::onLabelPositionChanged,
            Qt::UniqueConnection);
    connect(camera, &Qt3DRender::QCamera::projectionMatrixChanged, router, &LabelsSignalRouter::onLabelPositionChanged,
            Qt::UniqueConnection);
}

void LabelBoard::leaveRoot()
{
    if (m_root)
        disconnect(m_root, nullptr, this, nullptr);
    for (ImageLabel* const label : qAsConst(m_labels))
        label->setFace(nullptr);
    m_drawn.clear();
    m_waiting.clear();
    m_freeFaces.clear();
    delete m_overlay;
}

SceneRoot* LabelBoard::root() const
{
    return m_root;
}

bool LabelBoard::isInScene(const QObject* object) const
{
    const QObject* const scene = m_root;
    while (object && object != scene)
        object = object->parent();
    return object;
}

std::optional<LabelPlacement::View> LabelBoard::view() const
{
    if (!m_root || !m_camera)
        return std::nullopt;
    RayMath::Eye eye;
    eye.position = m_camera->position();
    eye.up = m_camera->upVector();
    eye.view = m_camera->viewVector();
    eye.nearPlane = m_camera->nearPlane();
    eye.retina = Utils3d::cameraRetinaLimits(m_camera);
    return LabelPlacement::viewOf(eye, {m_root->sceneWidth(), m_root->sceneHeight()});
}

float LabelBoard::depth() const
{
    return m_camera ? m_camera->farPlane() * depthPart : LabelPlacement::planeDistance;
}

QSize LabelBoard::texturePixels(const QSizeF& screenPixels) const
{
    const QSize pixels = (screenPixels * deviceRatio()).toSize();
    return pixels.expandedTo({1, 1}).boundedTo({longestTexture, longestTexture});
}

QPointF LabelBoard::onDevicePixels(const QPointF& pixel) const
{
    const double ratio = deviceRatio();
    return {std::round(pixel.x() * ratio) / ratio, std::round(pixel.y() * ratio) / ratio};
}

void LabelBoard::add(NameTag* tag)
{
    tag->place = m_tags.size();
    m_tags.append(tag);
}

void LabelBoard::remove(NameTag* tag)
{
    m_waiting.erase(std::remove(m_waiting.begin(), m_waiting.end(), tag), m_waiting.end());
    if (m_drawn.removeOne(tag) && tag->liveLabel())
        takeFaceFrom(tag->liveLabel());
    // Those behind it keep their order, which says who gets room first.
    m_tags[tag->place] = nullptr;
    ++m_gaps;
    tag->place = -1;
    if (tagCount() == 0)
        closeGaps();
    // Others may have waited for its room.
    schedule();
}

void LabelBoard::replace(NameTag* before, NameTag* tag)
{
    m_tags[tag->place] = nullptr;
    ++m_gaps;
    tag->place = std::exchange(before->place, -1);
    m_tags[tag->place] = tag;
    std::replace(m_drawn.begin(), m_drawn.end(), before, tag);
    std::replace(m_waiting.begin(), m_waiting.end(), before, tag);
    schedule();
}

void LabelBoard::closeGaps()
{
    if (m_gaps == 0)
        return;
    m_tags.removeAll(nullptr);
    m_gaps = 0;
    for (int i = 0; i < m_tags.size(); ++i)
        m_tags.at(i)->place = i;
}

void LabelBoard::enter(ImageLabel* label)
{
    m_labels.insert(label);
    if (m_hidden)
        label->hideForMove();
}

void LabelBoard::leave(ImageLabel* label)
{
    m_labels.remove(label);
    takeFaceFrom(label);
}

void LabelBoard::takeFaceFrom(ImageLabel* label)
{
    LabelFace* const face = label->face();
    label->setFace(nullptr);
    putBack(face);
}

void LabelBoard::schedule()
{
    if (!m_soon.isActive() && tagCount() > 0)
        m_soon.start();
}

void LabelBoard::hideLabels()
{
    m_hidden = true;
    // showLabels() looks anew who waits.
    m_drawNext.stop();
    if (m_overlay)
        m_overlay->setEnabled(false);
    for (ImageLabel* const label : qAsConst(m_labels))
        label->hideForMove();
}

void LabelBoard::showLabels()
{
    m_hidden = false;
    arrange();
    for (ImageLabel* const label : qAsConst(m_labels))
        label->showAfterMove();
    if (m_overlay)
        m_overlay->setEnabled(true);
}

QVector<NameTag*> LabelBoard::chosen(const LabelPlacement::View& view) const
{
    struct Candidate {
        NameTag* tag;
        QRectF pixels;
    };
    LabelRoom room(view.screen);
    QVector<Candidate> moved;
    std::array<QVector<Candidate>, NameTag::rankCount> candidates;
    for (NameTag* const tag : m_tags) {
        const auto pixels = tag->wantsRoom() ? tag->coverage(view) : std::nullopt;
        if (!pixels || !room.isOnScreen(*pixels))
            continue;
        (tag->wasMoved() ? moved : candidates.at(tag->rank())).append({tag, *pixels});
    }
    std::stable_sort(moved.begin(), moved.end(),
                     [](const Candidate& a, const Candidate& b) { return a.tag->touched > b.tag->touched; });
    QVector<NameTag*> chosen;
    for (const Candidate& candidate : qAsConst(moved)) {
        if (chosen.size() == maxDrawn)
            break;
        // The user wants it there.
        room.occupy(candidate.pixels);
        chosen.append(candidate.tag);
    }
    for (const auto& ofRank : candidates) {
        for (const Candidate& candidate : ofRank) {
            if (chosen.size() < maxDrawn && room.take(candidate.pixels))
                chosen.append(candidate.tag);
        }
    }
    return chosen;
}

void LabelBoard::arrange()
{
    m_soon.stop();
    const auto present = view();
    if (!present || m_hidden)
        return;
    closeGaps();
    const QVector<NameTag*> next = chosen(*present);
    ++m_round;
    for (NameTag* const tag : next)
        tag->lastDrawn = m_round;
    for (NameTag* const tag : qAsConst(m_drawn)) {
        if (tag->lastDrawn != m_round)
            release(tag);
    }
    m_drawn = next;
    m_waiting.clear();
    for (NameTag* const tag : next) {
        ImageLabel* const label = tag->liveLabel();
        if (label && label->face())
            label->onSceneHeightChanged();
        else
            m_waiting.push_back(tag);
    }
    layFaces();
    if (!m_waiting.empty())
        m_drawNext.start();
}

void LabelBoard::layFaces()
{
    for (int i = 0; i < m_drawn.size(); ++i) {
        const ImageLabel* const label = m_drawn.at(i)->liveLabel();
        if (label && label->face())
            label->face()->setDepth(static_cast<float>(i - maxDrawn) * layer);
    }
}

void LabelBoard::raise(NameTag* tag)
{
    tag->touched = ++m_touches;
    m_drawn.removeOne(tag);
    m_drawn.prepend(tag);
    layFaces();
}

void LabelBoard::release(NameTag* tag)
{
    if (ImageLabel* const label = tag->liveLabel())
        takeFaceFrom(label);
    tag->letLabelGo();
}

void LabelBoard::drawSome()
{
    for (int i = 0; i < facesATurn && !m_waiting.empty(); ++i) {
        NameTag* const tag = m_waiting.front();
        m_waiting.pop_front();
        ImageLabel* const label = tag->makeLabel();
        LabelFace* const face = takeFace();
        if (!face)
            return;
        label->onSceneHeightChanged();
        label->setFace(face);
    }
    layFaces();
    if (!m_waiting.empty())
        m_drawNext.start();
}

LabelFace* LabelBoard::takeFace()
{
    // In the order in which they came: labels that were switched off find what they had painted.
    while (!m_freeFaces.isEmpty()) {
        if (LabelFace* const face = m_freeFaces.takeFirst())
            return face;
    }
    if (!m_root)
        return nullptr;
    if (!m_overlay) {
        m_overlay = new Qt3DCore::QEntity(m_root);
        m_overlay->setObjectName(QStringLiteral("labels"));
        m_faceCount = 0;
        m_parts = makeParts();
    }
    ++m_faceCount;
    return new LabelFace(m_overlay, m_parts);
}

LabelFaceParts LabelBoard::makeParts()
{
    LabelFaceParts parts;
    parts.surface = new Qt3DExtras::QPlaneMesh(m_overlay);
    parts.pointer = new PlaneVertexShape(m_overlay);
    parts.textEffect = new LabelTextEffect(m_overlay);
    parts.pointerEffect = new LabelPointerEffect(m_overlay);
    return parts;
}

void LabelBoard::putBack(LabelFace* face)
{
    if (face)
        m_freeFaces.append(face);
}

ImageLabel* LabelBoard::labelAt(const QPointF& pixel)
{
    if (m_hidden)
        return nullptr;
    for (NameTag* const tag : qAsConst(m_drawn)) {
        ImageLabel* const label = tag->liveLabel();
        if (label && label->face() && label->isShown() && label->coverage().contains(pixel + QPointF(0.5, 0.5))) {
            tag->keepLabel();
            raise(tag);
            return label;
        }
    }
    return nullptr;
}

} // namespace Torvik::View3d
