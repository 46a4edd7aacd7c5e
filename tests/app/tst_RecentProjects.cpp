#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "host/app/RecentProjects.h"
#include "host/domain/HostSettings.h"

using Kx::Test::TestProject;
using Torvik::Viewer::RecentProjects;

/** The projects opened last, in the settings. */
class tst_RecentProjects : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        Torvik::Base::HostSettings::setSettingsFile(m_folder->filePath("settings.ini"));
    }
    void theLatestComesFirstAndOnce();
    void tenAreKept();
    void theyAreThereAtTheNextStart();
    void aMissingFolderIsMarkedAndRemovable();
    void brokenSettingsGiveNone();

private:
    static QStringList folders(const RecentProjects& recent)
    {
        QStringList found;
        for (int i = 0; i < recent.rowCount(); ++i)
            found << recent.index(i).data(RecentProjects::FolderRole).toString();
        return found;
    }

    QScopedPointer<QTemporaryDir> m_folder;
};

void tst_RecentProjects::theLatestComesFirstAndOnce()
{
    RecentProjects recent;
    recent.add("/towns/a");
    recent.add("/towns/b/");
    recent.add("/towns/x/../a");

    QCOMPARE(folders(recent), QStringList({"/towns/a", "/towns/b"}));
    QCOMPARE(recent.index(1).data(RecentProjects::NameRole).toString(), QStringLiteral("b"));
}

void tst_RecentProjects::tenAreKept()
{
    RecentProjects recent;
    for (int i = 0; i < 12; ++i)
        recent.add(QString("/towns/%1").arg(i));

    QCOMPARE(recent.count(), 10);
    QCOMPARE(folders(recent).first(), QStringLiteral("/towns/11"));
    QCOMPARE(folders(recent).last(), QStringLiteral("/towns/2"));
}

void tst_RecentProjects::theyAreThereAtTheNextStart()
{
    RecentProjects before;
    before.add(QString::fromUtf8("/städte, alle/\"a\" b"));
    before.add("/towns/c");

    const RecentProjects after;

    QCOMPARE(folders(after), QStringList({"/towns/c", QString::fromUtf8("/städte, alle/\"a\" b")}));
}

void tst_RecentProjects::aMissingFolderIsMarkedAndRemovable()
{
    TestProject project;
    RecentProjects recent;
    recent.add(project.path());
    recent.add("/towns/gone");
    QVERIFY(recent.index(0).data(RecentProjects::MissingRole).toBool());
    QVERIFY(!recent.index(1).data(RecentProjects::MissingRole).toBool());

    recent.remove("/towns/gone");

    QCOMPARE(folders(recent), QStringList({project.path()}));
}

void tst_RecentProjects::brokenSettingsGiveNone()
{
    Torvik::Base::CApplicationSettings::instance().setCustomSetting("RecentProjects", "[1, {\"a\": ");
    RecentProjects recent;
    QCOMPARE(recent.count(), 0);
    recent.add("/towns/a");
    QCOMPARE(recent.count(), 1);
}

QTEST_GUILESS_MAIN(tst_RecentProjects)
#include "tst_RecentProjects.moc"
