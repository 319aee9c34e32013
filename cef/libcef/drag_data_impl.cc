#include "libcef/drag_data_impl.h"

#include <utility>

CefRefPtr<CefDragData> CefDragData::Create() {
  return new cefengine::DragDataImpl();
}

namespace cefengine {

namespace {

// The last path component, for files added without a display name.
CefString baseName(const CefString& path) {
  const std::string utf8 = path.ToString();
  const size_t slash = utf8.find_last_of('/');
  return slash == std::string::npos ? path : CefString(utf8.substr(slash + 1));
}

}  // namespace

void DragDataImpl::SetReadOnly(bool read_only) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_readOnly = read_only;
}

void DragDataImpl::SetFileContents(const CefString& file_name,
                                   std::string contents) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_fileName = file_name;
  m_fileContents = std::move(contents);
}

void DragDataImpl::SetImage(CefRefPtr<CefImage> image,
                            const CefPoint& hotspot) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_image = image;
  m_imageHotspot = hotspot;
}

CefRefPtr<CefDragData> DragDataImpl::Clone() {
  CefRefPtr<DragDataImpl> copy = new DragDataImpl();
  std::lock_guard<std::mutex> lock(m_mutex);
  copy->m_linkUrl = m_linkUrl;
  copy->m_linkTitle = m_linkTitle;
  copy->m_linkMetadata = m_linkMetadata;
  copy->m_fragmentText = m_fragmentText;
  copy->m_fragmentHtml = m_fragmentHtml;
  copy->m_fragmentBaseUrl = m_fragmentBaseUrl;
  copy->m_fileName = m_fileName;
  copy->m_fileContents = m_fileContents;
  copy->m_files = m_files;
  // Images are immutable once handed out, so the copy may share it.
  copy->m_image = m_image;
  copy->m_imageHotspot = m_imageHotspot;
  return copy.get();
}

bool DragDataImpl::IsReadOnly() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_readOnly;
}

bool DragDataImpl::IsLink() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return !m_linkUrl.empty() && m_fileContents.empty();
}

bool DragDataImpl::IsFragment() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_linkUrl.empty() && m_fileContents.empty() &&
         (!m_fragmentText.empty() || !m_fragmentHtml.empty());
}

bool DragDataImpl::IsFile() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return !m_files.empty() || !m_fileContents.empty();
}

CefString DragDataImpl::GetLinkURL() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_linkUrl;
}

CefString DragDataImpl::GetLinkTitle() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_linkTitle;
}

CefString DragDataImpl::GetLinkMetadata() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_linkMetadata;
}

CefString DragDataImpl::GetFragmentText() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_fragmentText;
}

CefString DragDataImpl::GetFragmentHtml() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_fragmentHtml;
}

CefString DragDataImpl::GetFragmentBaseURL() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_fragmentBaseUrl;
}

CefString DragDataImpl::GetFileName() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_fileName;
}

size_t DragDataImpl::GetFileContents(CefRefPtr<CefStreamWriter> writer) {
  std::string contents;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!writer)
      return m_fileContents.size();
    contents = m_fileContents;
  }
  // The writer may block (a file), so it runs without the lock.
  if (contents.empty())
    return 0;
  return writer->Write(contents.data(), 1, contents.size());
}

bool DragDataImpl::GetFileNames(std::vector<CefString>& names) {
  std::lock_guard<std::mutex> lock(m_mutex);
  for (const File& file : m_files)
    names.push_back(file.displayName.empty() ? baseName(file.path)
                                             : file.displayName);
  return !m_files.empty();
}

bool DragDataImpl::GetFilePaths(std::vector<CefString>& paths) {
  std::lock_guard<std::mutex> lock(m_mutex);
  for (const File& file : m_files)
    paths.push_back(file.path);
  return !m_files.empty();
}

void DragDataImpl::setField(CefString& field, const CefString& value) {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_readOnly)
    field = value;
}

void DragDataImpl::SetLinkURL(const CefString& url) {
  setField(m_linkUrl, url);
}

void DragDataImpl::SetLinkTitle(const CefString& title) {
  setField(m_linkTitle, title);
}

void DragDataImpl::SetLinkMetadata(const CefString& data) {
  setField(m_linkMetadata, data);
}

void DragDataImpl::SetFragmentText(const CefString& text) {
  setField(m_fragmentText, text);
}

void DragDataImpl::SetFragmentHtml(const CefString& html) {
  setField(m_fragmentHtml, html);
}

void DragDataImpl::SetFragmentBaseURL(const CefString& base_url) {
  setField(m_fragmentBaseUrl, base_url);
}

void DragDataImpl::ResetFileContents() {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (m_readOnly)
    return;
  m_fileName.clear();
  m_fileContents.clear();
}

void DragDataImpl::AddFile(const CefString& path,
                           const CefString& display_name) {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_readOnly && !path.empty())
    m_files.push_back(File{path, display_name});
}

void DragDataImpl::ClearFilenames() {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (!m_readOnly)
    m_files.clear();
}

CefRefPtr<CefImage> DragDataImpl::GetImage() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_image;
}

CefPoint DragDataImpl::GetImageHotspot() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_imageHotspot;
}

bool DragDataImpl::HasImage() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_image != nullptr;
}

}  // namespace cefengine
