#include "host/app/InspectionLookup.h"

#include "domain/boundary/ColumnNames.h"

#include <utility>

namespace Torvik::Viewer {

using namespace Torvik::Database;
using Inspection = QSharedPointer<CPipeInspectionObject>;

namespace {

std::pair<QString, QString> whenOf(const CPipeInspectionObject& inspection)
{
    return {inspection.readValue(QStringLiteral("INS_Date")).toString(),
            inspection.readValue(QStringLiteral("INS_Time")).toString()};
}

template <typename Visit>
void forEachInspection(const CProjectObject& project, const Visit& visit)
{
    const auto ofPipe = [&visit](const CGenericPipeObject& pipe) {
        for (int i = 0; i < pipe.inspectionCount(); ++i)
            visit(pipe, pipe.inspection(i));
    };
    for (int i = 0; i < project.sectionCount(); ++i)
        ofPipe(*project.section(i));
    for (int i = 0; i < project.lateralCount(); ++i)
        ofPipe(*project.lateral(i));
}

} // namespace

Inspection inspectionOfKey(const CProjectObject& project, const QString& key)
{
    if (key.isEmpty())
        return {};
    Inspection own;
    Inspection latest;
    forEachInspection(project, [&](const CGenericPipeObject& pipe, const Inspection& inspection) {
        const bool meant =
            inspection->id() == key || inspection->readValue(QStringLiteral("INS_Key")).toString() == key;
        if (meant && !own)
            own = inspection;
        const bool ofPipe = pipe.readValue(NODE_KEY_COLUMN).toString() == key;
        if (ofPipe && (!latest || whenOf(*inspection) >= whenOf(*latest)))
            latest = inspection;
    });
    return own ? own : latest;
}

} // namespace Torvik::Viewer
