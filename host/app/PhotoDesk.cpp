#include "host/app/PhotoDesk.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CProjectObject.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/PictureTaker.h"
#include "host/app/PrintedPage.h"
#include "host/app/ProjectInfo.h"
#include "host/domain/Foot.h"
#include "host/domain/ShownUnit.h"
#include "host/domain/WholeFile.h"
#include "labels/LabelBoard.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QImageWriter>
#include <QLocale>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QStandardPaths>
#include <Qt3DRender/QCamera>

#include <algorithm>

namespace Torvik::Viewer {

namespace {

const char* const pendingProperty = "screenshotPending";

QSharedPointer<Database::CProjectObject> project()
{
    return Database::CDomainObject::projectFromObject(AppState::instance().getActiveProject());
}

QString projectName()
{
    const auto opened = project();
    return opened ? QDir(opened->projectPath()).dirName() : QString();
}

QString viewName()
{
    switch (View3d::GlobalNav::instance()->viewType()) {
    case View3d::CameraController::View2dTop:
        return PhotoDesk::tr("from the top");
    case View3d::CameraController::View2dFront:
        return PhotoDesk::tr("from the front");
    default:
        return PhotoDesk::tr("3D, scale at the middle");
    }
}

QVector<QPair<QString, QString>> factsOf(const Database::CProjectObject& project)
{
    const ProjectInfo info = collectInfo(project);
    const auto number = [](int count) { return QLocale().toString(count); };
    QVector<QPair<QString, QString>> facts {
        {PhotoDesk::tr("Project"), project.readValue(QStringLiteral("PRJ_Name")).toString()},
        {PhotoDesk::tr("Client"), project.readValue(QStringLiteral("PRJ_Client")).toString()},
        {PhotoDesk::tr("Coordinate system"), info.crs},
        {PhotoDesk::tr("Manholes and nodes"), number(info.nodes)},
        {PhotoDesk::tr("Sections"), number(info.sections)},
        {PhotoDesk::tr("Laterals"), number(info.laterals)},
        {PhotoDesk::tr("Inspections"), number(info.inspections)},
        {PhotoDesk::tr("Observations"), number(info.observations)},
        {PhotoDesk::tr("View"), viewName()}};
    facts.erase(std::remove_if(facts.begin(), facts.end(), [](const auto& fact) { return fact.second.isEmpty(); }),
                facts.end());
    return facts;
}

QString writeImage(const QImage& picture, const QString& path)
{
    QBuffer bytes;
    QImageWriter writer(&bytes, "png");
    if (!writer.write(picture))
        return QStringLiteral("%1: %2").arg(path, writer.errorString());
    return Database::WholeFile::write(path, bytes.data());
}

QQuickItem* areaOf(QQuickItem* window3d)
{
    auto* area = window3d->property("screenShootArea").value<QQuickItem*>();
    return area ? area : window3d;
}

} // namespace

PhotoDesk::PhotoDesk(QObject* parent)
    : QObject(parent)
{
}

void PhotoDesk::takePicture(QQuickItem* window3d)
{
    start(window3d, Product::Picture);
}

void PhotoDesk::printPage(QQuickItem* window3d)
{
    start(window3d, Product::Page);
}

void PhotoDesk::start(QQuickItem* window3d, Product product)
{
    if (m_busy || !window3d || !window3d->window())
        return;
    setBusy(true);
    window3d->setProperty(pendingProperty, true);
    auto* taker = new PictureTaker(window3d->window(), this);
    taker->pictureOf(areaOf(window3d));
    taker->waitWhile([this] { return View3d::LabelBoard::instance().isBusy() || (m_incomplete && m_incomplete()); });
    const QPointer<QQuickItem> view(window3d);
    connect(taker, &PictureTaker::taken, this, [this, taker, view, product](const QImage& picture) {
        taker->deleteLater();
        if (view)
            onTaken(picture, view, product);
        setBusy(false);
    });
    connect(taker, &PictureTaker::gaveUp, this, [this, taker, view] {
        taker->deleteLater();
        if (view)
            view->setProperty(pendingProperty, false);
        setBusy(false);
        emit failed(tr("The picture does not come to rest."));
    });
    taker->start();
}

void PhotoDesk::onTaken(const QImage& picture, QQuickItem* window3d, Product product)
{
    const double ratio = picture.width() / std::max(1.0, areaOf(window3d)->width());
    const QString path = pathFor(window3d, product);
    const QString error = product == Product::Picture
                              ? writeImage(labelled(picture, window3d), path)
                              : Database::WholeFile::write(path, pageOf(picture, ratio, window3d));
    window3d->setProperty(pendingProperty, false);
    if (error.isEmpty())
        emit written(path);
    else
        emit failed(error);
}

QString PhotoDesk::pathFor(const QQuickItem* window3d, Product product) const
{
    const bool isPicture = product == Product::Picture;
    QString folder = m_folder;
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(isPicture ? QStandardPaths::PicturesLocation
                                                            : QStandardPaths::DocumentsLocation);
    QDir().mkpath(folder);
    static const QRegularExpression notInNames(QStringLiteral("[^\\w.-]+"),
                                               QRegularExpression::UseUnicodePropertiesOption);
    const QString name = projectName().replace(notInNames, QStringLiteral("_"));
    return QDir(folder).filePath(QStringLiteral("%1_%2_1-%3.%4")
                                     .arg(name.isEmpty() ? QStringLiteral("kxviewer") : name,
                                          QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")))
                                     .arg(scaleOf(window3d), 0, 'f', 0)
                                     .arg(isPicture ? QStringLiteral("png") : QStringLiteral("pdf")));
}

double PhotoDesk::scaleOf(const QQuickItem* window3d)
{
    auto* scene = window3d ? window3d->property("scene3d").value<QObject*>() : nullptr;
    QVariant scale;
    if (scene)
        QMetaObject::invokeMethod(scene, "getScaleProportion", Q_RETURN_ARG(QVariant, scale));
    return scale.toDouble();
}

QImage PhotoDesk::labelled(QImage picture, const QQuickItem* window3d)
{
    picture.setText(QStringLiteral("Scale"), QStringLiteral("1 : %1").arg(scaleOf(window3d), 0, 'f', 0));
    picture.setText(QStringLiteral("Title"), projectName());
    picture.setText(QStringLiteral("Software"), QStringLiteral("kxviewer"));
    return picture;
}

QByteArray PhotoDesk::pageOf(const QImage& picture, double pixelRatio, const QQuickItem* window3d)
{
    PrintedPage page;
    page.title = projectName();
    page.picture = picture;
    page.pixelRatio = pixelRatio;
    page.scale = scaleOf(window3d);
    const auto& unit = Base::ShownUnit::instance();
    page.unit = unit.name();
    page.metresPerUnit = unit.imperial() ? metresPerFoot : 1.0;
    if (const Qt3DRender::QCamera* camera = View3d::SceneRoot::camera())
        page.north = PrintedPage::northOf(camera->viewVector(), camera->upVector());
    if (const auto opened = project())
        page.facts = factsOf(*opened);
    page.date = QLocale().toString(QDate::currentDate(), QLocale::ShortFormat);
    return page.pdf();
}

void PhotoDesk::setBusy(bool busy)
{
    m_busy = busy;
    emit busyChanged();
}

} // namespace Torvik::Viewer
