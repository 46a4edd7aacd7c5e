#pragma once

#include "plans/IBackgroundPlan.h"
#include "scene/SceneRoot.h"

/** A plan without a file: what the kinds share, and nothing else. Its anchor corner is given. */
class PaperPlan : public Torvik::View3d::IBackgroundPlan {
public:
    explicit PaperPlan(Torvik::View3d::SceneRoot* scene, const QVector3D& anchor = {})
        : IBackgroundPlan(scene)
        , m_anchor(anchor)
    {
        setEnabled(false);
    }

    QString renderableType() const override { return QStringLiteral("paper"); }
    QVector3D getAdditionalTranslationCorrect() const override { return m_anchor; }
    void cancelFileLoading() override { emit backgroundLoadingWasCancelled(); }
    void load() override { emit backgroundLoadingFinished(this); }

private:
    QVector3D m_anchor;
};
