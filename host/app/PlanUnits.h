#pragma once

#include <QString>

namespace Torvik::DXF {
struct DrawingReport;
}

namespace Torvik::View3d {
class IBackgroundPlan;
}

/** The units that a drawing says it is drawn in. The view takes a drawing's units for metres. */
namespace Torvik::Viewer::PlanUnits {

/** Metres of a unit by which a drawing is to be laid. Many a program writes millimetres into each drawing, in metres
 *  though it is: a drawing is not believed that would come out smaller than a room or larger than a country, or that
 *  lies far from its origin, as only the metres of national coordinates do. */
double metresPerUnit(const DXF::DrawingReport& drawing);

/** What the user should know of it; empty where there is nothing to tell.
 *  @param file  as the user calls it */
QString note(const DXF::DrawingReport& drawing, const QString& file);

/** A plan that has just loaded lies in the middle of the view; it is scaled about that. */
void scale(View3d::IBackgroundPlan& plan, double factor);

} // namespace Torvik::Viewer::PlanUnits
