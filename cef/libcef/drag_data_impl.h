// In-memory CefDragData: the engine fills one from a drag that the page starts,
// the client fills one for a drag into the view.

#ifndef BROVIA_CEF_LIBCEF_DRAG_DATA_IMPL_H_
#define BROVIA_CEF_LIBCEF_DRAG_DATA_IMPL_H_

#include <mutex>
#include <string>
#include <vector>

#include "include/cef_drag_data.h"

namespace cefengine {

// Thread-safe: every member is read and written under one mutex.
class DragDataImpl : public CefDragData {
 public:
  DragDataImpl() = default;

  // Engine side: a read-only object refuses every setter, as a drag received
  // from the browser does.
  void SetReadOnly(bool read_only);
  // Engine side: the contents of a file dragged out of the page.
  void SetFileContents(const CefString& file_name, std::string contents);
  // Engine side: the drag picture and the cursor's place in it.
  void SetImage(CefRefPtr<CefImage> image, const CefPoint& hotspot);

  CefRefPtr<CefDragData> Clone() override;
  bool IsReadOnly() override;
  bool IsLink() override;
  bool IsFragment() override;
  bool IsFile() override;
  CefString GetLinkURL() override;
  CefString GetLinkTitle() override;
  CefString GetLinkMetadata() override;
  CefString GetFragmentText() override;
  CefString GetFragmentHtml() override;
  CefString GetFragmentBaseURL() override;
  CefString GetFileName() override;
  size_t GetFileContents(CefRefPtr<CefStreamWriter> writer) override;
  bool GetFileNames(std::vector<CefString>& names) override;
  bool GetFilePaths(std::vector<CefString>& paths) override;
  void SetLinkURL(const CefString& url) override;
  void SetLinkTitle(const CefString& title) override;
  void SetLinkMetadata(const CefString& data) override;
  void SetFragmentText(const CefString& text) override;
  void SetFragmentHtml(const CefString& html) override;
  void SetFragmentBaseURL(const CefString& base_url) override;
  void ResetFileContents() override;
  void AddFile(const CefString& path, const CefString& display_name) override;
  void ClearFilenames() override;
  CefRefPtr<CefImage> GetImage() override;
  CefPoint GetImageHotspot() override;
  bool HasImage() override;

 private:
  struct File {
    CefString path;
    CefString displayName;
  };

  // Stores |value| in |field| unless the object is read-only.
  void setField(CefString& field, const CefString& value);

  std::mutex m_mutex;
  bool m_readOnly = false;
  CefString m_linkUrl;
  CefString m_linkTitle;
  CefString m_linkMetadata;
  CefString m_fragmentText;
  CefString m_fragmentHtml;
  CefString m_fragmentBaseUrl;
  CefString m_fileName;
  std::string m_fileContents;
  std::vector<File> m_files;
  CefRefPtr<CefImage> m_image;
  CefPoint m_imageHotspot;

  IMPLEMENT_REFCOUNTING(DragDataImpl);
};

}  // namespace cefengine

#endif  // BROVIA_CEF_LIBCEF_DRAG_DATA_IMPL_H_
