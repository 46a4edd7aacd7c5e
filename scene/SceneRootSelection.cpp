#include "scene/SceneRoot.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/CProjectObject.h"
#include "interaction/TapMath.h"
#include "interaction/TouchControl.h"
#include "interaction/TouchInput.h"
#include "network/ConnectionPoint.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SelectionAwareness.h"

#include <Qt3DInput/QMouseEvent>

#include <algorithm>
#include <utility>

/** What the root does with objects that are selected, and with many at a time. Second part of SceneRoot's source. */
namespace Torvik::View3d {

namespace {

/** A finger is no finer than that. */
constexpr double fingerPixels = 12.0;
const QString defaultPipeColour = QStringLiteral("DEFAULTPIPECOLOR");

void logError(const char* message)
{
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::SceneRoot"), QLatin1String(message));
}

Renderable* connectionPointByGuid(const QString& guid)
{
    // Only they are called so; other keys need not be looked for among them.
    if (!guid.startsWith(ConnectionPoint::guidPrefix()))
        return nullptr;
    const auto& connections = SceneEntities::instance().getLateralConnections();
    for (const ObservationConnection* connection : connections) {
        const auto point = connection ? connection->getConnectionPoint() : QSharedPointer<ConnectionPoint>();
        if (point && point->guid() == guid)
            return point.data();
    }
    return nullptr;
}

/** The palette's colour for a section, or an invalid one when the section keeps its own. */
QColor paletteColour(const QVariantMap& palette, const QVariant& value)
{
    if (!value.isValid())
        return {};
    const QString text = value.toString();
    const QString key = !text.isEmpty() && palette.contains(text) ? text : defaultPipeColour;
    QColor colour;
    if (palette.contains(key))
        colour.setNamedColor(palette.value(key).toString());
    return colour;
}

/** Of the section's own record, which is its inspection, or else of the pipe. */
QVariant readColumn(const QString& inspectionId, const QString& column)
{
    const auto active = AppState::instance().getActiveProject();
    if (!active || active->objectType() != Database::ProjectObjectType)
        return {};
    const auto inspection = qSharedPointerCast<Database::CProjectObject>(active)->lookupObject(inspectionId);
    if (!inspection)
        return {};
    const QVariant value = inspection->readValue(column);
    const auto pipe = inspection->parentObject().toStrongRef();
    if (!value.isNull() || !pipe)
        return value;
    const QVariant ofPipe = pipe->readValue(column);
    return ofPipe.isValid() ? ofPipe : value;
}

TapMath::Tube tubeOf(const Node* node)
{
    const QVector3D top = node->position();
    return {{top, top - QVector3D(0.0F, node->depth(), 0.0F)}, node->radius()};
}

} // namespace

void SceneRoot::logQNodeToRenderableCastError()
{
    logError("Cannot dynamic cast existing QNode to Renderable");
}

QVariant SceneRoot::getRenderableByDomainGuid(const QString& guid) const
{
    Renderable* renderable = SceneEntities::instance().getNodes().value(guid);
    if (!renderable)
        renderable = SceneEntities::instance().getPipeEntities().getByInspectionId(guid);
    return QVariant::fromValue(renderable);
}

Renderable* SceneRoot::renderableByDomainGuid(const QString& guid) const
{
    if (guid.isEmpty())
        return nullptr;
    auto& entities = SceneEntities::instance();
    if (Node* const node = entities.getNodes().value(guid))
        return node;
    if (Section* const section = entities.getPipeEntities().getByInspectionId(guid))
        return section;
    return connectionPointByGuid(guid);
}

Renderable* SceneRoot::selectedRenderable() const
{
    return renderableByDomainGuid(SelectionAwareness::instance().lastSelected());
}

QVariant SceneRoot::selectedRenderableVariant() const
{
    return QVariant::fromValue(selectedRenderable());
}

int SceneRoot::selectionsCount() const
{
    return SelectionAwareness::instance().selectedGuids().size();
}

bool SceneRoot::nothingSelected() const
{
    return SelectionAwareness::instance().nothingSelected();
}

bool SceneRoot::isSelected(const QString& guid) const
{
    return SelectionAwareness::instance().isSelected(guid);
}

QVariant SceneRoot::selectOneByDomainGuid(const QString& guid)
{
    return m_selectionsEnabled ? selectRenderable(renderableByDomainGuid(guid), false) : QVariant();
}

QVariant SceneRoot::selectNextByDomainGuid(const QString& guid)
{
    if (!m_selectionsEnabled)
        return {};
    if (m_maxSelection > selectionsCount())
        return selectRenderable(renderableByDomainGuid(guid), true);
    emit maxSelectionExceeded(m_maxSelection);
    return {};
}

QVariant SceneRoot::selectRenderable(Renderable* renderable, bool next)
{
    if (!renderable)
        return {};
    auto& selection = SelectionAwareness::instance();
    const QString guid = renderable->guid();
    if (selection.onlyOneSelected() && selection.isSelected(guid))
        return QVariant::fromValue(renderable);
    // A node without a place can't be selected.
    const auto* const node = qobject_cast<const Node*>(renderable);
    if (node && !node->isVirtual() && !node->has3dPosition())
        return {};
    if (next) {
        selection.selectNext(guid);
    } else {
        deselectAll(false);
        selection.selectOne(guid);
    }
    renderable->setAsSelected();
    emit selectedRenderableChanged(renderable);
    return QVariant::fromValue(renderable);
}

void SceneRoot::deselectAll()
{
    deselectAll(true);
}

void SceneRoot::deselectAll(bool enableGlobalNav)
{
    if (!m_selectionsEnabled)
        return;
    auto& selection = SelectionAwareness::instance();
    if (const auto guids = selection.selectedGuids(); !guids.isEmpty()) {
        for (const QString& guid : guids) {
            if (Renderable* const renderable = renderableByDomainGuid(guid))
                renderable->setAsDeselected();
            else
                logQNodeToRenderableCastError();
        }
        selection.deselectAll();
        if (enableGlobalNav)
            GlobalNav::instance()->setActiveObjectTransformControl(false);
        emit selectedRenderableChanged(nullptr);
    }
    GlobalNav::instance()->setConnectionMode(false);
    setMaxSelection(1);
}

void SceneRoot::deselectByDomainGuid(const QString& guid)
{
    auto& selection = SelectionAwareness::instance();
    selection.deselect(guid, false);
    if (Renderable* const renderable = renderableByDomainGuid(guid))
        renderable->setAsDeselected();
    selection.deselect(guid, false);
    emit selectedRenderableChanged(nullptr);
}

void SceneRoot::onShortTap(Qt3DInput::QMouseEvent* mouseEvent)
{
    // A label answers its taps itself; where nothing can be selected it is as transparent as all objects.
    if (SelectionAwareness::instance().selectionInProgress() || (m_selectionsEnabled && m_touchInput->hitLabel()))
        return;
    if (mouseEvent && selectNear(QPoint(mouseEvent->x(), mouseEvent->y())))
        return;
    deselectAll(true);
    emit deselectionMouseEvent(mouseEvent);
}

Renderable* SceneRoot::nearestObject(const QPointF& position) const
{
    if (!m_viewCamera)
        return nullptr;
    const TapMath::View view {m_viewCamera->projectionMatrix() * m_viewCamera->viewMatrix(),
                              QSizeF(sceneWidth(), sceneHeight())};
    Renderable* nearest = nullptr;
    double least = fingerPixels;
    const auto look = [&](Renderable* object, const TapMath::Tube& tube) {
        const double distance = TapMath::distanceTo(tube, position, view);
        if (distance < least) {
            least = distance;
            nearest = object;
        }
    };
    const auto& nodes = SceneEntities::instance().getNodes();
    for (Node* node : nodes) {
        if (node && node->isVisible() && node->isPickable())
            look(node, tubeOf(node));
    }
    const auto sections = SceneEntities::instance().getPipeEntities().getPipeEntities();
    for (Section* section : sections) {
        if (section->pipe() && section->isPickable())
            look(section, {section->pipe()->getShapePoints(), section->pipeScale()});
    }
    return nearest;
}

bool SceneRoot::selectNear(const QPointF& position)
{
    if (!m_selectionsEnabled)
        return false;
    // What the press has hit is seen there; otherwise what is nearest.
    Renderable* const hit = m_touchInput->hit();
    Renderable* const object = hit ? hit : nearestObject(position);
    auto* const control = object ? qobject_cast<TouchControl*>(object->touchControl()) : nullptr;
    if (!control)
        return false;
    if (SelectionAwareness::instance().lastSelected() != object->guid())
        control->selectOnTap();
    return true;
}

void SceneRoot::deleteSelected()
{
    Renderable* const selected = selectedRenderable();
    if (!selected)
        return;
    SceneEntities::instance().getNodes().take(selected->guid());
    emit selectedRenderableChanged(nullptr);
}

void SceneRoot::deleteById(const QString& id)
{
    Node* const node = SceneEntities::instance().getNodes().value(id);
    if (!node)
        return;
    delete node;
    emit selectedRenderableChanged(nullptr);
}

QVariant SceneRoot::createVirtualVisibleNode(const QString& virtualNodeName, const QString& nodeTypeHint)
{
    Node* const node = Node::createVirtual(this, true, virtualNodeName, nodeTypeHint);
    node->createMesh();
    SceneEntities::instance().getNodes().insert(node->guid(), node);
    return QVariant::fromValue(node);
}

void SceneRoot::connectSelectedObjects()
{
    const auto guids = SelectionAwareness::instance().selectedGuids();
    if (guids.size() < 2)
        return;
    Renderable* const first = renderableByDomainGuid(guids.at(0));
    Renderable* const second = renderableByDomainGuid(guids.at(1));
    if (first && second) {
        first->connectTo(second);
        m_connectedRenderables.append(first);
    }
    deselectAll(true);
}

void SceneRoot::connectApply()
{
    for (const auto& renderable : std::exchange(m_connectedRenderables, {})) {
        if (renderable)
            renderable->connectApply();
    }
}

void SceneRoot::connectCancel()
{
    for (const auto& renderable : std::exchange(m_connectedRenderables, {})) {
        if (renderable)
            renderable->connectCancel();
    }
}

void SceneRoot::cleanupBeforeProjectChanged()
{
    SelectionAwareness::instance().deselectAll();
    m_connectedRenderables.clear();
}

void SceneRoot::setSectionsColorWithPalette(const QVariantMap& colorPaletteMap, const QString& columnNameInSectionTable)
{
    const auto sections = SceneEntities::instance().getPipeEntities().getPipeEntities();
    for (Section* section : sections) {
        const QVariant value = readColumn(section->getDomainObjectId(), columnNameInSectionTable);
        const QColor colour = paletteColour(colorPaletteMap, value);
        if (colour.isValid() && section->pipe())
            section->pipe()->setColor(colour);
    }
}

void SceneRoot::showAllNodes()
{
    const auto& nodes = SceneEntities::instance().getNodes();
    for (Node* node : nodes) {
        if (node)
            node->show();
        else
            logError("showAllNodes: Node is null");
    }
}

void SceneRoot::hideNodesWithoutParentSection()
{
    const auto& nodes = SceneEntities::instance().getNodes();
    for (Node* node : nodes) {
        if (!node)
            logError("hideNodesWithoutParentSection: Node is null");
        else if (!node->isConnected())
            node->setVisible(false);
    }
}

bool SceneRoot::sceneHasNodesWithPosition() const
{
    const auto& nodes = SceneEntities::instance().getNodes();
    return std::any_of(nodes.begin(), nodes.end(), [](Node* node) { return node && node->has3dPosition(); });
}

bool SceneRoot::sceneHasVirtualNodesWithPosition() const
{
    const auto& nodes = SceneEntities::instance().getNodes();
    return std::any_of(nodes.begin(), nodes.end(), [](Node* node) { return node && node->isVirtual(); });
}

} // namespace Torvik::View3d
