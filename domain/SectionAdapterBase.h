#pragma once

#include <QString>
#include <QVariant>

namespace Torvik::View3d {

/** What a section needs to know of its pipe and inspection. Depths, offset and length in metres, diameter in
 *  millimetres. */
class SectionAdapterBase {
public:
    virtual ~SectionAdapterBase() = default;

    virtual QString sectionId() = 0;
    virtual QString inspectionId() = 0;
    virtual bool isLateral() = 0;
    virtual bool isSection() = 0;
    virtual QString name() = 0;
    /** 1 downstream, 2 upstream, anything else unknown. */
    virtual int inspectionDir() = 0;
    /** Ids of the inspection's nodes, not of the pipe's; a null string where it has none. */
    virtual QString startNodeId() = 0;
    virtual QString endNodeId() = 0;
    virtual QVariant fromNodeDepth() = 0;
    virtual QVariant toNodeDepth() = 0;
    virtual QVariant diameter() = 0;
    virtual QVariant offset() = 0;
    virtual QVariant sectionLength() = 0;
    virtual QString getSectionObjectId() const = 0;
    virtual QString getInspectionObjectId() const = 0;
};

} // namespace Torvik::View3d
