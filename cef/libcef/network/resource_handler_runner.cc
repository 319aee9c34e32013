#include "libcef/network/resource_handler_runner.h"

#include <algorithm>
#include <utility>

#include <QRegularExpression>
#include <QString>

#include "libcef/network/engine_task.h"
#include "libcef/network/once_callback.h"
#include "libcef/network/resource_callbacks.h"
#include "libcef/network/response_impl.h"

namespace cefengine {

namespace {

constexpr int kChunkSize = 64 * 1024;
// Chunks read in one go before the IO thread serves others.
constexpr int kChunksPerTask = 16;
// CEF's status for a handler's redirect.
constexpr int kRedirectStatus = 307;

bool HasHeader(const CefResponse::HeaderMap& headers, const char* name) {
  for (const auto& [key, value] : headers) {
    if (QString::fromStdString(key.ToString())
            .compare(QLatin1String(name), Qt::CaseInsensitive) == 0) {
      return true;
    }
  }
  return false;
}

cef_errorcode_t ErrorCode(int64_t value, cef_errorcode_t fallback) {
  return value < 0 ? static_cast<cef_errorcode_t>(value) : fallback;
}

}  // namespace

void ResourceHandlerRunner::Start(CefRefPtr<CefResourceHandler> handler,
                                  CefRefPtr<CefRequest> request,
                                  StillWanted still_wanted,
                                  Done done) {
  auto runner = std::make_shared<ResourceHandlerRunner>(
      handler, request, std::move(still_wanted), std::move(done));
  runner->Open();
}

ResourceHandlerRunner::ResourceHandlerRunner(
    CefRefPtr<CefResourceHandler> handler,
    CefRefPtr<CefRequest> request,
    StillWanted still_wanted,
    Done done)
    : handler_(handler),
      request_(request),
      still_wanted_(std::move(still_wanted)),
      done_(std::move(done)),
      buffer_(kChunkSize) {
  // Only a single range "bytes=first-[last]" is served, as in CEF.
  // Never destroyed: engine threads may still ask while the process exits.
  static const QRegularExpression& kRange = *new QRegularExpression(
      QStringLiteral("^\\s*bytes\\s*=\\s*(\\d+)\\s*-\\s*(\\d*)\\s*$"));
  const QRegularExpressionMatch range = kRange.match(
      QString::fromStdString(request->GetHeaderByName("Range").ToString()));
  if (range.hasMatch()) {
    range_start_ = range.captured(1).toLongLong();
    if (!range.captured(2).isEmpty()) {
      length_ = std::max<int64_t>(
          0, range.captured(2).toLongLong() - range_start_ + 1);
    }
  }
}

void ResourceHandlerRunner::Post(std::function<void()> step) {
  std::shared_ptr<ResourceHandlerRunner> self = shared_from_this();
  PostEngineTask(TID_IO, [self, step = std::move(step)] {
    if (!self->finished_) {
      step();
    }
  });
}

void ResourceHandlerRunner::Open() {
  CefRefPtr<OnceCallback> callback =
      new OnceCallback(Deferred(&ResourceHandlerRunner::OnOpened));
  bool handle_request = false;
  const bool decides = handler_->Open(request_, handle_request, callback.get());
  if (decides && !handle_request) {
    return;  // the callback goes on
  }
  callback->Disarm();
  if (decides || handle_request) {
    OnOpened(decides);
    return;
  }
  callback = new OnceCallback(Deferred(&ResourceHandlerRunner::OnOpened));
  if (!handler_->ProcessRequest(request_, callback.get())) {
    callback->Disarm();
    OnOpened(false);
  }
}

void ResourceHandlerRunner::OnOpened(bool proceed) {
  if (!proceed) {
    Finish(ServedResponse::Outcome::kDeclined, ERR_ABORTED);
    return;
  }
  SkipToRange();
}

void ResourceHandlerRunner::SkipToRange() {
  if (!still_wanted_()) {
    Finish(ServedResponse::Outcome::kFailed, ERR_ABORTED);
    return;
  }
  while (range_skipped_ < range_start_) {
    CefRefPtr<SkipCallback> callback =
        new SkipCallback(Deferred(&ResourceHandlerRunner::OnSkipped));
    int64_t skipped = 0;
    const bool ok = handler_->Skip(range_start_ - range_skipped_, skipped,
                                   callback.get());
    if (ok && skipped == 0) {
      return;  // the callback goes on
    }
    callback->Disarm();
    if (!ok || skipped < 0) {
      Finish(ServedResponse::Outcome::kFailed,
             ErrorCode(skipped, ERR_FAILED));
      return;
    }
    range_skipped_ += skipped;
  }
  ReadHeaders();
}

void ResourceHandlerRunner::OnSkipped(int64_t bytes_skipped) {
  if (bytes_skipped <= 0) {
    Finish(ServedResponse::Outcome::kFailed,
           ErrorCode(bytes_skipped, ERR_FAILED));
    return;
  }
  range_skipped_ += bytes_skipped;
  SkipToRange();
}

void ResourceHandlerRunner::ReadHeaders() {
  CefRefPtr<CefResponse> response = new CefResponseImpl();
  int64_t response_length = -1;
  CefString redirect_url;
  handler_->GetResponseHeaders(response, response_length, redirect_url);
  if (response->GetError() != ERR_NONE) {
    Finish(ServedResponse::Outcome::kFailed, response->GetError());
    return;
  }
  response->GetHeaderMap(response_.headers);
  const std::string mime_type = response->GetMimeType().ToString();
  if (!mime_type.empty() && !HasHeader(response_.headers, "Content-Type")) {
    const std::string charset = response->GetCharset().ToString();
    response_.headers.emplace(
        "Content-Type",
        charset.empty() ? mime_type : mime_type + "; charset=" + charset);
  }
  if (!redirect_url.empty()) {
    response_.status = kRedirectStatus;
    response_.headers.emplace("Location", redirect_url);
    Finish(ServedResponse::Outcome::kServed, ERR_NONE);
    return;
  }
  response_.status = response->GetStatus() > 0 ? response->GetStatus() : 200;
  if (response_length >= 0 && length_ < 0) {
    length_ = response_length;
  }
  ReadBody();
}

bool ResourceHandlerRunner::Append(int count) {
  response_.body.append(buffer_.data(), count);
  if (length_ >= 0 && response_.body.size() >= length_) {
    response_.body.truncate(static_cast<int>(length_));
    return false;
  }
  return true;
}

void ResourceHandlerRunner::ReadBody() {
  if (!still_wanted_()) {
    Finish(ServedResponse::Outcome::kFailed, ERR_ABORTED);
    return;
  }
  for (int chunk = 0; chunk < kChunksPerTask; ++chunk) {
    if (length_ == 0) {
      Finish(ServedResponse::Outcome::kServed, ERR_NONE);
      return;
    }
    CefRefPtr<ReadCallback> callback =
        new ReadCallback(Deferred(&ResourceHandlerRunner::OnRead));
    int bytes_read = 0;
    const bool more =
        handler_->Read(buffer_.data(), kChunkSize, bytes_read, callback.get());
    if (more && bytes_read == 0) {
      return;  // the callback goes on
    }
    callback->Disarm();
    if (!more && bytes_read == -1) {
      ReadOldStyle();
      return;
    }
    if (!more || bytes_read < 0) {
      if (bytes_read < 0) {
        Finish(ServedResponse::Outcome::kFailed, ErrorCode(bytes_read, ERR_FAILED));
      } else {
        Finish(ServedResponse::Outcome::kServed, ERR_NONE);
      }
      return;
    }
    if (!Append(std::min(bytes_read, kChunkSize))) {
      Finish(ServedResponse::Outcome::kServed, ERR_NONE);
      return;
    }
  }
  Post([this] { ReadBody(); });
}

void ResourceHandlerRunner::OnRead(int bytes_read) {
  if (bytes_read < 0) {
    Finish(ServedResponse::Outcome::kFailed, ErrorCode(bytes_read, ERR_FAILED));
  } else if (bytes_read == 0 || !Append(std::min(bytes_read, kChunkSize))) {
    Finish(ServedResponse::Outcome::kServed, ERR_NONE);
  } else {
    ReadBody();
  }
}

void ResourceHandlerRunner::ReadOldStyle() {
  if (!still_wanted_()) {
    Finish(ServedResponse::Outcome::kFailed, ERR_ABORTED);
    return;
  }
  for (int chunk = 0; chunk < kChunksPerTask; ++chunk) {
    if (length_ == 0) {
      Finish(ServedResponse::Outcome::kServed, ERR_NONE);
      return;
    }
    CefRefPtr<OnceCallback> callback =
        new OnceCallback(Deferred(&ResourceHandlerRunner::OnOldStyleReady));
    int bytes_read = 0;
    const bool more = handler_->ReadResponse(buffer_.data(), kChunkSize,
                                             bytes_read, callback.get());
    if (more && bytes_read <= 0) {
      return;  // the callback says when to ask again
    }
    callback->Disarm();
    if (!more || !Append(std::min(bytes_read, kChunkSize))) {
      Finish(ServedResponse::Outcome::kServed, ERR_NONE);
      return;
    }
  }
  Post([this] { ReadOldStyle(); });
}

void ResourceHandlerRunner::OnOldStyleReady(bool proceed) {
  if (proceed) {
    ReadOldStyle();
  } else {
    Finish(ServedResponse::Outcome::kFailed, ERR_FAILED);
  }
}

void ResourceHandlerRunner::Finish(ServedResponse::Outcome outcome,
                                   cef_errorcode_t error) {
  if (finished_) {
    return;
  }
  finished_ = true;
  response_.outcome = outcome;
  response_.error = error;
  // CEF lets go of every handler through Cancel, served or not.
  handler_->Cancel();
  Done done = std::move(done_);
  done(std::move(response_));
}

}  // namespace cefengine
