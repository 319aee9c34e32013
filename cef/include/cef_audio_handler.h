// Receives the decoded audio of a browser instead of the sound card.

#ifndef CEF_INCLUDE_CEF_AUDIO_HANDLER_H_
#define CEF_INCLUDE_CEF_AUDIO_HANDLER_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Called on the engine's audio stream thread unless noted. Several streams
// of one browser share the handler.
class CefAudioHandler : public virtual CefBaseRefCounted {
 public:
  typedef cef_channel_layout_t ChannelLayout;

  // Lets the client change the stream format (preset to the engine's
  // choice) before capture starts; false cancels the capture. UI thread.
  virtual bool GetAudioParameters(CefRefPtr<CefBrowser> browser,
                                  CefAudioParameters& params) {
    return true;
  }

  // A stream starts with |params| and |channels| channels.
  virtual void OnAudioStreamStarted(CefRefPtr<CefBrowser> browser,
                                    const CefAudioParameters& params,
                                    int channels) = 0;

  // |data| holds one plane of |frames| float samples per channel; |pts| is
  // the presentation time in milliseconds.
  virtual void OnAudioStreamPacket(CefRefPtr<CefBrowser> browser,
                                   const float** data,
                                   int frames,
                                   int64_t pts) = 0;

  virtual void OnAudioStreamStopped(CefRefPtr<CefBrowser> browser) = 0;

  // The stream failed and has ended.
  virtual void OnAudioStreamError(CefRefPtr<CefBrowser> browser,
                                  const CefString& message) = 0;
};

#endif  // CEF_INCLUDE_CEF_AUDIO_HANDLER_H_
