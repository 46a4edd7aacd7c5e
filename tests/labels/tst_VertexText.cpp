#include "labels/VertexText.h"

#include <QFont>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QExtrudedTextMesh>
#include <Qt3DExtras/QPerVertexColorMaterial>
#include <QtTest>

using namespace Torvik::View3d;

namespace {

template <typename Component>
Component* of(const Qt3DCore::QEntity* entity)
{
    const auto found = entity->componentsOfType<Component>();
    return found.size() == 1 ? found.first() : nullptr;
}

const Qt3DCore::QEntity* lettersOf(const VertexText& text)
{
    return text.findChild<Qt3DCore::QEntity*>(QString(), Qt::FindDirectChildrenOnly);
}

QRectF rectOf(const VertexText& text)
{
    return VertexText::getTextRectF(of<Qt3DExtras::QExtrudedTextMesh>(lettersOf(text)));
}

bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < 1e-5F;
}

} // namespace

class tst_VertexText : public QObject {
    Q_OBJECT

private slots:
    void itsLettersAreAMeshOfTheirOwn();
    void theRectangleIsWhatTheLettersFill();
    void aTextOfNothingHasNoRectangle();
    void theAlignmentShiftsByTheRectangle_data();
    void theAlignmentShiftsByTheRectangle();
    void itReadsFromWestToEastAsSeenFromAbove();
    void itIsTurnedAndScaledAboutItsPoint();
};

void tst_VertexText::itsLettersAreAMeshOfTheirOwn()
{
    Qt3DCore::QEntity root;
    VertexText::Params params;
    params.text = QStringLiteral("Größe Ł Ω Ж");
    const auto* const text = new VertexText(&root, params);

    QCOMPARE(text->parentNode(), &root);
    QVERIFY(text->components().isEmpty());
    const auto* const letters = lettersOf(*text);
    QVERIFY(letters);
    const auto* const mesh = of<Qt3DExtras::QExtrudedTextMesh>(letters);
    QVERIFY(mesh);
    QCOMPARE(mesh->depth(), 0.01F);
    QCOMPARE(mesh->text(), params.text);
    QCOMPARE(mesh->font().family(), QString("DejaVuSans"));
    QVERIFY(of<Qt3DExtras::QPerVertexColorMaterial>(letters));
    QVERIFY(of<Qt3DCore::QTransform>(letters));
}

void tst_VertexText::theRectangleIsWhatTheLettersFill()
{
    const VertexText narrow(nullptr, {QStringLiteral("H"), 0, 1, 0, 1});
    const VertexText wide(nullptr, {QStringLiteral("HHH"), 0, 1, 0, 1});

    const QRectF one = rectOf(narrow);
    const QRectF three = rectOf(wide);

    QVERIFY(one.width() > 0.1);
    QVERIFY(one.height() > 0.1);
    QVERIFY2(three.width() > 2.5 * one.width(), qPrintable(QString::number(three.width() / one.width())));
    QVERIFY(qAbs(three.height() - one.height()) < 1e-5);
}

void tst_VertexText::aTextOfNothingHasNoRectangle()
{
    const VertexText text(nullptr, {QString(), 2, 3, 0, 1});

    QVERIFY(rectOf(text).isNull());
    QCOMPARE(text.getTextAlignOffset({QString(), 2, 3, 0, 1}), QVector3D());
}

void tst_VertexText::theAlignmentShiftsByTheRectangle_data()
{
    QTest::addColumn<int>("horizontal");
    QTest::addColumn<int>("vertical");
    QTest::addColumn<float>("widths");
    QTest::addColumn<float>("heights");

    const QVector<float> widths {0, 0.5F, 1, 0, 0.5F, 0};
    for (int alignment = -1; alignment < 5; ++alignment)
        QTest::addRow("horizontally %d", alignment) << alignment << 1 << widths.value(alignment) << 0.0F;
    const QVector<float> heights {-0.5F, 0, -0.5F, -1, 0};
    for (int alignment = -1; alignment < 5; ++alignment)
        QTest::addRow("vertically %d", alignment) << 0 << alignment << 0.0F << heights.value(alignment);
}

void tst_VertexText::theAlignmentShiftsByTheRectangle()
{
    QFETCH(int, horizontal);
    QFETCH(int, vertical);
    QFETCH(float, widths);
    QFETCH(float, heights);
    const VertexText::Params params {QStringLiteral("Schacht 7"), horizontal, vertical, 0, 1};
    const VertexText text(nullptr, params);
    const QRectF rect = rectOf(text);

    const QVector3D offset = text.getTextAlignOffset(params);

    QVERIFY(near(offset, {widths * float(rect.width()), 0, heights * float(rect.height())}));
}

void tst_VertexText::itReadsFromWestToEastAsSeenFromAbove()
{
    const VertexText text(nullptr, {QStringLiteral("H"), 0, 1, 0, 1});

    const QMatrix4x4 matrix = of<Qt3DCore::QTransform>(lettersOf(text))->matrix();

    // With north, +z, at the top of the screen the east is -x. The front of the letters looks up.
    QVERIFY(near(matrix.mapVector({1, 0, 0}), {-1, 0, 0}));
    QVERIFY(near(matrix.mapVector({0, 1, 0}), {0, 0, 1}));
    QVERIFY(near(matrix.mapVector({0, 0, 1}), {0, 1, 0}));
}

void tst_VertexText::itIsTurnedAndScaledAboutItsPoint()
{
    const VertexText text(nullptr, {QStringLiteral("H"), 2, 3, 90, 2});
    const QRectF rect = rectOf(text);

    const QMatrix4x4 matrix = of<Qt3DCore::QTransform>(lettersOf(text))->matrix();

    // A quarter counter-clockwise: the text runs to the north, its upper edge is in the west.
    QVERIFY(near(matrix.mapVector({1, 0, 0}), {0, 0, 2}));
    QVERIFY(near(matrix.mapVector({0, 1, 0}), {2, 0, 0}));
    // The end of the upper edge lies on the point, but for the blank before the letter and below it.
    const QVector3D corner = matrix.map(QVector3D(float(rect.width()), float(rect.height()), 0));
    QVERIFY2(near(corner, {0, 0, 0}), qPrintable(QString::number(double(corner.length()))));
}

QTEST_MAIN(tst_VertexText)
#include "tst_VertexText.moc"
