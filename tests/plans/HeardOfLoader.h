#pragma once

#include "domain/boundary/BaseServices.h"
#include "plans/SizeInfo.h"
#include "scene/Renderable.h"

#include <QObject>
#include <QStringList>

namespace Kx::Test {

/** What a loader tells, in its order: a PlanLoader or a FloorPlanLoader. */
class Heard {
public:
    template <typename Loader>
    explicit Heard(Loader* loader)
    {
        const auto note = [this](const QString& line) { lines << line; };
        QObject::connect(loader, &Loader::planLoaded, &m_here, [note](Torvik::View3d::Renderable* plan) {
            note(QStringLiteral("loaded ") + plan->renderableType());
        });
        QObject::connect(loader, &Loader::planLoadingChanged, &m_here,
                         [note, loader] { note(loader->planLoading() ? "loading" : "idle"); });
        QObject::connect(loader, &Loader::cancelFinished, &m_here, [note] { note("cancelled"); });
        QObject::connect(loader, &Loader::fileTooLarge, &m_here, [note](const Torvik::View3d::SizeInfo& size) {
            note(QString("too large %1").arg(size.currentWidth));
        });
        QObject::connect(loader, &Loader::corruptedPlanFile, &m_here, [note](Torvik::Base::CErrorCode error) {
            note(QString("corrupted %1").arg(error.code(), 0, 16));
        });
        QObject::connect(loader, &Loader::pdfConverterProblem, &m_here, [note](Torvik::Base::CErrorCode error) {
            note(QString("converter %1").arg(error.code(), 0, 16));
        });
        QObject::connect(loader, &Loader::progressPlanLoadChanged, &m_here,
                         [note](int progress) { note(QString("progress %1").arg(progress)); });
    }

    QStringList lines;

private:
    QObject m_here;
};

} // namespace Kx::Test
