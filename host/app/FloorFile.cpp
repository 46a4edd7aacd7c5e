#include "host/app/FloorFile.h"

#include "domain/boundary/BaseServices.h"
#include "host/app/PlanCopy.h"
#include "host/domain/WholeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace Torvik::Viewer::FloorFile {

namespace {

/** What the user reads, in the user's language. */
struct Text {
    Q_DECLARE_TR_FUNCTIONS(Torvik::Viewer::FloorFile)
};

constexpr int version = 1;
constexpr double largestNumber = double(std::numeric_limits<float>::max());

const QString versionKey = QStringLiteral("version");
const QString heightsKey = QStringLiteral("heights");
const QString plansKey = QStringLiteral("plans");
const QString floorKey = QStringLiteral("floor");
const QString fileKey = QStringLiteral("file");
const QString placeKey = QStringLiteral("place");
const QString turnKey = QStringLiteral("turn");
const QString scaleKey = QStringLiteral("scale");

/** Finite numbers of a float's range, as many as are wanted; none otherwise. */
std::optional<QVector<double>> numbers(const QJsonValue& value, int count)
{
    const QJsonArray array = value.toArray();
    if (!value.isArray() || array.size() != count)
        return {};
    QVector<double> result;
    for (const QJsonValue& entry : array) {
        if (!entry.isDouble() || !(std::abs(entry.toDouble()) <= largestNumber))
            return {};
        result << entry.toDouble();
    }
    return result;
}

std::optional<FloorPlace> placeIn(const QJsonObject& plan)
{
    const auto place = numbers(plan.value(placeKey), 2);
    const auto turn = numbers(QJsonArray {plan.value(turnKey)}, 1);
    const auto scale = numbers(plan.value(scaleKey), 3);
    if (!place || !turn || !scale)
        return {};
    const QVector3D factors(float(scale->at(0)), float(scale->at(1)), float(scale->at(2)));
    // What has no extent cannot be seen, nor be aligned again.
    if (qFuzzyIsNull(factors.x()) || qFuzzyIsNull(factors.y()) || qFuzzyIsNull(factors.z()))
        return {};
    return FloorPlace {place->at(0), place->at(1), turn->at(0), factors};
}

/** A file's name and no way to another folder, of a kind that is laid as it is: a PDF would be used up. */
bool isName(const QString& file)
{
    return !file.isEmpty() && !file.startsWith(QLatin1Char('.')) && !file.contains(QLatin1Char('/')) &&
           !file.contains(QLatin1Char('\\')) && !PlanCopy::needsCopy(file);
}

/** Adds the plan, or says why it is none. */
void readPlan(const QJsonValue& value, const QString& path, Reading& reading)
{
    const QJsonObject plan = value.toObject();
    const int floor = plan.value(floorKey).toInt(-1);
    if (floor < 0 || floor >= floorCount || reading.floors.plans.contains(floor)) {
        reading.problems
            << Text::tr("%1 names a plan of no floor, or a second one of the same; it is not laid.").arg(path);
        return;
    }
    const QString file = plan.value(fileKey).toString();
    if (!isName(file)) {
        reading.problems
            << Text::tr("%1: the plan of floor %2 is no file of the project; it is not laid.").arg(path).arg(floor + 1);
        return;
    }
    reading.floors.plans.insert(floor, {file, placeIn(plan)});
    if (!reading.floors.plans.value(floor).place)
        reading.problems
            << Text::tr("%1 does not tell where %2 lies on floor %3: place it anew.").arg(path, file).arg(floor + 1);
}

QString unreadable(const QString& path, const QString& reason)
{
    return Text::tr("The plans of the floors cannot be read: %1: %2").arg(path, reason);
}

} // namespace

QString path(const QString& project)
{
    return project + Base::CFileSystemNames::graphics3DPathPart() + QStringLiteral("floors.json");
}

QByteArray write(const Floors& floors)
{
    QJsonArray heights;
    for (const double height : floors.heights)
        heights << height;
    QJsonArray plans;
    for (auto plan = floors.plans.begin(); plan != floors.plans.end(); ++plan) {
        QJsonObject entry {{floorKey, plan.key()}, {fileKey, plan->file}};
        if (plan->place) {
            const QVector3D scale = plan->place->scale;
            entry.insert(placeKey, QJsonArray {plan->place->east, plan->place->north});
            entry.insert(turnKey, plan->place->turnDeg);
            entry.insert(scaleKey, QJsonArray {double(scale.x()), double(scale.y()), double(scale.z())});
        }
        plans << entry;
    }
    QJsonObject root {{versionKey, version}, {plansKey, plans}};
    if (!heights.isEmpty())
        root.insert(heightsKey, heights);
    return QJsonDocument(root).toJson();
}

Reading read(const QByteArray& bytes, const QString& path)
{
    Reading reading;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    const QJsonObject root = document.object();
    if (error.error != QJsonParseError::NoError) {
        reading.problems << unreadable(path, error.errorString());
        return reading;
    }
    if (root.value(versionKey).toInt() != version || !root.value(plansKey).isArray()) {
        reading.problems << unreadable(path,
                                       Text::tr("another program has written it, or a newer version of this one."));
        return reading;
    }
    if (root.contains(heightsKey)) {
        const auto heights = numbers(root.value(heightsKey), floorCount);
        reading.floors.heights = heights.value_or(QVector<double>());
        if (!heights)
            reading.problems << Text::tr("%1: the heights of the floors cannot be read; set them anew.").arg(path);
    }
    const QJsonArray plans = root.value(plansKey).toArray();
    for (const QJsonValue& plan : plans)
        readPlan(plan, path, reading);
    return reading;
}

Reading load(const QString& project)
{
    QFile file(path(project));
    if (!file.exists())
        return {};
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return {{}, {unreadable(file.fileName(), Text::tr("it cannot be opened."))}};
    const QByteArray bytes = file.read(largestFile + 1);
    if (bytes.size() > largestFile)
        return {{}, {unreadable(file.fileName(), Text::tr("it is far too large."))}};
    return read(bytes, file.fileName());
}

QString save(const Floors& floors, const QString& project, bool keepBefore)
{
    const QString file = path(project);
    if (!QDir().mkpath(QFileInfo(file).path()))
        return Text::tr("%1: the folder cannot be made").arg(QFileInfo(file).path());
    const QString kept = file + QStringLiteral(".damaged");
    // The first of them is the one that somebody may still need.
    if (keepBefore && QFile::exists(file) && !QFile::exists(kept) && !QFile::copy(file, kept))
        return Text::tr("%1: it is damaged, and no copy of it can be made").arg(file);
    return Database::WholeFile::write(file, write(floors));
}

} // namespace Torvik::Viewer::FloorFile
