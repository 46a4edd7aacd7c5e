#include "labels/LabelScene.h"

using namespace Torvik::View3d;

/** How large labels are on the screen, whatever changes around them. */
class tst_LabelSize : public QObject, private Kx::Test::LabelScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void anotherLineHeightReachesLabelsThatStand()
    {
        const ImageLabel* const label = labelAt("M12", {0, 0, 0});

        GlobalNav::instance()->setLabelLineHeight(20.0F);
        rest();

        QVERIFY(std::abs(label->coverage().height() - 48.0) < 0.001);
        QCOMPARE(label->face()->texturePixels(), label->coverage().size().toSize());
    }

    void aWindowOfAnotherSizeKeepsThePixels()
    {
        const ImageLabel* const label = labelAt("M12", {2, 0, 1});
        const QSizeF before = label->coverage().size();

        m_scene->root->setSceneHeight(1400.0);
        rest();

        QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
        QVERIFY(std::abs(label->coverage().width() - before.width()) < 0.01);
        const auto view = *LabelBoard::instance().view();
        const auto anchor = LabelPlacement::onPlane(view, label->parentRenderable()->position());
        const QPointF object = LabelPlacement::pixelOf(view, *anchor);
        QVERIFY(std::abs(label->coverage().center().x() - 0.5 - object.x()) < 0.01);
        QVERIFY(std::abs(label->coverage().top() - 0.5 - (object.y() - 2.12 * 24)) < 0.01);
    }

    void theRoomForANameIsThatOfItsLabel()
    {
        ImageLabel* const label = labelAt("M12", {0, 0, 0});
        auto* const node = qobject_cast<Node*>(label->parentRenderable());
        const auto same = [&] {
            rest();
            const auto room = node->nameTag().coverage(*LabelBoard::instance().view());
            return room && std::abs(room->width() - label->coverage().width()) < 0.01 &&
                   std::abs(room->height() - label->coverage().height()) < 0.01;
        };
        QVERIFY(same());
        const double width = label->coverage().width();

        node->setName(QStringLiteral("M1234567 \U0001D7D9\U0001D7DA"));
        QVERIFY(same());
        QVERIFY(label->coverage().width() > 2 * width);
        GlobalNav::instance()->setManholeFullInfoVisible(true);
        QVERIFY(same());
        GlobalNav::instance()->setManholeFullInfoVisible(false);
        QVERIFY(same());
    }

    void aLongNameWithLinesIsStretchedMore()
    {
        const ImageLabel* const label = labelAt("ABCDEFGHIJKLMNOPQRST", {0, 0, 0});

        GlobalNav::instance()->setManholeFullInfoVisible(true);
        QCOMPARE(label->font().stretch(), 12);
        QCOMPARE(label->font().wordSpacing(), -5.0);

        GlobalNav::instance()->setManholeFullInfoVisible(false);
        QCOMPARE(label->font().weight(), 50);
        QCOMPARE(label->font().pointSize(), 24);
    }

private:
    ImageLabel* labelAt(const QString& name, const QVector3D& place)
    {
        ImageLabel* const label = labelOf(nodeAt(name, place));
        rest();
        return label;
    }
};

QTEST_MAIN(tst_LabelSize)
#include "tst_LabelSize.moc"
