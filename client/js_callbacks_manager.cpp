#include "client/js_callbacks_manager.h"

JSCallBacksManager::~JSCallBacksManager()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_callbacks.clear();
}

void JSCallBacksManager::onRunJavaScriptCallbackFinished(qlonglong id)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_callbacks.erase(id);
}

void JSCallBacksManager::runCallback(qlonglong id, QVariant res)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto found = m_callbacks.find(id);
    if (found == m_callbacks.end())
        return;
    // Queued: finished is raised under this very mutex.
    connect(found->second.get(), &RunJavaScriptCallback::finished, this,
            &JSCallBacksManager::onRunJavaScriptCallbackFinished, Qt::QueuedConnection);
    found->second->execute(res);
}

void JSCallBacksManager::addCallback(qlonglong id, CefRefPtr<RunJavaScriptCallback> cb)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_callbacks[id] = cb;
}

void JSCallBacksManager::disconnectAll()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    QObject::disconnect(this, nullptr, nullptr, nullptr);
    for (auto& entry : m_callbacks)
        QObject::disconnect(entry.second.get(), nullptr, nullptr, nullptr);
}
