#pragma once

#include <QString>

namespace Torvik::Base {

/** Identifier of a domain object: an opaque text, stable for the life of the object. */
using GUID = QString;

} // namespace Torvik::Base

namespace Torvik::Database {

class CGuidHelper {
public:
    /** A new identifier that no other object bears. */
    static QString createGuid();
};

} // namespace Torvik::Database
