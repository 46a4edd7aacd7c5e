#pragma once

#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/Notifications.h"
#include "geo/GdalGeoProjector.h"
#include "host/domain/ProjectStore.h"
#include "measurement/InspDomain.h"
#include "measurement/InspectionDir.h"
#include "scene/Renderable.h"

#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

/** One value that the project's library has reported as written. */
struct Written {
    QString objectId;
    QString key;
    int origin = 0;
};

/** Hears what is written into the project. */
class WriteListener : public QObject {
public:
    WriteListener()
        : m_mapper(Torvik::Database::CDatabaseLibrary::notificationManager())
    {
        m_mapper.addGlobalNotificationReceiver(*this);
    }

    QVector<Written> writes;

    int countOf(const QString& id, int origin) const
    {
        int count = 0;
        for (const Written& write : writes)
            count += write.objectId == id && write.origin == origin ? 1 : 0;
        return count;
    }

protected:
    void customEvent(QEvent* event) override
    {
        using namespace Torvik::Database;
        if (event->type() != CDomainNotificationEvent::eventType)
            return;
        const CDomainNotification& notification = static_cast<CDomainNotificationEvent*>(event)->notification();
        if (const auto* change = dynamic_cast<const CObjectValueChangedNotification*>(&notification))
            writes.append({change->object() ? change->object()->id() : QString(), change->key(), change->origin()});
    }

private:
    Torvik::Database::CAsyncNotificationMapper m_mapper;
};

/** A project on disk with a node "n1", a section "s1" with an inspection "i1" and an observation "o1", and a lateral
 *  "l1"; open and active while the object lives. The scene begins untied. */
class ShapeProject {
public:
    ShapeProject()
    {
        using namespace Torvik::Database;
        Torvik::View3d::GdalGeoProjector::instance()->deinit();
        const StoreStatus made =
            ProjectStore::create(folder(), {}, [this](BulkWriter& writer) { return fill(writer); });
        const OpenedProject opened = ProjectStore::instance().open(folder());
        error = made.error + opened.error;
        project = opened.project;
        Torvik::AppState::instance().setActiveProject(project);
    }
    ~ShapeProject()
    {
        Torvik::AppState::instance().setActiveProject({});
        if (project)
            Torvik::Database::ProjectStore::instance().close(project);
        Torvik::View3d::GdalGeoProjector::instance()->deinit();
    }

    QSharedPointer<Torvik::Database::CProjectObject> project;
    QString error;

    CDomainObjectPointer record(const QString& id) const { return project->lookupObject(id); }

    /** Puts a shape into the project, as if it had been there before the view. */
    void store(const QString& id, const QString& column, const QString& text)
    {
        const CDomainObjectPointer object = record(id);
        object->updateValue(column, text);
        Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(object, 1);
    }

    /** One value as it stands in the database file, read by a connection of its own. */
    QVariant inFile(const QString& statement) const
    {
        const QString name = QStringLiteral("tst_ShapeAccess");
        QVariant value;
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
            database.setDatabaseName(Torvik::Database::ProjectStore::databaseFile(folder()));
            database.open();
            QSqlQuery query(statement, database);
            if (query.next())
                value = query.value(0);
        }
        QSqlDatabase::removeDatabase(name);
        return value;
    }
    QVariant inspectionShapeInFile() const
    {
        return inFile(QStringLiteral("SELECT INS_Shape_WKT FROM SECINSP WHERE INS_PK = 'i1'"));
    }

    QString folder() const { return m_directory.filePath(QStringLiteral("project")); }

private:
    Torvik::Database::StoreStatus fill(Torvik::Database::BulkWriter& writer)
    {
        using namespace Torvik::Database;
        writer.insert(NodeObjectType, {}, {{"OBJ_PK", "n1"}, {"OBJ_Key", "N1"}});
        writer.insert(SectionObjectType, {}, {{"OBJ_PK", "s1"}, {"OBJ_Key", "S1"}});
        writer.insert(LateralObjectType, {}, {{"OBJ_PK", "l1"}, {"OBJ_Key", "L1"}});
        writer.insert(PipeInspectionObjectType, QStringLiteral("s1"), {{"INS_PK", "i1"}});
        return writer.insert(PipeObservationObjectType, QStringLiteral("i1"), {{"OBS_PK", "o1"}});
    }

    QTemporaryDir m_directory;
};

/** An object of the scene whose shape and ids the test sets. */
class ShapedObject : public Torvik::View3d::Renderable, public Torvik::View3d::InspDomain {
public:
    ShapedObject(const QString& type, const QString& recordId)
        : Renderable(nullptr)
        , domainObjectId(recordId)
        , m_type(type)
    {
    }

    QString renderableType() const override { return m_type; }
    QVector<QVector<QVector3D>> getShapePoints() const override { return shape; }
    QString getInspectionObjectId() const override { return inspectionObjectId; }
    QString getDomainObjectId() const override { return domainObjectId; }
    QString wktPrefix() const override
    {
        return m_type == QLatin1String("section") ? Torvik::Database::ShapeWKTHelper::WKT_LINESTRING_PREFIX
                                                  : Torvik::Database::ShapeWKTHelper::WKT_POINT_PREFIX;
    }

    QVector<QVector<QVector3D>> shape;
    QString domainObjectId;
    QString inspectionObjectId;

private:
    QString m_type;
};

/** A section as ShapeAccess sees one: its record is the inspection, which is its own mirror. */
class ShapedSection : public ShapedObject, public Torvik::View3d::InspectionDir {
public:
    ShapedSection()
        : ShapedObject(QStringLiteral("section"), QStringLiteral("i1"))
    {
        inspectionObjectId = domainObjectId;
    }
};
