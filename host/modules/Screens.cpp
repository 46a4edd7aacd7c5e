#include "host/modules/Screens.h"

namespace Torvik::Viewer {

namespace {
const QString keyName = QStringLiteral("_key");
} // namespace

void ScreenManager::setOngoingScreenKey(const QString& key)
{
    if (m_ongoingScreenKey == key) {
        return;
    }
    m_ongoingScreenKey = key;
    emit ongoingScreenKeyChanged();
}

void ScreenManager::show(const QString& name, const QJSValue& arguments)
{
    emit screenRequested(name, arguments);
}

PageStack::PageStack(QObject* parent)
    : QObject(parent)
    , m_currentItem({{keyName, ScreenManager::startKey()}})
{
}

void PageStack::setCurrentKey(const QString& key)
{
    if (m_currentItem.value(keyName).toString() == key) {
        return;
    }
    m_currentItem[keyName] = key;
    emit currentItemChanged();
}

} // namespace Torvik::Viewer
