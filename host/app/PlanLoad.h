#pragma once

#include "domain/boundary/BaseServices.h"
#include "plans/IBackgroundPlan.h"
#include "plans/SizeInfo.h"

#include <QFutureWatcher>
#include <QObject>
#include <QTemporaryDir>

#include <atomic>
#include <memory>

namespace Torvik::Viewer {

/** One load of a file that the user has chosen: copies it, has the scene's loader read the copy, and tells how that
 *  ended. The user's file stays as it is. Whoever gives the load up or deletes it hears nothing more, and what it has
 *  begun goes. Main thread only. */
class PlanLoad : public QObject {
    Q_OBJECT

public:
    struct Order {
        QString source;
        /** Path of the project that the plan is for, with its separator. */
        QString project;
        /** -1 for the place under the network. */
        int floor = -1;
        /** File of the plan that lies there; empty without one. */
        QString oldPlan;
        /** The source is one of the project's documents already, and is laid as it is. */
        bool inProject = false;
    };

    explicit PlanLoad(Order order, QObject* parent = nullptr);
    ~PlanLoad() override;

    void start();
    /** over() follows, without a plan. */
    void cancel();
    /** Ends it at once, without a word. */
    void giveUp();
    const Order& order() const { return m_order; }
    /** What the scene's loader reads: a copy, or the source. */
    QString loadPath() const { return m_loadPath; }
    /** Of a PDF, where that can be told; else 0. */
    int pages() const { return m_pages; }
    /** The plan has its place, so its file stays. */
    void keepFile() { m_fileStays = true; }
    /** As the user knows it: by the name of the source, not by that of its copy. */
    QString inUsersWords(QString text) const;

signals:
    void progressed(int done);
    void tooLarge(const Torvik::View3d::SizeInfo& size);
    void corrupted(Torvik::Base::CErrorCode code);
    void converterFailed(Torvik::Base::CErrorCode code);
    /** For the user. */
    void failed(const QString& text);
    /** The plan is the hearer's now. */
    void loaded(Torvik::View3d::IBackgroundPlan* plan);
    /** The last word, whatever came before. */
    void over();

private:
    /** Where the copy is. It lives as long as somebody writes or reads it. */
    struct Scratch {
        explicit Scratch(const QString& pattern)
            : folder(pattern)
        {
        }
        QTemporaryDir folder;
        std::atomic_bool cancelled {false};
    };

    struct Copied {
        QString problem;
        int pages = 0;
    };

    void copy();
    void onCopied();
    void startLoader();
    template <typename Loader>
    bool start(Loader* loader);
    template <typename Loader>
    void hear(Loader* loader);
    void fail(const QString& text);
    void end();

    const Order m_order;
    QString m_loadPath;
    QString m_picture; ///< in the project, that a PDF becomes
    std::shared_ptr<Scratch> m_scratch;
    std::unique_ptr<QFutureWatcher<Copied>> m_copying;
    int m_pages = 0;
    bool m_reading = false;
    bool m_cancelled = false;
    bool m_fileStays = false;
    bool m_over = false;
};

} // namespace Torvik::Viewer
