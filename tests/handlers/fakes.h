// Small stand-ins for the engine objects that the handlers are given.

#pragma once

#include "viewsupport/fake_browser.h"

#include "include/cef_callback.h"
#include "include/cef_frame.h"
#include "include/cef_request.h"
#include "include/cef_ssl_info.h"
#include "include/cef_task.h"
#include "include/cef_values.h"
#include "include/cef_x509_certificate.h"

#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

// What browser hosts were asked to do, in order, across all hosts of a test.
class HostLog
{
public:
    void add(const std::string& entry)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_entries.push_back(entry);
    }
    std::vector<std::string> entries()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_entries;
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_entries;
};

// Records closes and focus as "name close force ui" lines, "ui" telling the engine UI thread.
class RecordingHost : public FakeBrowserHost
{
public:
    RecordingHost(std::string name, HostLog* log) : m_name(std::move(name)), m_log(log) {}

    void CloseBrowser(bool force) override { record(force ? "close force" : "close"); }
    void SetFocus(bool focus) override { record(focus ? "focus" : "blur"); }

private:
    void record(const std::string& what) { m_log->add(m_name + " " + what + (CefCurrentlyOn(TID_UI) ? " ui" : "")); }

    std::string m_name;
    HostLog* m_log;
};

class FakeFrame : public CefFrame
{
public:
    FakeFrame(std::string url, bool main) : url(std::move(url)), main(main) {}

    std::string url;
    bool main;
    std::vector<std::string> loaded;

    bool IsMain() override { return main; }
    CefString GetURL() override { return url; }
    void LoadURL(const CefString& target) override { loaded.push_back(target.ToString()); }

    bool IsValid() override { return true; }
    void Undo() override {}
    void Redo() override {}
    void Cut() override {}
    void Copy() override {}
    void Paste() override {}
    void Delete() override {}
    void SelectAll() override {}
    void ViewSource() override {}
    void GetSource(CefRefPtr<CefStringVisitor>) override {}
    void GetText(CefRefPtr<CefStringVisitor>) override {}
    void LoadRequest(CefRefPtr<CefRequest>) override {}
    void ExecuteJavaScript(const CefString&, const CefString&, int) override {}
    bool IsFocused() override { return main; }
    CefString GetName() override { return CefString(); }
    CefString GetIdentifier() override { return CefString(); }
    CefRefPtr<CefFrame> GetParent() override { return nullptr; }
    CefRefPtr<CefBrowser> GetBrowser() override { return nullptr; }
    // The context and URL request classes are incomplete here, so no CefRefPtr of them can be
    // returned; the handlers never ask.
    CefRefPtr<CefV8Context> GetV8Context() override { std::abort(); }
    void VisitDOM(CefRefPtr<CefDOMVisitor>) override {}
    CefRefPtr<CefURLRequest> CreateURLRequest(CefRefPtr<CefRequest>, CefRefPtr<CefURLRequestClient>) override
    {
        std::abort();
    }
    void SendProcessMessage(CefProcessId target, CefRefPtr<CefProcessMessage> message) override
    {
        sent.emplace_back(target, message);
    }
    std::vector<std::pair<CefProcessId, CefRefPtr<CefProcessMessage>>> sent;

private:
    IMPLEMENT_REFCOUNTING(FakeFrame);
};

// A browser of a chosen identity, kind and main frame, whose host records into a HostLog.
class TestBrowser : public FakeBrowser
{
public:
    TestBrowser(int id, bool popup, HostLog* log = nullptr, const std::string& name = std::string())
        : m_id(id), m_popup(popup), m_recorder(log ? new RecordingHost(name, log) : nullptr)
    {
    }

    CefRefPtr<FakeFrame> mainFrame = new FakeFrame("about:blank", true);

    int GetIdentifier() override { return m_id; }
    bool IsPopup() override { return m_popup; }
    CefRefPtr<CefFrame> GetMainFrame() override { return mainFrame.get(); }
    CefRefPtr<CefBrowserHost> GetHost() override
    {
        if (m_recorder)
            return m_recorder.get();
        return FakeBrowser::GetHost();
    }

private:
    int m_id;
    bool m_popup;
    CefRefPtr<RecordingHost> m_recorder;
};

class FakeRequest : public CefRequest
{
public:
    explicit FakeRequest(std::string url) : m_url(std::move(url)) {}

    CefString GetURL() override { return m_url; }

    bool IsReadOnly() override { return true; }
    void SetURL(const CefString&) override {}
    CefString GetMethod() override { return "GET"; }
    void SetMethod(const CefString&) override {}
    void SetReferrer(const CefString&, ReferrerPolicy) override {}
    CefString GetReferrerURL() override { return CefString(); }
    ReferrerPolicy GetReferrerPolicy() override { return REFERRER_POLICY_DEFAULT; }
    CefRefPtr<CefPostData> GetPostData() override { return nullptr; }
    void SetPostData(CefRefPtr<CefPostData>) override {}
    void GetHeaderMap(HeaderMap&) override {}
    void SetHeaderMap(const HeaderMap&) override {}
    CefString GetHeaderByName(const CefString&) override { return CefString(); }
    void SetHeaderByName(const CefString&, const CefString&, bool) override {}
    void Set(const CefString&, const CefString&, CefRefPtr<CefPostData>, const HeaderMap&) override {}
    int GetFlags() override { return 0; }
    void SetFlags(int) override {}
    CefString GetFirstPartyForCookies() override { return CefString(); }
    void SetFirstPartyForCookies(const CefString&) override {}
    ResourceType GetResourceType() override { return RT_MAIN_FRAME; }
    TransitionType GetTransitionType() override { return TT_LINK; }
    uint64_t GetIdentifier() override { return 1; }

private:
    std::string m_url;
    IMPLEMENT_REFCOUNTING(FakeRequest);
};

class FakeCertificate : public CefX509Certificate
{
public:
    explicit FakeCertificate(std::string pem) : m_pem(std::move(pem)) {}

    CefRefPtr<CefBinaryValue> GetPEMEncoded() override { return CefBinaryValue::Create(m_pem.data(), m_pem.size()); }

    CefRefPtr<CefX509CertPrincipal> GetSubject() override { return nullptr; }
    CefRefPtr<CefX509CertPrincipal> GetIssuer() override { return nullptr; }
    CefRefPtr<CefBinaryValue> GetSerialNumber() override { return nullptr; }
    CefBaseTime GetValidStart() override { return CefBaseTime(); }
    CefBaseTime GetValidExpiry() override { return CefBaseTime(); }
    CefRefPtr<CefBinaryValue> GetDEREncoded() override { return nullptr; }
    size_t GetIssuerChainSize() override { return 0; }
    void GetDEREncodedIssuerChain(IssuerChainBinaryList&) override {}
    void GetPEMEncodedIssuerChain(IssuerChainBinaryList&) override {}

private:
    std::string m_pem;
    IMPLEMENT_REFCOUNTING(FakeCertificate);
};

class FakeSSLInfo : public CefSSLInfo
{
public:
    explicit FakeSSLInfo(const std::string& pem) : m_certificate(new FakeCertificate(pem)) {}

    cef_cert_status_t GetCertStatus() override { return CERT_STATUS_AUTHORITY_INVALID; }
    CefRefPtr<CefX509Certificate> GetX509Certificate() override { return m_certificate.get(); }

private:
    CefRefPtr<FakeCertificate> m_certificate;
    IMPLEMENT_REFCOUNTING(FakeSSLInfo);
};

class CountingCallback : public CefCallback
{
public:
    int continued = 0;
    int cancelled = 0;

    void Continue() override { ++continued; }
    void Cancel() override { ++cancelled; }

private:
    IMPLEMENT_REFCOUNTING(CountingCallback);
};
