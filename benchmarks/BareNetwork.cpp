#include "benchmarks/BareNetwork.h"

#include <QTimer>
#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>

namespace Torvik::Bench {

namespace {

constexpr int columns = 250;
constexpr float spacing = 40.0F;

QVector3D gridPosition(int index)
{
    const auto column = static_cast<float>(index % columns);
    const auto row = static_cast<float>(index / columns);
    return {column * spacing, 0.0F, row * spacing};
}

int sum(const Qt3DCore::QNode* node)
{
    int count = 1;
    for (const Qt3DCore::QNode* child : node->childNodes())
        count += sum(child);
    return count;
}

/** Owns a timer by value, as scene objects do. */
class TimedEntity : public Qt3DCore::QEntity {
public:
    explicit TimedEntity(Qt3DCore::QNode* parent)
        : QEntity(parent)
    {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, [this] { setObjectName({}); });
    }

private:
    QTimer m_timer;
};

} // namespace

void BareNetwork::build(Qt3DCore::QEntity* root, const BareOptions& options)
{
    m_options = options;
    m_root = root;
    for (int i = 0; i < options.pipes; ++i) {
        m_nodes.append(makeNode(i));
        m_sections.append(makeSection(i));
    }
}

int BareNetwork::nodeCount() const
{
    int count = 0;
    for (const Qt3DCore::QEntity* entity : m_nodes + m_sections)
        count += sum(entity);
    return count;
}

void BareNetwork::dress(Qt3DCore::QEntity* entity, Share& share)
{
    const bool own = m_options.usersPerShare == 0;
    if (own || share.mesh == nullptr || share.users >= m_options.usersPerShare) {
        auto* mesh = new Qt3DExtras::QCylinderMesh(own ? entity : m_root);
        mesh->setRings(2);
        mesh->setSlices(8);
        mesh->setRadius(1.0F);
        mesh->setLength(1.0F);
        share = {mesh, new Qt3DExtras::QGoochMaterial(own ? entity : m_root), 0};
    }
    ++share.users;
    entity->addComponent(share.mesh);
    entity->addComponent(share.material);
}

Qt3DCore::QTransform* BareNetwork::addTransform(Qt3DCore::QEntity* entity)
{
    auto* transform = new Qt3DCore::QTransform(entity);
    entity->addComponent(transform);
    if (m_options.withSignals) {
        const auto touch = [entity] { entity->setObjectName({}); };
        QObject::connect(transform, &Qt3DCore::QTransform::translationChanged, entity, touch);
        QObject::connect(transform, &Qt3DCore::QTransform::rotationChanged, entity, touch);
        QObject::connect(transform, &Qt3DCore::QTransform::matrixChanged, entity, touch);
        QObject::connect(transform, &Qt3DCore::QTransform::scaleChanged, entity, touch);
    }
    return transform;
}

Qt3DCore::QEntity* BareNetwork::makeNode(int index)
{
    Qt3DCore::QEntity* parent = m_options.detached ? nullptr : m_root;
    auto* node = m_options.withTimers ? new TimedEntity(parent) : new Qt3DCore::QEntity(parent);
    if (m_options.disabled)
        node->setEnabled(false);
    addTransform(node)->setTranslation(gridPosition(index));
    auto* geometry = new Qt3DCore::QEntity(node);
    addTransform(geometry)->setScale3D({0.6F, 3.0F, 0.6F});
    dress(geometry, m_nodeShare);
    if (m_options.detached)
        node->setParent(m_root);
    return node;
}

Qt3DCore::QEntity* BareNetwork::makeSection(int index)
{
    Qt3DCore::QEntity* parent = m_options.detached ? nullptr : m_root;
    auto* section = m_options.withTimers ? new TimedEntity(parent) : new Qt3DCore::QEntity(parent);
    if (m_options.disabled)
        section->setEnabled(false);
    addTransform(section)->setTranslation(gridPosition(index));
    auto* pipe = new Qt3DCore::QEntity(section);
    addTransform(pipe);
    for (int s = 0; s < 1 + index % 3; ++s) {
        auto* segment = new Qt3DCore::QEntity(pipe);
        addTransform(segment)->setTranslation({0.0F, 0.0F, 12.0F * static_cast<float>(s)});
        auto* tube = new Qt3DCore::QEntity(segment);
        addTransform(tube)->setScale3D({0.3F, 12.0F, 0.3F});
        dress(tube, m_segmentShare);
    }
    if (m_options.detached)
        section->setParent(m_root);
    return section;
}

} // namespace Torvik::Bench
