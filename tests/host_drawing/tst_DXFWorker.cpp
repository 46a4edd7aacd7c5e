#include "common/LogCapture.h"
#include "domain/boundary/DXFWorker.h"
#include "host/drawing/DrawingJournal.h"
#include "host_drawing/DxfText.h"

#include <QElapsedTimer>
#include <QThread>
#include <Qt3DRender/QGeometryRenderer>
#include <QtTest>

#include <memory>

using namespace Torvik::DXF;
using namespace Kx::Test;

namespace {

/** A worker on a thread of its own, as a plan has it. */
class Loading : public QObject {
public:
    explicit Loading(const QString& path)
        : worker(new DXFWorker(nullptr, QThread::currentThread()))
    {
        worker->moveToThread(&thread);
        connect(&thread, &QThread::started, worker, &DXFWorker::loadFile);
        connect(worker, &DXFWorker::loadingFinished, this, [this](Qt3DCore::QEntity* root) {
            ++finished;
            entity.reset(root);
        });
        connect(worker, &DXFWorker::loadingCancelled, this, [this] {
            ++cancelled;
            cancelledFirst = finished == 0;
        });
        worker->setLoadedFilePath(path);
    }
    ~Loading() override { end(); }

    void start() { thread.start(); }
    void end()
    {
        thread.quit();
        thread.wait();
        delete worker;
        worker = nullptr;
    }

    QThread thread;
    DXFWorker* worker;
    std::unique_ptr<Qt3DCore::QEntity> entity;
    int finished = 0;
    int cancelled = 0;
    bool cancelledFirst = false;
};

QByteArray manyLines(int count)
{
    QByteArray lines;
    lines.reserve(count * 110);
    for (int i = 1; i <= count; ++i)
        lines += Dxf::line(i, i % 500, i / 500, i % 500 + 1, i / 500);
    return Dxf::drawing(lines);
}

} // namespace

class tst_DXFWorker : public QObject {
    Q_OBJECT

private slots:
    void aDrawingArrivesOnTheTargetThread();
    void aCropOffsetIsReported();
    void withoutACropThereIsNoProperty();
    void aFailureIsNullAndReported();
    void cancellingEndsWithin200Ms_data();
    void cancellingEndsWithin200Ms();
    void cancellingBeforeTheStartEndsAtOnce();
    void cancellingAfterTheEndIsNothing();
    void aWorkerThatGoesWhileLoadingIsNoTrouble();
    void aFileThatGoesWhileLoadingIsNoTrouble();
    void twoLoadsAtOnceDoNotDisturbEachOther();
    void theMainThreadStaysFree();
};

void tst_DXFWorker::aDrawingArrivesOnTheTargetThread()
{
    const QTemporaryDir folder;
    Loading loading(
        written(folder, "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1) + Dxf::entity("POINT", 2, Dxf::at(10, 1, 1)))));

    loading.start();
    QTRY_COMPARE(loading.finished, 1);

    QVERIFY(loading.entity);
    QCOMPARE(loading.entity->thread(), QThread::currentThread());
    QVERIFY(!loading.entity->parent());
    const auto renderers = loading.entity->findChildren<Qt3DRender::QGeometryRenderer*>();
    QCOMPARE(renderers.size(), 2);
    QCOMPARE(renderers[0]->vertexCount(), 2);
    QCOMPARE(loading.cancelled, 0);
}

void tst_DXFWorker::aCropOffsetIsReported()
{
    const QTemporaryDir folder;
    const QByteArray header = Dxf::pair(9, "$INSUNITS") + Dxf::pair(70, "4");
    Loading loading(written(folder, "a.dxf",
                            Dxf::head({}, {}, "AC1015", header) +
                                Dxf::section("ENTITIES", Dxf::line(1, 500000, 5600000, 500010, 5600020)) +
                                Dxf::pair(0, "EOF")));

    loading.start();
    QTRY_COMPARE(loading.finished, 1);

    const QVariant crop = loading.entity->property("dxfCropOffset");
    QVERIFY(crop.canConvert<QVector3D>());
    QVERIFY((crop.value<QVector3D>() - QVector3D(-500005, 0, 5600010)).length() < 15.0F);
    QCOMPARE(loading.entity->property("dxfMetresPerUnit").toDouble(), 0.001);
}

void tst_DXFWorker::withoutACropThereIsNoProperty()
{
    const QTemporaryDir folder;
    Loading loading(written(folder, "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1))));

    loading.start();
    QTRY_COMPARE(loading.finished, 1);

    QVERIFY(!loading.entity->property("dxfCropOffset").isValid());
}

void tst_DXFWorker::aFailureIsNullAndReported()
{
    const QTemporaryDir folder;
    const QString path = written(folder, "a.dwg", "AC1032");
    Loading loading(path);

    loading.start();
    QTRY_COMPARE(loading.finished, 1);

    QVERIFY(!loading.entity);
    QCOMPARE(loading.cancelled, 0);
    QCOMPARE(int(DrawingJournal::last(path).problem), int(DrawingProblem::DwgVersion));
    QVERIFY(DrawingJournal::last(path).message.contains("DWG 2018"));
    QVERIFY(DrawingJournal::last("another").path.isEmpty());
}

void tst_DXFWorker::cancellingEndsWithin200Ms_data()
{
    QTest::addColumn<int>("afterMs");
    for (const int ms : {0, 5, 20, 50, 100, 200, 400, 800})
        QTest::newRow(qPrintable(QString::number(ms))) << ms;
}

void tst_DXFWorker::cancellingEndsWithin200Ms()
{
    QFETCH(int, afterMs);
    static const QTemporaryDir folder;
    static const QString path = written(folder, "large.dxf", manyLines(250000));
    Loading loading(path);

    loading.start();
    QTest::qWait(afterMs);
    const bool wasDone = loading.finished > 0;
    QElapsedTimer time;
    time.start();
    loading.worker->cancelLoading();
    QTRY_COMPARE(loading.finished, 1);
    const qint64 tookMs = time.elapsed();

    if (wasDone)
        QSKIP("this machine had read it all before");
    QVERIFY2(tookMs <= 200, qPrintable(QString::number(tookMs)));
    QCOMPARE(loading.cancelled, 1);
    QVERIFY(loading.cancelledFirst);
    QVERIFY(!loading.entity);
}

void tst_DXFWorker::cancellingBeforeTheStartEndsAtOnce()
{
    const QTemporaryDir folder;
    Loading loading(written(folder, "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1))));

    loading.worker->cancelLoading();
    loading.start();
    QTRY_COMPARE(loading.finished, 1);

    QCOMPARE(loading.cancelled, 1);
    QVERIFY(!loading.entity);
}

void tst_DXFWorker::cancellingAfterTheEndIsNothing()
{
    const QTemporaryDir folder;
    Loading loading(written(folder, "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1))));
    loading.start();
    QTRY_COMPARE(loading.finished, 1);

    loading.worker->cancelLoading();
    QTest::qWait(50);

    QCOMPARE(loading.finished, 1);
    QCOMPARE(loading.cancelled, 0);
    QVERIFY(loading.entity);
}

void tst_DXFWorker::aWorkerThatGoesWhileLoadingIsNoTrouble()
{
    const QTemporaryDir folder;
    const QString path = written(folder, "a.dxf", manyLines(20000));
    for (int ms = 0; ms < 400; ms += 25) {
        Loading loading(path);
        loading.start();
        QTest::qWait(ms);
        loading.worker->cancelLoading();
        QElapsedTimer time;
        time.start();
        loading.end();
        QVERIFY(time.elapsed() < 200);
    }
    QTest::qWait(100);
}

void tst_DXFWorker::aFileThatGoesWhileLoadingIsNoTrouble()
{
    const QTemporaryDir folder;
    const QString path = written(folder, "a.dxf", manyLines(50000));
    Loading loading(path);

    loading.start();
    QTest::qWait(20);
    QVERIFY(QFile::remove(path));
    QTRY_COMPARE_WITH_TIMEOUT(loading.finished, 1, 20000);

    QVERIFY(bool(loading.entity) != (DrawingJournal::last(path).problem != DrawingProblem::None));
}

void tst_DXFWorker::twoLoadsAtOnceDoNotDisturbEachOther()
{
    const QTemporaryDir folder;
    Loading first(written(folder, "a.dxf", manyLines(5000)));
    Loading second(written(folder, "b.dxf", manyLines(7000)));

    first.start();
    second.start();
    QTRY_COMPARE_WITH_TIMEOUT(first.finished + second.finished, 2, 20000);

    QCOMPARE(first.entity->findChild<Qt3DRender::QGeometryRenderer*>()->vertexCount(), 10000);
    QCOMPARE(second.entity->findChild<Qt3DRender::QGeometryRenderer*>()->vertexCount(), 14000);
}

void tst_DXFWorker::theMainThreadStaysFree()
{
    const QTemporaryDir folder;
    Loading loading(written(folder, "a.dxf", manyLines(100000)));
    QElapsedTimer since;
    qint64 longest = 0;
    QTimer beat;
    connect(&beat, &QTimer::timeout, this, [&] { longest = std::max(longest, since.restart()); });
    since.start();
    beat.start(1);

    loading.start();
    QTRY_COMPARE_WITH_TIMEOUT(loading.finished, 1, 30000);

    QVERIFY(loading.entity);
    // The bound itself is the benchmark's; here other programs may have the processor.
    QVERIFY2(longest < 500, qPrintable(QString::number(longest)));
}

QTEST_GUILESS_MAIN(tst_DXFWorker)
#include "tst_DXFWorker.moc"
