#include "engine/browser_app.h"

#include "host/cef_common/cef_common_data.h"
#include "host/context/context_registry.h"
#include "host/graphics/opengl_state.h"
#include "host/options/command_line.h"
#include "host/settings/settings.h"
#include "host/settings/settings_root.h"

#include "include/cef_scheme.h"

#include <QMetaType>

BrowserApp::BrowserApp()
    : QObject(nullptr)
    , m_browserProcessHandler(new BrowserProcessHandler())
{
    // The pump request crosses threads as a queued signal and needs its argument type known.
    qRegisterMetaType<int64_t>("int64_t");
    QObject::connect(m_browserProcessHandler.get(), &BrowserProcessHandler::scheduleMessagePumpWork, this,
                     &BrowserApp::onScheduleMessagePumpWork, Qt::AutoConnection);
}

CefRefPtr<CefBrowserProcessHandler> BrowserApp::GetBrowserProcessHandler()
{
    return m_browserProcessHandler;
}

void BrowserApp::OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar)
{
    // Secure, CORS-enabled and CSP-bypassing, but deliberately not a standard scheme.
    registrar->AddCustomScheme("error", CEF_SCHEME_OPTION_SECURE | CEF_SCHEME_OPTION_CORS_ENABLED |
                                            CEF_SCHEME_OPTION_CSP_BYPASSING);
}

void BrowserApp::OnBeforeCommandLineProcessing(const CefString& process_type, CefRefPtr<CefCommandLine> command_line)
{
    const GraphicsState::OpenGLState& gl = GraphicsState::OpenGLState::instance();
    const bool useSoftware = gl.isBlacklistedHardware() || gl.isSoftwareOpenGL();
    cef_common::CefCommonData::getInstance()->populateCommandLineParams(process_type, command_line, useSoftware);
}

void BrowserApp::setInitValue(int value)
{
    m_initValue = value;

    const auto root = settings::in_torvex::getSettingsRoot(txutil::contextmgr::ContextRegistry::getTxrID());
    if (!root)
        return;
    if (const auto group = root->getSettingsByFullName("cefInit"))
        group->set<int>("InitValue", value, "user");

    settings::core::SettingsProperties defaults;
    settings::core::SettingsProperties port;
    port.value = boost::any(cef_common::CefCommonData::getInstance()->remoteDebugPort(-1));
    settings::core::Settings::createAndSetValue("cefInit.DebugPort", defaults, port, "user");
}

void BrowserApp::startMessagePump()
{
    if (m_messagePump)
        return;
    const CommandLine options;
    m_messagePump = new MessagePump(1000 / options.messageProcessingCadence());
}

void BrowserApp::stopMessagePump()
{
    if (!m_messagePump)
        return;
    // Drain what the engine has pending before the pump goes quiet.
    for (int i = 0; i < 10; ++i)
        m_messagePump->doWork();
    m_messagePump->stop();
    QObject::disconnect(m_messagePump.get(), nullptr, nullptr, nullptr);
}

void BrowserApp::onScheduleMessagePumpWork(int64_t delay_ms)
{
    if (m_initValue != 2)
        setInitValue(2);
    if (m_messagePump)
        m_messagePump->scheduleWork(delay_ms);
}
