// Requests of a page served by the client: scheme handler factories, a
// resource request handler's OnBeforeResourceLoad and GetResourceHandler,
// and CefResourceHandler called as CEF calls it.

#include <cstring>
#include <thread>

#include "include/cef_request_context.h"
#include "include/cef_scheme.h"
#include "include/wrapper/cef_helpers.h"
#include "network_test_support.h"

namespace engine_network_test {
namespace {

// Serves TestPng(); |name|'s calls become events "handler NAME CALL".
class PngHandler : public CefResourceHandler {
 public:
  enum class Mode { kOpen, kProcessLater, kDecline };

  PngHandler(CefRefPtr<NetworkClient> client, std::string name, Mode mode)
      : client_(client), name_(std::move(name)), mode_(mode), png_(TestPng()) {}

  bool Open(CefRefPtr<CefRequest> request, bool& handle_request,
            CefRefPtr<CefCallback> callback) override {
    Note("open");
    handle_request = mode_ == Mode::kOpen;
    return handle_request;
  }
  bool ProcessRequest(CefRefPtr<CefRequest> request,
                      CefRefPtr<CefCallback> callback) override {
    Note("process");
    if (mode_ == Mode::kDecline) return false;
    std::thread([callback] { callback->Continue(); }).detach();
    return true;
  }
  void GetResponseHeaders(CefRefPtr<CefResponse> response, int64_t& response_length,
                          CefString& redirectUrl) override {
    Note("headers");
    response->SetStatus(200);
    response->SetMimeType("image/png");
    response_length = png_.size();
  }
  bool Read(void* data_out, int bytes_to_read, int& bytes_read,
            CefRefPtr<CefResourceReadCallback> callback) override {
    if (mode_ != Mode::kOpen) return CefResourceHandler::Read(data_out, bytes_to_read, bytes_read, callback);
    Note("read");
    return Copy(data_out, bytes_to_read, bytes_read);
  }
  bool ReadResponse(void* data_out, int bytes_to_read, int& bytes_read,
                    CefRefPtr<CefCallback> callback) override {
    Note("read-response");
    return Copy(data_out, bytes_to_read, bytes_read);
  }
  void Cancel() override { Note("cancel"); }

 private:
  bool Copy(void* data_out, int bytes_to_read, int& bytes_read) {
    bytes_read = std::min<int>(bytes_to_read, png_.size() - offset_);
    std::memcpy(data_out, png_.constData() + offset_, bytes_read);
    offset_ += bytes_read;
    return bytes_read > 0;
  }
  void Note(const char* call) {
    client_->NoteThread(CefCurrentlyOn(TID_IO));
    client_->recorder.Record("handler " + name_ + " " + call);
  }

  CefRefPtr<NetworkClient> client_;
  const std::string name_;
  const Mode mode_;
  const QByteArray png_;
  int offset_ = 0;
  IMPLEMENT_REFCOUNTING(PngHandler);
};

// myscheme://host/NAME.png: "ok" opens, "old" is processed later and read
// the old way, "decline" refuses, "none" gets no handler.
class PngFactory : public CefSchemeHandlerFactory {
 public:
  explicit PngFactory(CefRefPtr<NetworkClient> client) : client_(client) {}
  CefRefPtr<CefResourceHandler> Create(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                       const CefString& scheme_name,
                                       CefRefPtr<CefRequest> request) override {
    client_->NoteThread(CefCurrentlyOn(TID_IO) && browser && frame);
    const std::string url = request->GetURL().ToString();
    if (url.find("/ok.png") != std::string::npos)
      return new PngHandler(client_, "ok", PngHandler::Mode::kOpen);
    if (url.find("/old.png") != std::string::npos)
      return new PngHandler(client_, "old", PngHandler::Mode::kProcessLater);
    if (url.find("/fetched.png") != std::string::npos)
      return new PngHandler(client_, "fetched", PngHandler::Mode::kOpen);
    if (url.find("/decline.png") != std::string::npos)
      return new PngHandler(client_, "decline", PngHandler::Mode::kDecline);
    return nullptr;
  }

 private:
  CefRefPtr<NetworkClient> client_;
  IMPLEMENT_REFCOUNTING(PngFactory);
};

// Cancels /cancel.png, lets /async.png go from another thread, serves
// /virtual.png itself.
class ResourceHandler : public CefResourceRequestHandler {
 public:
  explicit ResourceHandler(CefRefPtr<NetworkClient> client) : client_(client) {}
  ReturnValue OnBeforeResourceLoad(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                   CefRefPtr<CefRequest> request,
                                   CefRefPtr<CefCallback> callback) override {
    client_->NoteThread(CefCurrentlyOn(TID_IO) && !request->IsReadOnly());
    const std::string url = request->GetURL().ToString();
    if (url.find("/cancel.png") != std::string::npos) return RV_CANCEL;
    if (url.find("/async.png") != std::string::npos) {
      std::thread([callback] { callback->Continue(); }).detach();
      return RV_CONTINUE_ASYNC;
    }
    return RV_CONTINUE;
  }
  CefRefPtr<CefResourceHandler> GetResourceHandler(CefRefPtr<CefBrowser> browser,
                                                   CefRefPtr<CefFrame> frame,
                                                   CefRefPtr<CefRequest> request) override {
    client_->NoteThread(CefCurrentlyOn(TID_IO) && request->IsReadOnly());
    if (request->GetURL().ToString().find("/virtual.png") == std::string::npos) return nullptr;
    return new PngHandler(client_, "virtual", PngHandler::Mode::kOpen);
  }

 private:
  CefRefPtr<NetworkClient> client_;
  IMPLEMENT_REFCOUNTING(ResourceHandler);
};

QByteArray Image(const char* name, const std::string& src) {
  return QByteArray("<img src='") + src.c_str() + "' onload=\"console.log('" + name +
         " ' + this.naturalWidth)\" onerror=\"console.log('" + name + " error')\">";
}

// Registers myscheme as a scheme that fetch() and XMLHttpRequest may use.
class SchemeApp : public CefApp {
 public:
  void OnRegisterCustomSchemes(CefRawPtr<CefSchemeRegistrar> registrar) override {
    registrar->AddCustomScheme("myscheme", CEF_SCHEME_OPTION_STANDARD | CEF_SCHEME_OPTION_CORS_ENABLED |
                                               CEF_SCHEME_OPTION_FETCH_ENABLED);
  }
  IMPLEMENT_REFCOUNTING(SchemeApp);
};

// Scripted requests, logged as "NAME BYTES" or "NAME error".
QByteArray Scripts() {
  return R"(<script>
const size = (name, promise) => promise.then(r => r.arrayBuffer())
    .then(b => console.log(name + ' ' + b.byteLength), () => console.log(name + ' error'));
size('fetch', fetch('myscheme://host/fetched.png'));
size('preflighted', fetch(new Request('myscheme://host/fetched.png', {headers: {'X-Asked': '1'}})));
size('unserved', fetch('myscheme://host/none.png'));
const xhr = new XMLHttpRequest();
xhr.open('GET', 'myscheme://host/fetched.png');
xhr.responseType = 'arraybuffer';
xhr.onload = () => console.log('xhr ' + xhr.response.byteLength);
xhr.onerror = () => console.log('xhr error');
xhr.send();
</script>)";
}

TEST(ResourceHandling, FactoriesAndResourceHandlersServeOrRefuseRequests) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    HttpServer server;
    ASSERT_TRUE(server.running());
    server.AddFile("cancel.png", TestPng());
    server.AddFile("async.png", TestPng());
    server.AddFile("page.html", Image("ok", "myscheme://host/ok.png") +
                                    Image("old", "myscheme://host/old.png") +
                                    Image("decline", "myscheme://host/decline.png") +
                                    Image("none", "myscheme://host/none.png") +
                                    Image("virtual", "/virtual.png") +
                                    Image("cancel", "/cancel.png") +
                                    Image("async", "/async.png") + Scripts());
    ASSERT_TRUE(StartEngine(new SchemeApp));
    CefRefPtr<NetworkClient> client = new NetworkClient;
    client->resource_handler = new ResourceHandler(client);
    CefRefPtr<CefRequestContext> context =
        CefRequestContext::CreateContext(CefRequestContext::GetGlobalContext(), nullptr);
    ASSERT_TRUE(context->RegisterSchemeHandlerFactory("myscheme", "", new PngFactory(client)));
    const std::string page = server.Url("/page.html");
    ASSERT_TRUE(OpenBrowser(client, page, context));

    const char* const kOutcomes[] = {"ok 37",         "old 37",     "decline error",
                                     "none error",    "virtual 37", "cancel error",
                                     "async 37",      "unserved error"};
    for (const char* outcome : kOutcomes) {
      EXPECT_TRUE(client->recorder.WaitFor(std::string("console ") + outcome)) << outcome;
    }
    const std::string bytes = std::to_string(TestPng().size());
    for (const char* script : {"fetch ", "preflighted ", "xhr "}) {
      EXPECT_TRUE(client->recorder.WaitFor(std::string("console ") + script + bytes)) << script;
    }
    // The document itself was offered as a navigation.
    EXPECT_FALSE(client->recorder.Matching("resource " + page + " nav=1").empty());
    // CEF's order of calls, and Cancel at the end whatever happened.
    EXPECT_EQ(client->recorder.Matching("handler ok"),
              (Events{"handler ok open", "handler ok headers", "handler ok read",
                      "handler ok cancel"}));
    EXPECT_EQ(client->recorder.Matching("handler old"),
              (Events{"handler old open", "handler old process", "handler old headers",
                      "handler old read-response", "handler old cancel"}));
    EXPECT_EQ(client->recorder.Matching("handler decline"),
              (Events{"handler decline open", "handler decline process",
                      "handler decline cancel"}));
    StopEngine(client);
    client->resource_handler = nullptr;  // it holds the client
  });
}

}  // namespace
}  // namespace engine_network_test
