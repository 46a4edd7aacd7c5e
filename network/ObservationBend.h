#pragma once

#include "network/Observation.h"

namespace Torvik::View3d {

/** A bend: turns the rest of the section's pipe. One that is read from the store is in the stored course already. */
class KXVIEW3D_EXPORT ObservationBend : public Observation {
    Q_OBJECT

public:
    ObservationBend(Section* section, ObservationAdapter* adapter, bool fromDB);

    Observation* modify() override;
    /** Takes the bend out of the pipe. */
    void performCleanup() override;
};

} // namespace Torvik::View3d
