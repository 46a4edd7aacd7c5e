#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/app/ObjectListModel.h"

namespace Torvik::Viewer {

/** The lines of the lists beside the scene, made from a project's objects. */
namespace ProjectLists {

/** Kind and depth behind each key. */
QVector<ListedObject> nodes(const Database::CProjectObject& project);
/** Sections, then laterals; size, length and end nodes behind each key. */
QVector<ListedObject> pipes(const Database::CProjectObject& project);
/** Under the key of the pipe; where it starts and how many observations it has. */
QVector<ListedObject> inspections(const Database::CProjectObject& project);

} // namespace ProjectLists

} // namespace Torvik::Viewer
