#pragma once

#include "domain/SectionAdapterBase.h"
#include "domain/boundary/CPipeObjects.h"

namespace Torvik::Database {
class CDomainObjectProxy;
}

namespace Torvik::View3d {

/** Reads a section's values from the records of its pipe and its inspection. The start and end node are the
 *  inspection's; the depths are the pipe's own. */
class SectionAdapter : public SectionAdapterBase {
public:
    /** `proxy` watches the pipe; the adapter takes it over. */
    SectionAdapter(const QSharedPointer<Database::CPipeInspectionObject>& inspection,
                   Database::CDomainObjectProxy* proxy);
    ~SectionAdapter() override;
    SectionAdapter(const SectionAdapter&) = delete;
    SectionAdapter& operator=(const SectionAdapter&) = delete;

    QString sectionId() override;
    QString inspectionId() override;
    bool isLateral() override;
    bool isSection() override;
    QString name() override;
    int inspectionDir() override;
    QString startNodeId() override;
    QString endNodeId() override;
    /** An empty column reads as 0; so do toNodeDepth and diameter. */
    QVariant fromNodeDepth() override;
    QVariant toNodeDepth() override;
    QVariant diameter() override;
    QVariant offset() override;
    QVariant sectionLength() override;
    QString getSectionObjectId() const override;
    QString getInspectionObjectId() const override;

private:
    QVariant value(const char* key) const;
    int pipeType() const;

    QWeakPointer<Database::CDomainObject> m_pipeObject;
    Database::CDomainObjectProxy* m_proxy;
    QSharedPointer<Database::CPipeInspectionObject> m_inspection;
};

} // namespace Torvik::View3d
