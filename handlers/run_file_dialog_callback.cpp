#include "handlers/run_file_dialog_callback.h"

RunFileDialogCallback::RunFileDialogCallback(CefRefPtr<CefBrowser> browser,
                                             CefRefPtr<brovia::CefClientResultMessage> reply)
    : m_browser(std::move(browser))
    , m_reply(std::move(reply))
{
}

void RunFileDialogCallback::OnFileDialogDismissed(const std::vector<CefString>& file_paths)
{
    CefRefPtr<CefListValue> paths = CefListValue::Create();
    for (size_t index = 0; index < file_paths.size(); ++index)
        paths->SetString(index, file_paths[index]);
    CefRefPtr<CefValue> value = CefValue::Create();
    if (value && value->SetList(paths))
        m_reply->result = value;
    else
        m_reply->result = nullptr;
    m_reply->send(m_browser, m_browser->GetMainFrame());
}
