#include "host/domain/ProjectLoader.h"

#include "domain/boundary/CLogger.h"
#include "host/domain/DomainObjectData.h"
#include "host/domain/ProjectSession.h"
#include "host/domain/TableReader.h"

namespace Torvik::Database::ProjectLoader {

namespace {

constexpr int rowsPerProgress = 1000;
const ObjectType childTables[] = {NodeObjectType, SectionObjectType, PipeInspectionObjectType,
                                  PipeObservationObjectType};

class Loader {
public:
    Loader(const SqlConnection& connection, StoreStatus& status, const LoadProgress& progress)
        : m_connection(connection)
        , m_status(status)
        , m_progress(progress)
    {
    }

    QSharedPointer<CProjectObject> load(const QString& folder)
    {
        const bool read = step(m_connection.execute(QStringLiteral("BEGIN"))) && readProject(folder) && countRows() &&
                          readTables() && step(m_connection.execute(QStringLiteral("COMMIT")));
        return read ? m_project.staticCast<CProjectObject>() : QSharedPointer<CProjectObject>();
    }

private:
    bool step(const StoreStatus& status)
    {
        if (!status) {
            m_status = status;
        }
        return status.ok();
    }

    bool readProject(const QString& folder)
    {
        const Schema::Table& table = *Schema::table(ProjectObjectType);
        const auto layout = TableReader::readLayout(m_connection, table, m_status);
        if (!layout) {
            return false;
        }
        const qint64 seen =
            m_connection.value(QStringLiteral("SELECT max(CHG_PK) FROM CHANGELOG"), m_status).toLongLong();
        TableReader reader(m_connection, table, layout);
        if (!m_status || !step(reader.selectAll())) {
            return false;
        }
        if (!reader.next()) {
            return step({QStringLiteral("%1: it is damaged (it holds no project)").arg(m_connection.file())});
        }
        auto data = std::make_unique<ProjectData>(reader.id(), layout, folder);
        m_data = data.get();
        m_data->seenChange = seen;
        m_data->layouts.insert(ProjectObjectType, layout);
        reader.readInto(m_data->values);
        m_project = CDomainObjectPrivate::make(std::move(data));
        return true;
    }

    bool countRows()
    {
        for (ObjectType type : childTables) {
            m_total +=
                m_connection.value(QStringLiteral("SELECT count(*) FROM %1").arg(Schema::table(type)->name), m_status)
                    .toInt();
        }
        m_data->index.reserve(m_total);
        return m_status.ok();
    }

    bool readTables()
    {
        for (ObjectType type : childTables) {
            const auto layout = TableReader::readLayout(m_connection, *Schema::table(type), m_status);
            if (!layout || !readTable(*Schema::table(type), layout)) {
                return false;
            }
        }
        if (m_progress) {
            m_progress(m_done, m_total);
        }
        return true;
    }

    bool readTable(const Schema::Table& table, const std::shared_ptr<ColumnLayout>& layout)
    {
        m_data->layouts.insert(table.type, layout);
        if (table.type == SectionObjectType) {
            m_data->layouts.insert(LateralObjectType, layout);
        }
        TableReader reader(m_connection, table, layout);
        if (!step(reader.selectAll())) {
            return false;
        }
        while (reader.next()) {
            readObject(reader, layout);
            if (m_progress && ++m_done % rowsPerProgress == 0) {
                m_progress(m_done, m_total);
            }
        }
        return step(reader.status());
    }

    void readObject(TableReader& reader, const std::shared_ptr<ColumnLayout>& layout)
    {
        const QString parentId = reader.parentId();
        const CDomainObjectPointer parent = parentId.isEmpty() ? m_project : m_data->index.value(parentId);
        if (!parent) {
            Logging::CLogger::logMessage(
                Logging::LogWarning, QStringLiteral("Torvik::Database"),
                QStringLiteral("%1: %2 has no parent and is left out").arg(m_connection.file(), reader.id()));
            return;
        }
        auto data = std::make_unique<CDomainObjectPrivate>(reader.type(), reader.id(), layout);
        reader.readInto(data->values);
        m_data->attach(parent, CDomainObjectPrivate::make(std::move(data)));
    }

    const SqlConnection& m_connection;
    StoreStatus& m_status;
    const LoadProgress& m_progress;
    ProjectData* m_data = nullptr;
    CDomainObjectPointer m_project;
    int m_done = 0;
    int m_total = 0;
};

} // namespace

QSharedPointer<CProjectObject> load(const SqlConnection& connection, const QString& folder, StoreStatus& status,
                                    const LoadProgress& progress)
{
    return Loader(connection, status, progress).load(folder);
}

} // namespace Torvik::Database::ProjectLoader
