#include "common/SceneTest.h"
#include "view/LabelReader.h"
#include "view/LabelWindow.h"

using namespace Torvik::View3d;
using Kx::Test::LabelReader;

namespace {

const QStringList names {QStringLiteral("Mühlenstraße Ä7"), QStringLiteral("Łódź-żółć Ęą12"),
                         QStringLiteral("Φρεάτιο Ω3-ώ"), QStringLiteral("Колодец Й-9ё")};

/** With their likes, which a reading that is not sure would take for them. */
QString alphabet()
{
    return names.join(QString()) + QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                                  "ŁÓŹŻĆÖÜИяαρειћ-");
}

} // namespace

/** Names as they are painted: read letter by letter out of the window's picture. */
class tst_LabelNames : public QObject, private Kx::Test::LabelWindow {
    Q_OBJECT

private slots:
    void initTestCase() { openWindow(); }
    void cleanupTestCase() { closeWindow(); }
    void init() { makeProject(); }
    void cleanup() { closeProject(); }

    void lettersOfManyTonguesAreRead_data();
    void lettersOfManyTonguesAreRead();
    void aNameOfTwoHundredLettersIsReadAsFarAsTheWindowGoes();
    void anEmptyNameShowsNothing();
    void pipesAndFindingsAreNamedAtTheirPlaces();
    void linesGoAsTheyCame();
    void aTurnedManholeHasTheSameLabel();

private:
    Node* named(const QString& name)
    {
        const auto record = m_project->addNode(name, "POINT ZM(400200 5600000 100 16)");
        for (int i = 0; i < 100 && !node(record); ++i)
            QTest::qWait(20);
        m_view->lookDown(node(record)->position(), 350.0F);
        rest();
        return node(record);
    }
    QString read(const QImage& picture, const ImageLabel* label) const
    {
        return LabelReader(alphabet()).read(picture, label->coverage(), label->text().size());
    }
};

void tst_LabelNames::lettersOfManyTonguesAreRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("German") << names.at(0);
    QTest::newRow("Polish") << names.at(1);
    QTest::newRow("Greek") << names.at(2);
    QTest::newRow("Cyrillic") << names.at(3);
}

void tst_LabelNames::lettersOfManyTonguesAreRead()
{
    QFETCH(QString, name);
    const ImageLabel* const label = labelOf(named(name));
    QVERIFY(label);

    m_view->keep(QStringLiteral("name-") + QTest::currentDataTag());
    QCOMPARE(read(m_view->grab(), label), LabelReader::plain(name));
}

void tst_LabelNames::aNameOfTwoHundredLettersIsReadAsFarAsTheWindowGoes()
{
    const QString name = LabelReader::plain(names.join('-').repeated(4)).left(200);
    QCOMPARE(name.size(), 200);
    const ImageLabel* const label = labelOf(named(name));
    QVERIFY(label);

    const QString seen = read(m_view->grab(), label);

    // The window shows 800 pixels of the label, from its middle to both sides.
    QVERIFY2(seen.size() > 60, qPrintable(seen));
    const int first = (name.size() - seen.size()) / 2;
    QVERIFY2(seen == name.mid(first, seen.size()) || seen == name.mid(first + 1, seen.size()), qPrintable(seen));
}

void tst_LabelNames::anEmptyNameShowsNothing()
{
    Node* const node = named({});
    QImage picture = m_view->grab();
    QCOMPARE(count(picture, picture.rect(), background(), 12), 0);

    node->setName("NOW");
    rest();
    QCOMPARE(read(m_view->grab(), labelOf(node)), QString("NOW"));

    node->setName({});
    rest();
    picture = m_view->grab();
    QCOMPARE(count(picture, picture.rect(), background(), 12), 0);
}

void tst_LabelNames::pipesAndFindingsAreNamedAtTheirPlaces()
{
    lookDown(230.0F);
    const auto record = m_project->addObservation(m_inspection, "BAB", 2.0);
    auto& entities = SceneEntities::instance();
    QTRY_VERIFY(entities.getObservations().value(record->id()));
    rest();
    Section* const pipe = entities.getPipeEntities().getByInspectionId(m_inspection->id());
    QVERIFY(pipe);
    const auto pixelAt = [&](double along) {
        return m_view->pixelOf(pipe->pipeTransMatrixAtDistance(static_cast<float>(along)).column(3).toVector3D());
    };

    const QImage picture = m_view->grab();
    m_view->keep("label-kinds");

    struct Named {
        const Qt3DCore::QEntity* object;
        QString name;
        QPoint pixel;
        QColor colour;
    };
    for (const Named& named :
         {Named {pipe, "P-7", pixelAt(pipe->length() / 2), background()},
          Named {entities.getObservations().value(record->id()), "BAB", pixelAt(2.0), QColor(63, 175, 249)}}) {
        const ImageLabel* const label = labelOf(named.object);
        QVERIFY2(label, qPrintable(named.name));
        const QRect expected(named.pixel - QPoint(18, 51), QSize(36, 24));
        const QRect drawn = drawnArea(picture, expected, named.colour);
        QVERIFY2((drawn.topLeft() - expected.topLeft()).manhattanLength() <= 4,
                 qPrintable(QString("%1 %2").arg(drawn.left() - expected.left()).arg(drawn.top() - expected.top())));
        QVERIFY(std::abs(drawn.width() - 36) <= 3 && std::abs(drawn.height() - 24) <= 1);
        QVERIFY(count(picture, drawn, named.colour, 12) > drawn.width() * drawn.height() / 3);
        QCOMPARE(read(picture, label), named.name);
    }
}

void tst_LabelNames::linesGoAsTheyCame()
{
    const auto show = [this](bool lines) {
        GlobalNav::instance()->setManholeFullInfoVisible(lines);
        rest();
        return m_view->grab();
    };
    const QImage before = m_view->grab();

    const QImage lines = show(true);
    const ImageLabel* const label = labelOf(m_a);
    QVERIFY(label->text().count('\n') == 3);
    QVERIFY(std::abs(drawnArea(lines, areaOf(label)).height() - 72) <= 1);
    QVERIFY(differing(before, lines) > 2000);

    // In the application's own font from now on, and nothing but manholes' names has changed.
    const QImage after = show(false);
    QCOMPARE(labelOf(m_a)->text(), QString("MH-12"));
    const QRect drawn = drawnArea(after, areaOf(labelOf(m_a)));
    QVERIFY(std::abs(drawn.height() - 24) <= 1);
    QVERIFY(std::abs(drawn.width() - areaOf(labelOf(m_a)).width()) <= 2);
    QVERIFY(count(after, drawn, Qt::white) > drawn.width() * drawn.height() / 25);
    QRect names = drawn | areaOf(labelOf(m_b));
    QVERIFY(names.height() <= 26);
    QVERIFY(differing(before.copy(names), after.copy(names)) > 0);
    const auto withoutNames = [names = names.adjusted(-40, -2, 40, 2)](QImage picture) {
        QPainter(&picture).fillRect(names, Qt::black);
        return picture;
    };
    // A label of another width stands by a part of a pixel beside its place, and with it its pointer.
    QVERIFY(differing(withoutNames(before), withoutNames(after)) < 30);
    QCOMPARE(differing(show(true), lines), 0);
    QCOMPARE(differing(show(false), after), 0);
}

void tst_LabelNames::aTurnedManholeHasTheSameLabel()
{
    const QRect area = areaOf(labelOf(m_a));
    const QImage before = m_view->grab().copy(area);

    node(m_a)->setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 40), TransformFlags::Manual);
    rest();

    QCOMPARE(areaOf(labelOf(m_a)), area);
    QCOMPARE(differing(before, m_view->grab().copy(area)), 0);
    QCOMPARE(read(m_view->grab(), labelOf(m_a)), QString("MH-12"));
}

KX_SCENE_TEST_MAIN(tst_LabelNames)
#include "tst_LabelNames.moc"
