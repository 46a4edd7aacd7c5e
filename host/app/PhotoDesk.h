#pragma once

#include <QImage>
#include <QObject>

#include <functional>

class QQuickItem;

namespace Torvik::Viewer {

/** Makes pictures and printed pages of the view while the user goes on: without grid and buttons, on white. The items
 *  are those of the module view3d, Window3d. Main thread only. */
class PhotoDesk : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    explicit PhotoDesk(QObject* parent = nullptr);

    bool busy() const { return m_busy; }
    /** Where files go; the user's folder of pictures, and of documents for pages, if it is empty. */
    void setFolder(const QString& folder) { m_folder = folder; }
    /** While this holds, what is under the network is not all there yet, and a picture waits for it. */
    void waitWhile(std::function<bool()> incomplete) { m_incomplete = std::move(incomplete); }

    /** A PNG file named after project, time and scale; the scale stands in its text too. Nothing while busy. */
    Q_INVOKABLE void takePicture(QQuickItem* window3d);
    /** A page as PDF. Nothing while busy. */
    Q_INVOKABLE void printPage(QQuickItem* window3d);

    /** The n of the scale 1 : n that the view has; 0 without a scene. */
    static double scaleOf(const QQuickItem* window3d);
    /** The picture with scale and project in its text. */
    static QImage labelled(QImage picture, const QQuickItem* window3d);
    /** The page for a picture of the view that has pixelRatio pixels for each of the view's. */
    static QByteArray pageOf(const QImage& picture, double pixelRatio, const QQuickItem* window3d);

signals:
    void busyChanged();
    /** The file is there. */
    void written(const QString& path);
    void failed(const QString& reason);

private:
    enum class Product { Picture, Page };

    void start(QQuickItem* window3d, Product product);
    void onTaken(const QImage& picture, QQuickItem* window3d, Product product);
    void setBusy(bool busy);
    QString pathFor(const QQuickItem* window3d, Product product) const;

    QString m_folder;
    std::function<bool()> m_incomplete;
    bool m_busy = false;
};

} // namespace Torvik::Viewer
