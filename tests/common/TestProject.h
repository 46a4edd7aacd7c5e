#pragma once

#include "domain/boundary/AppState.h"
#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/CProjectObject.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ProjectStore.h"

#include <QTemporaryDir>
#include <QtTest>

namespace Kx::Test {

/** A real project in a temporary folder, open from the start and empty. Add what the test needs, then activate() it:
 *
 *      TestProject project;
 *      const auto a = project.addNode("A", "POINT ZM(400000 5600000 100 16)");
 *      const auto b = project.addNode("B", "POINT ZM(400050 5600000 99 16)");
 *      const auto s = project.addSection("A-B", a, b, {{"OBJ_Size1", 300}});
 *      const auto i = project.addInspection(s);
 *      project.activate();
 *
 *  Adding after activate() is what a user does who adds an object: the view hears of it. */
class TestProject {
public:
    explicit TestProject(const QString& projectionWkt = {}, bool is3d = true)
    {
        auto& store = Torvik::Database::ProjectStore::instance();
        const auto made = Torvik::Database::ProjectStore::create(
            path(), {{"PRJ_Name", "Test"}, {"PRJ_ProjectionWKT", projectionWkt}, {"PRJ_Is3d", int(is3d)}});
        const auto opened = made ? store.open(path()) : Torvik::Database::OpenedProject {nullptr, made.error};
        if (!opened.project) {
            qFatal("%s", qPrintable(opened.error));
        }
        m_project = opened.project;
    }
    ~TestProject() { close(); }
    TestProject(const TestProject&) = delete;
    TestProject& operator=(const TestProject&) = delete;

    const QSharedPointer<Torvik::Database::CProjectObject>& project() const { return m_project; }
    /** The project's folder. */
    QString path() const { return m_folder.filePath("project"); }

    void activate() { Torvik::AppState::instance().setActiveProject(m_project); }
    void close()
    {
        Torvik::Database::ProjectStore::instance().close(m_project);
        m_project.reset();
    }
    /** Closes the project and opens it again from the disk; objects added before are no longer valid. */
    void reopen()
    {
        close();
        m_project = Torvik::Database::ProjectStore::instance().open(path()).project;
        QVERIFY(m_project);
    }

    CDomainObjectPointer addNode(const QString& key, const QString& shapeWkt = {}, QVariantMap values = {})
    {
        values.insert("OBJ_Key", key);
        values.insert("OBJ_Shape_WKT", shapeWkt);
        return add(m_project, Torvik::Database::NodeObjectType, values);
    }

    /** Either end may be null. */
    QSharedPointer<Torvik::Database::CSectionObject> addSection(const QString& key, const CDomainObjectPointer& from,
                                                                const CDomainObjectPointer& to, QVariantMap values = {})
    {
        values.insert("OBJ_Key", key);
        values.insert("OBJ_FromNode_REF", from ? from->id() : QString());
        values.insert("OBJ_ToNode_REF", to ? to->id() : QString());
        return add(m_project, Torvik::Database::SectionObjectType, values)
            .staticCast<Torvik::Database::CSectionObject>();
    }

    /** `section` is the one that the lateral sits on, or null. */
    QSharedPointer<Torvik::Database::CGenericPipeObject>
    addLateral(const QString& key, const CDomainObjectPointer& section, QVariantMap values = {})
    {
        values.insert("OBJ_Key", key);
        values.insert("OBJ_Section_REF", section ? section->id() : QString());
        return add(m_project, Torvik::Database::LateralObjectType, values)
            .staticCast<Torvik::Database::CGenericPipeObject>();
    }

    /** From the pipe's first node to its second one (direction 1, downstream), back (2, upstream), or without nodes
     * (any other direction). */
    QSharedPointer<Torvik::Database::CPipeInspectionObject> addInspection(const CDomainObjectPointer& pipe,
                                                                          const QString& shapeWkt = {},
                                                                          int direction = 1, QVariantMap values = {})
    {
        values.insert("INS_Shape_WKT", shapeWkt);
        values.insert("INS_InspectionDir", direction);
        if (direction == 1 || direction == 2) {
            values.insert(direction == 1 ? "INS_StartNode_REF" : "INS_EndNode_REF",
                          pipe->readValue("OBJ_FromNode_REF"));
            values.insert(direction == 1 ? "INS_EndNode_REF" : "INS_StartNode_REF", pipe->readValue("OBJ_ToNode_REF"));
        }
        return add(pipe, Torvik::Database::PipeInspectionObjectType, values)
            .staticCast<Torvik::Database::CPipeInspectionObject>();
    }

    QSharedPointer<Torvik::Database::CPipeObservationObject> addObservation(const CDomainObjectPointer& inspection,
                                                                            const QString& code, double distance,
                                                                            QVariantMap values = {})
    {
        values.insert("OBS_Code", code);
        values.insert("OBS_Distance", distance);
        return add(inspection, Torvik::Database::PipeObservationObjectType, values)
            .staticCast<Torvik::Database::CPipeObservationObject>();
    }

    /** One cell as the database holds it, read by a connection of its own. */
    QVariant stored(const QString& table, const QString& keyColumn, const QString& id, const QString& column) const
    {
        Torvik::Database::StoreStatus status;
        const auto connection = Torvik::Database::SqlConnection::open(
            Torvik::Database::ProjectStore::databaseFile(path()), Torvik::Database::SqlConnection::ReadOnly, status);
        const QVariant value =
            connection ? connection->value(
                             QString("SELECT %1 FROM %2 WHERE %3 = '%4'").arg(column, table, keyColumn, id), status)
                       : QVariant();
        if (!status) {
            qWarning("%s", qPrintable(status.error));
        }
        return value;
    }

private:
    static CDomainObjectPointer add(const CDomainObjectPointer& parent, Torvik::Database::ObjectType type,
                                    const QVariantMap& values)
    {
        const auto inserted = Torvik::Database::ProjectStore::instance().insertObject(parent, type, values);
        if (!inserted.object) {
            qFatal("%s", qPrintable(inserted.error));
        }
        return inserted.object;
    }

    QTemporaryDir m_folder;
    QSharedPointer<Torvik::Database::CProjectObject> m_project;
};

} // namespace Kx::Test
