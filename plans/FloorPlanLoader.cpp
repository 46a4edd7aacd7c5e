#include "plans/FloorPlanLoader.h"

#include "plans/BackgroundLoader.h"
#include "plans/FloorNav.h"

#include <optional>

namespace Torvik::View3d {

/** What a floor's load does differently from that of the plan under the network. */
class FloorPlanLoader::Load : public BackgroundLoader {
public:
    Load()
        : BackgroundLoader(TooLarge::EndsByItself)
    {
    }

    IBackgroundPlan* createNewPlan(const QString& path) override
    {
        IBackgroundPlan* const plan = BackgroundLoader::createNewPlan(path);
        if (plan && floor)
            connect(plan, &IBackgroundPlan::backgroundLoadingFinished, this, [index = *floor](IBackgroundPlan* loaded) {
                if (!loaded)
                    return;
                FloorNav::instance().setFloorPlan(index, loaded);
                FloorNav::instance().setCurrentFloorIndex(index);
            });
        return plan;
    }
    void applyTranslationFromPlanFile(IBackgroundPlan*, const PlanSettings&) override {}
    void initGeoProjector(const PlanSettings&) override {}

    std::optional<int> floor;
};

FloorPlanLoader::FloorPlanLoader(QObject* parent)
    : QObject(parent)
    , m_load(std::make_unique<Load>())
{
    connect(m_load.get(), &PlanLoader::planLoaded, this, &FloorPlanLoader::planLoaded);
    connect(m_load.get(), &PlanLoader::planLoadingChanged, this, &FloorPlanLoader::planLoadingChanged);
    connect(m_load.get(), &PlanLoader::cancelFinished, this, &FloorPlanLoader::cancelFinished);
    connect(m_load.get(), &PlanLoader::fileTooLarge, this, &FloorPlanLoader::fileTooLarge);
    connect(m_load.get(), &PlanLoader::corruptedPlanFile, this, &FloorPlanLoader::corruptedPlanFile);
    connect(m_load.get(), &PlanLoader::progressPlanLoadChanged, this, &FloorPlanLoader::progressPlanLoadChanged);
    connect(m_load.get(), &PlanLoader::pdfConverterProblem, this, &FloorPlanLoader::pdfConverterProblem);
    connect(m_load.get(), &PlanLoader::problemArisen, this, &FloorPlanLoader::problemArisen);
}

FloorPlanLoader::~FloorPlanLoader() = default;

bool FloorPlanLoader::planLoading() const
{
    return m_load->planLoading();
}

QString FloorPlanLoader::problem() const
{
    return m_load->problem();
}

void FloorPlanLoader::swapPlan(IBackgroundPlan* newPlan)
{
    m_load->swapPlan(newPlan);
}

void FloorPlanLoader::loadPlan(QString fullPath, int index)
{
    m_load->floor = index;
    m_load->loadPlan(std::move(fullPath));
}

void FloorPlanLoader::loadPlanFromProject(QSharedPointer<Database::CProjectObject> project)
{
    if (m_load->planLoading())
        return;
    m_load->floor.reset();
    m_load->loadPlanFromProject(std::move(project));
}

void FloorPlanLoader::cancel()
{
    m_load->cancel();
}

qlonglong FloorPlanLoader::getPlanFileSizeLimit(QString extension)
{
    return m_load->getPlanFileSizeLimit(std::move(extension));
}

void FloorPlanLoader::abandon()
{
    m_load->abandon();
}

} // namespace Torvik::View3d
