#include "common/SharedData.h"
#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "geo/GdalGeoProjector.h"
#include "plans/HeardOfLoader.h"
#include "plans/PlanLoader.h"
#include "scene/SceneRoot.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::Heard;

namespace {

/** As the view's loader takes it: pictures of this kind by their longer ending. */
QString nameOfCopy(const QString& real)
{
    const QString name = QFileInfo(real).fileName();
    return name.endsWith(QLatin1String(".tif")) ? name + QLatin1Char('f') : name;
}

} // namespace

/** Pictures and pages as other programs write them, up to the plan that they become. */
class tst_RealPlans : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SceneRoot::registerMetaTypes(); }
    void init();
    void cleanup();
    void everyFileBecomesAPlan_data();
    void everyFileBecomesAPlan();
    void cutInHalfItIsToldOnce_data() { everyFileBecomesAPlan_data(); }
    void cutInHalfItIsToldOnce();

private:
    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<Kx::Test::TestProject> m_project;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_RealPlans::init()
{
    m_root = std::make_unique<SceneRoot>();
    m_root->qmlOnCompleted();
    m_project = std::make_unique<Kx::Test::TestProject>(QStringLiteral("EPSG:25832"));
    m_project->activate();
    m_folder = std::make_unique<QTemporaryDir>();
    // Where a page's picture goes.
    QVERIFY(QDir().mkpath(m_project->path() + Torvik::Base::CFileSystemNames::documentationPathPart()));
}

void tst_RealPlans::cleanup()
{
    m_project.reset();
    m_root.reset();
}

void tst_RealPlans::everyFileBecomesAPlan_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");
    for (const char* picture :
         {"derived_isybau2013_plan_epsg25832.tif", "derived_isybau2013_plan_worldfile.png", "epsg-27700.tiff",
          "world-file.png", "utmsmall.tif", "stefan_full_rgba.png", "orienteering_map_plain.png"})
        QTest::newRow(picture) << QStringLiteral("images/") + picture << "imagebackground";
    for (const char* page : {"cad_drawing_dimstyles.pdf", "derived_isybau2013_plan_geospatial.pdf"})
        QTest::newRow(page) << QStringLiteral("pdf/") + page << "pdfimagebackground";
}

void tst_RealPlans::everyFileBecomesAPlan()
{
    QFETCH(QString, name);
    QFETCH(QString, kind);
    const QString real = Kx::Test::realFile(name);
    if (real.isEmpty())
        QSKIP("The folder of real files is not there.");
    // A PDF goes when its picture stands.
    const QString copy = m_folder->filePath(nameOfCopy(real));
    QVERIFY(QFile::copy(real, copy) && QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
    PlanLoader& loader = *m_root->planLoader();
    Heard heard(&loader);

    loader.loadPlan(copy);

    QTRY_VERIFY_WITH_TIMEOUT(!loader.planLoading(), 30000);
    QVERIFY2(heard.lines.contains("loaded " + kind), qPrintable(heard.lines.join(", ")));
}

void tst_RealPlans::cutInHalfItIsToldOnce()
{
    QFETCH(QString, name);
    const QString real = Kx::Test::realFile(name);
    if (real.isEmpty())
        QSKIP("The folder of real files is not there.");
    QFile whole(real);
    QFile half(m_folder->filePath(nameOfCopy(real)));
    QVERIFY(whole.open(QIODevice::ReadOnly) && half.open(QIODevice::WriteOnly));
    half.write(whole.read(whole.size() / 2));
    half.close();
    PlanLoader& loader = *m_root->planLoader();
    Heard heard(&loader);

    loader.loadPlan(half.fileName());

    QTRY_VERIFY_WITH_TIMEOUT(!loader.planLoading(), 30000);
    const int told = heard.lines.filter("corrupted").size() + heard.lines.filter("converter").size();
    const int loaded = heard.lines.filter("loaded ").size();
    // A page that the converter mends is a plan as well.
    QVERIFY2(told + loaded == 1, qPrintable(heard.lines.join(", ")));
    QVERIFY2(name.endsWith(".pdf") || told == 1, qPrintable(heard.lines.join(", ")));
}

QTEST_MAIN(tst_RealPlans)
#include "tst_RealPlans.moc"
