#include "host/app/PlanUnits.h"
#include "host/drawing/DrawingJournal.h"
#include "host/drawing/DrawingTask.h"
#include "host_drawing/DxfText.h"

#include <QtTest>

#include <atomic>
#include <cmath>
#include <memory>

namespace PlanUnits = Torvik::Viewer::PlanUnits;
using Torvik::DXF::DrawingReport;

/** Which units of a drawing are believed. */
class tst_PlanUnits : public QObject {
    Q_OBJECT

private slots:
    void unitsAreBelievedWhereTheyCanBeTrue_data()
    {
        QTest::addColumn<double>("told");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("fromOrigin");
        QTest::addColumn<double>("metres");
        QTest::newRow("nothing told") << 0.0 << 12000.0 << 0.0 << 1.0;
        QTest::newRow("metres") << 1.0 << 12.0 << 0.0 << 1.0;
        QTest::newRow("a house in millimetres") << 0.001 << 12000.0 << 6000.0 << 0.001;
        QTest::newRow("a street in metres that says millimetres") << 0.001 << 300.0 << 0.0 << 1.0;
        QTest::newRow("a town in national metres that says millimetres") << 0.001 << 9000.0 << 5.8e6 << 1.0;
        QTest::newRow("a town in national feet") << 0.3048 << 9000.0 << 5.8e6 << 0.3048;
        QTest::newRow("a street in metres that says kilometres") << 1000.0 << 300.0 << 0.0 << 1.0;
        QTest::newRow("a region in kilometres") << 1000.0 << 30.0 << 0.0 << 1000.0;
    }

    void unitsAreBelievedWhereTheyCanBeTrue()
    {
        DrawingReport drawing;
        QFETCH(double, told);
        QFETCH(double, width);
        QFETCH(double, fromOrigin);
        drawing.metresPerUnit = told;
        drawing.width = width;
        drawing.fromOrigin = fromOrigin;

        QTEST(PlanUnits::metresPerUnit(drawing), "metres");
        QCOMPARE(PlanUnits::note(drawing, "a.dxf").isEmpty(), told == 0.0 || told == 1.0);
    }

    void aDrawingIsMeasuredWhereItLies()
    {
        using namespace Kx::Test;
        const QTemporaryDir folder;
        const QByteArray walls =
            Dxf::line(0x20, 400000, 5600000, 400030, 5600000) + Dxf::line(0x21, 400030, 5600000, 400030, 5600020);
        const QString path = written(folder, "national.dxf", Dxf::drawing(walls));

        const DrawingReport report =
            Torvik::DXF::readToMeshes(path, std::make_shared<const std::atomic<bool>>(false)).report;

        QCOMPARE(report.width, 30.0);
        QVERIFY(qAbs(report.fromOrigin - std::hypot(400015.0, 5600010.0)) < 100.0);
    }
};

QTEST_GUILESS_MAIN(tst_PlanUnits)
#include "tst_PlanUnits.moc"
