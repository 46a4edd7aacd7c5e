#include "NetworkScene.h"

#include "common/LogCapture.h"
#include "network/Crawler.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QConeMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QMesh>
#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::LogCapture;

namespace {

const QString category = QStringLiteral("View3d::Crawler");
const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};

template <typename Component>
Component* componentOf(const Qt3DCore::QEntity* entity)
{
    return entity->componentsOfType<Component>().value(0);
}

Qt3DCore::QEntity* modelOf(const Crawler* crawler)
{
    return qobject_cast<Qt3DCore::QEntity*>(crawler->findChild<Qt3DExtras::QConeMesh*>()->parent());
}

} // namespace

/** Where the inspection vehicle stands, what it follows, and what cuts it off. */
class tst_Crawler : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aNewOneIsHiddenAndInNoSection();
    void itsModelIsAConeBeforeARoundedBody();
    void switchingItTwiceTellsOnce();
    void itStandsInItsPlaceWhenItIsToldToShow();
    void withoutASectionItShowsWhereItStood();
    void itStandsACentimetreAheadOfTheCounter();
    void itLooksAlongThePipe();
    void itGrowsWithThePipe_data();
    void itGrowsWithThePipe();
    void itMovesOnlyWhileItShows();
    void everyStepIsLogged();
    void whatDoesNotMoveItIsNotLogged();
    void aPlaceIsLoggedWithSixDigits();
    void itFollowsItsSection();
    void attachingToTheSameSectionCutsItOff();
    void anotherSectionTakesItOver();
    void withoutASectionItStaysAndSaysSo();
    void aForgottenSectionMovesItNoMore();
    void aDeletedSectionIsForgotten();

private:
    Section* pipe(const QVector<QVector3D>& course = tenMetresNorth, const QVariantMap& values = {})
    {
        return m_scene->section(nullptr, nullptr, values, course);
    }

    std::unique_ptr<NetworkScene> m_scene;
    Crawler* m_crawler = nullptr;
};

void tst_Crawler::init()
{
    m_scene = std::make_unique<NetworkScene>();
    m_crawler = new Crawler(m_scene->root.get());
}

void tst_Crawler::cleanup()
{
    m_scene.reset();
}

void tst_Crawler::aNewOneIsHiddenAndInNoSection()
{
    QVERIFY(!m_crawler->active());
    QVERIFY(!m_crawler->section());
    QCOMPARE(m_crawler->renderableType(), QStringLiteral("crawler"));
    QVERIFY(m_crawler->orientation().isIdentity());
    QVERIFY(m_crawler->isEnabled());
    QVERIFY(!modelOf(m_crawler)->isEnabled());
    QVERIFY(!m_crawler->touchControl());
    QCOMPARE(m_crawler->transformFlags(), 0);
}

void tst_Crawler::itsModelIsAConeBeforeARoundedBody()
{
    const Qt3DCore::QEntity* const model = modelOf(m_crawler);
    QCOMPARE(model->parentEntity(), m_crawler);
    const auto* const cone = componentOf<Qt3DExtras::QConeMesh>(model);
    QCOMPARE(cone->bottomRadius(), 1.0F);
    QCOMPARE(cone->topRadius(), 0.23F);
    QCOMPARE(cone->length(), 1.7F);
    const auto* const material = componentOf<Qt3DExtras::QGoochMaterial>(model);
    QCOMPARE(material->alpha(), 0.12F);
    QCOMPARE(material->beta(), 1.0F);
    QCOMPARE(material->cool(), QColor(13, 13, 13));
    QCOMPARE(material->warm(), QColor(64, 64, 64));
    QCOMPARE(material->diffuse(), QColor(Qt::black));
    QCOMPARE(material->specular(), QColor(Qt::black));
    const auto* const place = componentOf<Qt3DCore::QTransform>(model);
    QCOMPARE(place->rotationX(), -90.0F);
    QCOMPARE(place->translation(), QVector3D(0.0F, 0.0F, 1.2F));

    const auto* const mesh = model->findChild<Qt3DRender::QMesh*>();
    QCOMPARE(mesh->source(), QUrl("qrc:/models/roundedCylinder.obj"));
    QVERIFY(QFile::exists(":/models/roundedCylinder.obj"));
    const auto* const body = qobject_cast<Qt3DCore::QEntity*>(mesh->parent());
    QCOMPARE(body->parentEntity(), model);
    QCOMPARE(componentOf<Qt3DExtras::QPhongMaterial>(body)->diffuse(), QColor(39, 92, 168));
    QCOMPARE(componentOf<Qt3DCore::QTransform>(body)->scale(), 1.8F);
    QCOMPARE(componentOf<Qt3DCore::QTransform>(body)->translation(), QVector3D(0.0F, 1.15F, 0.0F));
}

void tst_Crawler::switchingItTwiceTellsOnce()
{
    const QSignalSpy changed(m_crawler, &Crawler::activeChanged);
    m_crawler->setActive(false);
    QCOMPARE(changed.count(), 0);

    m_crawler->setActive(true);
    m_crawler->setActive(true);
    QCOMPARE(changed.count(), 1);
    QVERIFY(modelOf(m_crawler)->isEnabled());

    m_crawler->setActive(false);
    QCOMPARE(changed.count(), 2);
    QVERIFY(!modelOf(m_crawler)->isEnabled());
}

void tst_Crawler::itStandsInItsPlaceWhenItIsToldToShow()
{
    Section* const section = pipe();
    section->onDistanceCounterChanged(3.0);
    m_crawler->attachToSection(section);
    QVector<QPair<bool, float>> seen;
    const QObject here;
    connect(m_crawler, &Crawler::activeChanged, &here, [this, &seen] {
        seen.append({modelOf(m_crawler)->isEnabled(), std::round(m_crawler->position().z() * 1000.0F)});
    });

    m_crawler->setActive(true);
    m_crawler->setActive(false);

    QCOMPARE(seen, (QVector<QPair<bool, float>> {{true, 3010.0F}, {false, 3010.0F}}));
}

void tst_Crawler::withoutASectionItShowsWhereItStood()
{
    m_crawler->setPosition({1.0F, 2.0F, 3.0F}, 0);

    m_crawler->setActive(true);

    QVERIFY(modelOf(m_crawler)->isEnabled());
    QCOMPARE(m_crawler->position(), QVector3D(1.0F, 2.0F, 3.0F));
    QCOMPARE(m_crawler->transform()->scale(), 1.0F);
}

void tst_Crawler::itStandsACentimetreAheadOfTheCounter()
{
    Section* const section = pipe();
    m_crawler->setActive(true);

    m_crawler->attachToSection(section);
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 0.01F));

    section->onDistanceCounterChanged(4.0);
    m_crawler->refreshPosition();
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 4.01F));
    QCOMPARE(m_crawler->section(), section);
    QCOMPARE(m_crawler->transformFlags(), 0);
}

void tst_Crawler::itLooksAlongThePipe()
{
    Section* const section = pipe({{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 5.0F}, {-5.0F, 0.0F, 5.0F}});
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);
    VERIFY_NEAR(m_crawler->rotation().rotatedVector({0.0F, 0.0F, 1.0F}), QVector3D(0.0F, 0.0F, 1.0F));

    section->onDistanceCounterChanged(7.0);
    m_crawler->refreshPosition();

    VERIFY_NEAR(m_crawler->position(), QVector3D(-2.01F, 0.0F, 5.0F));
    VERIFY_NEAR(m_crawler->rotation().rotatedVector({0.0F, 0.0F, 1.0F}), QVector3D(-1.0F, 0.0F, 0.0F));
}

void tst_Crawler::itGrowsWithThePipe_data()
{
    QTest::addColumn<double>("diameterMm");
    QTest::addColumn<float>("scale");
    QTest::newRow("usual") << 300.0 << 0.93F;
    QTest::newRow("wide") << 1000.0 << 3.1F;
    QTest::newRow("thinner than what is drawn") << 40.0 << 0.31F;
}

void tst_Crawler::itGrowsWithThePipe()
{
    QFETCH(double, diameterMm);
    QFETCH(float, scale);
    m_crawler->setActive(true);

    m_crawler->attachToSection(pipe(tenMetresNorth, {{"OBJ_Size1", diameterMm}}));

    QVERIFY(std::abs(m_crawler->transform()->scale() - scale) < 1e-5F);
    // The frame of the pipe has no scale of its own: nothing piles up.
    m_crawler->refreshPosition();
    QVERIFY(std::abs(m_crawler->transform()->scale() - scale) < 1e-5F);
}

void tst_Crawler::itMovesOnlyWhileItShows()
{
    Section* const section = pipe();
    section->onDistanceCounterChanged(3.0);
    m_crawler->attachToSection(section);
    QCOMPARE(m_crawler->position(), QVector3D());

    m_crawler->setActive(true);
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 3.01F));

    m_crawler->setActive(false);
    section->onDistanceCounterChanged(6.0);
    m_crawler->refreshPosition();
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 3.01F));
}

void tst_Crawler::everyStepIsLogged()
{
    Section* const section = pipe({{1.5F, 0.0F, 0.0F}, {1.5F, 0.0F, 10.0F}});
    section->onDistanceCounterChanged(2.0);
    m_crawler->setActive(true);
    const LogCapture log;

    m_crawler->attachToSection(section);
    m_crawler->refreshPosition();

    QCOMPARE(log.count(4, category, QStringLiteral("Crawler camera position , 1.5, 0, 2.01")), 2);
}

void tst_Crawler::whatDoesNotMoveItIsNotLogged()
{
    Section* const section = pipe();
    const LogCapture log;
    const auto steps = [&log] {
        int found = 0;
        for (const auto& line : log.lines())
            found += line.category == category && line.level == 4 ? 1 : 0;
        return found;
    };

    m_crawler->attachToSection(section);
    m_crawler->refreshPosition();
    QCOMPARE(steps(), 0);
    m_crawler->detachFromSection();
    m_crawler->setActive(true);
    m_crawler->refreshPosition();
    QCOMPARE(steps(), 0);
    m_crawler->attachToSection(section);
    QCOMPARE(steps(), 1);
}

void tst_Crawler::aPlaceIsLoggedWithSixDigits()
{
    Section* const section = pipe();
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);
    const LogCapture log;

    section->setPosition({123456.7F, 1e-7F, 0.0F}, TransformFlags::Manual);

    QCOMPARE(log.count(4, category, QStringLiteral("Crawler camera position , 123457, 1e-07, 0.01")), 1);
}

void tst_Crawler::itFollowsItsSection()
{
    Section* const section = pipe();
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);
    section->onDistanceCounterChanged(4.0);
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 0.01F));

    emit section->realTimeDataChanged();
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 4.01F));
    section->setPosition({1.0F, 2.0F, 3.0F}, TransformFlags::Manual);
    VERIFY_NEAR(m_crawler->position(), QVector3D(1.0F, 2.0F, 7.01F));
    section->setRotation(QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 90.0F), TransformFlags::Manual);
    VERIFY_NEAR(m_crawler->position(), QVector3D(5.01F, 2.0F, 3.0F));
}

void tst_Crawler::attachingToTheSameSectionCutsItOff()
{
    Section* const section = pipe();
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);
    const QVector3D before = m_crawler->position();

    m_crawler->attachToSection(section);
    section->setPosition({0.0F, 5.0F, 0.0F}, TransformFlags::Manual);
    section->setRotation(QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 90.0F), TransformFlags::Manual);
    emit section->realTimeDataChanged();

    QCOMPARE(m_crawler->position(), before);
    QCOMPARE(m_crawler->section(), section);
    // It still comes when it is called.
    m_crawler->refreshPosition();
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.01F, 5.0F, 0.0F));
}

void tst_Crawler::anotherSectionTakesItOver()
{
    Section* const first = pipe();
    Section* const second = pipe({{20.0F, 0.0F, 0.0F}, {20.0F, 0.0F, 10.0F}});
    m_crawler->setActive(true);
    m_crawler->attachToSection(first);
    m_crawler->attachToSection(first);
    bool told = false;
    const QObject here;
    connect(m_crawler, &Crawler::sectionChanged, &here, [&] { told = true; });

    m_crawler->attachToSection(second);
    VERIFY_NEAR(m_crawler->position(), QVector3D(20.0F, 0.0F, 0.01F));
    first->setPosition({0.0F, 9.0F, 0.0F}, TransformFlags::Manual);
    VERIFY_NEAR(m_crawler->position(), QVector3D(20.0F, 0.0F, 0.01F));
    second->setPosition({20.0F, 3.0F, 0.0F}, TransformFlags::Manual);
    VERIFY_NEAR(m_crawler->position(), QVector3D(20.0F, 3.0F, 0.01F));

    m_crawler->setProperty("section", QVariant::fromValue(first));
    QCOMPARE(m_crawler->section(), first);
    QVERIFY(!told);
}

void tst_Crawler::withoutASectionItStaysAndSaysSo()
{
    const LogCapture log;
    m_crawler->attachToSection(nullptr);
    QCOMPARE(log.count(1, category, QStringLiteral("crawlerTransform is null")), 0);
    Section* const section = pipe();
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);

    m_crawler->attachToSection(nullptr);
    section->setPosition({0.0F, 5.0F, 0.0F}, TransformFlags::Manual);

    QCOMPARE(log.count(1, category, QStringLiteral("crawlerTransform is null")), 1);
    QVERIFY(!m_crawler->section());
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 0.01F));
    QVERIFY(m_crawler->active());
}

void tst_Crawler::aForgottenSectionMovesItNoMore()
{
    Section* const section = pipe();
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);

    m_crawler->detachFromSection();
    section->setPosition({0.0F, 5.0F, 0.0F}, TransformFlags::Manual);
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 0.01F));

    // The connections have stayed, so that each of them would have been made twice but for the cut.
    m_crawler->attachToSection(section);
    QSignalSpy moved(m_crawler->transform(), &Qt3DCore::QTransform::translationChanged);
    section->setPosition({0.0F, 7.0F, 0.0F}, TransformFlags::Manual);
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 7.0F, 0.01F));
    QCOMPARE(moved.count(), 1);
}

void tst_Crawler::aDeletedSectionIsForgotten()
{
    Section* const section = pipe();
    m_crawler->setActive(true);
    m_crawler->attachToSection(section);

    delete section;

    QVERIFY(!m_crawler->section());
    m_crawler->refreshPosition();
    VERIFY_NEAR(m_crawler->position(), QVector3D(0.0F, 0.0F, 0.01F));
}

QTEST_MAIN(tst_Crawler)
#include "tst_Crawler.moc"
