#include "libcef/stream_impl.h"

#include <algorithm>
#include <cstring>
#include <string>

CefRefPtr<CefStreamReader> CefStreamReader::CreateForFile(
    const CefString& fileName) {
  const std::string path = fileName.ToString();
  FILE* file = path.empty() ? nullptr : std::fopen(path.c_str(), "rb");
  if (!file)
    return nullptr;
  return new cefengine::FileReader(file);
}

CefRefPtr<CefStreamReader> CefStreamReader::CreateForData(void* data,
                                                          size_t size) {
  if (!data && size > 0)
    return nullptr;
  return new cefengine::DataReader(data, size);
}

CefRefPtr<CefStreamReader> CefStreamReader::CreateForHandler(
    CefRefPtr<CefReadHandler> handler) {
  if (!handler)
    return nullptr;
  return new cefengine::HandlerReader(handler);
}

CefRefPtr<CefStreamWriter> CefStreamWriter::CreateForFile(
    const CefString& fileName) {
  const std::string path = fileName.ToString();
  FILE* file = path.empty() ? nullptr : std::fopen(path.c_str(), "wb");
  if (!file)
    return nullptr;
  return new cefengine::FileWriter(file);
}

CefRefPtr<CefStreamWriter> CefStreamWriter::CreateForHandler(
    CefRefPtr<CefWriteHandler> handler) {
  if (!handler)
    return nullptr;
  return new cefengine::HandlerWriter(handler);
}

namespace cefengine {

FileReader::~FileReader() {
  std::fclose(m_file);
}

size_t FileReader::Read(void* ptr, size_t size, size_t n) {
  std::lock_guard<std::mutex> lock(m_mutex);
  return std::fread(ptr, size, n, m_file);
}

int FileReader::Seek(int64_t offset, int whence) {
  std::lock_guard<std::mutex> lock(m_mutex);
  return fseeko(m_file, static_cast<off_t>(offset), whence);
}

int64_t FileReader::Tell() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return ftello(m_file);
}

int FileReader::Eof() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return std::feof(m_file);
}

DataReader::DataReader(const void* data, size_t size)
    : m_data(static_cast<const char*>(data),
             static_cast<const char*>(data) + size) {}

size_t DataReader::Read(void* ptr, size_t size, size_t n) {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (size == 0)
    return 0;
  const size_t items = std::min(n, (m_data.size() - m_position) / size);
  std::memcpy(ptr, m_data.data() + m_position, items * size);
  m_position += items * size;
  return items;
}

int DataReader::Seek(int64_t offset, int whence) {
  std::lock_guard<std::mutex> lock(m_mutex);
  int64_t base = 0;
  if (whence == SEEK_CUR)
    base = static_cast<int64_t>(m_position);
  else if (whence == SEEK_END)
    base = static_cast<int64_t>(m_data.size());
  else if (whence != SEEK_SET)
    return -1;
  const int64_t target = base + offset;
  if (target < 0 || target > static_cast<int64_t>(m_data.size()))
    return -1;
  m_position = static_cast<size_t>(target);
  return 0;
}

int64_t DataReader::Tell() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return static_cast<int64_t>(m_position);
}

int DataReader::Eof() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_position >= m_data.size() ? 1 : 0;
}

FileWriter::~FileWriter() {
  std::fclose(m_file);
}

size_t FileWriter::Write(const void* ptr, size_t size, size_t n) {
  std::lock_guard<std::mutex> lock(m_mutex);
  return std::fwrite(ptr, size, n, m_file);
}

int FileWriter::Seek(int64_t offset, int whence) {
  std::lock_guard<std::mutex> lock(m_mutex);
  return fseeko(m_file, static_cast<off_t>(offset), whence);
}

int64_t FileWriter::Tell() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return ftello(m_file);
}

int FileWriter::Flush() {
  std::lock_guard<std::mutex> lock(m_mutex);
  return std::fflush(m_file);
}

}  // namespace cefengine
