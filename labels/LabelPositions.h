#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector3D>

namespace Torvik::View3d {

/** Where labels were put: guid of the object that a label belongs to, and the label's offset from its anchor in the
 *  camera's axes, in metres. */
using LabelPositions = QMap<QString, QVector3D>;

/** From one JSON object with a member {"x": .., "y": .., "z": ..} a label. Any bytes may come: what is no such object
 *  gives nothing; an entry that is no object, or lies beyond a float's range, is left out; a component that is missing
 *  or no number is 0. */
LabelPositions labelPositionsFromJson(const QByteArray& json);

/** The indented form of the same, in UTF-8. An offset that is no finite number is left out. */
QByteArray jsonFromLabelPositions(const LabelPositions& positions);

} // namespace Torvik::View3d
