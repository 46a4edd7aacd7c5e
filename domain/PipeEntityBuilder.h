#pragma once

#include "domain/boundary/CPipeObjects.h"

#include <QObject>

namespace Torvik::View3d {

class Section;

/** Creates sections together with their adapters and wires them up. */
class PipeEntityBuilder : public QObject {
    Q_OBJECT

public:
    using Inspection = QSharedPointer<Database::CPipeInspectionObject>;

    explicit PipeEntityBuilder(QObject* parent = nullptr);

    /** Builds and registers the section of an inspection; null when its pipe has gone. */
    Section* create(const Inspection& inspection);
    /** For hosts: gives an inspection a new section in the place of an old one. Null when there is nothing to build. */
    Section* createOrReplace(Section* old, Section* replacement, const Inspection& inspection);

public slots:
    void onLateralInProximity(const QString& inspectionId);

private:
    void connectSection(Section* section);
};

} // namespace Torvik::View3d
