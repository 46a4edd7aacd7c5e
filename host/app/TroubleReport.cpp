#include "host/app/TroubleReport.h"

#include "host/app/Commands.h"
#include "host/domain/StoreTrouble.h"

#include <QCoreApplication>

namespace Torvik::Viewer {

using Database::StoreTrouble;

TroubleReport::TroubleReport(QObject* parent)
    : QObject(parent)
{
    const auto& trouble = StoreTrouble::instance();
    connect(&trouble, &StoreTrouble::begun, this, [](const QString& message) { Commands::failure(message); });
    connect(&trouble, &StoreTrouble::lost, this, [this](const QString& message) {
        m_lost = true;
        Commands::failure(message);
    });
}

bool TroubleReport::somethingIsLost()
{
    // A refusal is told from the thread that met it.
    QCoreApplication::sendPostedEvents(&StoreTrouble::instance(), QEvent::MetaCall);
    return m_lost;
}

} // namespace Torvik::Viewer
