#include "labels/VertexLabel.h"

#include <QFont>
#include <QSignalSpy>
#include <Qt3DExtras/QExtrudedTextMesh>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QGeometry>
#include <QtTest>

using namespace Torvik::View3d;

namespace {

class Thing : public Renderable {
public:
    explicit Thing(Qt3DCore::QEntity* parent)
        : Renderable(parent)
    {
    }
    QString renderableType() const override { return QStringLiteral("thing"); }
    QQuaternion orientation() const override { return QQuaternion::fromAxisAndAngle(0, 0, 1, 33); }
};

Qt3DExtras::QExtrudedTextMesh* meshOf(const VertexLabel* label)
{
    const auto found = label->componentsOfType<Qt3DExtras::QExtrudedTextMesh>();
    return found.size() == 1 ? found.first() : nullptr;
}

unsigned countOf(const Qt3DExtras::QExtrudedTextMesh* mesh)
{
    return mesh->geometry()->attributes().first()->count();
}

/** Of the vertices that the letters have by themselves. */
unsigned frontOf(const QString& text, const QFont& font)
{
    Qt3DExtras::QExtrudedTextMesh mesh;
    mesh.setDepth(0);
    mesh.setFont(font);
    mesh.setText(text);
    const unsigned all = countOf(&mesh);
    return all % 3 == 0 ? all / 3 : all;
}

bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < 1e-5F;
}

} // namespace

class tst_VertexLabel : public QObject {
    Q_OBJECT

private slots:
    void itsLettersHaveNoDepthAndTheLabelsFont();
    void onlyTheFrontOfTheLettersIsKept_data();
    void onlyTheFrontOfTheLettersIsKept();
    void withoutATextNothingIsDrawn();
    void anotherFontMakesOtherLetters();
    void anotherMaterialTakesThePlace();
    void itLiesFlatAlongTheObject_data();
    void itLiesFlatAlongTheObject();
    void anotherTextDoesNotMoveItFarther();
    void itIsALabelAndHasItsObjectsOrientation();
};

void tst_VertexLabel::itsLettersHaveNoDepthAndTheLabelsFont()
{
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);

    const auto* const label = VertexLabel::create(thing, QStringLiteral("S 17"));

    QCOMPARE(label->parentNode(), thing);
    const auto* const mesh = meshOf(label);
    QVERIFY(mesh);
    QCOMPARE(mesh->text(), QString("S 17"));
    QCOMPARE(mesh->depth(), 0.0F);
    QCOMPARE(mesh->font(), label->font());
    const auto materials = label->componentsOfType<Qt3DExtras::QPhongMaterial>();
    QCOMPARE(materials.size(), 1);
    QCOMPARE(materials.first()->ambient(), QColor("white"));
    QVERIFY(label->components().contains(label->transform()));
}

void tst_VertexLabel::onlyTheFrontOfTheLettersIsKept_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text : {"l", "H", "S 17", "Größe", "ŁódźΩЖ"})
        QTest::newRow(text) << QString::fromUtf8(text);
    QTest::newRow("long") << QString(200, 'm');
}

void tst_VertexLabel::onlyTheFrontOfTheLettersIsKept()
{
    QFETCH(QString, text);
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);

    auto* const label = VertexLabel::create(thing, text);
    auto* const other = VertexLabel::create(thing, QStringLiteral("before"));
    other->setText(text);

    QCOMPARE(countOf(meshOf(label)), frontOf(text, label->font()));
    QCOMPARE(countOf(meshOf(other)), frontOf(text, label->font()));
    QCOMPARE(meshOf(other)->text(), text);
}

void tst_VertexLabel::withoutATextNothingIsDrawn()
{
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);
    QCOMPARE(countOf(meshOf(VertexLabel::create(thing, QString()))), 0U);

    auto* const label = VertexLabel::create(thing, QStringLiteral("S 17"));
    for (const char* nothing : {"", " "}) {
        label->setText(QString::fromLatin1(nothing));
        QVERIFY(!meshOf(label));
        label->setText(QStringLiteral("S 18"));
        QCOMPARE(countOf(meshOf(label)), frontOf(QStringLiteral("S 18"), label->font()));
    }
}

void tst_VertexLabel::anotherFontMakesOtherLetters()
{
    Qt3DCore::QEntity root;
    auto* const label = VertexLabel::create(new Thing(&root), QStringLiteral("S 17"));
    QFont font = label->font();
    font.setBold(true);

    label->setFont(font);

    QCOMPARE(meshOf(label)->font(), font);
    QCOMPARE(countOf(meshOf(label)), frontOf(QStringLiteral("S 17"), font));
}

void tst_VertexLabel::anotherMaterialTakesThePlace()
{
    Qt3DCore::QEntity root;
    auto* const label = VertexLabel::create(new Thing(&root), QStringLiteral("S 17"));
    auto* const black = new Qt3DExtras::QPhongMaterial(&root);

    label->setMaterial(black);

    QCOMPARE(label->componentsOfType<Qt3DRender::QMaterial>(), QVector<Qt3DRender::QMaterial*> {black});
}

void tst_VertexLabel::itLiesFlatAlongTheObject_data()
{
    QTest::addColumn<QQuaternion>("rotation");
    QTest::addColumn<QVector3D>("along");
    QTest::newRow("to the north") << QQuaternion() << QVector3D(0, 0, 1);
    QTest::newRow("to the west") << QQuaternion::fromAxisAndAngle(0, 1, 0, 90) << QVector3D(1, 0, 0);
    QTest::newRow("downhill") << QQuaternion::fromAxisAndAngle(1, 0, 0, 20) << QVector3D(0, 0, 1);
    QTest::newRow("downhill to the south-west")
        << QQuaternion::fromAxisAndAngle(0, 1, 0, 135) * QQuaternion::fromAxisAndAngle(1, 0, 0, 20)
        << QVector3D(1, 0, -1).normalized();
    QTest::newRow("rolled") << QQuaternion::fromAxisAndAngle(0, 0, 1, 70) << QVector3D(0, 0, 1);
}

void tst_VertexLabel::itLiesFlatAlongTheObject()
{
    QFETCH(QQuaternion, rotation);
    QFETCH(QVector3D, along);
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);
    thing->setRotation(rotation, Thing::MeasurementType(0));

    const auto* const label = VertexLabel::create(thing, QStringLiteral("S 17"));

    const QQuaternion inScene = rotation * label->rotation();
    QVERIFY(near(inScene.rotatedVector({1, 0, 0}), along));
    QVERIFY(near(inScene.rotatedVector({0, 0, 1}), {0, 1, 0}));
    // Half a metre off, as its height is one.
    QVERIFY(near(label->rotation().rotatedVector(label->position()), {0, 0, 0.5F}));
    QCOMPARE(label->transformFlags(), 1);
}

void tst_VertexLabel::anotherTextDoesNotMoveItFarther()
{
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);
    auto* const label = VertexLabel::create(thing, QStringLiteral("S 17"));
    const QVector3D place = label->position();

    label->setText(QStringLiteral("S 18"));
    QVERIFY(near(label->position(), place));

    // Nor back to where it was before somebody moved it.
    label->move(QVector3D(3, 0, 4));
    label->setText(QStringLiteral("S 19"));
    QVERIFY(near(label->position(), place + QVector3D(3, 0, 4)));
}

void tst_VertexLabel::itIsALabelAndHasItsObjectsOrientation()
{
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);
    const auto* const label = VertexLabel::create(thing, QStringLiteral("S 17"));

    QCOMPARE(label->renderableType(), QString("label"));
    QCOMPARE(label->orientation(), thing->orientation());
    QCOMPARE(VertexLabel(nullptr, QString()).orientation(), QQuaternion());
}

QTEST_MAIN(tst_VertexLabel)
#include "tst_VertexLabel.moc"
