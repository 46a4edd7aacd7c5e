#include "domain/EntitiesManager.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/WktPoint.h"
#include "host/domain/ProjectStore.h"
#include "host/import/Import.h"
#include "host/import/ProjectFindings.h"
#include "scene/SceneRoot.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Torvik::View3d;
using namespace Torvik::Database;
using Torvik::AppState;

namespace {

/** A chain keeps whole centimetres, and floats of some ten metres. */
constexpr double tolerance = 0.02;

struct FoundBend {
    double distance;
    int clock;
    double angle;
};

QVector<QVector<double>> pointsOf(const CDomainObjectPointer& inspection)
{
    QVector<WktPoint> points;
    QString prefix;
    ShapeWKTHelper::wktStringToWktPoints(inspection->readValue(QStringLiteral("INS_Shape_WKT")).toString(), points,
                                         prefix);
    QVector<QVector<double>> numbers;
    for (const WktPoint& point : qAsConst(points))
        numbers.append({point.x().toDouble(), point.y().toDouble(), point.z().toDouble()});
    return numbers;
}

QString told(const QVector<QVector<double>>& points)
{
    QStringList texts;
    for (const QVector<double>& point : points)
        texts << QStringLiteral("%1 %2 %3").arg(point[0], 0, 'f', 2).arg(point[1], 0, 'f', 2).arg(point[2], 0, 'f', 2);
    return texts.join(QStringLiteral(", "));
}

/** The inspection of the section with that key. */
QSharedPointer<CPipeInspectionObject> inspectionOf(const CProjectObject& project, const QString& key)
{
    for (int i = 0; i < project.sectionCount(); ++i) {
        if (project.section(i)->readValue(QStringLiteral("OBJ_Key")).toString() == key)
            return project.section(i)->inspection(0);
    }
    return {};
}

} // namespace

Q_DECLARE_METATYPE(FoundBend)

/** A bend that an import works into a stored course lies where the view puts one that is found while it looks on. */
class tst_FoundBends : public QObject {
    Q_OBJECT

private slots:
    void importAndViewTurnThePipeAlike_data()
    {
        QTest::addColumn<QString>("pipe");
        QTest::addColumn<QVector<FoundBend>>("bends");
        for (const char* pipe : {"MB2", "LG1"}) {
            const auto row = [pipe](const char* name, const QVector<FoundBend>& bends) {
                QTest::addRow("%s, %s", pipe, name) << QString::fromLatin1(pipe) << bends;
            };
            row("right", {{12, 3, 40}});
            row("left and up", {{10, 9, 25}, {16, 12, 30}});
            row("oblique", {{8, 2, 35}, {14, 7, 50}, {20, 11, 15}});
        }
    }

    void importAndViewTurnThePipeAlike()
    {
        QFETCH(QString, pipe);
        QFETCH(QVector<FoundBend>, bends);
        QTemporaryDir dir;
        const QString seen = makeStraightProject(dir.filePath(QStringLiteral("seen")));
        const QString imported = makeStraightProject(dir.filePath(QStringLiteral("imported")));
        QFile file(dir.filePath(QStringLiteral("bends.csv")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("pipe,distance,code,clock,angle\n");
        for (const FoundBend& bend : bends)
            file.write(QStringLiteral("%1,%2,BCC,%3,%4\n")
                           .arg(pipe)
                           .arg(bend.distance)
                           .arg(bend.clock)
                           .arg(bend.angle)
                           .toUtf8());
        file.close();

        Torvik::Import::ImportReport report;
        QVERIFY(Torvik::Import::addFindings({imported, {file.fileName()}, {}}, report));
        const auto expected = ProjectStore::instance().open(imported).project;
        const auto own = pointsOf(inspectionOf(*expected, pipe));
        ProjectStore::instance().close(expected);
        const auto views = pointsFoundInView(seen, pipe, bends);

        QCOMPARE(own.size(), bends.size() + 2);
        QCOMPARE(views.size(), own.size());
        for (int i = 0; i < own.size(); ++i) {
            for (int k = 0; k < 3; ++k)
                QVERIFY2(qAbs(views[i][k] - own[i][k]) < tolerance,
                         qPrintable(told(views) + QStringLiteral(" instead of ") + told(own)));
        }
    }

private:
    /** The sample without a surveyed course, its inverts all at one height: the view's chains lean with the slope of
     *  their first piece, which an import does not imitate. */
    static QString makeStraightProject(const QString& folder)
    {
        QFile sample(QStringLiteral(KX_SOURCE_DIR "/samples/muehlenviertel.xml"));
        if (!sample.open(QIODevice::ReadOnly))
            return {};
        QString text = QString::fromUtf8(sample.readAll());
        text.remove(QRegularExpression(QStringLiteral("<Kante><Start>.*</Kante>")));
        text.remove(QRegularExpression(
            QStringLiteral("<InspizierteAbwassertechnischeAnlage>.*</InspizierteAbwassertechnischeAnlage>"),
            QRegularExpression::DotMatchesEverythingOption));
        text.replace(QRegularExpression(QStringLiteral("<Sohlhoehe(Zulauf|Ablauf)>[^<]*<")),
                     QStringLiteral("<Sohlhoehe\\1>40<"));
        text.replace(QRegularExpression(QStringLiteral("<Punkthoehe>[^<]*<(/Punkthoehe><PunktattributAbwasser>SMP)")),
                     QStringLiteral("<Punkthoehe>40<\\1"));
        QFile source(folder + QStringLiteral(".xml"));
        if (!source.open(QIODevice::WriteOnly) || source.write(text.toUtf8()) < 0)
            return {};
        source.close();
        Torvik::Import::ImportOptions options;
        options.source = source.fileName();
        options.project = folder;
        Torvik::Import::ImportReport report;
        return Torvik::Import::importProject(options, report) ? folder : QString();
    }

    static QVector<QVector<double>> pointsFoundInView(const QString& folder, const QString& pipe,
                                                      const QVector<FoundBend>& bends)
    {
        auto* root = new SceneRoot;
        root->qmlOnCompleted();
        const auto project = ProjectStore::instance().open(folder).project;
        AppState::instance().setActiveProject(project);
        const auto loaded = [&] { return !root->entitiesManager().isBusy(); };
        QVector<QVector<double>> points;
        if (QTest::qWaitFor(loaded, 60000)) {
            const auto inspection = inspectionOf(*project, pipe);
            for (const FoundBend& bend : bends)
                ProjectStore::instance().insertObject(inspection, PipeObservationObjectType,
                                                      {{QStringLiteral("OBS_Code"), QStringLiteral("BCC")},
                                                       {QStringLiteral("OBS_Distance"), bend.distance},
                                                       {QStringLiteral("OBS_BendClkH"), bend.clock},
                                                       {QStringLiteral("OBS_JointAngle"), bend.angle}});
            const auto turned = [&] { return pointsOf(inspection).size() == bends.size() + 2; };
            if (QTest::qWaitFor(turned, 10000))
                points = pointsOf(inspection);
        }
        ProjectStore::instance().close(project);
        if (!QTest::qWaitFor(loaded, 60000))
            points.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete root;
        return points;
    }
};

QTEST_MAIN(tst_FoundBends)
#include "tst_FoundBends.moc"
