#include "geo/CApplicationSettingsLastAddress.h"

#include "common/LogCapture.h"
#include "domain/EntitiesManager.h"
#include "domain/SmallNetwork.h"
#include "domain/boundary/BaseServices.h"
#include "geo/GdalGeoProjector.h"
#include "scene/SceneRoot.h"

#include <Qt3DRender/QCamera>

using namespace Torvik;
using namespace Torvik::View3d;
using namespace Kx::Test;
using QmlWrapper::CQmlDomainObject;

namespace {

CApplicationSettingsLastAddress& settings()
{
    return CApplicationSettingsLastAddress::instance();
}

QString setting(const char* key)
{
    return Base::CApplicationSettings::instance().getCustomSetting(QLatin1String(key), QStringLiteral("unset"));
}

const QStringList placeOfA {QStringLiteral("52.6155"), QStringLiteral("10.0339")};

} // namespace

class tst_LastAddress : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { CApplicationSettingsLastAddress::initialize(); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        Base::HostSettings::setSettingsFile(m_folder->filePath("settings.ini"));
        m_root = new SceneRoot;
        m_root->qmlOnCompleted();
    }

    void cleanup()
    {
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void nothingIsKnownAtFirst();
    void anAddressIsKept();
    void anEmptyAddressChangesNothing();
    void aPlaceIsKeptWithItsAddress();
    void aPlaceOfAnotherAddressIsForgotten();
    void aPlaceIsStoredWithSixDigits();
    void anAddressNeedsThreeEntriesAndOneThatIsFilled();
    void theInspectionOfAPipeIsItsFirstOne();
    void anOpenedProjectSetsThePlaceOfTheNodeInspectedLast();
    void aNodeWithoutAShapeIsPassedOver();
    void aProjectWithoutANodeIsTold();
    void withoutAProjectNothingIsTold();
    void aNodeWithAnEmptyShapeIsTold();
    void anActiveStructureSetsThePlaceAndTheAddressOfItsStartNode();
    void withoutAnAddressAtTheStartNodeThePipesOwnCounts();
    void anActiveInspectionKeepsThePlace();
    void anObjectThatIsGoneChangesNothing();
    void aShapeGivesLatitudeLongitudeAndHeight();
    void qmlCanCallIt();
    void aNewNodeStandsAtTheLastPlace();
    void theFirstNodesPlaceBecomesTheOrigin();
    void withoutALastPlaceANewNodeStandsWhereTheUserLooks();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    SceneRoot* m_root = nullptr;
};

void tst_LastAddress::nothingIsKnownAtFirst()
{
    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"", "", ""}));
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"", ""}));
}

void tst_LastAddress::anAddressIsKept()
{
    settings().saveLastAddressPosition("Hafenstraße 5", "Łódź", "");

    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"Hafenstraße 5", "Łódź", ""}));
    QCOMPARE(setting("LASTADDRESSPOSITIONSTREET"), QStringLiteral("Hafenstraße 5"));
    QCOMPARE(setting("LASTADDRESSPOSITIONCITY"), QStringLiteral("Łódź"));
    QCOMPARE(setting("LASTADDRESSPOSITIONCOUNTRY"), QString(""));
}

void tst_LastAddress::anEmptyAddressChangesNothing()
{
    settings().saveLastAddressPosition("A", "B", "C");
    settings().saveLastAddressPosition("", "", "");
    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"A", "B", "C"}));

    settings().saveLastAddressPosition("", "", "D");
    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"", "", "D"}));
}

void tst_LastAddress::aPlaceIsKeptWithItsAddress()
{
    settings().saveLatAndLongPosition("A", "B", "1", "2");

    QCOMPARE(setting("LASTMATCHINGLATANDLONGADDRESS"), QStringLiteral("A,B"));
    QCOMPARE(setting("LASTADDRESSPOSITIONLAT"), QStringLiteral("1"));
    QCOMPARE(setting("LASTADDRESSPOSITIONLONG"), QStringLiteral("2"));
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"1", "2"}));
}

void tst_LastAddress::aPlaceOfAnotherAddressIsForgotten()
{
    settings().saveLatAndLongPosition("A", "B", "1", "2");
    settings().resetLatAndLongIfNeeded("", "");
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"1", "2"}));
    settings().resetLatAndLongIfNeeded("A", "B");
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"1", "2"}));

    settings().resetLatAndLongIfNeeded("A", "C");
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"", ""}));
    QCOMPARE(setting("LASTMATCHINGLATANDLONGADDRESS"), QStringLiteral("A,B"));
}

void tst_LastAddress::aPlaceIsStoredWithSixDigits()
{
    settings().ifVariantIsCorrectLatAndLongThenSave(QVector3D(47.680296F, -0.000012345678F, 9.0F));
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"47.6803", "-1.23457e-05"}));
    QCOMPARE(setting("LASTMATCHINGLATANDLONGADDRESS"), QStringLiteral("UNDEFINED_STREET,UNDEFINED_CITY"));

    settings().ifVariantIsCorrectLatAndLongThenSave(QVariant());
    settings().ifVariantIsCorrectLatAndLongThenSave(QVector3D(0, 0, 9));
    settings().ifVariantIsCorrectLatAndLongThenSave(QVector3D(qQNaN(), 1, 9));
    settings().ifVariantIsCorrectLatAndLongThenSave(QStringLiteral("47 11"));
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"47.6803", "-1.23457e-05"}));
}

void tst_LastAddress::anAddressNeedsThreeEntriesAndOneThatIsFilled()
{
    QVERIFY(!settings().addressTableIsFilled({}));
    QVERIFY(!settings().addressTableIsFilled({"A", "B"}));
    QVERIFY(!settings().addressTableIsFilled({"", "", "", "D"}));
    QVERIFY(settings().addressTableIsFilled({"A", "", ""}));
    QVERIFY(settings().addressTableIsFilled({"", "B", ""}));
    QVERIFY(settings().addressTableIsFilled({"", "", "C"}));
}

void tst_LastAddress::theInspectionOfAPipeIsItsFirstOne()
{
    SmallNetwork net;
    const auto second = net.project.addInspection(net.pipe);
    const auto bare = net.project.addSection("bare", net.a, net.b);
    const auto lateral = net.project.addLateral("lateral", net.pipe);
    const auto inLateral = net.project.addInspection(lateral, {}, 0);

    QCOMPARE(settings().getInspectionId(CQmlDomainObject(second)), second->id());
    QCOMPARE(settings().getInspectionId(CQmlDomainObject(net.pipe)), net.inspection->id());
    QCOMPARE(settings().getInspectionId(CQmlDomainObject(lateral)), inLateral->id());
    QCOMPARE(settings().getInspectionId(CQmlDomainObject(bare)), QString());
    QCOMPARE(settings().getInspectionId(CQmlDomainObject(net.a)), QString());
    QCOMPARE(settings().getInspectionId(CQmlDomainObject()), QString());
}

void tst_LastAddress::anOpenedProjectSetsThePlaceOfTheNodeInspectedLast()
{
    SmallNetwork net;
    const auto far = net.project.addNode("far", "POINT ZM(600000 5900000 0 16)");
    const auto latest = net.project.addSection("latest", far, {});
    write(net.inspection, "INS_TimeStamp", "2024-01-01 00:00:00");
    net.project.addInspection(latest, {}, 1, {{"INS_TimeStamp", "2025-01-01 00:00:00"}});

    net.project.activate();

    QTRY_COMPARE(settings().loadLatAndLongPosition(), QStringList({"53.2398", "10.4984"}));
}

void tst_LastAddress::aNodeWithoutAShapeIsPassedOver()
{
    SmallNetwork net;
    const auto far = net.project.addNode("far", "POINT ZM(600000 5900000 0 16)");
    const auto bare = net.project.addNode("bare");
    write(bare, "OBJ_Shape_WKT", QVariant(QVariant::String));
    write(net.inspection, "INS_TimeStamp", "2023-01-01 00:00:00");
    net.project.addInspection(net.project.addSection("older", far, {}), {}, 1,
                              {{"INS_TimeStamp", "2024-01-01 00:00:00"}});
    net.project.addInspection(net.project.addSection("latest", bare, {}), {}, 1,
                              {{"INS_TimeStamp", "2025-01-01 00:00:00"}});

    net.project.activate();

    QTRY_COMPARE(settings().loadLatAndLongPosition(), QStringList({"53.2398", "10.4984"}));
}

void tst_LastAddress::aProjectWithoutANodeIsTold()
{
    TestProject project;
    project.activate();
    LogCapture log;

    QVERIFY(!settings().getLatLongOfNodeFromProject().isValid());
    QCOMPARE(log.count(2, "View3d", "Node with position was not found in the project"), 1);
}

void tst_LastAddress::withoutAProjectNothingIsTold()
{
    LogCapture log;
    settings().updateLastAddressWhenActiveProjectIsChanged();
    QCOMPARE(log.count(2, "View3d", "Node with position was not found in the project"), 0);
}

void tst_LastAddress::aNodeWithAnEmptyShapeIsTold()
{
    TestProject project(utm32);
    const auto node = project.addNode("N");
    project.addInspection(project.addSection("S", node, {}));
    write(node, "OBJ_Shape_WKT", "");
    project.activate();
    LogCapture log;

    QVERIFY(!settings().getLatLongOfNodeFromProject().isValid());
    QCOMPARE(log.count(1, "View3d", "Node with position was found but WKT was empty"), 1);
}

void tst_LastAddress::anActiveStructureSetsThePlaceAndTheAddressOfItsStartNode()
{
    SmallNetwork net;
    write(net.a, "OBJ_Street", "Lindenweg");
    write(net.pipe, "OBJ_City", "Celle");
    net.project.activate();
    QTRY_VERIFY(sectionOf(net.inspection));
    settings().saveLatAndLongPosition("A", "B", "1", "2");

    AppState::instance().setActiveStructure(net.pipe);

    QCOMPARE(settings().loadLatAndLongPosition(), placeOfA);
    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"Lindenweg", "", ""}));
}

void tst_LastAddress::withoutAnAddressAtTheStartNodeThePipesOwnCounts()
{
    SmallNetwork net;
    write(net.pipe, "OBJ_City", "Celle");
    net.project.activate();
    QTRY_VERIFY(sectionOf(net.inspection));

    AppState::instance().setActiveInspection(net.inspection);

    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"", "Celle", ""}));
}

void tst_LastAddress::anActiveInspectionKeepsThePlace()
{
    SmallNetwork net;
    net.project.activate();
    QTRY_VERIFY(sectionOf(net.inspection));
    settings().saveLatAndLongPosition("A", "B", "1", "2");

    AppState::instance().setActiveInspection(net.inspection);

    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"1", "2"}));
}

void tst_LastAddress::aShapeGivesLatitudeLongitudeAndHeight()
{
    SmallNetwork net;
    net.project.activate();
    QTRY_VERIFY(nodeOf(net.b));

    const QVector3D place = settings().latLongFromWkt(placeB);

    QVERIFY2(qAbs(place.x() - 52.6158F) < 1e-3F, qPrintable(QString::number(double(place.x()))));
    QVERIFY2(qAbs(place.y() - 10.0343F) < 1e-3F, qPrintable(QString::number(double(place.y()))));
    // The ground's, which lies where the first node tied it.
    QVERIFY2(qAbs(place.z() - 40.0F) < 0.01F, qPrintable(QString::number(double(place.z()))));
}

void tst_LastAddress::qmlCanCallIt()
{
    const QMetaObject& meta = CApplicationSettingsLastAddress::staticMetaObject;
    for (const char* const function :
         {"latLongFromWkt(QString)", "loadLastAddressPosition()", "loadLatAndLongPosition()",
          "saveLastAddressPosition(QString,QString,QString)", "saveLatAndLongPosition(QString,QString,QString,QString)",
          "resetLatAndLongIfNeeded(QString,QString)"})
        QVERIFY2(meta.indexOfMethod(function) >= 0, function);
}

void tst_LastAddress::anObjectThatIsGoneChangesNothing()
{
    settings().saveLastAddressPosition("A", "B", "C");
    settings().updateLastAddressWhenActiveInspOrSectionIsChanged(CQmlDomainObject());
    settings().updateLastAddressWhenActiveProjectIsChanged();

    QCOMPARE(settings().loadLastAddressPosition(), QStringList({"A", "B", "C"}));
    QCOMPARE(settings().loadLatAndLongPosition(), QStringList({"", ""}));
}

void tst_LastAddress::aNewNodeStandsAtTheLastPlace()
{
    SmallNetwork net;
    net.project.activate();
    QTRY_VERIFY(nodeOf(net.b));
    settings().saveLatAndLongPosition("A", "B", "52.625488", "10.033911");

    const QVector3D place = m_root->entitiesManager().calculatePositionForNodeAndResetGeoProjectorIfFirst();

    QVERIFY2(qAbs(place.z() - 1112.8F) < 2.0F, qPrintable(QString::number(double(place.z()))));
    QCOMPARE(GdalGeoProjector::instance()->worldPosForWktString(placeA), QVector3D());
}

void tst_LastAddress::theFirstNodesPlaceBecomesTheOrigin()
{
    GdalGeoProjector& projector = *GdalGeoProjector::instance();
    projector.initFromMap(51, 10, 0);
    settings().saveLatAndLongPosition("A", "B", "48.5", "11.25");

    QCOMPARE(m_root->entitiesManager().calculatePositionForNodeAndResetGeoProjectorIfFirst(), QVector3D());
    QVERIFY(qAbs(projector.latit() - 48.5) < 1e-6);
    QVERIFY(qAbs(projector.longit() - 11.25) < 1e-6);
}

void tst_LastAddress::withoutALastPlaceANewNodeStandsWhereTheUserLooks()
{
    QCOMPARE(m_root->entitiesManager().calculatePositionForNodeAndResetGeoProjectorIfFirst(), QVector3D());
    Qt3DRender::QCamera camera;
    camera.setViewCenter({3, 0, -4});
    m_root->setCamera(&camera);
    settings().saveLatAndLongPosition("A", "B", "48.5", "east");
    QCOMPARE(m_root->entitiesManager().calculatePositionForNodeAndResetGeoProjectorIfFirst(), QVector3D(3, 0, -4));
    settings().saveLatAndLongPosition("A", "B", "", "11.25");
    QCOMPARE(m_root->entitiesManager().calculatePositionForNodeAndResetGeoProjectorIfFirst(), QVector3D(3, 0, -4));
    settings().saveLatAndLongPosition("A", "B", "48.5", "");
    QCOMPARE(m_root->entitiesManager().calculatePositionForNodeAndResetGeoProjectorIfFirst(), QVector3D(3, 0, -4));
    m_root->setCamera(nullptr);
}

QTEST_MAIN(tst_LastAddress)
#include "tst_LastAddress.moc"
