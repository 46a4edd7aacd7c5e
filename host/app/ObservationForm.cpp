#include "host/app/ObservationForm.h"

#include "host/domain/ObservationCodes.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>
#include <optional>

namespace Torvik::Viewer::ObservationForm {

namespace {

const QString codeColumn = QStringLiteral("OBS_Code");
const QString distanceColumn = QStringLiteral("OBS_Distance");
const QString clockColumn = QStringLiteral("OBS_ClockPos1");
const QString bendClockColumn = QStringLiteral("OBS_BendClkH");
const QString angleColumn = QStringLiteral("OBS_JointAngle");
const QString quantityColumn = QStringLiteral("OBS_Q1_Value");
const QString lateralColumn = QStringLiteral("OBS_LateralSection_REF");

constexpr double lastHour = 12;
constexpr double widestAngle = 180;

class Words {
    Q_DECLARE_TR_FUNCTIONS(ObservationForm)
};

/** With a point or a comma, whatever the language of the machine. */
std::optional<double> numberOf(QString text)
{
    bool ok = false;
    const double number = text.replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    return ok && std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
}

QString textOf(const QVariant& value)
{
    return value.type() == QVariant::Double ? QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest)
                                            : value.toString();
}

class Reading {
public:
    explicit Reading(const QVariantMap& texts)
        : m_texts(texts)
    {
    }

    QString text(const char* field) const { return m_texts.value(QLatin1String(field)).toString().trimmed(); }
    void refuse(const char* field, const QString& why) { checked.errors.insert(QLatin1String(field), why); }

    /** The number of a field; null where it is empty or wrong. */
    QVariant number(const char* field)
    {
        if (text(field).isEmpty())
            return {};
        const auto number = numberOf(text(field));
        if (!number)
            refuse(field, Words::tr("This is not a number"));
        return number ? QVariant(*number) : QVariant();
    }

    Checked checked;

private:
    const QVariantMap& m_texts;
};

void checkDistance(Reading& reading)
{
    const QVariant distance = reading.number("distance");
    if (reading.text("distance").isEmpty())
        reading.refuse("distance", Words::tr("A distance is needed"));
    else if (distance.toDouble() < 0)
        reading.refuse("distance", Words::tr("A distance is not negative"));
    reading.checked.values.insert(distanceColumn, distance);
}

void checkClock(Reading& reading, bool bend)
{
    const QVariant clock = reading.number("clock");
    const double hour = clock.toDouble();
    if (!clock.isNull() && (hour < 0 || hour > lastHour || hour != std::floor(hour)))
        reading.refuse("clock", Words::tr("A whole hour from 0 to 12"));
    else if (bend && reading.text("clock").isEmpty())
        reading.refuse("clock", Words::tr("A bend needs the hour towards which it turns"));
    reading.checked.values.insert(bend ? bendClockColumn : clockColumn,
                                  clock.isNull() ? QVariant() : QVariant(int(hour)));
}

void checkAngle(Reading& reading, bool bend)
{
    const QVariant angle = reading.number("angle");
    if (std::abs(angle.toDouble()) > widestAngle)
        reading.refuse("angle", Words::tr("At most 180 degrees"));
    else if (bend && reading.text("angle").isEmpty())
        reading.refuse("angle", Words::tr("A bend needs its angle"));
    reading.checked.values.insert(angleColumn, angle);
}

void checkLateral(Reading& reading, const QString& kind, const Surroundings& surroundings)
{
    const QString lateral = reading.text("lateral");
    if (!lateral.isEmpty()) {
        if (kind != QLatin1String("connection"))
            reading.refuse("lateral", Words::tr("Only a connection carries a lateral; its code begins with BCA"));
        else if (lateral == surroundings.pipe)
            reading.refuse("lateral", Words::tr("A pipe cannot be its own lateral"));
        else if (!surroundings.laterals.contains(lateral))
            reading.refuse("lateral", Words::tr("The project does not have this lateral"));
        else if (surroundings.taken.contains(lateral))
            reading.refuse("lateral", Words::tr("Taken already by %1").arg(surroundings.taken.value(lateral)));
    }
    reading.checked.values.insert(lateralColumn, lateral.isEmpty() ? QVariant() : QVariant(lateral));
}

} // namespace

QString kindOf(const QString& code)
{
    const unsigned flags = Database::ObservationCodes::flags(code);
    if (flags & Database::ObservationCodes::bend)
        return QStringLiteral("bend");
    if (flags & Database::ObservationCodes::connection)
        return QStringLiteral("connection");
    return flags & Database::ObservationCodes::endOfInspection ? QStringLiteral("end") : QString();
}

Checked check(const QVariantMap& texts, const Surroundings& surroundings)
{
    Reading reading(texts);
    const QString code = reading.text("code");
    const QString kind = kindOf(code);
    if (code.isEmpty())
        reading.refuse("code", Words::tr("A code is needed"));
    reading.checked.values.insert(codeColumn, code);
    checkDistance(reading);
    checkClock(reading, kind == QLatin1String("bend"));
    checkAngle(reading, kind == QLatin1String("bend"));
    reading.checked.values.insert(quantityColumn, reading.number("quantity"));
    checkLateral(reading, kind, surroundings);
    return reading.checked;
}

QVariantMap textsOf(const QVariantMap& values)
{
    const QString code = values.value(codeColumn).toString();
    const bool bend = kindOf(code) == QLatin1String("bend");
    return {{QStringLiteral("code"), code},
            {QStringLiteral("distance"), textOf(values.value(distanceColumn))},
            {QStringLiteral("clock"), textOf(values.value(bend ? bendClockColumn : clockColumn))},
            {QStringLiteral("angle"), textOf(values.value(angleColumn))},
            {QStringLiteral("quantity"), textOf(values.value(quantityColumn))},
            {QStringLiteral("lateral"), values.value(lateralColumn).toString()}};
}

QStringList columns()
{
    return {codeColumn, distanceColumn, clockColumn, bendClockColumn, angleColumn, quantityColumn, lateralColumn};
}

} // namespace Torvik::Viewer::ObservationForm
