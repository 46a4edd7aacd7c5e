#pragma once

#include "geo/SheetMath.h"
#include "scene/KxView3dExport.h"

#include <QMatrix4x4>
#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <Qt3DRender/QCamera>

namespace Torvik::View3d {

/** Lays a flat street map on the ground that the scene's camera sees: tells the size that the map's item needs and the
 *  projective transform that carries it. Maps of QtLocation tilt by themselves, but only with lenses of 20 degrees and
 *  more, and know nothing of a coordinate system whose north is not theirs.
 *
 *  The map says what it shows (place, zoom level, bearing); the sheet puts exactly that where the projector
 *  ties it to. While `adrift`, the map goes its own way, and its middle stays where it was on the screen's ground.
 *
 *  QML: the type "MapSheet". Place: degrees. Main thread only. */
class KXVIEW3D_EXPORT MapSheet : public QObject {
    Q_OBJECT
    Q_PROPERTY(Qt3DRender::QCamera* camera READ camera WRITE setCamera NOTIFY cameraChanged)
    Q_PROPERTY(double screenWidth READ screenWidth WRITE setScreenWidth NOTIFY screenChanged)
    Q_PROPERTY(double screenHeight READ screenHeight WRITE setScreenHeight NOTIFY screenChanged)
    Q_PROPERTY(QPointF place READ place WRITE setPlace NOTIFY mapChanged)
    Q_PROPERTY(double zoomLevel READ zoomLevel WRITE setZoomLevel NOTIFY mapChanged)
    Q_PROPERTY(double bearing READ bearing WRITE setBearing NOTIFY mapChanged)
    Q_PROPERTY(bool adrift READ adrift WRITE setAdrift NOTIFY adriftChanged)
    Q_PROPERTY(double width READ width NOTIFY changed)
    Q_PROPERTY(double height READ height NOTIFY changed)
    Q_PROPERTY(QMatrix4x4 matrix READ matrix NOTIFY changed)

public:
    explicit MapSheet(QObject* parent = nullptr);

    Qt3DRender::QCamera* camera() const { return m_camera; }
    void setCamera(Qt3DRender::QCamera* camera);
    double screenWidth() const { return m_screen.width(); }
    void setScreenWidth(double width);
    double screenHeight() const { return m_screen.height(); }
    void setScreenHeight(double height);

    /** Longitude and latitude of what the map's middle shows. */
    QPointF place() const { return {m_place.longitude, m_place.latitude}; }
    void setPlace(QPointF place);
    double zoomLevel() const { return m_sheet.zoomLevel; }
    void setZoomLevel(double level);
    /** Clockwise from north, of the map's upper edge. */
    double bearing() const { return m_sheet.bearingDeg; }
    void setBearing(double degrees);
    bool adrift() const { return m_adrift; }
    void setAdrift(bool adrift);

    /** Of the map's item, in pixels, such that it covers the screen. */
    double width() const { return m_sheet.size.width(); }
    double height() const { return m_sheet.size.height(); }
    /** Screen from the item's pixels. */
    QMatrix4x4 matrix() const { return m_matrix; }

signals:
    void cameraChanged();
    void screenChanged();
    void mapChanged();
    void adriftChanged();
    /** Size or transform. */
    void changed();

private:
    template <typename Value>
    bool take(Value& member, const Value& value);
    SheetMath::Lens lens() const;
    void onTieChanged();
    void tieGround();
    void measureGround();
    void driftGround();
    void layLater();
    void lay();

    QPointer<Qt3DRender::QCamera> m_camera;
    QSizeF m_screen {0, 0};
    SheetMath::Place m_place;
    SheetMath::Sheet m_sheet;
    SheetMath::Ground m_ground;
    /** Where the ground's directions were measured; they hold for a while around it. */
    QPointF m_measuredAt;
    bool m_measured = false;
    /** From the middle of the screen's ground to the map's middle, and the map's latitude, when it went adrift. */
    QPointF m_driftOffset;
    SheetMath::Ground m_driftGround;
    double m_driftLatitude = 0;
    bool m_adrift = false;
    bool m_layScheduled = false;
    QMatrix4x4 m_matrix;
};

} // namespace Torvik::View3d
