#include "host/app/PlanLoad.h"

#include "host/app/PdfPages.h"
#include "host/app/PlanCopy.h"
#include "host/app/PlanMessages.h"
#include "plans/FloorPlanLoader.h"
#include "plans/PlanLoader.h"
#include "scene/SceneRoot.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QtConcurrent>

#include <utility>

namespace Torvik::Viewer {

using View3d::FloorPlanLoader;
using View3d::IBackgroundPlan;
using View3d::PlanLoader;
using View3d::SceneRoot;

namespace {

constexpr int underNetwork = -1;

const QString scratchName = QStringLiteral(".plan-");
constexpr int scratchLeftOverDays = 1;

/** Of a program that was killed while it loaded. */
void removeLeftOver(const QString& documents)
{
    const QDateTime before = QDateTime::currentDateTime().addDays(-scratchLeftOverDays);
    const auto folders = QDir(documents).entryInfoList({scratchName + QLatin1Char('*')}, QDir::Dirs | QDir::Hidden);
    for (const QFileInfo& folder : folders) {
        if (folder.lastModified() < before)
            QDir(folder.filePath()).removeRecursively();
    }
}

QString documentsOf(const QString& project)
{
    return project + Base::CFileSystemNames::documentationPathPart();
}

} // namespace

PlanLoad::PlanLoad(Order order, QObject* parent)
    : QObject(parent)
    , m_order(std::move(order))
    , m_loadPath(m_order.source)
{
}

PlanLoad::~PlanLoad()
{
    giveUp();
}

void PlanLoad::giveUp()
{
    m_over = true;
    if (m_scratch)
        m_scratch->cancelled = true;
    m_copying.reset();
    if (SceneRoot* const root = SceneRoot::instance()) {
        root->planLoader()->disconnect(this);
        root->floorPlanLoader()->disconnect(this);
        if (m_reading && m_order.floor == underNetwork)
            root->planLoader()->abandon();
        else if (m_reading)
            root->floorPlanLoader()->abandon();
    }
    m_reading = false;
    // The PDF is still where the user has it.
    if (!m_picture.isEmpty() && !m_fileStays)
        QFile::remove(m_picture);
    m_picture.clear();
}

QString PlanLoad::inUsersWords(QString text) const
{
    return PlanMessages::named(std::move(text), m_loadPath, m_order.source);
}

void PlanLoad::start()
{
    if (m_order.inProject)
        startLoader();
    else
        copy();
}

void PlanLoad::copy()
{
    const QString documents = documentsOf(m_order.project);
    QDir().mkpath(documents);
    removeLeftOver(documents);
    // On the project's disk, from where the plan's file is moved to its place at once.
    m_scratch = std::make_shared<Scratch>(documents + scratchName + QStringLiteral("XXXXXX"));
    if (!m_scratch->folder.isValid()) {
        fail(PlanMessages::notCopied(m_order.source, m_scratch->folder.errorString()));
        return;
    }
    const QString name = PlanCopy::freeName(m_order.source, documents, m_order.oldPlan);
    m_loadPath = m_scratch->folder.filePath(name);
    m_copying = std::make_unique<QFutureWatcher<Copied>>();
    connect(m_copying.get(), &QFutureWatcher<Copied>::finished, this, &PlanLoad::onCopied);
    m_copying->setFuture(QtConcurrent::run([scratch = m_scratch, from = m_order.source, to = m_loadPath] {
        const QString problem = PlanCopy::copy(from, to, scratch->cancelled);
        const bool isPdf = PlanCopy::nameInProject(to) != to;
        return Copied {problem, problem.isEmpty() && isPdf && !scratch->cancelled ? pagesOfPdf(to) : 0};
    }));
}

void PlanLoad::onCopied()
{
    const Copied copied = m_copying->result();
    // It is calling us.
    m_copying.release()->deleteLater();
    if (m_over)
        return;
    m_pages = copied.pages;
    if (!copied.problem.isEmpty())
        fail(PlanMessages::notCopied(m_order.source, copied.problem));
    else
        startLoader();
}

void PlanLoad::startLoader()
{
    SceneRoot* const root = SceneRoot::instance();
    const QString name = QFileInfo(m_loadPath).fileName();
    if (PlanCopy::nameInProject(name) != name)
        m_picture = documentsOf(m_order.project) + PlanCopy::nameInProject(name);
    const bool started = m_order.floor == underNetwork ? start(root->planLoader()) : start(root->floorPlanLoader());
    if (!started && !m_over)
        fail(PlanMessages::missing(m_order.source));
}

template <typename Loader>
bool PlanLoad::start(Loader* loader)
{
    // What it is still reading ends before it is heard, or that end would be taken for this load's.
    loader->abandon();
    hear(loader);
    m_reading = true;
    if constexpr (std::is_same_v<Loader, FloorPlanLoader>)
        loader->loadPlan(m_loadPath, m_order.floor);
    else
        loader->loadPlan(m_loadPath);
    return loader->planLoading();
}

template <typename Loader>
void PlanLoad::hear(Loader* loader)
{
    connect(loader, &Loader::progressPlanLoadChanged, this, &PlanLoad::progressed);
    connect(loader, &Loader::fileTooLarge, this, &PlanLoad::tooLarge);
    connect(loader, &Loader::pdfConverterProblem, this, &PlanLoad::converterFailed);
    connect(loader, &Loader::corruptedPlanFile, this, &PlanLoad::corrupted);
    connect(loader, &Loader::problemArisen, this, [this, loader] { fail(inUsersWords(loader->problem())); });
    // Some reasons follow the end, a cancellation is told twice, and of a broken drawing no end is told.
    connect(loader, &Loader::cancelFinished, this, &PlanLoad::end, Qt::QueuedConnection);
    connect(loader, &Loader::corruptedPlanFile, this, &PlanLoad::end, Qt::QueuedConnection);
    connect(loader, &Loader::fileTooLarge, this, &PlanLoad::end, Qt::QueuedConnection);
    connect(loader, &Loader::planLoaded, this, [this](View3d::Renderable* plan) {
        m_reading = false;
        // The user's word came in the moment in which it was done.
        if (m_cancelled && m_order.floor == underNetwork)
            plan->deleteLater();
        else
            emit loaded(qobject_cast<IBackgroundPlan*>(plan));
        end();
    });
}

void PlanLoad::cancel()
{
    if (m_over)
        return;
    m_cancelled = true;
    if (!m_reading)
        end();
    else if (m_order.floor == underNetwork)
        SceneRoot::instance()->planLoader()->cancel();
    else
        SceneRoot::instance()->floorPlanLoader()->cancel();
}

void PlanLoad::fail(const QString& text)
{
    if (m_over)
        return;
    emit failed(text);
    end();
}

void PlanLoad::end()
{
    if (m_over)
        return;
    giveUp();
    emit over();
}

} // namespace Torvik::Viewer
