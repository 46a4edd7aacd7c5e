#pragma once

#include "NetworkScene.h"

#include <QtTest>

#include <memory>

/** A scene for nodes that a test makes one by one. */
class NodeScene {
protected:
    using Node = Torvik::View3d::Node;

    void setUp() { m_scene = std::make_unique<NetworkScene>(); }
    void tearDown() { m_scene.reset(); }

    /** Where a node lies that says nothing else: (10, 5, 20) in the scene, from a GIS. */
    static QString at() { return QStringLiteral("POINT ZM(-10 20 5 16)"); }
    Node* realNode(const QVariantMap& values = {}, const QString& shape = at())
    {
        return m_scene->node("N", shape, values);
    }
    Node* virtualNode(bool visible = false, const QString& type = "NOD")
    {
        return Node::createVirtual(m_scene->root.get(), visible, "V", type);
    }

    std::unique_ptr<NetworkScene> m_scene;
};
