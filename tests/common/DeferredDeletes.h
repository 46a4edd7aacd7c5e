#pragma once

#include <QCoreApplication>
#include <QEvent>

namespace Kx::Test {

/** Deletes at once what deleteLater() was asked for. */
inline void deleteWhatIsToBeDeleted()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace Kx::Test
