#include "host/app/PlanUnits.h"

#include "host/drawing/DrawingJournal.h"
#include "plans/IBackgroundPlan.h"
#include "scene/SceneRoot.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMatrix4x4>
#include <Qt3DRender/QCamera>

#include <cmath>

namespace Torvik::Viewer::PlanUnits {

namespace {

/** Of the longer side, in metres. */
constexpr double smallest = 5.0;
constexpr double largest = 100000.0;
/** Units; a building's drawing is not a kilometre away from its origin. */
constexpr double farAway = 1e6;
constexpr double fineUnit = 0.2;

QString tr(const char* text)
{
    return QCoreApplication::translate("Torvik::Viewer::PlanUnits", text);
}

bool tells(const DXF::DrawingReport& drawing)
{
    return drawing.metresPerUnit > 0.0 && drawing.metresPerUnit != 1.0;
}

QString nameOf(double metres)
{
    static const struct {
        double metres;
        const char* name;
    } units[] = {{0.001, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "millimetres")},
                 {0.01, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "centimetres")},
                 {0.1, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "decimetres")},
                 {0.0254, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "inches")},
                 {0.3048, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "feet")},
                 {1200.0 / 3937.0, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "US survey feet")},
                 {0.9144, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "yards")},
                 {1000.0, QT_TRANSLATE_NOOP("Torvik::Viewer::PlanUnits", "kilometres")}};
    for (const auto& unit : units) {
        if (std::abs(unit.metres - metres) < 1e-9)
            return tr(unit.name);
    }
    return tr("units of %1 m").arg(QLocale().toString(metres));
}

} // namespace

double metresPerUnit(const DXF::DrawingReport& drawing)
{
    if (!tells(drawing))
        return 1.0;
    const double width = drawing.width * drawing.metresPerUnit;
    const bool national = drawing.metresPerUnit < fineUnit && drawing.fromOrigin > farAway;
    return width < smallest || width > largest || national ? 1.0 : drawing.metresPerUnit;
}

QString note(const DXF::DrawingReport& drawing, const QString& file)
{
    if (!tells(drawing))
        return {};
    const QString unit = nameOf(drawing.metresPerUnit);
    const double metres = metresPerUnit(drawing);
    const QString width = QLocale().toString(drawing.width * metres, 'g', 4);
    const QString text =
        metres == 1.0 ? tr("%1 says that it is drawn in %2, which does not fit its size; it is laid as drawn in "
                           "metres, %3 m wide. If that is wrong, scale it by a length.")
                      : tr("%1 is drawn in %2; it is laid at its true size, %3 m wide. If that is wrong, scale it by a "
                           "length.");
    return text.arg(file, unit, width);
}

void scale(View3d::IBackgroundPlan& plan, double factor)
{
    const Qt3DRender::QCamera* const camera = View3d::SceneRoot::camera();
    const QVector3D middle = camera ? camera->viewCenter() : QVector3D();
    QMatrix4x4 matrix;
    matrix.translate(middle);
    matrix.scale(float(factor), 1.0F, float(factor));
    matrix.translate(-middle);
    plan.placement()->setMatrix(matrix * plan.placement()->matrix());
}

} // namespace Torvik::Viewer::PlanUnits
