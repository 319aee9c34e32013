// What a drag and drop carries: a link, a text or HTML fragment, files, and
// the picture shown under the cursor.

#ifndef CEF_INCLUDE_CEF_DRAG_DATA_H_
#define CEF_INCLUDE_CEF_DRAG_DATA_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_image.h"
#include "include/cef_stream.h"

class CefDragData : public virtual CefBaseRefCounted {
 public:
  // An empty, writable object. Any thread.
  static CefRefPtr<CefDragData> Create();

  // A writable deep copy.
  virtual CefRefPtr<CefDragData> Clone() = 0;
  virtual bool IsReadOnly() = 0;

  virtual bool IsLink() = 0;
  virtual bool IsFragment() = 0;
  virtual bool IsFile() = 0;

  virtual CefString GetLinkURL() = 0;
  virtual CefString GetLinkTitle() = 0;
  virtual CefString GetLinkMetadata() = 0;
  virtual CefString GetFragmentText() = 0;
  virtual CefString GetFragmentHtml() = 0;
  virtual CefString GetFragmentBaseURL() = 0;

  // Name of the file whose contents are dragged (dragging out of the page).
  virtual CefString GetFileName() = 0;
  // Writes those contents to |writer|; with a null writer only the size is
  // returned. Returns the number of bytes.
  virtual size_t GetFileContents(CefRefPtr<CefStreamWriter> writer) = 0;
  // Display names of the files dragged in; false if there are none.
  virtual bool GetFileNames(std::vector<CefString>& names) = 0;
  // Full paths of the files dragged in; false if there are none.
  virtual bool GetFilePaths(std::vector<CefString>& paths) = 0;

  virtual void SetLinkURL(const CefString& url) = 0;
  virtual void SetLinkTitle(const CefString& title) = 0;
  virtual void SetLinkMetadata(const CefString& data) = 0;
  virtual void SetFragmentText(const CefString& text) = 0;
  virtual void SetFragmentHtml(const CefString& html) = 0;
  virtual void SetFragmentBaseURL(const CefString& base_url) = 0;
  virtual void ResetFileContents() = 0;
  virtual void AddFile(const CefString& path,
                       const CefString& display_name) = 0;
  virtual void ClearFilenames() = 0;

  // The drag picture, or null.
  virtual CefRefPtr<CefImage> GetImage() = 0;
  // Where the cursor sits in the drag picture.
  virtual CefPoint GetImageHotspot() = 0;
  virtual bool HasImage() = 0;
};

#endif  // CEF_INCLUDE_CEF_DRAG_DATA_H_
