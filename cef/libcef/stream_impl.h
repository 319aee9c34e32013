// Stream readers and writers over a stdio file, a memory block or a client
// handler.

#ifndef BROVIA_CEF_LIBCEF_STREAM_IMPL_H_
#define BROVIA_CEF_LIBCEF_STREAM_IMPL_H_

#include <cstdio>
#include <mutex>
#include <vector>

#include "include/cef_stream.h"

namespace cefengine {

// Owns |file| and closes it. Reads block on the disk.
class FileReader : public CefStreamReader {
 public:
  explicit FileReader(FILE* file) : m_file(file) {}
  ~FileReader() override;

  size_t Read(void* ptr, size_t size, size_t n) override;
  int Seek(int64_t offset, int whence) override;
  int64_t Tell() override;
  int Eof() override;
  bool MayBlock() override { return true; }

 private:
  std::mutex m_mutex;
  FILE* m_file;

  IMPLEMENT_REFCOUNTING(FileReader);
};

// Reads a private copy of a memory block.
class DataReader : public CefStreamReader {
 public:
  DataReader(const void* data, size_t size);

  size_t Read(void* ptr, size_t size, size_t n) override;
  int Seek(int64_t offset, int whence) override;
  int64_t Tell() override;
  int Eof() override;
  bool MayBlock() override { return false; }

 private:
  std::mutex m_mutex;
  std::vector<char> m_data;
  size_t m_position = 0;

  IMPLEMENT_REFCOUNTING(DataReader);
};

class HandlerReader : public CefStreamReader {
 public:
  explicit HandlerReader(CefRefPtr<CefReadHandler> handler)
      : m_handler(handler) {}

  size_t Read(void* ptr, size_t size, size_t n) override {
    return m_handler->Read(ptr, size, n);
  }
  int Seek(int64_t offset, int whence) override {
    return m_handler->Seek(offset, whence);
  }
  int64_t Tell() override { return m_handler->Tell(); }
  int Eof() override { return m_handler->Eof(); }
  bool MayBlock() override { return m_handler->MayBlock(); }

 private:
  CefRefPtr<CefReadHandler> m_handler;

  IMPLEMENT_REFCOUNTING(HandlerReader);
};

// Owns |file| and closes it. Writes block on the disk.
class FileWriter : public CefStreamWriter {
 public:
  explicit FileWriter(FILE* file) : m_file(file) {}
  ~FileWriter() override;

  size_t Write(const void* ptr, size_t size, size_t n) override;
  int Seek(int64_t offset, int whence) override;
  int64_t Tell() override;
  int Flush() override;
  bool MayBlock() override { return true; }

 private:
  std::mutex m_mutex;
  FILE* m_file;

  IMPLEMENT_REFCOUNTING(FileWriter);
};

class HandlerWriter : public CefStreamWriter {
 public:
  explicit HandlerWriter(CefRefPtr<CefWriteHandler> handler)
      : m_handler(handler) {}

  size_t Write(const void* ptr, size_t size, size_t n) override {
    return m_handler->Write(ptr, size, n);
  }
  int Seek(int64_t offset, int whence) override {
    return m_handler->Seek(offset, whence);
  }
  int64_t Tell() override { return m_handler->Tell(); }
  int Flush() override { return m_handler->Flush(); }
  bool MayBlock() override { return m_handler->MayBlock(); }

 private:
  CefRefPtr<CefWriteHandler> m_handler;

  IMPLEMENT_REFCOUNTING(HandlerWriter);
};

}  // namespace cefengine

#endif  // BROVIA_CEF_LIBCEF_STREAM_IMPL_H_
