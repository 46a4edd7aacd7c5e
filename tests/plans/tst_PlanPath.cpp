#include "plans/PlanPath.h"

#include <QtTest>

namespace PlanPath = Torvik::View3d::PlanPath;

namespace {
const QString documentation = QStringLiteral("Documentation/");
}

class tst_PlanPath : public QObject {
    Q_OBJECT

private slots:
    void aPlanIsStoredByItsNameInTheDocumentationFolder_data()
    {
        QTest::addColumn<QString>("full");
        QTest::addColumn<QString>("stored");
        QTest::newRow("in the project") << "/data/Mainz/Documentation/Plan.png"
                                        << "Documentation\\Plan.png";
        QTest::newRow("elsewhere") << "/media/usb/Plan.png"
                                   << "Documentation\\Plan.png";
        QTest::newRow("umlauts and blanks") << "/data/Grün au/Lage plan Süd.png"
                                            << "Documentation\\Lage plan Süd.png";
        QTest::newRow("a name alone") << "Plan.png"
                                      << "Documentation\\Plan.png";
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("a folder") << "/data/Mainz/"
                                  << "";
    }

    void aPlanIsStoredByItsNameInTheDocumentationFolder()
    {
        QFETCH(QString, full);
        QFETCH(QString, stored);

        QCOMPARE(PlanPath::stored(full, documentation), stored);
    }

    void aStoredPathLeadsIntoThisProject_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("project");
        QTest::addColumn<QString>("full");
        const QString mainz = QStringLiteral("/data/Mainz/");
        const QString plan = QStringLiteral("/data/Mainz/Documentation/Plan.png");
        QTest::newRow("relative, backslash") << "Documentation\\Plan.png" << mainz << plan;
        QTest::newRow("relative, slash") << "Documentation/Plan.png" << mainz << plan;
        QTest::newRow("other case of the folder") << "DOCUMENTATION\\Plan.png" << mainz << plan;
        QTest::newRow("another folder") << "Pläne\\Plan.png" << mainz << "/data/Mainz/Pläne/Plan.png";
        QTest::newRow("name alone") << "Plan.png" << mainz << "/data/Mainz/Plan.png";
        QTest::newRow("absolute, Windows") << "D:\\Jobs\\Mainz\\Documentation\\Plan.png" << mainz << plan;
        QTest::newRow("absolute, share") << "\\\\server\\jobs\\Mainz\\Documentation\\Plan.png" << mainz << plan;
        QTest::newRow("absolute, other Linux") << "/home/other/Mainz/Documentation/Plan.png" << mainz << plan;
        QTest::newRow("absolute, other folder")
            << "D:\\Mainz\\Pläne\\a\\Plan.png" << mainz << "/data/Mainz/Pläne/a/Plan.png";
        QTest::newRow("absolute, other case") << "d:\\jobs\\MAINZ\\documentation\\Plan.png" << mainz << plan;
        QTest::newRow("absolute, folder twice") << "D:\\Mainz\\old\\Mainz\\Documentation\\Plan.png" << mainz << plan;
        QTest::newRow("absolute, project renamed") << "D:\\Jobs\\Mainz 2019\\Documentation\\Plan.png" << mainz << plan;
        QTest::newRow("from the parent") << "Mainz\\Documentation\\Plan.png" << mainz << plan;
        QTest::newRow("plan called like the project")
            << "Documentation\\Mainz.png" << mainz << "/data/Mainz/Documentation/Mainz.png";
        QTest::newRow("name begins like the project")
            << "Documentation\\Mainz Süd.png" << mainz << "/data/Mainz/Documentation/Mainz Süd.png";
        QTest::newRow("folder of the documents") << "Documentation\\Plan.png"
                                                 << "/data/Documentation/"
                                                 << "/data/Documentation/Documentation/Plan.png";
        QTest::newRow("part of the documents' name") << "Documentation\\Plan.png"
                                                     << "/data/Doc/"
                                                     << "/data/Doc/Documentation/Plan.png";
        QTest::newRow("umlauts") << "C:\\Grünau\\Documentation\\Süd.png"
                                 << "/data/Grünau/"
                                 << "/data/Grünau/Documentation/Süd.png";
        QTest::newRow("no separator at the end") << "Documentation\\Plan.png"
                                                 << "/data/Mainz"
                                                 << "/data/MainzDocumentation/Plan.png";
        QTest::newRow("out of the project") << "..\\..\\home\\me\\Plan.png" << mainz << plan;
        QTest::newRow("out of the documents") << "Documentation/../../Plan.png" << mainz << plan;
        QTest::newRow("absolute and out again") << "D:\\Mainz\\..\\Plan.png" << mainz << plan;
        QTest::newRow("the folder above") << "Documentation\\.." << mainz << "";
        QTest::newRow("dots in the name")
            << "Documentation\\Plan..png" << mainz << "/data/Mainz/Documentation/Plan..png";
        QTest::newRow("nothing stored") << "" << mainz << "";
        QTest::newRow("a folder stored") << "Documentation\\" << mainz << "";
        QTest::newRow("no project") << "Documentation\\Plan.png"
                                    << ""
                                    << "";
        QTest::newRow("no project's folder") << "Documentation\\Plan.png"
                                             << "/"
                                             << "";
    }

    void aStoredPathLeadsIntoThisProject()
    {
        QFETCH(QString, stored);
        QFETCH(QString, project);
        QFETCH(QString, full);

        QCOMPARE(PlanPath::resolved(stored, project, documentation), full);
    }
};

QTEST_APPLESS_MAIN(tst_PlanPath)
#include "tst_PlanPath.moc"
