#include "plans/PlanSettingsIO.h"

#include "common/LogCapture.h"
#include "domain/boundary/BaseServices.h"
#include "geo/GdalGeoProjector.h"
#include "plans/KodraUnitConverter.h"
#include "plans/PlanXml.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <Qt3DCore/QTransform>

#include <cmath>
#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <unistd.h>

using Kx::Test::LogCapture;
using Torvik::View3d::GdalGeoProjector;
using Torvik::View3d::KodraUnitConverter;
using Torvik::View3d::PlanSettings;
using Torvik::View3d::PlanSettingsIO;
namespace PlanXml = Torvik::View3d::PlanXml;
using Position = Torvik::View3d::Vector3D<double>;
using System = KodraUnitConverter::CoordinateSystem;
using Torvik::Base::CFileSystemNames;

namespace {

const QString category = QStringLiteral("View3DLibrary::PlanSettingsIO");

/** A project's folders in a folder of their own. */
class Folders {
public:
    explicit Folders(const QString& name = QStringLiteral("Grünau Süd"))
        : m_path(m_dir.path() + QLatin1Char('/') + name + QLatin1Char('/'))
    {
        QDir().mkpath(graphics());
    }
    QString path() const { return m_path; }
    QString graphics() const { return m_path + CFileSystemNames::graphics3DPathPart(); }
    QString file() const { return graphics() + QStringLiteral("plan.xml"); }
    QString plan(const QString& name) const { return m_path + CFileSystemNames::documentationPathPart() + name; }
    QByteArray content() const { return contentOf(file()); }
    void put(const QByteArray& bytes) const
    {
        QFile f(file());
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
    }
    static QByteArray contentOf(const QString& path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QStringList entries() const { return QDir(graphics()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

private:
    QTemporaryDir m_dir;
    QString m_path;
};

/** The matrix of a plan whose anchor corner `c` (in the plan's own metres) lies at `position`. */
QMatrix4x4 placed(const QVector3D& position, float angle, const QVector3D& scale, const QVector3D& c)
{
    const QVector3D corner = scale * c;
    QMatrix4x4 matrix;
    matrix.translate(position - corner);
    matrix *= Qt3DCore::QTransform::rotateAround(corner, angle, {0.0F, 1.0F, 0.0F});
    matrix.scale(scale);
    return matrix;
}

float largestDifference(const QMatrix4x4& a, const QMatrix4x4& b)
{
    float largest = 0.0F;
    for (int i = 0; i < 16; ++i)
        largest = std::max(largest, std::abs(a.constData()[i] - b.constData()[i]));
    return largest;
}

/** Without a system it is Pseudo-Mercator, whose scale is not 1. */
void tie(const QString& easting, const QString& northing, const QString& height, const QString& system)
{
    QString projection = system;
    GdalGeoProjector::instance()->init({easting, northing, height, QStringLiteral("0")}, projection);
}

void tieToUtm()
{
    tie(QStringLiteral("518367.8473"), QStringLiteral("5402474.229"), QStringLiteral("240"),
        QStringLiteral("EPSG:25832"));
}

/** As a user without the rights of the system's administrator, who may write everywhere. */
class OrdinaryUser {
public:
    OrdinaryUser()
        : m_before(geteuid())
        , m_is(m_before != 0 || seteuid(65534) == 0)
    {
    }
    ~OrdinaryUser()
    {
        if (geteuid() != m_before && seteuid(m_before) != 0)
            qFatal("the user cannot be restored");
    }
    bool is() const { return m_is; }

private:
    uid_t m_before;
    bool m_is;
};

/** No file of this process grows beyond that size while this lives: a full disk. */
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small {bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int);
    rlimit m_before {};
};

} // namespace

class tst_PlanSettingsIO : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { GdalGeoProjector::instance()->deinit(); }

    void settingsBeginWithTheDefaults()
    {
        const PlanSettings settings = PlanSettingsIO().getPlanSettings();

        QCOMPARE(settings.referencePoint, Position());
        QCOMPARE(settings.translation, QVector3D());
        QCOMPARE(settings.scale, QVector3D(1, 1, 1));
        QCOMPARE(settings.rotation, QVector3D());
        QVERIFY(settings.projectPath.isEmpty() && settings.planPath.isEmpty());
    }

    void theConverterGoesThereAndBack()
    {
        const KodraUnitConverter converter;
        tie(QStringLiteral("1000000"), QStringLiteral("6274861.394"), QStringLiteral("100"), QString());
        const float s = float(GdalGeoProjector::instance()->scale());
        QVERIFY(s > 0.6F && s < 0.7F); // the cosine of 49 degrees

        const QVector3D file(10, 20, 30);
        const QVector3D scene = converter.getTranslationInCoordinateSystem(file, System::PlanFile, System::Scene);
        const Position far =
            converter.getPlanReferencePointInCoordinateSystem({10, 20, 30}, System::PlanFile, System::Scene);

        QCOMPARE(scene, QVector3D(-10 * s, 30, 20 * s));
        QCOMPARE(far, Position(-10 * double(s), 30, 20 * double(s)));
        QCOMPARE(converter.getTranslationInCoordinateSystem(scene, System::Scene, System::PlanFile), file);
        QCOMPARE(converter.getPlanReferencePointInCoordinateSystem(far, System::Scene, System::PlanFile).toQVector3D(),
                 file);
        QCOMPARE(converter.getRotationOrScaleInCoordinateSystem(file, System::PlanFile, System::Scene),
                 QVector3D(10, 30, 20));
        QCOMPARE(converter.getTranslationInCoordinateSystem(file, System::Scene, System::Scene), file);
    }

    void aPlanIsWrittenInTheFilesAxes()
    {
        const Folders folders;
        tieToUtm();
        Qt3DCore::QTransform transform;
        transform.setScale3D({2, 4, 3});
        transform.setRotationY(-35.5F);
        transform.setTranslation({-12.5F, 1.5F, -30.25F});

        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), transform, folders.plan("Lageplan.png"), {}));

        const PlanXml::Values values = PlanXml::read(folders.content()).values;
        QCOMPARE(PlanXml::textFromTriple(values.mqTranslation, 15), QStringLiteral("-518367.8473,-5402474.229,-240"));
        QCOMPARE(PlanXml::textFromTriple(values.translation, 15), QStringLiteral("12.5,-30.25,1.5"));
        QCOMPARE(PlanXml::textFromTriple(values.scale, 15), QStringLiteral("2,3,4"));
        QVERIFY(std::abs(values.rotation[2] + 35.5) < 1e-4); // through a quaternion of floats
        QCOMPARE(values.planData, QStringLiteral("Documentation\\Lageplan.png"));
        QCOMPARE(folders.content().count('\n'), 12);
        QCOMPARE(folders.entries(), QStringList(QStringLiteral("plan.xml")));
    }

    void whatIsWrittenGivesTheSameMatrix_data()
    {
        QTest::addColumn<QVector3D>("position");
        QTest::addColumn<float>("angle");
        QTest::addColumn<QVector3D>("scale");
        QTest::addColumn<QVector3D>("corner");
        const QVector3D none;
        const QVector3D corner(50.0F, 0.0F, -25.0F);
        for (const float angle : {0.0F, 33.3F, 90.0F, -90.0F, 135.0F, 180.0F, -179.5F}) {
            const QByteArray tag = QByteArray::number(double(angle));
            QTest::newRow(("drawing " + tag).constData())
                << QVector3D(10, -3, 7) << angle << QVector3D(1, 1, 1) << none;
            QTest::newRow(("picture " + tag).constData())
                << QVector3D(-410.5F, -3.25F, 77) << angle << QVector3D(2.5F, 1, 2.5F) << corner;
        }
        QTest::newRow("uneven scale") << QVector3D(1, 2, 3) << 20.0F << QVector3D(2, 3, 5) << corner;
        QTest::newRow("corner at a height") << QVector3D(1, 2, 3) << 20.0F << QVector3D(2, 3, 5) << QVector3D(1, 2, 3);
        QTest::newRow("far, large") << QVector3D(8000, 2, -9000) << 61.7F << QVector3D(40, 40, 40) << corner;
        QTest::newRow("tiny") << QVector3D(0.01F, 0, 0.02F) << 5.0F << QVector3D(1e-3F, 1e-3F, 1e-3F) << corner;
    }

    void whatIsWrittenGivesTheSameMatrix()
    {
        QFETCH(QVector3D, position);
        QFETCH(float, angle);
        QFETCH(QVector3D, scale);
        QFETCH(QVector3D, corner);
        const Folders folders;
        tieToUtm();
        Qt3DCore::QTransform transform;
        transform.setMatrix(placed(position, angle, scale, corner));

        // Twice, as a project is opened and saved again: nothing may drift.
        for (int round = 0; round < 2; ++round) {
            QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), transform, folders.plan("Süd & West.png"), corner));
            PlanSettingsIO io;
            io.tryToLoadPlanSettings(folders.path());
            const PlanSettings s = io.getPlanSettings();
            QCOMPARE(io.problem(), QString());
            QCOMPARE(s.planPath, folders.plan("Süd & West.png"));
            const QVector3D shift = (s.referencePoint - GdalGeoProjector::instance()->origin()).toQVector3D();
            QVERIFY(shift.length() < 1e-6F);
            const QMatrix4x4 again = placed(s.translation + shift, s.rotation.y(), s.scale, corner);
            // Floats of seven digits, and an angle that has gone through a quaternion.
            const float size = position.length() + (scale * corner).length() + scale.length();
            QVERIFY2(largestDifference(transform.matrix(), again) < 2e-6F * size,
                     qPrintable(QString::number(double(largestDifference(transform.matrix(), again)))));
            transform.setMatrix(again);
        }
    }

    void anOriginThatHasMovedShiftsThePlan()
    {
        const Folders folders;
        tieToUtm();
        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {}));

        tie(QStringLiteral("518467.8473"), QStringLiteral("5402424.229"), QStringLiteral("241"),
            QStringLiteral("EPSG:25832"));
        PlanSettingsIO io;
        io.tryToLoadPlanSettings(folders.path());

        const QVector3D shift = (io.getPlanReferencePoint() - GdalGeoProjector::instance()->origin()).toQVector3D();
        QVERIFY((shift - QVector3D(100, -1, 50)).length() < 1e-4F);
    }

    void anUnreadableReferenceIsTheOrigin()
    {
        const Folders folders;
        tie(QStringLiteral("1000000"), QStringLiteral("6274861.394"), QStringLiteral("100"), QString());
        folders.put("<a><b><c><MQTranslation>x</MQTranslation></c></b></a>");

        PlanSettingsIO io;
        io.tryToLoadPlanSettings(folders.path());

        const Position shift = io.getPlanReferencePoint() - GdalGeoProjector::instance()->origin();
        QVERIFY(shift.toQVector3D().length() < 1e-3F);
    }

    void filesOfOtherProgramsLeadToThisProject()
    {
        const Folders folders(QStringLiteral("Grünau"));
        for (const char* name : {"bom-crlf-other-ids.xml", "absolute-windows.xml"}) {
            folders.put(Folders::contentOf(QStringLiteral(KX_SOURCE_DIR "/tests/plans/data/") + name));
            PlanSettingsIO io;

            io.tryToLoadPlanSettings(QStringLiteral("  ") + folders.path() + QStringLiteral("\n"));

            const PlanSettings s = io.getPlanSettings();
            QVERIFY(s.planPath.startsWith(folders.plan("Lageplan")));
            QCOMPARE(s.projectPath, folders.path());
            QCOMPARE(s.translation, QVector3D(-12.5F, 1.5F, -30.25F));
            QCOMPARE(s.scale, QVector3D(2, 4, 3));
            QCOMPARE(s.rotation, QVector3D(0, -35.5F, 0));
            QCOMPARE(s.referencePoint, Position(-518367.8473, 240, 5402474.229));
        }
    }

    void aProjectWithoutTheFileHasNoPlan()
    {
        const Folders folders;
        const LogCapture log;
        PlanSettingsIO io;

        io.tryToLoadPlanSettings(folders.path());

        QCOMPARE(log.count(3, category, QStringLiteral("plan.xml was not found")), 1);
        QVERIFY(io.getPathToPlanImage().isEmpty() && io.problem().isEmpty());
    }

    void aDamagedFileIsToldAndStaysAsItIs()
    {
        const Folders folders;
        const QByteArray damaged = Folders::contentOf(QStringLiteral(KX_SOURCE_DIR "/tests/plans/data/truncated.xml"));
        folders.put(damaged);
        const LogCapture log;
        PlanSettingsIO io;

        io.tryToLoadPlanSettings(folders.path());

        QVERIFY2(io.problem().startsWith(folders.file() + ": line 9: "), qPrintable(io.problem()));
        QCOMPARE(log.count(1, category, io.problem()), 1);
        QVERIFY(io.getPathToPlanImage().isEmpty());
        QCOMPARE(io.getPlanScale(), QVector3D(1, 1, 1));
        QCOMPARE(folders.content(), damaged);
    }

    void whatIsNoVectorIsLogged()
    {
        const Folders folders;
        folders.put("<a><b><c><PlanScale>1,2</PlanScale><PlanRotation>0,0,7</PlanRotation></c></b></a>");
        const LogCapture log;
        PlanSettingsIO io;

        io.tryToLoadPlanSettings(folders.path());

        QCOMPARE(log.count(1, category, QStringLiteral("Failed to convert \"1,2\" to vector.")), 1);
        QCOMPARE(io.getPlanScale(), QVector3D(1, 1, 1));
        QCOMPARE(io.getPlanRotation(), QVector3D(0, 7, 0));
        QCOMPARE(io.problem(), folders.file() + ": \"1,2\" should be three numbers with commas between them");
    }

    void anotherReadingForgetsTheOneBefore()
    {
        const Folders folders;
        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {5, 0, 5}));
        PlanSettingsIO io;
        io.tryToLoadPlanSettings(folders.path());
        QCOMPARE(io.getPathToPlanImage(), folders.plan("a.png"));

        io.tryToLoadPlanSettings(folders.path() + "none/");

        QVERIFY(io.getPathToPlanImage().isEmpty());
        QCOMPARE(io.getPlanTranslation(), QVector3D());
    }

    void savingKeepsADamagedFileBesideTheNewOne()
    {
        const Folders folders;
        folders.put("<a><b><c><PlanTranslation>1,2</PlanTranslation></c></b></a>");

        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {}));
        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("b.png"), {}));

        QVERIFY(Folders::contentOf(folders.file() + ".damaged").contains("1,2"));
        QVERIFY(folders.content().contains("b.png"));
        QCOMPARE(folders.entries().size(), 2);
    }

    void aFolderWithoutTheRightToWriteLosesNothing()
    {
        const Folders folders;
        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {}));
        const QByteArray before = folders.content();
        QFile::setPermissions(QDir(folders.path() + "..").canonicalPath(), QFile::Permissions(0x7755));
        QFile::setPermissions(folders.graphics(), QFile::Permissions(0x7777));
        bool allowed = false;
        bool refused = false;
        {
            const OrdinaryUser user;
            if (!user.is())
                QSKIP("Only an ordinary user meets a folder without the right to write.");
            allowed = PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {});
        }
        QFile::setPermissions(folders.graphics(), QFile::Permissions(0x5555));
        const LogCapture log;
        {
            const OrdinaryUser user;
            refused = !PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("b.png"), {});
        }
        QFile::setPermissions(folders.graphics(), QFile::Permissions(0x7777));

        QVERIFY(allowed); // else the refusal would prove nothing
        QVERIFY(refused);
        QCOMPARE(folders.content(), before);
        QCOMPARE(log.count(3, category, QStringLiteral("Cannot save plan.xml")), 1);
        QVERIFY(log.lines().last().message.startsWith(folders.file()));
    }

    void aProjectWithoutTheFolderCannotSave()
    {
        const Folders folders;
        const LogCapture log;

        QVERIFY(!PlanSettingsIO::savePlanFile(folders.path() + "none/", Qt3DCore::QTransform(), "a.png", {}));

        QCOMPARE(log.count(3, category, QStringLiteral("Cannot save plan.xml")), 1);
        QVERIFY(!QDir(folders.path() + "none").exists());
    }

    void aFullDiskLeavesTheFileBefore()
    {
        const Folders folders;
        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {}));
        const QByteArray before = folders.content();
        bool saved = true;
        {
            const FullDisk full(100);
            saved = PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("b.png"), {});
        }

        QVERIFY(!saved);
        QCOMPARE(folders.content(), before);
        QCOMPARE(folders.entries(), QStringList(QStringLiteral("plan.xml")));
    }

    void whatCouldNotBeReadBackIsNotWritten()
    {
        const Folders folders;
        QVERIFY(PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("a.png"), {}));
        const QByteArray before = folders.content();
        Qt3DCore::QTransform nowhere;
        nowhere.setTranslation({std::numeric_limits<float>::quiet_NaN(), 0, 0});

        QVERIFY(!PlanSettingsIO::savePlanFile(folders.path(), nowhere, folders.plan("b.png"), {}));
        QVERIFY(!PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("b\x01.png"), {}));
        QVERIFY(!PlanSettingsIO::savePlanFile(folders.path(), Qt3DCore::QTransform(), folders.plan("b\\c.png"), {}));

        QCOMPARE(folders.content(), before);
    }

    void theOldFileIsDeletedWhenItIsThere()
    {
        const Folders folders;
        folders.put("x");

        PlanSettingsIO::deleteOldPlanFile({});
        PlanSettingsIO::deleteOldPlanFile(folders.file() + "none");
        QVERIFY(QFile::exists(folders.file()));
        PlanSettingsIO::deleteOldPlanFile(folders.file());

        QVERIFY(!QFile::exists(folders.file()));
    }
};

QTEST_GUILESS_MAIN(tst_PlanSettingsIO)
#include "tst_PlanSettingsIO.moc"
