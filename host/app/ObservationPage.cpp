#include "host/app/ObservationPage.h"

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CProjectObject.h"
#include "domain/boundary/ColumnNames.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ProjectStore.h"

#include <QLocale>

#include <algorithm>
#include <tuple>

namespace Torvik::Viewer {

using namespace Torvik::Database;

namespace {

/** Tag of what this page writes; the view's own writes carry another. */
constexpr int originOfPage = 6001;

const QString lateralColumn = QStringLiteral("OBS_LateralSection_REF");

QString nameOf(const CDomainObjectPointer& pipe)
{
    return pipe ? pipe->readValue(NODE_KEY_COLUMN).toString() : QString();
}

QVariantMap valuesOf(const CDomainObject& observation)
{
    QVariantMap values;
    for (const QString& column : ObservationForm::columns())
        values.insert(column, observation.readValue(column));
    return values;
}

/** Calls `visit` with each observation of the project and the pipe that it is in. */
template <typename Visit>
void forEachObservation(const CProjectObject& project, const Visit& visit)
{
    const auto ofPipe = [&visit](const QSharedPointer<CGenericPipeObject>& pipe) {
        for (int i = 0; i < pipe->inspectionCount(); ++i) {
            const auto inspection = pipe->inspection(i);
            for (int k = 0; k < inspection->observationCount(); ++k)
                visit(inspection->observation(k), pipe);
        }
    };
    for (int i = 0; i < project.sectionCount(); ++i)
        ofPipe(project.section(i));
    for (int i = 0; i < project.lateralCount(); ++i)
        ofPipe(project.lateral(i));
}

} // namespace

ObservationPage::ObservationPage(QObject* parent)
    : QAbstractListModel(parent)
    , m_notifications(CDatabaseLibrary::notificationManager())
{
    m_notifications.addGlobalNotificationReceiver(*this);
    m_reload.setSingleShot(true);
    m_reload.setInterval(0);
    connect(&m_reload, &QTimer::timeout, this, &ObservationPage::onNotified);
}

ObservationPage::~ObservationPage() = default;

QSharedPointer<CPipeInspectionObject> ObservationPage::inspection() const
{
    const auto inspection = m_inspection.toStrongRef();
    return inspection && inspection->isValid() ? inspection : nullptr;
}

void ObservationPage::setInspection(const CDomainObjectPointer& inspection)
{
    const auto taken = qSharedPointerDynamicCast<CPipeInspectionObject>(inspection);
    if (taken == m_inspection.toStrongRef())
        return;
    m_inspection = taken;
    m_inspectionShown = hasInspection();
    reload();
    emit inspectionChanged();
}

void ObservationPage::writeAnew()
{
    reload();
}

QString ObservationPage::pipeName() const
{
    const auto inspected = inspection();
    return inspected ? nameOf(inspected->parentObject().toStrongRef()) : QString();
}

QString ObservationPage::distanceUnit() const
{
    return Base::CLocaleSupport::getDistanceUnit() == Base::HostSettings::unitFeet ? QStringLiteral("ft")
                                                                                   : QStringLiteral("m");
}

int ObservationPage::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_lines.size();
}

QVariant ObservationPage::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_lines.size())
        return {};
    const Line& line = m_lines[index.row()];
    switch (role) {
    case ObjectIdRole:
        return line.id;
    case Qt::DisplayRole:
    case CodeRole:
        return line.code;
    case PlaceRole:
        return line.place;
    case DetailRole:
        return line.detail;
    default:
        return {};
    }
}

QHash<int, QByteArray> ObservationPage::roleNames() const
{
    return {{ObjectIdRole, "objectId"}, {CodeRole, "code"}, {PlaceRole, "place"}, {DetailRole, "detail"}};
}

ObservationPage::Line ObservationPage::lineOf(const CDomainObjectPointer& observation) const
{
    const QVariantMap values = valuesOf(*observation);
    const QVariantMap texts = ObservationForm::textsOf(values);
    const auto text = [&texts](const char* field) { return texts.value(QLatin1String(field)).toString(); };
    const double distance = observation->readValue(QStringLiteral("OBS_Distance")).toDouble();
    const QString kind = ObservationForm::kindOf(text("code"));
    QStringList parts;
    if (kind == QLatin1String("bend"))
        parts << tr("bend");
    else if (kind == QLatin1String("connection"))
        parts << tr("connection");
    else if (kind == QLatin1String("end"))
        parts << tr("end of inspection");
    if (!text("clock").isEmpty())
        parts << tr("%1 o'clock").arg(text("clock"));
    if (!text("angle").isEmpty())
        parts << tr("%1\u00b0").arg(text("angle"));
    if (!text("quantity").isEmpty())
        parts << tr("quantity %1").arg(text("quantity"));
    const auto project = CDomainObject::projectFromObject(observation);
    if (project && !text("lateral").isEmpty()) {
        const QString name = nameOf(project->lookupObject(text("lateral")));
        parts << tr("lateral %1").arg(name.isEmpty() ? QStringLiteral("?") : name);
    }
    return {observation->id(), distance, text("code"),
            tr("%1 %2").arg(QLocale().toString(distance, 'f', 2), distanceUnit()), parts.join(QStringLiteral(", "))};
}

void ObservationPage::reload()
{
    QVector<Line> lines;
    if (const auto inspected = inspection()) {
        for (int i = 0; i < inspected->observationCount(); ++i)
            lines << lineOf(inspected->observation(i));
    }
    std::sort(lines.begin(), lines.end(), [](const Line& a, const Line& b) {
        return std::tie(a.distance, a.code, a.id) < std::tie(b.distance, b.code, b.id);
    });
    // A list that is shown anew loses its place on the screen.
    if (m_lines == lines)
        return;
    beginResetModel();
    m_lines = lines;
    endResetModel();
    emit countChanged();
}

void ObservationPage::onNotified()
{
    const int before = count();
    reload();
    if (count() != before)
        emit numberChanged();
    if (m_inspectionShown && !hasInspection()) {
        m_inspectionShown = false;
        emit inspectionChanged();
    }
}

bool ObservationPage::Line::operator==(const Line& other) const
{
    return std::tie(id, distance, code, place, detail) ==
           std::tie(other.id, other.distance, other.code, other.place, other.detail);
}

void ObservationPage::customEvent(QEvent* event)
{
    if (event->type() != CDomainNotificationEvent::eventType)
        return;
    const auto object = static_cast<CDomainNotificationEvent*>(event)->notification().object();
    const bool concerns = object && (object->objectType() == PipeObservationObjectType ||
                                     object == m_inspection.toStrongRef() || !object->isValid());
    // Many come at once; what they leave is read once.
    if (concerns)
        m_reload.start();
    event->accept();
}

CDomainObjectPointer ObservationPage::observation(const QString& id) const
{
    const auto inspected = inspection();
    return inspected && !id.isEmpty() ? inspected->findChildObjectById(PipeObservationObjectType, id) : nullptr;
}

QVariantMap ObservationPage::textsOf(const QString& id) const
{
    const auto found = observation(id);
    return ObservationForm::textsOf(found ? valuesOf(*found) : QVariantMap());
}

QVariantList ObservationPage::laterals() const
{
    const auto inspected = inspection();
    const auto project = CDomainObject::projectFromObject(inspected);
    QVector<std::pair<QString, QString>> named;
    for (int i = 0; project && i < project->lateralCount(); ++i) {
        const auto lateral = project->lateral(i);
        if (lateral != inspected->parentObject().toStrongRef())
            named.append({nameOf(lateral), lateral->id()});
    }
    std::sort(named.begin(), named.end());
    QVariantList list {QVariantMap {{QStringLiteral("id"), QString()}, {QStringLiteral("name"), tr("None")}}};
    for (const auto& [name, id] : named)
        list << QVariantMap {{QStringLiteral("id"), id}, {QStringLiteral("name"), name}};
    return list;
}

ObservationForm::Surroundings ObservationPage::surroundingsOf(const QString& id) const
{
    ObservationForm::Surroundings surroundings;
    const auto inspected = inspection();
    const auto project = CDomainObject::projectFromObject(inspected);
    if (!project)
        return surroundings;
    const auto pipe = inspected->parentObject().toStrongRef();
    surroundings.pipe = pipe ? pipe->id() : QString();
    for (int i = 0; i < project->lateralCount(); ++i)
        surroundings.laterals.insert(project->lateral(i)->id(), nameOf(project->lateral(i)));
    forEachObservation(*project, [&](const CDomainObjectPointer& other, const CDomainObjectPointer& in) {
        const QString lateral = other->readValue(lateralColumn).toString();
        if (other->id() != id && !lateral.isEmpty())
            surroundings.taken.insert(lateral, tr("%1 at %2 in %3")
                                                   .arg(other->readValue(QStringLiteral("OBS_Code")).toString(),
                                                        lineOf(other).place, nameOf(in)));
    });
    return surroundings;
}

QVariantMap ObservationPage::save(const QString& id, const QVariantMap& texts)
{
    const QString form = QStringLiteral("form");
    const auto existing = observation(id);
    if (!inspection() || (!id.isEmpty() && !existing))
        return {{form, tr("It is not in the project any more")}};
    const auto checked = ObservationForm::check(texts, surroundingsOf(id));
    if (!checked.errors.isEmpty())
        return checked.errors;
    const QString failure = existing ? change(existing, checked.values) : add(checked.values);
    return failure.isEmpty() ? QVariantMap() : QVariantMap {{form, failure}};
}

QString ObservationPage::add(const QVariantMap& values)
{
    return ProjectStore::instance().insertObject(inspection(), PipeObservationObjectType, values).error;
}

QString ObservationPage::change(const CDomainObjectPointer& observation, const QVariantMap& values)
{
    QVariantMap before;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        const QVariant held = observation->readValue(value.key());
        // An empty text and no value are the same to the user.
        if (held == *value || (held.toString().isEmpty() && value->toString().isEmpty()))
            continue;
        before.insert(value.key(), held);
        observation->updateValue(value.key(), *value);
    }
    const StoreStatus written = ProjectStore::instance().writeObject(observation, originOfPage);
    if (written)
        return {};
    for (auto value = before.cbegin(); value != before.cend(); ++value)
        observation->updateValue(value.key(), *value);
    return written.error;
}

QString ObservationPage::remove(const QString& id)
{
    const auto found = observation(id);
    return found ? ProjectStore::instance().deleteObject(found).error : tr("It is not in the project any more");
}

} // namespace Torvik::Viewer
