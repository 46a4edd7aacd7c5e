#pragma once

#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "host/app/PlanWork.h"
#include "host/app/ViewerController.h"
#include "host_drawing/DxfText.h"
#include "plans/FloorNav.h"
#include "scene/SceneEntities.h"
#include "view/ViewerScreen.h"

#include <QImage>
#include <QPainter>

#include <memory>

namespace Kx::Test {

/** Plans in the application's window, on a real project with three manholes and a pipe. Its bar is open from the start
 *  unless a test says otherwise. */
class PlanTest : public QObject {
protected:
    using IBackgroundPlan = Torvik::View3d::IBackgroundPlan;
    using FloorNav = Torvik::View3d::FloorNav;
    using CFileSystemNames = Torvik::Base::CFileSystemNames;
    using PlanWork = Torvik::Viewer::PlanWork;
    using ViewerController = Torvik::Viewer::ViewerController;

    void begin()
    {
        m_warnings = std::make_unique<QmlWarnings>();
        m_project = std::make_unique<TestProject>("EPSG:25832");
        const QVariantMap manhole {{"OBJ_DepthToInvert", 2.0}, {"OBJ_Type", "MH"}};
        const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", manhole);
        const auto b = m_project->addNode("B", "POINT ZM(400030 5600000 100 16)", manhole);
        m_project->addNode("C", "POINT ZM(400015 5600020 100 16)", manhole);
        const auto s = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 1000}});
        m_project->addInspection(s, "LINESTRING ZM(400030 5600000 98 320,400000 5600000 98 0)");
        m_folderOfProject = m_project->path();
        prepare();
        m_project->close();
        m_viewer = std::make_unique<ViewerController>();
        m_screen = std::make_unique<ViewerScreen>(*m_viewer, QSize(1200, 900));
        open();
    }
    /** What else the project is to have when it is opened. */
    virtual void prepare() {}
    void end()
    {
        m_screen.reset();
        m_viewer.reset();
        m_warnings.reset();
    }
    /** What holds between tests. */
    void nothingIsOpen()
    {
        QVERIFY(!m_screen->visible("messageBox"));
        QVERIFY(!m_screen->visible("backButton"));
        QVERIFY(!plans().loading());
        // The next tap is none that belongs to the one before.
        QTest::qWait(600);
    }
    void open() { open(m_folderOfProject); }
    void open(const QString& folder)
    {
        QSignalSpy opened(m_viewer.get(), &ViewerController::opened);
        m_viewer->openFolder(folder);
        QTRY_COMPARE(opened.count(), 1);
        m_screen->settle();
        m_screen->waitFrames(10);
    }
    void openBar()
    {
        m_screen->click("planButton");
        m_screen->waitFrames(2);
        QVERIFY(m_screen->visible("planBar"));
    }

    PlanWork& plans() { return *m_viewer->plans(); }
    static IBackgroundPlan* plan() { return Torvik::View3d::SceneEntities::instance().getBackgroundPlan(); }
    QString folder(const QString& part) const { return m_folderOfProject + '/' + part; }
    QString documents() const { return folder(CFileSystemNames::documentationPathPart()); }
    QString graphics() const { return folder(CFileSystemNames::graphics3DPathPart()); }
    QString planFile() const { return graphics() + "plan.xml"; }
    /** Hidden ones too; not the folder of the graphics. */
    QStringList filesOfProject() const
    {
        return QDir(documents()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QString picture(const QString& name, QSize size = {400, 300}) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor("#f4ecd8"));
        QPainter painter(&image);
        painter.setPen(QPen(QColor("#5a6b3b"), 4));
        for (int x = 0; x < size.width(); x += 50)
            painter.drawLine(x, 0, x, size.height());
        for (int y = 0; y < size.height(); y += 50)
            painter.drawLine(0, y, size.width(), y);
        painter.fillRect(60, 60, 130, 80, QColor("#c9805a"));
        painter.end();
        const QString path = m_files.filePath(name);
        return image.save(path) ? path : QString();
    }
    QString file(const QString& name, const QByteArray& contents) const
    {
        QFile file(m_files.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() ? file.fileName() : QString();
    }
    /** A house of two rooms, 12 by 8 of its units. */
    QString drawing(const QString& name, double unit = 1.0, const QByteArray& header = {}) const
    {
        using namespace Kx::Test::Dxf;
        const double width = 12 * unit;
        const double depth = 8 * unit;
        const QByteArray walls = line(0x20, 0, 0, width, 0) + line(0x21, width, 0, width, depth) +
                                 line(0x22, width, depth, 0, depth) + line(0x23, 0, depth, 0, 0) +
                                 line(0x24, width / 2, 0, width / 2, depth);
        return file(name, head({}, {}, "AC1015", header) + section("ENTITIES", walls) + pair(0, "EOF"));
    }
    void choose(const QString& path)
    {
        QVERIFY(
            QMetaObject::invokeMethod(m_screen->item("planBar"), "choose", Q_ARG(QVariant, QUrl::fromLocalFile(path))));
    }
    /** What the box on top says; it is answered with the button of that name. */
    QString answer(const QString& button = QStringLiteral("yesButton"))
    {
        if (!QTest::qWaitFor([this] { return m_screen->visible("messageBox"); }, 15000))
            return QStringLiteral("no box");
        m_screen->waitFrames(2);
        const QString text = m_screen->text("messageText");
        m_screen->click(button);
        m_screen->waitFrames(2);
        return text;
    }
    void lay(const QString& path, bool replaces)
    {
        choose(path);
        if (replaces)
            QVERIFY(answer().contains("goes"));
        QVERIFY(m_screen->visible("backButton"));
        QCOMPARE(m_screen->text("progressLabel"), "Plan file loaded: " + QFileInfo(path).fileName());
        QVERIFY(answer().contains("loading finished"));
        QTRY_VERIFY(!m_screen->visible("backButton"));
    }

    QTemporaryDir m_files;
    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<TestProject> m_project;
    QString m_folderOfProject;
    std::unique_ptr<ViewerController> m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

} // namespace Kx::Test
