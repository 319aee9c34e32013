#pragma once

#include "host/view_support/process_messages/cef_client_result_message.h"

#include "include/cef_browser.h"

#include <vector>

// Carries the paths of a file dialog that a page asked for back to the page, as the answer to
// its call. One per call; the engine holds it until the dialog is dismissed.
class RunFileDialogCallback : public CefRunFileDialogCallback
{
public:
    RunFileDialogCallback(CefRefPtr<CefBrowser> browser, CefRefPtr<brovia::CefClientResultMessage> reply);

    // Engine UI thread. Always answers the page, with an empty list when nothing was chosen.
    void OnFileDialogDismissed(const std::vector<CefString>& file_paths) override;

private:
    CefRefPtr<CefBrowser> m_browser;
    CefRefPtr<brovia::CefClientResultMessage> m_reply;

    IMPLEMENT_REFCOUNTING(RunFileDialogCallback);
};
