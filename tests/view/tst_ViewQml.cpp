#include "host/domain/HostSettings.h"
#include "host/modules/HostModules.h"
#include "host/modules/Screens.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>
#include <QtTest>

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

private:
    static void expect(QtMsgType type, const QString& text) { QTest::ignoreMessage(type, qPrintable(text)); }

    QQmlEngine* m_engine;
};

/** Gives the tests in qml/ what a host gives to the view. */
class Setup : public QObject {
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        Torvik::Viewer::registerHostModules(*engine);
        engine->rootContext()->setContextProperty("host", new TestHost(engine));
    }
};

QUICK_TEST_MAIN_WITH_SETUP(tst_ViewQml, Setup)
#include "tst_ViewQml.moc"
