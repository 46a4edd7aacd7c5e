// A second program at work on a project: does one thing to it through the library and ends.
#include "domain/boundary/CDatabaseLibrary.h"
#include "host/domain/ProjectStore.h"

#include <QCoreApplication>
#include <QSqlQuery>

#include <cstdio>
#include <iostream>

using namespace Torvik::Database;

namespace {

int fail(const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    return 1;
}

int lockUntilInputEnds(const QString& folder)
{
    StoreStatus status;
    const auto connection = SqlConnection::open(ProjectStore::databaseFile(folder), SqlConnection::ReadWrite, status);
    const SqlTransaction lock(*connection);
    std::puts("locked");
    std::fflush(stdout);
    std::string line;
    std::getline(std::cin, line);
    return lock.begun() ? 0 : 1;
}

int importNodes(const QString& folder, int count)
{
    BulkWriter writer;
    StoreStatus status = writer.begin(folder);
    for (int i = 0; status && i < count; ++i) {
        status = writer.insert(NodeObjectType, {}, {{"OBJ_Key", QString::number(i)}});
    }
    if (status) {
        status = writer.commit();
    }
    return status ? 0 : fail(status.error);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const QString folder = arguments.value(1);
    const QString command = arguments.value(2);
    if (command == "lock") {
        return lockUntilInputEnds(folder);
    }
    if (command == "import") {
        return importNodes(folder, arguments.value(3).toInt());
    }
    auto& store = ProjectStore::instance();
    const OpenedProject opened = store.open(folder);
    if (!opened.project) {
        return fail(opened.error);
    }
    const CDomainObjectPointer object = opened.project->lookupObject(arguments.value(3));
    StoreStatus status;
    if (!object) {
        return fail("no such object");
    }
    if (command == "update") {
        object->updateValue(arguments.value(4), arguments.value(5));
        status = store.writeObject(object, 77);
    } else if (command == "delete") {
        status = store.deleteObject(object);
    } else if (command == "inspect") {
        status = {store.insertObject(object, PipeInspectionObjectType, {}).error};
    }
    store.close(opened.project);
    return status ? 0 : fail(status.error);
}
