#include "host/app/FloorFile.h"
#include "view/PlanTest.h"

#include <QJsonDocument>
#include <QPdfWriter>
#include <QStandardPaths>
#include <QTimer>

#include <cmath>

using namespace Torvik::View3d;
using Kx::Test::PlanTest;
using Kx::Test::QmlWarnings;
using Torvik::Viewer::FloorFile::Reading;

/** The plans of floors are there again when their project is opened. The tests follow one another. */
class tst_FloorsKept : public PlanTest {
    Q_OBJECT

private slots:
    void initTestCase() { begin(); }
    void cleanup() { nothingIsOpen(); }
    void cleanupTestCase() { end(); }

    void openingAndClosingWritesNothing();
    void floorsAreThereAgain();
    void whatNobodyHasChangedIsNotWritten();
    void aMoveRightBeforeClosingIsKept();
    void openedTwiceQuicklyTheyAreThereOnce();
    void aPlanThatIsRemovedStaysAway();
    void aPlanOfTheProjectsDocumentsIsNotCopied();
    void ofAPdfThePictureIsKept();
    void aDrawingInNationalCoordinatesComesBack();
    void whatCannotBeStoredIsToldOnce();
    void aMissingFileIsToldAndNotForgotten();
    void aDamagedFileIsKept();
    void anotherProjectHasItsOwn();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }

private:
    static FloorNav& floors() { return FloorNav::instance(); }
    QString floorFile() const { return graphics() + "floors.json"; }
    QByteArray content() const
    {
        QFile file(floorFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
    Reading stored() const { return Torvik::Viewer::FloorFile::read(content(), floorFile()); }
    void write(const QByteArray& bytes) const
    {
        QFile file(floorFile());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void layOnFloor(int floor, const QString& path)
    {
        plans().setFloor(floor);
        plans().load(QUrl::fromLocalFile(path));
        QTRY_VERIFY(!plans().loading());
        QVERIFY(floors().hasFloorPlan(floor));
        m_screen->waitFrames(2);
    }
    void reopen()
    {
        m_viewer->closeProject();
        open();
        QTRY_VERIFY(!plans().floorsComing());
    }
    /** Waits until what was asked for has been written. */
    void settleStore() const { QTest::qWait(50); }
    static QMatrix4x4 matrix(int floor) { return floors().getFloorPlan(floor)->placement()->matrix(); }
    /** To a tenth of a millimetre: a float at 100 m steps by a hundredth. */
    static bool isSame(const QMatrix4x4& a, const QMatrix4x4& b)
    {
        for (int i = 0; i < 16; ++i) {
            if (std::abs(a.constData()[i] - b.constData()[i]) > 1e-4F)
                return false;
        }
        return true;
    }
    QString errorText() const { return m_viewer->errorText(); }

    QMatrix4x4 m_ground;
    QMatrix4x4 m_upper;
    QString m_groundName;
    QString m_upperName;
};

void tst_FloorsKept::openingAndClosingWritesNothing()
{
    reopen();
    plans().setFloor(2);
    plans().setFloor(PlanWork::underNetwork);

    m_viewer->closeProject();

    QVERIFY(!QFile::exists(floorFile()));
    open();
}

void tst_FloorsKept::floorsAreThereAgain()
{
    layOnFloor(0, picture("ground.png"));
    layOnFloor(1, drawing("upper.dxf"));
    plans().setHeights({0.5, 2.75, 3.0, 3.0});
    QCOMPARE(plans().align(PlanWork::TwoLines, {0, 0, 0}, {4, 0, 1}, {10, 0, 3}, {14, 0, 9}), QString());
    m_ground = matrix(0);
    m_upper = matrix(1);
    QVERIFY(filesOfProject().contains("ground.png") && filesOfProject().contains("upper.dxf"));
    QCOMPARE(QDir(documents()).entryList({".plan-*"}, QDir::Dirs | QDir::Hidden), QStringList());
    // What is kept is the project's own file.
    QVERIFY(QFile::remove(m_files.filePath("ground.png")) && QFile::remove(m_files.filePath("upper.dxf")));

    reopen();

    QCOMPARE(errorText(), QString());
    QVERIFY(floors().hasFloorPlan(0) && floors().hasFloorPlan(1));
    QVERIFY(!floors().hasFloorPlan(2) && !floors().hasFloorPlan(3));
    QCOMPARE(floors().getFloorPlan(0)->fullPath(), documents() + "ground.png");
    QCOMPARE(floors().getFloorPlan(1)->fullPath(), documents() + "upper.dxf");
    QCOMPARE(floors().floorValues(), (QVariantList {0.5, 2.75, 3.0, 3.0}));
    QVERIFY(isSame(matrix(0), m_ground));
    QVERIFY(isSame(matrix(1), m_upper));
    QVERIFY(!isSame(matrix(1), QMatrix4x4()));
    QCOMPARE(matrix(1)(1, 3), 3.25F);
    // The user looks at the network, as after every opening.
    QCOMPARE(floors().getCurrentFloorIndex(), -1);
    QCOMPARE(plans().floor(), PlanWork::underNetwork);
    QVERIFY(!floors().getFloorPlan(0)->isEnabled() && !floors().getFloorPlan(1)->isEnabled());
    plans().setFloor(1);
    QVERIFY(floors().getFloorPlan(1)->isEnabled());
    QCOMPARE(plans().planName(), QString("upper.dxf"));
    m_screen->keep("floors-kept");
    plans().setFloor(PlanWork::underNetwork);
}

void tst_FloorsKept::whatNobodyHasChangedIsNotWritten()
{
    // As another program might have it: by its own spaces it would be known if it were written.
    const QByteArray before = QJsonDocument::fromJson(content()).toJson(QJsonDocument::Compact);
    m_viewer->closeProject();
    write(before);

    open();
    QTRY_VERIFY(!plans().floorsComing());
    // Plans tell of the end of their laying after 750 ms.
    QTest::qWait(1000);
    QCOMPARE(content(), before);
    reopen();

    QCOMPARE(content(), before);
    QVERIFY(isSame(matrix(0), m_ground) && isSame(matrix(1), m_upper));
}

void tst_FloorsKept::aMoveRightBeforeClosingIsKept()
{
    plans().setFloor(0);
    plans().setLocked(true);
    floors().getFloorPlan(0)->move({7.5F, 0.0F, -2.0F}, IBackgroundPlan::MeasurementType(0));
    m_ground = matrix(0);

    reopen();

    QVERIFY(isSame(matrix(0), m_ground));
    QVERIFY(isSame(matrix(1), m_upper));
    QVERIFY(!floors().getFloorPlan(0)->followsCamera());
}

void tst_FloorsKept::openedTwiceQuicklyTheyAreThereOnce()
{
    const QByteArray before = content();
    QSignalSpy set(&floors(), &FloorNav::floorSet);
    m_viewer->closeProject();
    // Before the first floor comes, and while it is on its way.
    for (const int afterMs : {0, 15}) {
        bool coming = false;
        QObject once;
        connect(m_viewer.get(), &ViewerController::opened, &once, [this, &coming, afterMs] {
            coming = plans().floorsComing();
            QTimer::singleShot(afterMs, m_viewer.get(), &ViewerController::closeProject);
        });
        m_viewer->openFolder(m_folderOfProject);
        QTRY_VERIFY(coming);
        QTRY_VERIFY(!m_viewer->projectOpen());
        QVERIFY(!plans().floorsComing());
    }
    QTest::qWait(300);
    for (int floor = 0; floor < PlanWork::floorCount; ++floor)
        QVERIFY(!floors().hasFloorPlan(floor));

    set.clear();
    open();
    QTRY_VERIFY(!plans().floorsComing());

    QCOMPARE(set.count(), 2);
    QCOMPARE(errorText(), QString());
    QVERIFY(isSame(matrix(0), m_ground) && isSame(matrix(1), m_upper));
    QCOMPARE(content(), before);
}

void tst_FloorsKept::aPlanThatIsRemovedStaysAway()
{
    plans().setFloor(1);
    plans().remove();
    QTRY_COMPARE(stored().floors.plans.keys(), QList<int> {0});

    reopen();

    QVERIFY(!floors().hasFloorPlan(1));
    QVERIFY(isSame(matrix(0), m_ground));
    QVERIFY(QFile::exists(documents() + "upper.dxf"));
}

void tst_FloorsKept::aPlanOfTheProjectsDocumentsIsNotCopied()
{
    const QStringList files = filesOfProject();

    layOnFloor(3, documents() + "upper.dxf");
    settleStore();

    QCOMPARE(filesOfProject(), files);
    QCOMPARE(stored().floors.plans.value(3).file, QString("upper.dxf"));
    plans().setFloor(PlanWork::underNetwork);
}

void tst_FloorsKept::ofAPdfThePictureIsKept()
{
    if (QStandardPaths::findExecutable("pdftoppm").isEmpty())
        QSKIP("there is no pdftoppm here");
    const QString page = m_files.filePath("page.pdf");
    {
        QPdfWriter writer(page);
        QPainter(&writer).drawRect(9, 9, 900, 900);
    }
    layOnFloor(2, page);

    reopen();

    QVERIFY(floors().hasFloorPlan(2));
    QCOMPARE(floors().getFloorPlan(2)->fullPath(), documents() + "page.png");
    QVERIFY(QFile::exists(page));
    plans().setFloor(2);
    plans().remove();
    plans().setFloor(PlanWork::underNetwork);
    QTRY_COMPARE(stored().floors.plans.keys(), (QList<int> {0, 3}));
}

void tst_FloorsKept::aDrawingInNationalCoordinatesComesBack()
{
    using namespace Kx::Test::Dxf;
    const QByteArray walls =
        line(0x20, 400000, 5600000, 400012, 5600000) + line(0x21, 400012, 5600000, 400012, 5600008);
    layOnFloor(2, file("national.dxf", head({}, {}, "AC1015", {}) + section("ENTITIES", walls) + pair(0, "EOF")));
    QCOMPARE(plans().align(PlanWork::TwoLines, {0, 0, 0}, {4, 0, 1}, {30, 0, 3}, {34, 0, 9}), QString());
    const QMatrix4x4 before = matrix(2);
    const QMatrix4x4 origin = floors().getFloorPlan(2)->transform()->matrix();
    // It is its middle that is moved.
    QVERIFY(!isSame(before, origin));

    reopen();

    QVERIFY(floors().hasFloorPlan(2));
    QVERIFY(isSame(matrix(2), before));
    plans().setFloor(2);
    m_screen->keep("national-floor-kept");
    plans().remove();
    plans().setFloor(PlanWork::underNetwork);
    QTRY_COMPARE(stored().floors.plans.keys(), (QList<int> {0, 3}));
}

void tst_FloorsKept::whatCannotBeStoredIsToldOnce()
{
    const QVariantList before = plans().heights();
    QVERIFY(QFile::remove(floorFile()) && QDir().mkpath(floorFile()));
    QSignalSpy told(&plans(), &PlanWork::notStored);

    plans().setHeights({7.0, 3.0, 3.0, 3.0});
    const QString text = answer();
    plans().setHeights({8.0, 3.0, 3.0, 3.0});
    settleStore();

    QVERIFY2(text.contains(floorFile()), qPrintable(text));
    QCOMPARE(told.count(), 1);
    QVERIFY(QDir().rmdir(floorFile()));
    plans().setHeights(before);
    QTRY_COMPARE(stored().floors.plans.keys(), (QList<int> {0, 3}));
    QCOMPARE(stored().floors.heights.value(0), before.value(0).toDouble());
    QCOMPARE(told.count(), 1);
}

void tst_FloorsKept::aMissingFileIsToldAndNotForgotten()
{
    const QString away = documents() + "ground.png";
    const QString safe = m_files.filePath("safe.png");
    m_viewer->closeProject();
    QVERIFY(QFile::rename(away, safe));
    const QByteArray before = content();

    open();
    QTRY_VERIFY(!plans().floorsComing());

    QCOMPARE(errorText().count(away), 1);
    QVERIFY2(errorText().contains("Floor 1"), qPrintable(errorText()));
    QVERIFY(!floors().hasFloorPlan(0));
    QVERIFY(floors().hasFloorPlan(3));
    QCOMPARE(content(), before);
    plans().setFloor(0);
    QVERIFY2(plans().questionBeforeLoad().contains("ground.png"), qPrintable(plans().questionBeforeLoad()));
    // Another floor's change is written, and this one is still named.
    plans().setHeights({1.0, 3.0, 3.0, 3.0});
    QTRY_COMPARE(stored().floors.heights.value(0), 1.0);
    QCOMPARE(stored().floors.plans.keys(), (QList<int> {0, 3}));
    m_viewer->dismissError();
    QVERIFY(QFile::rename(safe, away));
    m_ground(1, 3) = 1.0F;

    reopen();

    QCOMPARE(errorText(), QString());
    QVERIFY(isSame(matrix(0), m_ground));
}

void tst_FloorsKept::aDamagedFileIsKept()
{
    m_viewer->closeProject();
    const QByteArray broken = content().left(100);
    write(broken);

    open();
    QTest::qWait(300);

    QVERIFY2(errorText().contains(floorFile()), qPrintable(errorText()));
    QVERIFY(!floors().hasFloorPlan(0));
    m_viewer->closeProject();
    QCOMPARE(content(), broken);
    open();
    m_viewer->dismissError();
    layOnFloor(2, picture("fresh.png"));
    QTRY_COMPARE(stored().floors.plans.keys(), QList<int> {2});
    QFile kept(floorFile() + ".damaged");
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), broken);
}

void tst_FloorsKept::anotherProjectHasItsOwn()
{
    const QByteArray before = content();
    Kx::Test::TestProject other("EPSG:25832");
    other.addNode("Z", "POINT ZM(500000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}, {"OBJ_Type", "MH"}});
    const QString otherFolder = other.path();
    other.close();

    open(otherFolder);
    QTRY_VERIFY(!plans().floorsComing());

    QVERIFY(!floors().hasFloorPlan(2));
    QCOMPARE(floors().floorValues(), QVariantList());
    plans().setHeights({9.0, 3.0, 3.0, 3.0});
    settleStore();
    QCOMPARE(content(), before);
    open();
    QTRY_VERIFY(!plans().floorsComing());
    QCOMPARE(content(), before);
    QVERIFY(floors().hasFloorPlan(2));
    QCOMPARE(floors().floorValues().value(0).toDouble(), 0.0);
}

KX_SCENE_TEST_MAIN(tst_FloorsKept)
#include "tst_FloorsKept.moc"
