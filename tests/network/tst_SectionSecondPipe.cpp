#include "NetworkScene.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};
const QVector<QVector3D> lastFiveOfThirty {{0.0F, 0.0F, 25.0F}, {0.0F, 0.0F, 30.0F}};

QVector3D placeOf(const QMatrix4x4& matrix)
{
    return matrix.column(3).toVector3D();
}

} // namespace

/** A section that was inspected from both ends: a second shape is stored with the first. */
class tst_SectionSecondPipe : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aSecondShapeIsReadFromTheFarEnd();
    void atTheOriginOfTheSceneTheSecondPipeAnswers();
    void theSecondPipeHangsInTheRoot();
    void theSecondPipeMayGoBeforeTheSection();
    void onlyTheMainPipeChangesColour();
    void theCounterLeavesASecondPipeAlone();

private:
    /** A third shape is stored as well, which counts for nothing. */
    Section* section(double length = 30.0)
    {
        const auto pipe = m_scene->project().addSection("S", nullptr, nullptr, {{"OBJ_Length", length}});
        return m_scene->section(m_scene->project().addInspection(
            pipe, QStringLiteral("GEOMETRYCOLLECTION(%1,%2,%2)")
                      .arg(NetworkScene::storedShape(tenMetresNorth, TransformFlags::Manual, 1),
                           NetworkScene::storedShape(lastFiveOfThirty, TransformFlags::Manual, 1))));
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionSecondPipe::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionSecondPipe::cleanup()
{
    m_scene.reset();
}

void tst_SectionSecondPipe::aSecondShapeIsReadFromTheFarEnd()
{
    const Section* const both = section();

    QVERIFY(both->hasMultipipe());
    QCOMPARE(both->getShapePoints().size(), 2);
    VERIFY_NEAR(placeOf(both->pipeTransMatrixAtDistance(4.0F)), QVector3D(0.0F, 0.0F, 4.0F));
    VERIFY_NEAR(placeOf(both->pipeTransMatrixAtDistance(28.0F)), QVector3D(0.0F, 0.0F, 28.0F));
    QCOMPARE(both->secondPipe()->radius(), 0.15F);
    QCOMPARE(both->length(), 10.0);
    const QPointer<Pipe> second = both->secondPipe();
    delete both;
    QVERIFY(second.isNull());
}

void tst_SectionSecondPipe::atTheOriginOfTheSceneTheSecondPipeAnswers()
{
    // The main pipe's frame at its start is the identity, which counts as none.
    const Section* const both = section(31.0);

    const QMatrix4x4 start = both->pipeTransMatrixAtDistance(0.0F);

    QCOMPARE(start, both->secondPipe()->getTransformMatrixAtDistance(-26.0F));
    QVERIFY(!start.isIdentity());
}

void tst_SectionSecondPipe::theSecondPipeHangsInTheRoot()
{
    const Section* const both = section();

    auto* const entity = both->secondPipe()->parentEntity();

    QVERIFY(!qobject_cast<Renderable*>(entity));
    QCOMPARE(entity->parentNode(), static_cast<Qt3DCore::QNode*>(m_scene->root.get()));
}

void tst_SectionSecondPipe::theSecondPipeMayGoBeforeTheSection()
{
    Section* const both = section();

    delete both->secondPipe()->parentEntity();

    QVERIFY(!both->hasMultipipe());
    QCOMPARE(both->getShapePoints().size(), 1);
    both->setDiameter(500.0);
    VERIFY_NEAR(placeOf(both->pipeTransMatrixAtDistance(28.0F)), QVector3D(0.0F, 0.0F, 10.0F));
}

void tst_SectionSecondPipe::onlyTheMainPipeChangesColour()
{
    Section* const both = section();
    const auto before = both->secondPipe()->appearance().colors;

    both->setSelectedMaterial();

    QCOMPARE(both->pipe()->appearance().colors, (QVector<QColor> {QColor(60, 60, 255)}));
    QCOMPARE(both->secondPipe()->appearance().colors, before);
}

void tst_SectionSecondPipe::theCounterLeavesASecondPipeAlone()
{
    Section* const both = section();
    const QSignalSpy geometry(both, &Section::sectionGeometryChanged);

    both->onDistanceCounterChanged(15.0);

    QCOMPARE(both->length(), 10.0);
    QCOMPARE(geometry.count(), 0);
}

QTEST_MAIN(tst_SectionSecondPipe)
#include "tst_SectionSecondPipe.moc"
