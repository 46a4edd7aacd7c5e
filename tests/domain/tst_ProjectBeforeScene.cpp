#include "SmallNetwork.h"
#include "geo/GdalGeoProjector.h"
#include "network/Node.h"
#include "scene/SceneRoot.h"

#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;
using Torvik::AppState;

/** A host that opens its project before the view has loaded. */
class tst_ProjectBeforeScene : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void theNetworkLiesAtTheOriginWhereverTheMapHasTiedTheEmptyScene()
    {
        GdalGeoProjector& projector = *GdalGeoProjector::instance();
        projector.initFromMap(51.0, 10.0, 0.0);
        SmallNetwork net;
        net.project.activate();

        m_root = new SceneRoot;
        m_root->qmlOnCompleted();

        QTRY_VERIFY(nodeOf(net.b));
        QCOMPARE(nodeOf(net.a)->position(), QVector3D(0, 0, 0));
        QCOMPARE(nodeOf(net.b)->position(), QVector3D(-30, -1, 40));
    }

    void withoutAProjectTheTieOfTheMapStays()
    {
        GdalGeoProjector::instance()->initFromMap(51.0, 10.0, 0.0);
        m_root = new SceneRoot;
        m_root->qmlOnCompleted();
        QVERIFY(GdalGeoProjector::instance()->initialized());
    }

private:
    SceneRoot* m_root = nullptr;
};

QTEST_MAIN(tst_ProjectBeforeScene)
#include "tst_ProjectBeforeScene.moc"
