#include "scene/SharedComponents.h"

#include <Qt3DCore/QEntity>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QSphereMesh>

#include <QtTest>

#include <memory>

using namespace Torvik::View3d;

class tst_SharedComponents : public QObject {
    Q_OBJECT

private slots:
    void unitMeshesMeasureOne();
    void theSameLookGivesTheSameMaterial();
    void aLookFromAWarmColourHasACoolOfThreeTenths();
    void aComponentOutlivesTheEntityThatUsesIt();
    void aFullComponentIsFollowedByAFreshOne();
    void roomThatBecomesFreeIsUsedAgain();
    void thePoolLivesUnderItsHomeAndStartsAfreshAfterIt();
};

void tst_SharedComponents::unitMeshesMeasureOne()
{
    QCOMPARE(SharedComponents::instance().unitCylinder()->radius(), 1.0F);
    QCOMPARE(SharedComponents::instance().unitCylinder()->length(), 1.0F);
    QCOMPARE(SharedComponents::instance().unitCylinder()->rings(), 2);
    QCOMPARE(SharedComponents::instance().unitSphere()->radius(), 1.0F);
}

void tst_SharedComponents::theSameLookGivesTheSameMaterial()
{
    auto& pool = SharedComponents::instance();

    QVERIFY(pool.goochMaterial(QColor(10, 20, 30)) == pool.goochMaterial(QColor(10, 20, 30)));
    QVERIFY(pool.goochMaterial(QColor(10, 20, 30)) != pool.goochMaterial(QColor(10, 20, 31)));
    GoochLook brighter = SharedComponents::lookFromWarm(QColor(10, 20, 30));
    brighter.beta = 0.5F;
    QVERIFY(pool.goochMaterial(QColor(10, 20, 30)) != pool.goochMaterial(brighter));
    QCOMPARE(pool.goochMaterial(brighter)->beta(), 0.5F);
}

void tst_SharedComponents::aLookFromAWarmColourHasACoolOfThreeTenths()
{
    auto* material = SharedComponents::instance().goochMaterial(QColor::fromRgbF(1.0, 0.5, 0.2, 0.8));

    QCOMPARE(material->warm(), QColor::fromRgbF(1.0, 0.5, 0.2, 0.8));
    QVERIFY(qAbs(material->cool().redF() - 0.3) < 1e-4);
    QVERIFY(qAbs(material->cool().greenF() - 0.15) < 1e-4);
    QVERIFY(qAbs(material->cool().blueF() - 0.06) < 1e-4);
    QVERIFY(qAbs(material->cool().alphaF() - 0.8) < 1e-4);
    QCOMPARE(material->alpha(), 0.12F);
    QCOMPARE(material->beta(), 1.0F);
    QCOMPARE(material->shininess(), 0.1F);
    QCOMPARE(material->diffuse(), QColor(Qt::black));
    QCOMPARE(material->specular(), QColor(Qt::black));
}

void tst_SharedComponents::aComponentOutlivesTheEntityThatUsesIt()
{
    QPointer<Qt3DExtras::QSphereMesh> mesh = SharedComponents::instance().unitSphere();
    auto entity = std::make_unique<Qt3DCore::QEntity>();
    entity->addComponent(mesh);
    const int users = mesh->entities().size();

    entity.reset();

    QVERIFY(mesh);
    QCOMPARE(mesh->entities().size(), users - 1);
}

void tst_SharedComponents::aFullComponentIsFollowedByAFreshOne()
{
    Qt3DCore::QEntity root;
    auto* first = SharedComponents::instance().unitCylinder();
    QCOMPARE(first->entities().size(), 0);

    for (int i = 0; i < SharedComponents::usersPerComponent; ++i)
        (new Qt3DCore::QEntity(&root))->addComponent(SharedComponents::instance().unitCylinder());

    QCOMPARE(first->entities().size(), SharedComponents::usersPerComponent);
    QVERIFY(SharedComponents::instance().unitCylinder() != first);
}

void tst_SharedComponents::roomThatBecomesFreeIsUsedAgain()
{
    QVector<Qt3DExtras::QCylinderMesh*> seen;
    for (int round = 0; round < 3; ++round) {
        Qt3DCore::QEntity root;
        for (int i = 0; i < 2 * SharedComponents::usersPerComponent; ++i) {
            auto* mesh = SharedComponents::instance().unitCylinder();
            (new Qt3DCore::QEntity(&root))->addComponent(mesh);
            if (!seen.contains(mesh))
                seen.append(mesh);
        }
    }

    QCOMPARE(seen.size(), 2);
}

void tst_SharedComponents::thePoolLivesUnderItsHomeAndStartsAfreshAfterIt()
{
    auto& pool = SharedComponents::instance();
    auto home = std::make_unique<Qt3DCore::QEntity>();
    pool.setHome(home.get());
    QPointer<Qt3DExtras::QGoochMaterial> material = pool.goochMaterial(QColor(1, 2, 3));
    QVERIFY(material->parentNode()->parentNode() == home.get());

    home.reset();

    QVERIFY(!material);
    QCOMPARE(pool.goochMaterial(QColor(1, 2, 3))->warm(), QColor(1, 2, 3));
    QCOMPARE(pool.unitCylinder()->entities().size(), 0);
}

QTEST_GUILESS_MAIN(tst_SharedComponents)

#include "tst_SharedComponents.moc"
