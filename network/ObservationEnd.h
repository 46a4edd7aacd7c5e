#pragma once

#include "network/Observation.h"

namespace Torvik::View3d {

/** The end of an inspection: holds the section's end node to the pipe at its distance. */
class KXVIEW3D_EXPORT ObservationEnd : public Observation {
    Q_OBJECT

public:
    ObservationEnd(Section* section, ObservationAdapter* adapter);

    Observation* modify() override;
    /** Lets the end node go. */
    void performCleanup() override;
};

} // namespace Torvik::View3d
