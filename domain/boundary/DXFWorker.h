#pragma once

#include <QObject>
#include <QString>
#include <Qt3DCore/QEntity>

#include <memory>

class QThread;

namespace Torvik::DXF {

class DrawingLoad;

/** Reads one DXF or DWG file into a tree of entities.
 *
 *  Move it to a thread of its own and call loadFile() there. The entities come into being on the thread that the
 *  constructor is given, whose event loop must run, and belong to whoever hears loadingFinished(). They lie in the
 *  scene's axes: a drawing's (x, y, z) is (-x, z, y). Where the coordinates are large, an offset has been taken off
 * them and stands in the root's dynamic property "dxfCropOffset" (QVector3D, the same axes); "dxfMetresPerUnit" tells
 * the drawing's unit, if it names one. A root with an invokable setUnitsPerPixel(float) draws by how many of the
 * drawing's units a pixel of the screen shows. */
class DXFWorker : public QObject {
    Q_OBJECT

public:
    DXFWorker(QObject* parent, QThread* thread);
    ~DXFWorker() override;

    /** Before loadFile(). */
    void setLoadedFilePath(const QString& path);

public slots:
    void loadFile();
    /** Any thread. Ends the load within 200 ms; a load that begins later ends at once. */
    void cancelLoading();

signals:
    /** Each load ends with it; null when the file could not be read or the load was cancelled. */
    void loadingFinished(Qt3DCore::QEntity* entity);
    /** Comes before loadingFinished(nullptr). */
    void loadingCancelled();

private:
    void deliver(Qt3DCore::QEntity* entity);

    QThread* m_target;
    std::shared_ptr<DrawingLoad> m_load;
};

} // namespace Torvik::DXF
