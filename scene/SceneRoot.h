#pragma once

#include "domain/EntitiesManager.h"
#include "domain/boundary/WktPoint.h"
#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QColor>
#include <QList>
#include <QPointer>
#include <QVariant>
#include <QVariantMap>
#include <QVector3D>
#include <QVector>
#include <Qt3DCore/QEntity>
#include <Qt3DRender/QCamera>

#include <memory>

namespace Qt3DCore {
class QTransform;
}
namespace Qt3DRender {
class QLayer;
class QMaterial;
class QRayCaster;
} // namespace Qt3DRender

namespace Qt3DInput {
class QMouseEvent;
}

namespace Torvik::View3d {

class Crawler;
class FloorPlanLoader;
class GridPlane;
class PlanLoader;
class TouchInput;

/** Root of the network's part of the scene and the facade that QML talks to. It holds what the scene's objects share -
 *  materials, camera, grid, ray caster - and the manager that makes them. QML creates one; instance() and camera() may
 *  be relied on once it stands and its camera is set. Main thread only.
 *
 *  Life: constructed (no objects yet), completed (qmlOnCompleted() has run; the project flows in), destroyed. */
class KXVIEW3D_EXPORT SceneRoot : public Qt3DCore::QEntity {
    Q_OBJECT
    Q_PROPERTY(Qt3DRender::QMaterial* materialPipe READ materialPipe WRITE setMaterialPipe NOTIFY materialPipeChanged)
    Q_PROPERTY(Qt3DRender::QMaterial* materialNode READ materialNode WRITE setMaterialNode NOTIFY materialNodeChanged)
    Q_PROPERTY(Qt3DRender::QMaterial* materialNodeSelected READ materialNodeSelected WRITE setMaterialNodeSelected
                   NOTIFY materialNodeSelectedChanged)
    Q_PROPERTY(Qt3DRender::QMaterial* materialCone READ materialCone WRITE setMaterialCone NOTIFY materialConeChanged)
    Q_PROPERTY(Qt3DRender::QMaterial* materialConnection READ materialConnection WRITE setMaterialConnection NOTIFY
                   materialConnectionChanged)
    Q_PROPERTY(Qt3DRender::QMaterial* materialVertexLabel READ materialVertexLabel WRITE setVertexLabelMaterial NOTIFY
                   vertexLabelMaterialChanged)
    Q_PROPERTY(Qt3DRender::QMaterial* materialSelected READ materialSelected WRITE setMaterialSelected NOTIFY
                   materialSelectedChanged)
    Q_PROPERTY(Qt3DRender::QLayer* layerGrid READ layerGrid WRITE setLayerGrid NOTIFY layerGridChanged)
    Q_PROPERTY(Qt3DRender::QLayer* layerObservation READ layerObservation WRITE setLayerObservation NOTIFY
                   layerObservationChanged)
    Q_PROPERTY(
        Qt3DRender::QLayer* layerStructure READ layerStructure WRITE setLayerStructure NOTIFY layerStructureChanged)
    Q_PROPERTY(bool gridVisible READ gridVisible WRITE setGridVisible NOTIFY gridVisibleChanged)
    Q_PROPERTY(double gridSize READ gridSize NOTIFY gridSizeChanged)
    Q_PROPERTY(double gridSeaLevel READ gridSeaLevel NOTIFY gridSeaLevelChanged)
    Q_PROPERTY(bool backgroundVisible READ backgroundVisible WRITE setBackgroundVisible NOTIFY backgroundVisibleChanged)
    Q_PROPERTY(bool planLayerEnabled READ planLayerEnabled WRITE setPlanLayerEnabled NOTIFY planLayerEnabledChanged)
    Q_PROPERTY(bool selectionsEnabled READ selectionsEnabled WRITE setSelectionsEnabled NOTIFY selectionsEnabledChanged)
    Q_PROPERTY(int maxSelection READ maxSelection WRITE setMaxSelection NOTIFY maxSelectionChanged)
    Q_PROPERTY(bool planLayerLock READ planLayerLock WRITE setPlanLayerLock NOTIFY planLayerLockChanged)
    Q_PROPERTY(double sceneWidth READ sceneWidth WRITE setSceneWidth NOTIFY sceneWidthChanged)
    Q_PROPERTY(double sceneHeight READ sceneHeight WRITE setSceneHeight NOTIFY sceneHeightChanged)
    Q_PROPERTY(Qt3DRender::QCamera* camera READ camera WRITE setCamera)
    Q_PROPERTY(Torvik::View3d::Crawler* crawler READ crawler WRITE setCrawler NOTIFY crawlerChanged)
    Q_PROPERTY(Qt3DRender::QRayCaster* rayCaster READ rayCaster WRITE setRayCaster NOTIFY rayCasterChanged)
    Q_PROPERTY(Torvik::View3d::PlanLoader* planLoader READ planLoader CONSTANT)
    Q_PROPERTY(Torvik::View3d::FloorPlanLoader* floorPlanLoader READ floorPlanLoader CONSTANT)
    Q_PROPERTY(Torvik::View3d::Renderable* selectedRenderable READ selectedRenderable NOTIFY selectedRenderableChanged)
    Q_PROPERTY(int selectionsCount READ selectionsCount NOTIFY selectedRenderableChanged)

public:
    SceneRoot();
    ~SceneRoot() override;

    /** Entry point of the library: registers everything that QML sees of it. The host calls it once, before it loads
     *  any QML of the view. */
    static void registerMetaTypes();

    static SceneRoot* instance();
    static Qt3DRender::QCamera* camera();

    EntitiesManager& entitiesManager() { return m_entitiesManager; }

    Qt3DRender::QMaterial* materialPipe() const { return m_materialPipe; }
    Qt3DRender::QMaterial* materialNode() const { return m_materialNode; }
    Qt3DRender::QMaterial* materialNodeSelected() const { return m_materialNodeSelected; }
    Qt3DRender::QMaterial* materialCone() const { return m_materialCone; }
    Qt3DRender::QMaterial* materialConnection() const { return m_materialConnection; }
    Qt3DRender::QMaterial* materialVertexLabel() const { return m_materialVertexLabel; }
    Qt3DRender::QMaterial* materialSelected() const { return m_materialSelected; }
    Qt3DRender::QLayer* layerGrid() const { return m_layerGrid; }
    Qt3DRender::QLayer* layerObservation() const { return m_layerObservation; }
    Qt3DRender::QLayer* layerStructure() const { return m_layerStructure; }
    bool gridVisible() const { return m_gridVisible; }
    /** Side of the grid's squares, in tenths of a metre. */
    double gridSize() const;
    /** Height of the grid in the project's system, in metres. */
    double gridSeaLevel() const;
    bool backgroundVisible() const { return m_backgroundVisible; }
    bool planLayerEnabled() const { return m_planLayerEnabled; }
    bool planLayerOnAllViewModesEnabled() const { return m_planLayerOnAllViewModesEnabled; }
    bool selectionsEnabled() const { return m_selectionsEnabled; }
    int maxSelection() const { return m_maxSelection; }
    /** Whether a plan shows in the present kind of view. */
    bool planLayerShown() const;
    /** False without a plan. */
    bool planLayerLock() const;
    /** Size of the 3D item in pixels. */
    double sceneWidth() const { return static_cast<double>(m_sceneWidth); }
    double sceneHeight() const { return static_cast<double>(m_sceneHeight); }
    /** The inspection vehicle that QML has made, or null. */
    Crawler* crawler() const;
    Qt3DRender::QRayCaster* rayCaster() const { return m_rayCaster; }

    /** Loads the plan that lies under the network; never null. */
    PlanLoader* planLoader() const { return m_planLoader.get(); }
    /** Loads the plans of a building's floors; never null. */
    FloorPlanLoader* floorPlanLoader() const { return m_floorPlanLoader.get(); }

    /** The finger on the scene's objects. */
    TouchInput* touchInput() const { return m_touchInput; }
    /** A second finger has come: a drag of an object that is under way ends. */
    Q_INVOKABLE void abandonTouch();

    /** Starts the flow of the project's objects. QML calls it once, when camera and projector are ready. */
    Q_INVOKABLE void qmlOnCompleted();

    /** Ties the scene to the earth by a stored point, unless a node has a position already: the first positioned node
     *  stays the origin. The text may be changed (GdalGeoProjector::init). */
    Q_INVOKABLE void safeGeoProjectorInit(Torvik::Database::WktPoint point, QString& projectionSystem);
    /** The same by the map's centre, in degrees. */
    Q_INVOKABLE void safeGeoProjectorInitFromMap(double latit, double longit, double alitid);

    /** Whether any node has a 3D position. */
    Q_INVOKABLE bool sceneHasNodesWithPosition() const;
    /** Whether any registered node is a virtual one. */
    Q_INVOKABLE bool sceneHasVirtualNodesWithPosition() const;
    /** The node, or the section by its inspection's id, in a variant; a null pointer when unknown. */
    Q_INVOKABLE QVariant getRenderableByDomainGuid(const QString& guid) const;

    /** The object that a guid selects: a node, a section by its inspection's id, or a connection point. Null when there
     *  is none. */
    Renderable* renderableByDomainGuid(const QString& guid) const;
    /** The object that was selected last, or null. */
    Renderable* selectedRenderable() const;
    QVariant selectedRenderableVariant() const;
    int selectionsCount() const;
    bool nothingSelected() const;
    bool isSelected(const QString& guid) const;
    /** Selects this object alone, and gives it; an invalid variant, and no change, for what can't be selected: an
     *  unknown guid, a node without a place, or anything while selections are off. */
    Q_INVOKABLE QVariant selectOneByDomainGuid(const QString& guid);
    /** Adds the object to the selection; emits maxSelectionExceeded when that is full. */
    Q_INVOKABLE QVariant selectNextByDomainGuid(const QString& guid);
    /** Ends the connection mode and takes maxSelection back to 1 as well. With `enableGlobalNav` the camera gets its
     *  gestures back. */
    Q_INVOKABLE void deselectAll(bool enableGlobalNav);
    Q_INVOKABLE void deselectAll();
    /** For an object that is going. */
    void deselectByDomainGuid(const QString& guid);

    /** Takes the selected object's entry out of the registry of nodes. The object stays, and so does its selection. */
    Q_INVOKABLE void deleteSelected();
    /** Deletes a node; nothing for any other id. */
    Q_INVOKABLE void deleteById(const QString& id);
    /** A node without a record, in a variant. */
    Q_INVOKABLE QVariant createVirtualVisibleNode(const QString& virtualNodeName, const QString& nodeTypeHint);

    /** Previews the connection of the first selected object to the second, until connectApply() or connectCancel(). */
    Q_INVOKABLE void connectSelectedObjects();
    Q_INVOKABLE void connectApply();
    Q_INVOKABLE void connectCancel();

    /** Colours each section by the value of a column of its record: palette maps values to colour names, with the key
     *  "DEFAULTPIPECOLOR" for all others. A record without the column keeps its colour. */
    Q_INVOKABLE void setSectionsColorWithPalette(const QVariantMap& colorPaletteMap,
                                                 const QString& columnNameInSectionTable);
    Q_INVOKABLE void showAllNodes();
    Q_INVOKABLE void hideNodesWithoutParentSection();

    /** For diagnostics: a thin pole of this colour. */
    Qt3DCore::QEntity* createMarker(const QColor& colour);
    void setMarkerPosition(int index, const QVector3D& position);
    /** Rotation about `a` that turns the direction from a to b into that from c to d. */
    QMatrix4x4 rotationMatrixFromFourPoints(const QVector3D& a, const QVector3D& b, const QVector3D& c,
                                            const QVector3D& d) const;

public slots:
    void createSetDefaultMaterialSelected();
    void cleanupBeforeProjectChanged();
    /** The distance counter, in metres along the active section. */
    void onDistanceValueChanged(double distance);
    /** A tap that hit no object, and has none within a finger's width, deselects. */
    void onShortTap(Qt3DInput::QMouseEvent* mouseEvent);

    void setMaterialPipe(Qt3DRender::QMaterial* material);
    void setMaterialNode(Qt3DRender::QMaterial* material);
    void setMaterialNodeSelected(Qt3DRender::QMaterial* material);
    void setMaterialCone(Qt3DRender::QMaterial* material);
    void setMaterialConnection(Qt3DRender::QMaterial* material);
    void setVertexLabelMaterial(Qt3DRender::QMaterial* material);
    void setMaterialSelected(Qt3DRender::QMaterial* material);
    void setLayerGrid(Qt3DRender::QLayer* layer);
    void setLayerObservation(Qt3DRender::QLayer* layer);
    void setLayerStructure(Qt3DRender::QLayer* layer);
    void setGridVisible(bool visible);
    void setBackgroundVisible(bool visible);
    void setPlanLayerEnabled(bool enabled);
    void setPlanLayerLock(bool lock);
    void setSelectionsEnabled(bool enabled);
    void setMaxSelection(int maxSelection);
    void setSceneWidth(double sceneWidth);
    void setSceneHeight(double sceneHeight);
    void setCamera(Qt3DRender::QCamera* camera);
    void setCrawler(Torvik::View3d::Crawler* crawler);
    void setRayCaster(Qt3DRender::QRayCaster* rayCaster);

signals:
    void materialPipeChanged(Qt3DRender::QMaterial* material);
    void materialNodeChanged(Qt3DRender::QMaterial* material);
    void materialNodeSelectedChanged(Qt3DRender::QMaterial* material);
    void materialConeChanged(Qt3DRender::QMaterial* material);
    void materialConnectionChanged(Qt3DRender::QMaterial* material);
    void vertexLabelMaterialChanged(Qt3DRender::QMaterial* material);
    void materialSelectedChanged(Qt3DRender::QMaterial* material);
    void layerGridChanged(Qt3DRender::QLayer* layer);
    void layerObservationChanged(Qt3DRender::QLayer* layer);
    void layerStructureChanged(Qt3DRender::QLayer* layer);
    void gridVisibleChanged(bool visible);
    void gridSizeChanged(double gridSize);
    void gridSeaLevelChanged(double gridSeaLevel);
    void backgroundVisibleChanged(bool visible);
    void planLayerEnabledChanged(bool enabled);
    void planLayerLockChanged(bool lock);
    void selectionsEnabledChanged(bool enabled);
    void maxSelectionChanged(int maxSelection);
    void sceneWidthChanged(double sceneWidth);
    void sceneHeightChanged(double sceneHeight);
    void crawlerChanged(Torvik::View3d::Crawler* crawler);
    void rayCasterChanged(Qt3DRender::QRayCaster* rayCaster);

    void lateralInProximity(QString lateralId, Qt3DCore::QTransform* entity);
    void lateralNotInProximity();
    void selectedRenderableChanged(Torvik::View3d::Renderable* renderable);
    void deselectionMouseEvent(Qt3DInput::QMouseEvent* mouseEvent);
    void maxSelectionExceeded(int maxSelection);
    void distanceValueChanged(double distance);

private:
    QVariant selectRenderable(Renderable* renderable, bool next);
    /** The node or section within a finger's width of a position on the screen. What is drawn wider than it is, from
     * far away, is found so. */
    Renderable* nearestObject(const QPointF& position) const;
    bool selectNear(const QPointF& position);
    static void logQNodeToRenderableCastError();
    void setupCrawler();
    void createGridPlane();
    /** Brings the grid's squares to the camera's distance, and the grid under what it looks at. */
    void fitGrid(const Qt3DRender::QCamera& camera);

    /** Thin things are drawn wider from far away. */
    void tellViewScale();

    template <typename Value, typename Signal>
    void change(Value& member, const Value& value, Signal signal);

    static SceneRoot* m_instance;
    static Qt3DRender::QCamera* m_camera;

    QPointer<Qt3DRender::QCamera> m_viewCamera;
    QList<Qt3DCore::QTransform*> m_markerTransforms;
    EntitiesManager m_entitiesManager;
    QPointer<Crawler> m_crawler;
    Qt3DRender::QMaterial* m_materialPipe;
    Qt3DRender::QMaterial* m_materialNode;
    Qt3DRender::QMaterial* m_materialNodeSelected;
    Qt3DRender::QMaterial* m_materialCone;
    Qt3DRender::QMaterial* m_materialSelected = nullptr;
    Qt3DRender::QMaterial* m_materialConnection;
    Qt3DRender::QMaterial* m_materialVertexLabel = nullptr;
    Qt3DRender::QMaterial* m_gridMaterial;
    QVector<QPointer<Renderable>> m_connectedRenderables; ///< with a preview of a connection
    bool m_gridVisible = true;
    bool m_backgroundVisible = false;
    float m_sceneWidth = 300.0F;
    float m_sceneHeight = 300.0F;
    Qt3DRender::QLayer* m_layerGrid = nullptr;
    Qt3DRender::QLayer* m_layerObservation = nullptr;
    Qt3DRender::QLayer* m_layerStructure = nullptr;
    GridPlane* m_gridPlane = nullptr;
    Qt3DRender::QRayCaster* m_rayCaster;
    TouchInput* m_touchInput;
    bool m_planLayerEnabled = true;
    bool m_planLayerOnAllViewModesEnabled = true;
    bool m_selectionsEnabled = true;
    int m_maxSelection = 1;
    std::unique_ptr<PlanLoader> m_planLoader;
    std::unique_ptr<FloorPlanLoader> m_floorPlanLoader;
};

} // namespace Torvik::View3d
