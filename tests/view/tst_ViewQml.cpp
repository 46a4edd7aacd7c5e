#include "host/modules/HostModules.h"

#include <QQmlEngine>
#include <QtQuickTest>

/** Gives the tests in qml/ what a host gives to the view. */
class Setup : public QObject {
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine) { Torvik::Viewer::registerHostModules(*engine); }
};

QUICK_TEST_MAIN_WITH_SETUP(tst_ViewQml, Setup)
#include "tst_ViewQml.moc"
