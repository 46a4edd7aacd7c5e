#include "labels/LabelScene.h"

#include "labels/PaintedTextureText.h"

#include <QPainter>
#include <QSignalSpy>

using namespace Torvik::View3d;

/** What the label of a real object says, when it is shown, how large it is and how often it is painted. */
class tst_ImageLabel : public QObject, private Kx::Test::LabelScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aNodeHasALabelThatSaysItsName();
    void whatIsSetTwiceIsToldOnce();
    void aHeightThatDiffersByNoiseIsTheSame();
    void aLabelIsShownOnlyIfBothSwitchesAreOn();
    void aLabelStandsCentredAboveItsObject();
    void itsSizeIsInPixels_data();
    void itsSizeIsInPixels();
    void aNamelessObjectHasNoLabelToBeSeen();
    void severalLinesOnAndOff();
    void aNameThatComesWhileLinesAreShownGetsThemToo();
    void afterAChangeTheLinesStay();
    void longAndForeignNames_data();
    void longAndForeignNames();
    void nothingIsPaintedTwice();
};

void tst_ImageLabel::aNodeHasALabelThatSaysItsName()
{
    Node* const node = nodeAt("M12", {1, 0, 2});

    ImageLabel* const label = labelOf(node);

    QVERIFY(label);
    QCOMPARE(label->text(), QString("M12"));
    QCOMPARE(label->property("text").toString(), QString("M12"));
    QCOMPARE(label->renderableType(), QString("label"));
    QCOMPARE(label->guid(), node->guid());
    QCOMPARE(label->parentNode(), static_cast<Qt3DCore::QNode*>(node));
    QCOMPARE(label->parentRenderable(), static_cast<Renderable*>(node));
    QCOMPARE(label->orientation(), node->orientation());
    QCOMPARE(label->textColor(), QColor("white"));
    QCOMPARE(label->backgroundColor(), QColor(64, 135, 249));
    QCOMPARE(label->font().family(), QString("DejaVu Sans Mono"));
    QCOMPARE(label->font().pointSize(), 24);
    QCOMPARE(node->getLabel(), static_cast<Label*>(label));
}

void tst_ImageLabel::whatIsSetTwiceIsToldOnce()
{
    ImageLabel* const label = labelOf(nodeAt("A", {0, 0, 0}));
    const QSignalSpy texts(label, &Label::textChanged);
    const QSignalSpy fonts(label, &Label::fontChanged);
    const QSignalSpy visibilities(label, &Label::visibleChanged);
    QFont larger = label->font();
    larger.setPointSize(30);

    for (int i = 0; i < 2; ++i) {
        label->setText("B");
        label->setFont(larger);
        label->setVisible(false);
    }

    QCOMPARE(texts.count(), 1);
    QCOMPARE(texts.first().first().toString(), QString("B"));
    QCOMPARE(fonts.count(), 1);
    QCOMPARE(visibilities.count(), 1);
    QCOMPARE(visibilities.first().first().toBool(), false);
}

void tst_ImageLabel::aHeightThatDiffersByNoiseIsTheSame()
{
    ImageLabel* const label = labelOf(nodeAt("A", {0, 0, 0}));
    label->setHeight(2.0F);
    const QSignalSpy heights(label, &Label::heightChanged);
    const float width = label->width();

    label->setHeight(2.00001F);
    QCOMPARE(heights.count(), 0);
    QCOMPARE(label->height(), 2.0F);

    label->setHeight(4.0F);
    QCOMPARE(heights.count(), 1);
    QCOMPARE(label->width(), 2.0F * width);
}

void tst_ImageLabel::aLabelIsShownOnlyIfBothSwitchesAreOn()
{
    GlobalNav::instance()->setLabelsVisible(false);
    ImageLabel* const label = labelOf(nodeAt("A", {0, 0, 0}));
    QVERIFY(!label->isEnabled());

    label->setVisible(false);
    label->setVisible(true);
    QVERIFY(!label->isEnabled());

    GlobalNav::instance()->setLabelsVisible(true);
    QVERIFY(label->isEnabled());

    label->setVisible(false);
    QVERIFY(!label->isEnabled());
    GlobalNav::instance()->setLabelsVisible(false);
    GlobalNav::instance()->setLabelsVisible(true);
    QVERIFY(!label->isEnabled());
}

void tst_ImageLabel::aLabelStandsCentredAboveItsObject()
{
    Node* const node = nodeAt("M12", {1, 0, 2});
    rest();

    const ImageLabel* const label = shown(node);

    QVERIFY(label);
    const QPointF object = pixelOf(node->position());
    const QRectF covered = label->coverage();
    QVERIFY(std::abs(covered.center().x() - 0.5 - object.x()) < 0.01);
    QVERIFY(std::abs(covered.top() - 0.5 - (object.y() - 2.12 * 24)) < 0.01);
    // The pointer ends at the object.
    const auto view = *LabelBoard::instance().view();
    const QVector3D tip = label->storedOffset();
    const double perPixel = static_cast<double>(LabelPlacement::metresPerPixel(view));
    QVERIFY(std::abs(static_cast<double>(-tip.x()) / perPixel) < 0.01);
    QVERIFY(std::abs(static_cast<double>(-tip.y()) / perPixel - (2.12 * 24 - 12)) < 0.01);
}

void tst_ImageLabel::itsSizeIsInPixels_data()
{
    QTest::addColumn<float>("viewed");
    for (const float viewed : {50.0F, 350.0F, 2000.0F, 100000.0F})
        QTest::newRow(qPrintable(QString::number(static_cast<double>(viewed)))) << viewed;
}

void tst_ImageLabel::itsSizeIsInPixels()
{
    QFETCH(float, viewed);
    Node* const node = nodeAt("M12345", {0.3F, 0, 0.2F});
    m_camera->setFarPlane(viewed * 2);
    look({0, 0, 0}, viewed);

    const ImageLabel* const label = shown(node);

    QVERIFY(label);
    QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
    const QFontMetricsF metrics(label->font());
    const double aspect = metrics.horizontalAdvance("M12345") / metrics.height();
    QVERIFY(std::abs(label->coverage().width() - 24.0 * aspect) < 0.01);
    QCOMPARE(label->face()->texturePixels(), label->coverage().size().toSize());
}

void tst_ImageLabel::aNamelessObjectHasNoLabelToBeSeen()
{
    Node* const node = nodeAt("", {0, 0, 0});
    rest();
    QVERIFY(!node->findChild<ImageLabel*>());
    ImageLabel* const label = labelOf(node);
    QVERIFY(!label->hasMesh());
    QVERIFY(!label->textBoundingBoxNotEmpty());

    const QSignalSpy told(label, &Renderable::visibilityChanged);
    node->setName("A");
    rest();
    QVERIFY(shown(node));
    QCOMPARE(told.count(), 1);

    Node* const blank = nodeAt(" \t", {3, 0, 0});
    rest();
    QVERIFY(!blank->findChild<ImageLabel*>());
    QCOMPARE(LabelBoard::instance().drawnCount(), 1);

    node->setName("");
    rest();
    QVERIFY(!shown(node));
    QVERIFY(!label->hasMesh());
    QCOMPARE(told.count(), 2);
    QCOMPARE(told.last().first().toBool(), false);
}

void tst_ImageLabel::severalLinesOnAndOff()
{
    Node* const node = nodeAt("M12", {0, 0, 0});
    rest();
    const QString info = node->getFullManholeInfo();

    GlobalNav::instance()->setManholeFullInfoVisible(true);
    rest();
    const ImageLabel* label = shown(node);
    QVERIFY(label);
    QCOMPARE(label->text(), " M12" + info);
    QCOMPARE(node->name(), " M12" + info);
    QVERIFY(label->isMultiline());
    QCOMPARE(label->font().pointSize(), 288);
    QCOMPARE(label->font().stretch(), 8);
    QVERIFY(std::abs(label->coverage().height() - 72.0) < 0.001);
    // Its texture is as large as what is seen of it, not as its letters.
    QCOMPARE(label->face()->texturePixels(), label->coverage().size().toSize());

    GlobalNav::instance()->setManholeFullInfoVisible(false);
    rest();
    label = shown(node);
    QVERIFY(label);
    QCOMPARE(node->name(), QString("M12"));
    QVERIFY(!label->isMultiline());
    QCOMPARE(label->font().pointSize(), 24);
    QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
}

void tst_ImageLabel::aNameThatComesWhileLinesAreShownGetsThemToo()
{
    GlobalNav::instance()->setManholeFullInfoVisible(true);
    Node* const node = nodeAt("M12", {0, 0, 0});
    ImageLabel* const label = labelOf(node);
    const float height = label->height();
    QVERIFY(label->isMultiline());
    QVERIFY(label->text().startsWith(" M12\n DN + "));

    // The factor is applied once more; the next look at the screen sets it right.
    node->setName("M13");
    QVERIFY(label->text().startsWith(" M13\n DN + "));
    QVERIFY(std::abs(label->height() / height - 3.0F) < 1e-4F);
    rest();
    QVERIFY(std::abs(label->coverage().height() - 72.0) < 0.001);
}

void tst_ImageLabel::afterAChangeTheLinesStay()
{
    Node* const node = nodeAt("M12", {0, 0, 0});
    GlobalNav::instance()->setManholeFullInfoVisible(true);
    const QString lines = node->name();
    node->setDepth(7.5);

    GlobalNav::instance()->setManholeFullInfoVisible(false);

    QCOMPARE(node->name(), lines.trimmed());
}

void tst_ImageLabel::longAndForeignNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("umlauts") << QStringLiteral("Mühlenstraße Ä7");
    QTest::newRow("Polish") << QStringLiteral("Łódź-żółć 12");
    QTest::newRow("Greek") << QStringLiteral("Φρεάτιο Ω3");
    QTest::newRow("Cyrillic") << QStringLiteral("Колодец Й-9");
    QTest::newRow("beyond the first plane") << QStringLiteral("𝟙𝟚 M");
    QTest::newRow("200 letters") << QString(200, 'W');
    QTest::newRow("lines") << QStringLiteral("one\ntwo");
}

void tst_ImageLabel::longAndForeignNames()
{
    QFETCH(QString, name);
    Node* const node = nodeAt(name, {0, 0, 0});
    rest();

    const ImageLabel* const label = shown(node);

    QVERIFY(label);
    QCOMPARE(label->text(), name);
    QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
    const QSize pixels = label->face()->texturePixels();
    QVERIFY(pixels.width() > 20 && pixels.width() <= 4096);
    QImage picture(pixels, QImage::Format_RGB32);
    QPainter painter(&picture);
    paintLabel(painter, pixels, {name, label->font(), Qt::white, label->backgroundColor(), false});
    painter.end();
    // Every tenth of the label has letters: none is cut off, and none is a gap.
    for (int part = 0; part < 10; ++part) {
        int letters = 0;
        for (int x = part * pixels.width() / 10; x < (part + 1) * pixels.width() / 10; ++x) {
            for (int y = 0; y < pixels.height(); ++y)
                letters += qGray(picture.pixel(x, y)) > 200 ? 1 : 0;
        }
        QVERIFY2(letters > 0 || name.contains(' '), qPrintable(QString::number(part)));
    }
}

void tst_ImageLabel::nothingIsPaintedTwice()
{
    const int atFirst = PaintedTextureText::paintings();
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 1);

    look({1, 0, 1}, 200.0F);
    GlobalNav::instance()->setLabelsVisible(false);
    rest();
    GlobalNav::instance()->setLabelsVisible(true);
    rest();
    drag(labelOf(node), QVector3D(5, 5, 0));
    node->setPosition({1, 0, 0}, 0);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 1);

    node->setName("AB");
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 2);

    GlobalNav::instance()->setManholeFullInfoVisible(true);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 3);
    node->setName("ABC");
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 4);
    GlobalNav::instance()->setManholeFullInfoVisible(false);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 5);
    QVERIFY(shown(node));
}

QTEST_MAIN(tst_ImageLabel)
#include "tst_ImageLabel.moc"
