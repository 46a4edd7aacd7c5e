#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "host/modules/Belmora.h"
#include "host/modules/HostModules.h"
#include "host/modules/Screens.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>
#include <QtTest>

#include <QThread>

#include <memory>

/** A test fails when something warns or reports an error that it has not announced. */
class Alarm {
public:
    static void arm()
    {
        const QtMessageHandler before = qInstallMessageHandler(hear);
        if (before != hear)
            previous = before;
    }
    static void expect(QtMsgType type, const QString& text)
    {
        QTest::ignoreMessage(type, qPrintable(text));
        if (type == QtWarningMsg || type == QtCriticalMsg)
            expected.append(text);
    }

private:
    static void hear(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        previous(type, context, text);
        // The render threads' words are left to the tests of pictures.
        if ((type != QtWarningMsg && type != QtCriticalMsg) ||
            QThread::currentThread() != QCoreApplication::instance()->thread())
            return;
        // Qt's own words about tiles that a map no longer wants.
        if (text.startsWith("QNetworkReplyImplPrivate") || text.startsWith("QHttpNetworkConnectionPrivate"))
            return;
        if (!expected.removeOne(text))
            QTest::qFail(qPrintable("Not announced: " + text), context.file ? context.file : "", context.line);
    }

    static QtMessageHandler previous;
    static QStringList expected;
};

QtMessageHandler Alarm::previous = nullptr;
QStringList Alarm::expected;

/** What the tests in QML cannot do by themselves; they know it as "host". */
class TestHost : public QObject {
    Q_OBJECT

public:
    explicit TestHost(QQmlEngine* engine)
        : QObject(engine)
        , m_engine(engine)
    {
    }

    /** The test fails unless console.error() says this until its end. */
    Q_INVOKABLE void expectError(const QString& text) const { Alarm::expect(QtCriticalMsg, text); }
    /** The same for console.log(). */
    Q_INVOKABLE void expectLog(const QString& text) const { Alarm::expect(QtDebugMsg, text); }

    Q_INVOKABLE void setPage(const QString& key) const
    {
        m_engine->rootContext()->contextProperty("pageStack").value<Torvik::Viewer::PageStack*>()->setCurrentKey(key);
    }

    Q_INVOKABLE void setFeet(bool feet) const
    {
        using namespace Torvik::Base::HostSettings;
        setDistanceUnit(feet ? unitFeet : unitMetres);
    }

    Q_INVOKABLE void setActiveInspection(bool active)
    {
        using Torvik::AppState;
        if (active && !m_project) {
            m_project = std::make_unique<Kx::Test::TestProject>();
            m_inspection = m_project->addInspection(m_project->addSection("S", {}, {}), {}, 0);
            m_project->activate();
        }
        AppState::instance().setActiveInspection(active ? m_inspection : CDomainObjectPointer());
        if (!active)
            closeProject();
    }

    /** Opens a project with a pipe and a manhole ahead of its end; gives the names by which the scene knows them, once
     * it does. */
    Q_INVOKABLE QStringList openPipeAndManhole()
    {
        m_project = std::make_unique<Kx::Test::TestProject>();
        const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)");
        const auto b = m_project->addNode("B", "POINT ZM(400030 5600000 99 16)");
        const auto c = m_project->addNode("C", "POINT ZM(400040 5600020 100 16)");
        const auto pipe = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 400}});
        m_inspection = m_project->addInspection(pipe, "LINESTRING ZM(400000 5600000 98 132,400030 5600000 97 0)", 2);
        m_project->activate();
        const auto stands = [&] {
            return section() && Torvik::View3d::SceneEntities::instance().getNodes().value(c->id());
        };
        if (!QTest::qWaitFor(stands, 20000))
            return {};
        return {section()->guid(), c->id()};
    }
    Q_INVOKABLE double pipeLength() const { return section() ? double(section()->length()) : 0.0; }
    Q_INVOKABLE void closeProject()
    {
        Torvik::AppState::instance().setActiveInspection({});
        Torvik::AppState::instance().setActiveProject({});
        m_inspection.reset();
        m_project.reset();
    }
    /** The section of that inspection becomes the active structure. */
    Q_INVOKABLE void setActiveStructure() const
    {
        Torvik::AppState::instance().setActiveStructure(m_inspection->parentObject().toStrongRef());
    }
    Q_INVOKABLE QString setting(const QString& key) const
    {
        return Torvik::Base::CApplicationSettings::instance().getCustomSetting(key, "unset");
    }

    Q_INVOKABLE void failVideo(unsigned code) const
    {
        auto* belmora = m_engine->rootContext()->contextProperty("belmora").value<Torvik::Viewer::Belmora*>();
        emit belmora->videoCreationHandler()->errorOccurred(Torvik::Base::CErrorCode(code));
    }

private:
    Torvik::View3d::Section* section() const
    {
        return m_inspection
                   ? Torvik::View3d::SceneEntities::instance().getPipeEntities().getByInspectionId(m_inspection->id())
                   : nullptr;
    }

    QQmlEngine* m_engine;
    std::unique_ptr<Kx::Test::TestProject> m_project;
    CDomainObjectPointer m_inspection;
};

/** Gives the tests in qml/ what a host gives to the view. */
class Setup : public QObject {
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        Torvik::Base::HostSettings::setSettingsFile(m_settings.filePath("settings.ini"));
        Torvik::Viewer::registerHostModules(*engine);
        engine->rootContext()->setContextProperty("host", new TestHost(engine));
        // Nothing is there: no test asks the network for a map.
        engine->rootContext()->setContextProperty("mapEndpoints", QVariantMap {{"tilesHost", "http://127.0.0.1:9"}});
        // The log is begun with the first test case, and takes all messages then.
        QQmlComponent log(engine);
        log.setData("import QtQml 2.12\nimport QtTest 1.1\nTestResult { Component.onCompleted: startLogging() }", {});
        const std::unique_ptr<QObject> begun(log.create());
        if (!begun)
            qFatal("%s", qPrintable(log.errorString()));
        Alarm::arm();
    }

private:
    QTemporaryDir m_settings;
};

QUICK_TEST_MAIN_WITH_SETUP(tst_ViewQml, Setup)
#include "tst_ViewQml.moc"
