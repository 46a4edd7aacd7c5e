#include "host/modules/HostModules.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtTest>

#include <memory>

/** Stands before GlobalNav and writes down what is asked of it. */
class AskedOfNavigation : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void goToCurrentSection() { asked.append("section"); }
    Q_INVOKABLE void goToUpstreamNode() { asked.append("upstream"); }
    Q_INVOKABLE void goToDownstreamNode() { asked.append("downstream"); }

    QStringList asked;
};

/** What the commands of the command bar ask for. */
class tst_Commands : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Torvik::Viewer::registerHostModules(m_engine); }

    void eachGoesToItsOwnPlace_data()
    {
        QTest::addColumn<QString>("place");
        QTest::newRow("GoToSection") << "section";
        QTest::newRow("GoToNodeUpStream") << "upstream";
        QTest::newRow("GoToNodeDownStream") << "downstream";
    }

    void eachGoesToItsOwnPlace()
    {
        QFETCH(QString, place);
        AskedOfNavigation nav;
        QQmlContext context(m_engine.rootContext());
        context.setContextProperty("GlobalNav", &nav);
        QQmlComponent component(&m_engine);
        component.setData("import view3d 1.0\n" + QByteArray(QTest::currentDataTag()) + " { enabled: true }", {});
        const std::unique_ptr<QObject> command(component.create(&context));
        QVERIFY2(command, qPrintable(component.errorString()));

        command->setProperty("running", true);

        QCOMPARE(nav.asked, QStringList(place));
        QCOMPARE(command->property("running").toBool(), false);
    }

    void allAreTypesOfTheModule_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* const name : {"GoToCamera", "GoToSection", "GoToNodeUpStream", "GoToNodeDownStream",
                                       "EditGPSPosition", "GoToGPSPosition", "EditGPSAddress", "GoToGPSAddress"})
            QTest::newRow(name) << QByteArray(name);
    }

    void allAreTypesOfTheModule()
    {
        QFETCH(QByteArray, name);
        QObject view;
        view.setProperty("splitViewMode", false);
        QQmlContext context(m_engine.rootContext());
        context.setContextProperty("window3d", &view);
        QQmlComponent component(&m_engine);
        component.setData("import view3d 1.0\n" + name + " {}", {});

        const std::unique_ptr<QObject> command(component.create(&context));

        QVERIFY2(command, qPrintable(component.errorString()));
        QCOMPARE(command->property("running"), QVariant(false));
        QVERIFY(command->metaObject()->indexOfMethod("run()") >= 0);
    }

private:
    QQmlEngine m_engine;
};

QTEST_MAIN(tst_Commands)
#include "tst_Commands.moc"
