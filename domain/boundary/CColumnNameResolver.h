#pragma once

#include "domain/boundary/CDomainObject.h"

namespace Torvik::Database {

class CColumnNameResolver {
public:
    /** Value of a size column, stored in millimetres, in the project's unit of length (metres or feet); an empty column
     *  gives a null variant. */
    static QVariant sizeToProjectUnit(const CDomainObjectPointer& object, const QString& key);
};

} // namespace Torvik::Database
