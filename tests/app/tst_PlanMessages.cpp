#include "host/app/PlanMessages.h"
#include "host/domain/HostSettings.h"
#include "host/drawing/DrawingTask.h"
#include "host/modules/Language.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace PlanMessages = Torvik::Viewer::PlanMessages;
using Torvik::Viewer::Language;

/** What the user is told of a plan that cannot be read, in both languages. */
class tst_PlanMessages : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Torvik::Base::HostSettings::setSettingsFile(m_folder.filePath("settings.ini")); }
    void cleanup() { Language::instance().choose("en"); }

    void aFileThatCannotBeReadIsToldByItsContents_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("german");
        const QByteArray dxf = "0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n";
        const QByteArray pdf = "%PDF-1.4";
        const QByteArray png = "\x89PNG\r\n";
        const auto row = [](const char* tag, const char* name, const QByteArray& contents, const char* english,
                            const char* german) {
            QTest::newRow(tag) << QString(name) << contents << QString(english) << QString::fromUtf8(german);
        };
        row("empty picture", "a.png", {}, "is empty", "Datei ist leer");
        row("empty PDF", "a.pdf", {}, "is empty", "Datei ist leer");
        row("empty drawing", "a.dxf", {}, "is empty", "a.dxf ist leer");
        row("drawing under a picture's name", "a.png", dxf, "a DXF file. Rename", "eine DXF-Datei. Benennen");
        row("PDF under a picture's name", "a.jpg", pdf, "a PDF file. Rename", "eine PDF-Datei. Benennen");
        row("DWG under a PDF's name", "a.pdf", "AC1032\n", "a DWG file. Rename", "eine DWG-Datei. Benennen");
        row("picture under a PDF's name", "a.pdf", png, "a PNG file. Rename", "eine PNG-Datei. Benennen");
        row("PDF under a drawing's name", "a.dxf", pdf, "but a PDF file. Rename", "sondern eine PDF-Datei. Benennen");
        row("broken PDF", "a.pdf", pdf, "locked by a password", "mit einem Passwort gesperrt");
        row("broken picture", "a.png", png, "picture program", "Bildprogramm");
        row("picture of another ending", "a.jpg", png, "picture program", "Bildprogramm");
        row("binary drawing", "a.dxf", "AutoCAD Binary DXF\r\n\x1a", "in binary form", "in binärer Form");
        row("drawing of another version", "a.dwg", "AC1032\n", "DWG 2018 drawing (AC1032)", "Version 2018 (AC1032)");
        row("drawing cut off", "a.dxf", dxf.left(28), "is cut off", "ist abgeschnitten");
    }

    void aFileThatCannotBeReadIsToldByItsContents()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, contents);
        QFETCH(QString, english);
        QFETCH(QString, german);
        const QString path = m_folder.filePath(name);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
        file.close();

        for (const QString& code : Language::codes()) {
            Language::instance().choose(code);
            if (name.endsWith("dxf") || name.endsWith("dwg"))
                read(path);
            const QString told = PlanMessages::unreadable(path);
            const QString wanted = code == "de" ? german : english;
            QVERIFY2(told.contains(wanted) && told.contains(name), qPrintable(told));
        }
    }

    void aCopyIsToldUnderTheNameThatTheUserKnows()
    {
        const QString copy = m_folder.filePath("site-2.dxf");
        QFile file(copy);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        read(copy);

        const QString told = PlanMessages::unreadable("/far/away/site.dxf", copy);

        QVERIFY2(told.startsWith("site.dxf is empty"), qPrintable(told));
    }

    void whatIsNotDrawnIsNoted()
    {
        const QString path = m_folder.filePath("rays.dxf");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("0\nSECTION\n2\nENTITIES\n0\nLINE\n5\n1\n8\n0\n10\n0\n20\n0\n11\n1\n21\n1\n"
                   "0\nRAY\n5\n2\n8\n0\n10\n0\n20\n0\n11\n1\n21\n0\n0\nENDSEC\n0\nEOF\n");
        file.close();
        Language::instance().choose("de");
        read(path);

        const QString told = PlanMessages::notes(path);

        QVERIFY2(told.contains("rays.dxf") && told.contains("fehlen: 1 RAY"), qPrintable(told));
        QVERIFY(PlanMessages::notes(m_folder.filePath("never-read.dxf")).isEmpty());
    }

    void aPathFromHereIsKnownToo()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder.path()));
        QFile file("here.dxf");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        read(m_folder.filePath("here.dxf"));

        const QString told = PlanMessages::unreadable("here.dxf");

        QVERIFY2(told.startsWith("here.dxf is empty. Copy"), qPrintable(told));
        QVERIFY(QDir::setCurrent(before));
    }

private:
    static void read(const QString& path)
    {
        Torvik::DXF::DrawingJournal::write(
            Torvik::DXF::readToMeshes(path, std::make_shared<std::atomic<bool>>(false)).report);
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_PlanMessages)
#include "tst_PlanMessages.moc"
