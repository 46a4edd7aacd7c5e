#include "labels/LabelPositions.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QtTest>

#include <limits>

using namespace Torvik::View3d;

Q_DECLARE_METATYPE(Torvik::View3d::LabelPositions)

class tst_LabelPositions : public QObject {
    Q_OBJECT

private slots:
    void readsAnObjectAMember()
    {
        const LabelPositions read = labelPositionsFromJson(
            R"({"{a}": {"x": 1.5, "y": -2, "z": 3e2}, "Schächte, Łódź, Αθήνα": {"z": 0, "y": 0, "x": 0.25}, "": {"x": 9}})");

        QCOMPARE(read, (LabelPositions {{"{a}", {1.5F, -2.0F, 300.0F}},
                                        {QString::fromUtf8("Schächte, Łódź, Αθήνα"), {0.25F, 0.0F, 0.0F}},
                                        {"", {9.0F, 0.0F, 0.0F}}}));
    }

    void wrongTypesCostAtMostTheirEntry_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<LabelPositions>("expected");
        const LabelPositions none;
        QTest::newRow("number") << QByteArray("5") << none;
        QTest::newRow("text") << QByteArray("\"1, 2, 3\"") << none;
        QTest::newRow("array") << QByteArray("[1, 2, 3]") << none;
        QTest::newRow("null") << QByteArray("null") << none;
        QTest::newRow("beyond a float") << QByteArray(R"({"x": 1, "y": 1e39, "z": 1})") << none;
        QTest::newRow("far beyond a float") << QByteArray(R"({"x": 1, "y": 1, "z": -1e300})") << none;
        QTest::newRow("a text for a number")
            << QByteArray(R"({"x": "1", "y": 2, "z": 3})") << LabelPositions {{"bad", {0.0F, 2.0F, 3.0F}}};
        QTest::newRow("nothing inside") << QByteArray("{}") << LabelPositions {{"bad", {}}};
        QTest::newRow("an object for a number")
            << QByteArray(R"({"x": 1, "y": {"y": 7}, "z": 3})") << LabelPositions {{"bad", {1.0F, 0.0F, 3.0F}}};
    }

    void wrongTypesCostAtMostTheirEntry()
    {
        QFETCH(QByteArray, entry);
        QFETCH(LabelPositions, expected);
        expected.insert("good", {1.0F, 2.0F, 3.0F});

        QCOMPARE(labelPositionsFromJson(R"({"bad": )" + entry + R"(, "good": {"x": 1, "y": 2, "z": 3}})"), expected);
    }

    void whatIsNoObjectHoldsNoPositions_data()
    {
        QTest::addColumn<QByteArray>("json");
        const QByteArray whole = R"({"a": {"x": 1, "y": 2, "z": 3}})";
        QByteArray noise(1 << 20, '\0');
        auto random = QRandomGenerator(7);
        std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random.bounded(256)); });
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << whole.left(whole.size() - 2);
        QTest::newRow("more behind it") << whole + whole;
        QTest::newRow("an array") << "[" + whole + "]";
        QTest::newRow("a text") << QByteArray("\"a\"");
        QTest::newRow("Latin-1") << QByteArray("{\"Sch\xE4"
                                               "chte\": {\"x\": 1, \"y\": 2, \"z\": 3}}");
        QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char*>(u"{\"a\": {}}"), 18);
        QTest::newRow("zeros") << QByteArray(1 << 20, '\0');
        QTest::newRow("noise") << noise;
        QTest::newRow("noise in braces") << "{\"" + noise + "\": {}}";
        QTest::newRow("nested without end") << QByteArray("{\"a\":").repeated(1 << 20);
        QTest::newRow("NaN") << QByteArray(R"({"a": {"x": NaN, "y": 2, "z": 3}})");
    }

    void whatIsNoObjectHoldsNoPositions()
    {
        QFETCH(QByteArray, json);

        QCOMPARE(labelPositionsFromJson(json), LabelPositions());
    }

    void everyFloatComesBackAsItWas()
    {
        LabelPositions positions;
        auto random = QRandomGenerator(1);
        for (int i = 0; i < 1000; ++i) {
            const auto number = [&] { return static_cast<float>((random.generateDouble() - 0.5) * 1e4); };
            positions.insert(QString::number(i), {number(), number(), number()});
        }
        positions.insert(QStringLiteral("limits"),
                         {std::numeric_limits<float>::max(), std::numeric_limits<float>::min(), -0.1F});

        const LabelPositions back = labelPositionsFromJson(jsonFromLabelPositions(positions));

        // Without tolerance, which == of vectors and QCOMPARE of floats would have.
        QCOMPARE(back.size(), positions.size());
        for (auto entry = positions.begin(); entry != positions.end(); ++entry) {
            for (int axis = 0; axis < 3; ++axis) {
                QVERIFY2(back.value(entry.key())[axis] == entry.value()[axis], qPrintable(entry.key()));
            }
        }
    }

    void writesIndentedUtf8()
    {
        const QByteArray json = jsonFromLabelPositions({{QString::fromUtf8("Łódź"), {1.5F, -2.0F, 0.0F}}});

        QCOMPARE(json, QByteArray("{\n    \"Łódź\": {\n        \"x\": 1.5,\n        \"y\": -2,\n        \"z\": 0\n    "
                                  "}\n}\n"));
    }

    void whatIsNoNumberIsNotWritten()
    {
        const float infinite = std::numeric_limits<float>::infinity();
        const float nan = std::numeric_limits<float>::quiet_NaN();

        const QByteArray json =
            jsonFromLabelPositions({{"a", {infinite, 0, 0}}, {"b", {1, 2, 3}}, {"c", {0, nan, 0}}, {"d", {0, 0, nan}}});

        QCOMPARE(QJsonDocument::fromJson(json).object().keys(), QStringList {"b"});
    }
};

QTEST_GUILESS_MAIN(tst_LabelPositions)
#include "tst_LabelPositions.moc"
