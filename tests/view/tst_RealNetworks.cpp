#include "common/SharedData.h"
#include "common/TestProject.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "host/import/Import.h"
#include "host/import/SampleProject.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

using namespace Torvik::View3d;
using namespace Torvik::Database;
using Torvik::AppState;

namespace {

/** Metres by which a chain's whole centimetres and the scene's floats may move a point. */
constexpr double tolerance = 0.006;

QVector<WktPoint> storedCourse(const CDomainObjectPointer& inspection)
{
    QVector<WktPoint> points;
    QString prefix;
    ShapeWKTHelper::wktStringToWktPoints(inspection->readValue(QStringLiteral("INS_Shape_WKT")).toString(), points,
                                         prefix);
    return points;
}

/** Largest distance of an ordinate of the section in the scene from its stored one; -1 when the points differ in
 *  number. */
double deviation(Section& section, const CDomainObjectPointer& inspection)
{
    const auto stored = storedCourse(inspection);
    QVector<WktPoint> shown;
    GdalGeoProjector::instance()->convertToWktPoints(section.getShapePoints().first(), shown);
    if (section.inspectionDownstream())
        std::reverse(shown.begin(), shown.end());
    if (stored.size() != shown.size())
        return -1;
    double largest = 0;
    for (int i = 0; i < stored.size(); ++i) {
        const auto apart = [](const QString& a, const QString& b) { return std::abs(a.toDouble() - b.toDouble()); };
        largest = std::max({largest, apart(stored[i].x(), shown[i].x()), apart(stored[i].y(), shown[i].y()),
                            apart(stored[i].z(), shown[i].z())});
    }
    return largest;
}

template <typename Visit>
void forEachInspection(const CProjectObject& project, Visit visit)
{
    const auto all = [&visit](const CGenericPipeObject& pipe) {
        for (int i = 0; i < pipe.inspectionCount(); ++i)
            visit(pipe, pipe.inspection(i));
    };
    for (int i = 0; i < project.sectionCount(); ++i)
        all(*project.section(i));
    for (int i = 0; i < project.lateralCount(); ++i)
        all(*project.lateral(i));
}

/** What the view keeps at the connection of a lateral, which is where the inspection has counted it and not where
 * somebody has surveyed it: the node of the joint, and the lateral itself where it was inspected from there. */
QSet<QString> followersOfConnections(const CProjectObject& project)
{
    QSet<QString> found;
    forEachInspection(project, [&](const auto&, const CDomainObjectPointer& object) {
        const auto inspection = qSharedPointerDynamicCast<CPipeInspectionObject>(object);
        for (int i = 0; i < inspection->observationCount(); ++i) {
            const auto lateral = project.lookupObject(
                inspection->observation(i)->readValue(QStringLiteral("OBS_LateralSection_REF")).toString());
            if (!lateral)
                continue;
            found.insert(lateral->readValue(QStringLiteral("OBJ_ToNode_REF")).toString());
            const auto pipe = qSharedPointerDynamicCast<CGenericPipeObject>(lateral);
            for (int k = 0; k < pipe->inspectionCount(); ++k) {
                if (pipe->inspection(k)->inspectionDirection() != 1)
                    found.insert(pipe->inspection(k)->id());
            }
        }
    });
    return found;
}

QHash<QString, QString> allShapes(const CProjectObject& project)
{
    QHash<QString, QString> shapes;
    for (int i = 0; i < project.nodeCount(); ++i)
        shapes.insert(project.node(i)->id(), project.node(i)->readValue(QStringLiteral("OBJ_Shape_WKT")).toString());
    forEachInspection(project, [&shapes](const auto&, const auto& inspection) {
        shapes.insert(inspection->id(), inspection->readValue(QStringLiteral("INS_Shape_WKT")).toString());
    });
    return shapes;
}

} // namespace

/** Networks as users have them, from the file to the scene: every pipe lies where the file says, and looking at them
 *  changes nothing. */
class tst_RealNetworks : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = new SceneRoot;
        m_root->qmlOnCompleted();
    }

    void cleanup()
    {
        ProjectStore::instance().close(m_project);
        m_project.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!m_root->entitiesManager().isBusy(), 60000);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_root;
    }

    void everyPipeLiesWhereItsFileSays_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("findings");
        QTest::addColumn<QString>("crs");
        QTest::addColumn<int>("nodes");
        QTest::addColumn<int>("pipes");
        QTest::newRow("sample") << QString() << QString() << QString() << -1 << -1;
        const QString celle = QStringLiteral("networks/ISYBAU_XML-2013-Stammdaten.xml");
        QTest::newRow("Celle") << celle << QString() << QString() << 165 << 149;
        QTest::newRow("Celle, inspected")
            << celle << QStringLiteral("inspections/ISYBAU_XML-2013-Zustandsdaten_DIN_EN_13508-2_AH_Abwasser.xml")
            << QString() << 165 << 150;
        QTest::newRow("Bustarviejo") << QStringLiteral("networks/medium_bustarviejo.inp") << QString()
                                     << QStringLiteral("EPSG:25830") << 1660 << 1629;
    }

    void everyPipeLiesWhereItsFileSays()
    {
        QFETCH(QString, source);
        QFETCH(QString, findings);
        QFETCH(QString, crs);
        QFETCH(int, nodes);
        QFETCH(int, pipes);
        QTemporaryDir folder;
        const QString path = makeProject(source, findings, crs, folder);
        if (path.isEmpty())
            QSKIP("The network is not here; see docs/import.md for where such files come from.");
        const auto opened = ProjectStore::instance().open(path);
        QVERIFY2(opened.project, qPrintable(opened.error));
        m_project = opened.project;
        const auto before = allShapes(*m_project);

        AppState::instance().setActiveProject(m_project);
        QTRY_VERIFY_WITH_TIMEOUT(!m_root->entitiesManager().isBusy(), 60000);

        QCOMPARE(SceneEntities::instance().getNodes().size(), nodes < 0 ? m_project->nodeCount() : nodes);
        int seen = 0;
        QStringList wrong;
        forEachInspection(*m_project, [&](const CGenericPipeObject& pipe, const CDomainObjectPointer& inspection) {
            Section* const section = SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id());
            ++seen;
            const double metres = section ? deviation(*section, inspection) : -2;
            if (metres < 0 || metres > tolerance)
                wrong
                    << QStringLiteral("%1: %2 m").arg(pipe.readValue(QStringLiteral("OBJ_Key")).toString()).arg(metres);
        });
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("%1 of %2: ").arg(wrong.size()).arg(seen) +
                                             wrong.mid(0, 8).join(QStringLiteral("; "))));
        QVERIFY(seen >= pipes);

        QTest::qWait(2500); // longer than the end of editing and a batch of writes together
        const auto after = allShapes(*m_project);
        const auto movable = followersOfConnections(*m_project);
        QStringList changed;
        for (auto it = before.begin(); it != before.end(); ++it) {
            if (after.value(it.key()) != it.value() && !movable.contains(it.key()))
                changed << it.value() + QStringLiteral(" -> ") + after.value(it.key());
        }
        QVERIFY2(changed.isEmpty(), qPrintable(changed.mid(0, 8).join(QLatin1Char('\n'))));
    }

private:
    static QString makeProject(const QString& source, const QString& findings, const QString& crs,
                               const QTemporaryDir& folder)
    {
        QString error;
        if (source.isEmpty())
            return Torvik::Import::ensureSampleProject(folder.filePath(QStringLiteral("sample")), &error);
        const QString file = Kx::Test::realFile(source);
        if (file.isEmpty())
            return {};
        Torvik::Import::ImportOptions options;
        options.source = file;
        options.project = folder.filePath(QStringLiteral("project"));
        options.crs = crs;
        if (!findings.isEmpty())
            options.with << Kx::Test::realFile(findings);
        QString text;
        QTextStream out(&text);
        return Torvik::Import::runImport(options, out, out) == 0 ? options.project : QString();
    }

    SceneRoot* m_root = nullptr;
    QSharedPointer<CProjectObject> m_project;
};

QTEST_MAIN(tst_RealNetworks)
#include "tst_RealNetworks.moc"
