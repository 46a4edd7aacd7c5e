#pragma once

#include "common/PlainScene.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <Qt3DCore/QEntity>
#include <QtTest>

namespace Kx::Test {

/** Shows the plain scene, from so many metres above, in a square window. Null, with a failed check, when there is none.
 */
inline Qt3DCore::QEntity* showPlainScene(QQuickView& view, int side, double height)
{
    QQmlComponent component(view.engine());
    component.setData(plainSceneQml(3, height), QUrl());
    auto* const item = qobject_cast<QQuickItem*>(component.create());
    if (!QTest::qVerify(item, "the scene stands", qPrintable(component.errorString()), __FILE__, __LINE__))
        return nullptr;
    view.setContent(QUrl(), nullptr, item);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(side, side);
    view.show();
    const bool exposed = QTest::qWaitForWindowExposed(&view);
    if (!QTest::qVerify(exposed, "the window is exposed", "", __FILE__, __LINE__))
        return nullptr;
    return item->property("sceneRoot").value<Qt3DCore::QEntity*>();
}

} // namespace Kx::Test
