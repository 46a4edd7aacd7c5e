#include "common/LogCapture.h"
#include "domain/boundary/BaseServices.h"
#include "domain/boundary/GUID.h"
#include "domain/boundary/GeoCoord.h"
#include "host/domain/HostSettings.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <ogr_spatialref.h>

using namespace Torvik;

class tst_BaseServices : public QObject {
    Q_OBJECT

private slots:
    void guidsDiffer() { QVERIFY(Database::CGuidHelper::createGuid() != Database::CGuidHelper::createGuid()); }

    void folderNamesCanBeConcatenated()
    {
        QVERIFY(Base::CFileSystemNames::documentationPathPart().endsWith('/'));
        QVERIFY(
            Base::CFileSystemNames::graphics3DPathPart().startsWith(Base::CFileSystemNames::documentationPathPart()));
        QVERIFY(Base::CFileSystemNames::graphics3DPathPart().endsWith('/'));
    }

    void settingsStandInTheirFileAgain()
    {
        QTemporaryDir dir;
        Base::HostSettings::setSettingsFile(dir.filePath("settings.ini"));
        auto& settings = Base::CApplicationSettings::instance();
        QCOMPARE(settings.getCustomSetting("KEY", "default"), QString("default"));
        const float before = settings.getDefaultLabelLineHeight();
        QVERIFY(before > 0.0F);

        settings.setCustomSetting("KEY", QStringLiteral("Größe, 1"));
        settings.setDefaultLabelLineHeight(12.5F);
        Base::HostSettings::setSettingsFile(dir.filePath("settings.ini"));

        QCOMPARE(settings.getCustomSetting("KEY", "default"), QStringLiteral("Größe, 1"));
        QCOMPARE(settings.getDefaultLabelLineHeight(), 12.5F);

        // An empty text is a value, too: what was remembered has been forgotten.
        settings.setCustomSetting("KEY", QString());
        Base::HostSettings::setSettingsFile(dir.filePath("settings.ini"));
        QCOMPARE(settings.getCustomSetting("KEY", "default"), QString());
    }

    /** Whoever writes by hand sets no quotes. */
    void aTextWithACommaNeedsNoQuotes()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath("settings.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[custom]\nMAPCOPYRIGHT=Surveyors of the town, 2026\n");
        file.close();
        Base::HostSettings::setSettingsFile(file.fileName());

        QCOMPARE(Base::CApplicationSettings::instance().getCustomSetting("MAPCOPYRIGHT", ""),
                 QString("Surveyors of the town, 2026"));
    }

    void anErrorCodeIsAValueThatQmlReads()
    {
        QCOMPARE(Base::CErrorCode(), Base::CErrorCode(0U));
        const QVariant handedOver = QVariant::fromValue(Base::CErrorCode(0x150201U));
        QCOMPARE(handedOver.value<Base::CErrorCode>().code(), 0x150201U);
        const Base::CErrorCode error(0x150201U);
        const QMetaObject& meta = Base::CErrorCode::staticMetaObject;
        const int code = meta.indexOfProperty("code");
        QVERIFY(code >= 0);
        QCOMPARE(meta.property(code).readOnGadget(&error).toUInt(), 0x150201U);
    }

    void aChangedUnitIsAnnouncedOnce()
    {
        QSignalSpy changed(&Base::GlobalLocaleData::instance(), &Base::GlobalLocaleData::localeChanged);

        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitFeet);
        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitFeet);

        QCOMPARE(changed.count(), 1);
        QCOMPARE(Base::CLocaleSupport::getDistanceUnit(), 2);
        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitMetres);
    }

    void theDefaultSystemIsPseudoMercator()
    {
        const QString wkt = View3d::GeoProjectorSettings::getDefaultPseudoMercatorWKT();
        OGRSpatialReference given;
        OGRSpatialReference expected;
        expected.importFromEPSG(3857);

        QVERIFY(wkt.contains("Pseudo-Mercator"));
        QCOMPARE(given.importFromWkt(wkt.toUtf8().constData()), OGRERR_NONE);
        QVERIFY(given.IsSame(&expected));
        QCOMPARE(QByteArray(given.GetAuthorityCode("PROJCS")), QByteArray("3857"));
        QCOMPARE(View3d::GeoProjectorSettings::getValidPseudoMercatorWKT(), wkt);
    }

    void loggedLinesReachTheirListeners()
    {
        Kx::Test::LogCapture log;

        Logging::CLogger::logMessage(Logging::LogTrace, "Category", "text");

        QCOMPARE(log.count(4, "Category", "text"), 1);
        QCOMPARE(log.lines().size(), 1);
    }

    void aListenerThatLogsDoesNotHearItself()
    {
        int heard = 0;
        const int subscription = Logging::LogSink::subscribe([&](const Logging::LogLine&) {
            ++heard;
            Logging::CLogger::logMessage(Logging::LogTrace, "Category", "inner");
        });

        Logging::CLogger::logMessage(Logging::LogTrace, "Category", "outer");
        Logging::LogSink::unsubscribe(subscription);
        Logging::CLogger::logMessage(Logging::LogTrace, "Category", "after");

        QCOMPARE(heard, 1);
    }
};

QTEST_GUILESS_MAIN(tst_BaseServices)
#include "tst_BaseServices.moc"
