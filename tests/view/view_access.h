#pragma once

#include "client/browser_client.h"
#include "render/render_handler.h"
#include "view/qcef_view_impl.h"

// The test's way into a view's private parts.
class QCefViewImplTestAccess
{
public:
    static void requestMenu(QCefViewImpl* view, const ContextMenuHandler::MenuModelState& state, QPoint at)
    {
        view->onCefContextMenuRequested(state, at);
    }

    // Null before the first load.
    static BrowserClient* client(QCefViewImpl* view) { return view->m_client.get(); }

    // Null before the first load.
    static RenderHandler* renderHandler(QCefViewImpl* view)
    {
        return view->m_client ? view->m_client->renderHandler().get() : nullptr;
    }
};
