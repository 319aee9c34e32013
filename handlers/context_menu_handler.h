#pragma once

#include "include/cef_context_menu_handler.h"

#include <QMetaType>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QReadWriteLock>
#include <QWidget>

#include <vector>

class QAction;

// The page's context menu for one browser. An off-screen browser shows no menu of its own, so
// the engine's menu model is copied into a plain value and handed to the view, which builds a
// QMenu from it and sends the chosen command back. Also decides whether a menu exists at all and
// adds "Inspect". The engine calls it on its UI thread; the view on the Qt main thread.
class ContextMenuHandler : public QObject, public CefContextMenuHandler
{
    Q_OBJECT

public:
    // The command of the "Inspect" item.
    static constexpr int kInspectCommandId = MENU_ID_USER_FIRST;

    // A copy of the engine's menu model, valid after the callback that made it. One index is
    // one item in every vector; sub-menus are not descended into.
    struct MenuModelState
    {
        int count = 0;
        std::vector<cef_menu_item_type_t> types;
        std::vector<CefString> labels;
        std::vector<bool> checked;
        std::vector<int> commandIds;
        std::vector<int> groupIds;
        std::vector<bool> enabled;
        std::vector<bool> visible;
        std::vector<bool> hasAccelerator;
        std::vector<bool> acceleratorValid;
        // Key code plus Qt's Shift, Control and Alt modifier bits, ready for QKeySequence.
        std::vector<int> accelerators;
    };

    explicit ContextMenuHandler(QWidget* view);

    // Engine UI thread.
    void OnBeforeContextMenu(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                             CefRefPtr<CefContextMenuParams> params, CefRefPtr<CefMenuModel> model) override;
    bool RunContextMenu(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                        CefRefPtr<CefContextMenuParams> params, CefRefPtr<CefMenuModel> model,
                        CefRefPtr<CefRunContextMenuCallback> callback) override;
    bool OnContextMenuCommand(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                              CefRefPtr<CefContextMenuParams> params, int command_id,
                              EventFlags event_flags) override;

    // Qt main thread. Null at clean-up: no menu is run for a dying widget.
    void setView(QWidget* view);
    // Qt main thread; plain flags, read by the engine UI thread without a lock.
    void setContextMenuEnabled(bool enabled) { m_contextMenuEnabled = enabled; }
    void setInspectEnabled(bool enabled) { m_inspectEnabled = enabled; }

Q_SIGNALS:
    void showDevTools(QPoint point);
    void cefContextMenuRequested(ContextMenuHandler::MenuModelState, QPoint);

public Q_SLOTS:
    // Qt main thread: the item the user picked; its data is the command id. A dismissed menu
    // calls nothing: the callback is released when the next menu replaces it.
    void onActionTriggered(QAction* action);

private:
    QReadWriteLock m_lock;
    QPointer<QWidget> m_view;
    CefRefPtr<CefRunContextMenuCallback> m_callback;
    bool m_contextMenuEnabled = false;
    bool m_inspectEnabled = false;

    IMPLEMENT_REFCOUNTING(ContextMenuHandler);
};

Q_DECLARE_METATYPE(ContextMenuHandler::MenuModelState)
