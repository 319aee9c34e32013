#include "handlers/context_menu_handler.h"

#include <QAction>

ContextMenuHandler::ContextMenuHandler(QWidget* view)
    : m_view(view)
{
}

void ContextMenuHandler::OnBeforeContextMenu(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                             CefRefPtr<CefContextMenuParams> params,
                                             CefRefPtr<CefMenuModel> model)
{
    // An empty model shows no menu.
    if (!m_contextMenuEnabled)
    {
        model->Clear();
        return;
    }
    if (!m_inspectEnabled)
        return;
    model->AddItem(kInspectCommandId, "Inspect");
}

bool ContextMenuHandler::RunContextMenu(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                        CefRefPtr<CefContextMenuParams> params, CefRefPtr<CefMenuModel> model,
                                        CefRefPtr<CefRunContextMenuCallback> callback)
{
    QReadLocker locker(&m_lock);
    if (!m_view)
        return false;
    m_callback = callback;
    const int x = params->GetXCoord();
    const int y = params->GetYCoord();

    // The model is valid only during this call; the menu is built later on the Qt main thread.
    MenuModelState state;
    state.count = static_cast<int>(model->GetCount());
    for (int index = 0; index < state.count; ++index)
    {
        const size_t at = static_cast<size_t>(index);
        state.types.push_back(model->GetTypeAt(at));
        state.labels.push_back(model->GetLabelAt(at));
        state.checked.push_back(model->IsCheckedAt(at));
        state.commandIds.push_back(model->GetCommandIdAt(at));
        state.groupIds.push_back(model->GetGroupIdAt(at));
        state.enabled.push_back(model->IsEnabledAt(at));
        state.visible.push_back(model->IsVisibleAt(at));
        state.hasAccelerator.push_back(model->HasAcceleratorAt(at));
        int keyCode = 0;
        bool shift = false;
        bool ctrl = false;
        bool alt = false;
        state.acceleratorValid.push_back(model->GetAcceleratorAt(at, keyCode, shift, ctrl, alt));
        state.accelerators.push_back(keyCode + (shift ? static_cast<int>(Qt::ShiftModifier) : 0) +
                                     (ctrl ? static_cast<int>(Qt::ControlModifier) : 0) +
                                     (alt ? static_cast<int>(Qt::AltModifier) : 0));
    }
    Q_EMIT cefContextMenuRequested(state, QPoint(x, y));
    return true;
}

bool ContextMenuHandler::OnContextMenuCommand(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                              CefRefPtr<CefContextMenuParams> params, int command_id,
                                              EventFlags event_flags)
{
    if (command_id != kInspectCommandId)
        return false;
    Q_EMIT showDevTools(QPoint(params->GetXCoord(), params->GetYCoord()));
    return true;
}

void ContextMenuHandler::setView(QWidget* view)
{
    QWriteLocker locker(&m_lock);
    m_view = view;
}

void ContextMenuHandler::onActionTriggered(QAction* action)
{
    if (!m_callback)
        return;
    const int command = action->data().toInt();
    m_callback->Continue(command, EVENTFLAG_NONE);
    m_callback = nullptr;
}
