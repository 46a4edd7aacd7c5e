#include "host/app/InspectionLookup.h"

#include "common/TestProject.h"

using Kx::Test::TestProject;
using Torvik::Viewer::inspectionOfKey;

class tst_InspectionLookup : public QObject {
    Q_OBJECT

private slots:
    void aPipesKeyMeansItsLatestInspection();
    void aKeyOfItsOwnWinsOverThatOfAPipe();
    void lateralsCountToo();
    void anUnknownKeyGivesNone();
};

void tst_InspectionLookup::aPipesKeyMeansItsLatestInspection()
{
    TestProject project;
    const auto pipe = project.addSection("H1", {}, {});
    project.addInspection(pipe, {}, 1, {{"INS_Date", "2024-05-01"}});
    const auto latest = project.addInspection(pipe, {}, 1, {{"INS_Date", "2026-01-01"}, {"INS_Time", "09:30"}});
    project.addInspection(pipe, {}, 1, {{"INS_Date", "2026-01-01"}, {"INS_Time", "08:00"}});

    QCOMPARE(inspectionOfKey(*project.project(), "H1"), latest);
}

void tst_InspectionLookup::aKeyOfItsOwnWinsOverThatOfAPipe()
{
    TestProject project;
    const auto pipe = project.addSection("H1", {}, {});
    const auto first = project.addInspection(pipe, {}, 1, {{"INS_Key", "H2"}});
    project.addInspection(pipe);
    project.addInspection(project.addSection("H2", {}, {}));

    QCOMPARE(inspectionOfKey(*project.project(), "H2"), first);
    QCOMPARE(inspectionOfKey(*project.project(), first->id()), first);
}

void tst_InspectionLookup::lateralsCountToo()
{
    TestProject project;
    const auto inspection = project.addInspection(project.addLateral("L1", {}));

    QCOMPARE(inspectionOfKey(*project.project(), "L1"), inspection);
}

void tst_InspectionLookup::anUnknownKeyGivesNone()
{
    TestProject project;
    project.addInspection(project.addSection("H1", {}, {}));
    project.addSection("H2", {}, {});

    QVERIFY(!inspectionOfKey(*project.project(), "H3"));
    QVERIFY(!inspectionOfKey(*project.project(), "H2"));
    QVERIFY(!inspectionOfKey(*project.project(), {}));
}

QTEST_GUILESS_MAIN(tst_InspectionLookup)
#include "tst_InspectionLookup.moc"
