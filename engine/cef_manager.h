#pragma once

#include "engine/qcef_global_settings.h"

#include "include/cef_base.h"

#include <QObject>
#include <QString>

#include <vector>

class BrowserApp;
class BrowserClient;

// Process-wide owner of the engine: starts it once, lists the live browser clients, tears them
// down when the application quits and shuts the engine down at process exit.
// Qt main thread only.
class CCefManager : public QObject
{
    Q_OBJECT

public:
    static CCefManager& getInstance();

    // Stores the settings; a repeated call while initialised keeps the first ones. Always true.
    bool initialize(const QCefGlobalSettings& settings);
    // Starts the engine; one attempt per process, later calls answer true without a new attempt.
    bool startup();

    QCefGlobalSettings globalSettings() const;

    void addBrowserClient(BrowserClient* client);
    void removeBrowserClient(BrowserClient* client);

    // The engine's cache root, and a path below it ("root/" + relative).
    CefString cacheRootPath() const;
    CefString cachePath(const QString& relative) const;

private Q_SLOTS:
    // At QCoreApplication::aboutToQuit: cleans up every listed client and drops the application
    // object, without waiting for browsers to close.
    void shutdownCef();

private:
    CCefManager();
    ~CCefManager() override;
    CCefManager(const CCefManager&) = delete;
    CCefManager& operator=(const CCefManager&) = delete;

    CefRefPtr<BrowserApp> m_app;
    QCefGlobalSettings m_globalSettings;
    int m_state = 0;
    std::vector<BrowserClient*> m_browserClients;

    friend class CCefManagerTestAccess;
};
