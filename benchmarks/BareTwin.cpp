#include "benchmarks/BareTwin.h"

#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>

namespace Torvik::Bench {

namespace {

constexpr int usersPerComponent = 120;

} // namespace

void BareTwin::remember(const Qt3DCore::QEntity& root)
{
    const auto children = root.childNodes();
    for (const Qt3DCore::QNode* child : children) {
        if (const auto* entity = qobject_cast<const Qt3DCore::QEntity*>(child))
            m_plans.append(planOf(*entity));
    }
}

BareTwin::Plan BareTwin::planOf(const Qt3DCore::QEntity& entity)
{
    Plan plan;
    ++m_nodeCount;
    const auto components = entity.components();
    for (const Qt3DCore::QComponent* component : components) {
        if (const auto* transform = qobject_cast<const Qt3DCore::QTransform*>(component)) {
            plan.hasTransform = true;
            plan.matrix = transform->matrix();
            ++m_nodeCount;
        } else if (qobject_cast<const Qt3DRender::QGeometryRenderer*>(component) != nullptr) {
            plan.hasMesh = true;
        } else if (qobject_cast<const Qt3DRender::QMaterial*>(component) != nullptr) {
            plan.hasMaterial = true;
        } else {
            ++m_leftOut;
        }
    }
    const auto children = entity.childNodes();
    for (const Qt3DCore::QNode* child : children) {
        if (const auto* childEntity = qobject_cast<const Qt3DCore::QEntity*>(child))
            plan.children.append(planOf(*childEntity));
    }
    return plan;
}

void BareTwin::build(Qt3DCore::QEntity* root)
{
    m_root = root;
    m_pool = {};
    m_built.clear();
    for (const Plan& plan : m_plans) {
        m_built.append(make(plan, nullptr));
        m_built.constLast()->setParent(root);
    }
}

Qt3DCore::QEntity* BareTwin::make(const Plan& plan, Qt3DCore::QNode* parent)
{
    auto* entity = new Qt3DCore::QEntity(parent);
    dress(plan, entity);
    for (const Plan& child : plan.children)
        make(child, entity);
    return entity;
}

void BareTwin::dress(const Plan& plan, Qt3DCore::QEntity* entity)
{
    if (plan.hasTransform) {
        auto* transform = new Qt3DCore::QTransform(entity);
        transform->setMatrix(plan.matrix);
        entity->addComponent(transform);
    }
    if (plan.hasMesh) {
        if (m_pool.mesh == nullptr || m_pool.meshUsers++ >= usersPerComponent) {
            auto* mesh = new Qt3DExtras::QCylinderMesh(m_root);
            mesh->setRings(2);
            mesh->setSlices(12);
            m_pool.mesh = mesh;
            m_pool.meshUsers = 1;
        }
        entity->addComponent(m_pool.mesh);
    }
    if (plan.hasMaterial) {
        if (m_pool.material == nullptr || m_pool.materialUsers++ >= usersPerComponent) {
            m_pool.material = new Qt3DExtras::QGoochMaterial(m_root);
            m_pool.materialUsers = 1;
        }
        entity->addComponent(m_pool.material);
    }
}

} // namespace Torvik::Bench
