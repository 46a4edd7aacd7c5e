#pragma once

#include "domain/DomainReader.h"
#include "domain/PipeEntityBuilder.h"
#include "domain/boundary/CDomainObject.h"
#include "scene/KxView3dExport.h"
#include "scene/RemovalQueue.h"
#include "scene/TransformFlags.h"

#include <QObject>
#include <QPointer>
#include <QVector3D>

#include <memory>
#include <set>

namespace Qt3DCore {
class QNode;
}
namespace Torvik::Database {
class CDomainObjectProxy;
class CPipeInspectionObject;
} // namespace Torvik::Database

namespace Torvik::View3d {

class Node;
class Renderable;
class SceneRoot;
class Section;
class SystemControlProxy;

/** Makes, changes and removes the scene's objects as the project's objects come, change and go. The only place that
 *  creates and destroys nodes; it decides a node's scene position, and sets up the projector from the first positioned
 *  node of a project. A failure logs and leaves the scene as it was. */
class KXVIEW3D_EXPORT EntitiesManager : public QObject {
    Q_OBJECT

public:
    struct ScenePosition {
        QVector3D position;
        TransformFlags flags {0};
    };

    EntitiesManager(SceneRoot& root, SystemControlProxy& proxy, QObject* parent);
    ~EntitiesManager() override;

    /** True while objects of an earlier project still leave the scene, or those of the present one still come. */
    bool isBusy() const { return m_reader.isLoading() || m_removals.isBusy(); }

    /** Starts the flow, with the project that is active already. */
    void init();

    const DomainReader& domainReader() const { return m_reader; }

    /** Scene position of a stored WKT point, in the projector's present tie. */
    static QVector3D positionFromWKT(const QString& wkt);
    /** Position and source of an object's stored shape; the origin and no source without one. */
    static ScenePosition domainObjScenePos(const Database::CDomainObject& object);

    QList<Section*> getConnectedPipeEntities(const QString& nodeId) const;

    /** For hosts: the node waits until an inspection of one of its sections is inserted. */
    void postponeNodeInsertion(const CDomainObjectPointer& node);
    /** For hosts: scene position for a new node, the place that the user worked at last, or without one the centre of
     *  the view. In a scene without positioned nodes that place becomes the origin. */
    QVector3D calculatePositionForNodeAndResetGeoProjectorIfFirst();
    /** The same for a place in degrees. */
    QVector3D getLastPositionAndResetGeoProjectorIfFirstNode(double latitude, double longitude);

public slots:
    void onNodeInserted(const CDomainObjectPointer& node);
    void onPostponedNodeInsertion(const CDomainObjectPointer& sectionInspectionQmlObj);
    /** Nothing: removal goes through onObjectRemoved. */
    void onNodeRemoved(const CDomainObjectPointer& node);
    void onSectionInspectionInserted(const CDomainObjectPointer& inspection);
    void onNodeModified(const CDomainObjectPointer& node);
    void onSectionModified(const CDomainObjectPointer& object);
    void onInspectionModified(const CDomainObjectPointer& inspection);
    void onObservationInserted(const CDomainObjectPointer& observation, bool fromDB);
    void onObservationModified(const CDomainObjectPointer& object);
    /** Nothing: removal goes through onObjectRemoved. */
    void onObservationRemoved(const CDomainObjectPointer& observation);
    void onCleanAll();
    void onObjectRemoved(const QString& id);
    void onCrawlerPositionChanged(double distance);
    /** The inspection that was active before the scene was. */
    void activeInspectionChanged(const CDomainObjectPointer& inspection);

signals:
    /** Progress of a project's load, in objects; total is known from the first on. */
    void loadingStarted(int total);
    void loadingProgress(int done, int total);
    void loadingFinished();
    /** The last object of a large project that was closed has left the scene. */
    void removalFinished();

private:
    void onNodeInsertedByDomainObj(const CDomainObjectPointer& node);
    void actionsForPositionedNode(const CDomainObjectPointer& node, QList<Section*>& sections, ScenePosition& place);
    void initProjectorFrom(const CDomainObjectPointer& node);
    void onNodeValueChanged(const Database::CDomainObjectProxy& proxy, Node* node, const QString& key,
                            const QVariant& value, int origin);
    void letGo(Renderable* object);
    static void refreshCrawler();
    static void detachCrawler();
    void testProximty(const QSharedPointer<Database::CPipeInspectionObject>& inspection);
    void cleanPlans();
    void cleanObservations();
    void cleanNodes();
    void cleanVirtualNodes();
    void onLoadingStarted(int total);
    void leaveScene();
    void returnToScene();
    /** While objects come, what they would store waits: it is a comparison with what they have just been read from. */
    void holdStoring(bool hold);
    void onLoadingProgress(int done, int total);
    void onLoadingFinished();

    SceneRoot& m_root;
    SystemControlProxy& m_proxy;
    DomainReader m_reader;
    PipeEntityBuilder m_pipeEntityBuilder;
    RemovalQueue m_removals;
    bool m_holdsStoring = false;
    /** Where the root stays while a large project loads: outside the scene the renderer does not look at the objects
     * one by one, which would take twice as long and more. */
    std::unique_ptr<Qt3DCore::QNode> m_dock;
    QPointer<Qt3DCore::QNode> m_place;
    bool m_loadIsLarge = false;
    std::multiset<QString> m_postponedNodes;
    QMetaObject::Connection m_postponedConnection;
};

} // namespace Torvik::View3d
