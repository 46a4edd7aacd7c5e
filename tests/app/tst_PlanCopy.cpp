#include "host/app/PlanCopy.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace PlanCopy = Torvik::Viewer::PlanCopy;

/** What a plan's file is called in the project. */
class tst_PlanCopy : public QObject {
    Q_OBJECT

private slots:
    void namesAreOnesThatTheLoaderKnows_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("copied");
        QTest::newRow("/a/site.png") << "site.png" << false;
        QTest::newRow("/a/site.DXF") << "site.DXF" << false;
        QTest::newRow("/a/site.v2.tif") << "site.v2.tiff" << true;
        QTest::newRow("/a/SITE.TIF") << "SITE.tiff" << true;
        QTest::newRow("/a/site.PDF") << "site.pdf" << true;
        QTest::newRow("/a/site.pdf") << "site.pdf" << true;
    }

    void namesAreOnesThatTheLoaderKnows()
    {
        const QString path = QTest::currentDataTag();

        QTEST(PlanCopy::loadableName(path), "name");
        QTEST(PlanCopy::needsCopy(path), "copied");
    }

    void noDocumentIsWrittenOver()
    {
        put("site.png");
        put("site-2.png");

        QCOMPARE(PlanCopy::freeName("/a/new.png", folder(), {}), QString("new.png"));
        QCOMPARE(PlanCopy::freeName("/a/site.png", folder(), {}), QString("site-3.png"));
        // What a PDF becomes counts.
        QCOMPARE(PlanCopy::freeName("/a/site.pdf", folder(), {}), QString("site-3.pdf"));
        QCOMPARE(PlanCopy::freeName("/a/site.tif", folder(), {}), QString("site.tiff"));
    }

    void theOldPlansNameMayBeTaken()
    {
        put("site.png");

        QCOMPARE(PlanCopy::freeName("/a/site.png", folder(), folder() + "site.png"), QString("site.png"));
        // Its picture comes before that plan is sure to go.
        QCOMPARE(PlanCopy::freeName("/a/site.pdf", folder(), folder() + "site.png"), QString("site-2.pdf"));
        QCOMPARE(PlanCopy::freeName("/a/site.png", folder(), folder() + "other.png"), QString("site-2.png"));
    }

    void namesAreOnesThatPlanXmlCanHold_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("/a/back\\slash.png") << "back_slash.png";
        QTest::newRow("/a/two\nlines.dxf") << "two_lines.dxf";
        QTest::newRow("/a/ blank .png") << "blank.png";
    }

    void namesAreOnesThatPlanXmlCanHold()
    {
        QTEST(PlanCopy::loadableName(QTest::currentDataTag()), "name");
        QVERIFY(PlanCopy::needsCopy(QTest::currentDataTag()));
    }

    void aLongNameLeavesRoomForWhatComesToIt()
    {
        const QString name = PlanCopy::loadableName("/a/" + QString(240, QChar(0xFC)) + ".png");

        QCOMPARE(name, QString(100, QChar(0xFC)) + ".png");
    }

    void aCopyThatIsCancelledIsNotThere()
    {
        put("site.png");

        QCOMPARE(PlanCopy::copy(folder() + "site.png", folder() + "copy.png", true), QString());

        QCOMPARE(QDir(folder()).entryList(QDir::Files), QStringList("site.png"));
    }

    void aCopyCanBeWrittenTo()
    {
        put("closed.png");
        QVERIFY(QFile::setPermissions(folder() + "closed.png", QFile::ReadOwner));

        QCOMPARE(PlanCopy::copy(folder() + "closed.png", folder() + "copy.png", false), QString());

        QVERIFY(QFile::permissions(folder() + "copy.png") & QFile::WriteOwner);
        QVERIFY(!PlanCopy::copy(folder() + "missing.png", folder() + "other.png", false).isEmpty());
        QVERIFY(!QFile::exists(folder() + "other.png"));
    }

    void cleanup()
    {
        for (const QString& name : QDir(folder()).entryList(QDir::Files))
            QFile::remove(folder() + name);
    }

private:
    QString folder() const { return m_folder.path() + '/'; }
    void put(const QString& name) const
    {
        QFile file(folder() + name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("x") == 1);
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_PlanCopy)
#include "tst_PlanCopy.moc"
