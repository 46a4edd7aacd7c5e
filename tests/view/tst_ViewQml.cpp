#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "host/modules/Belmora.h"
#include "host/modules/HostModules.h"
#include "host/modules/Screens.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>
#include <QtTest>

#include <memory>

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
    Q_INVOKABLE void expectError(const QString& text) const { expect(QtCriticalMsg, text); }
    /** The same for console.log(). */
    Q_INVOKABLE void expectLog(const QString& text) const { expect(QtDebugMsg, text); }

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
        if (!active) {
            AppState::instance().setActiveProject({});
            m_inspection.reset();
            m_project.reset();
        }
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
    static void expect(QtMsgType type, const QString& text) { QTest::ignoreMessage(type, qPrintable(text)); }

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
    }

private:
    QTemporaryDir m_settings;
};

QUICK_TEST_MAIN_WITH_SETUP(tst_ViewQml, Setup)
#include "tst_ViewQml.moc"
