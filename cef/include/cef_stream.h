// Byte streams: readers and writers over files, memory or client handlers.

#ifndef CEF_INCLUDE_CEF_STREAM_H_
#define CEF_INCLUDE_CEF_STREAM_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"

// Client-side source of bytes for a CefStreamReader. |whence| follows fseek.
class CefReadHandler : public virtual CefBaseRefCounted {
 public:
  virtual size_t Read(void* ptr, size_t size, size_t n) = 0;
  virtual int Seek(int64_t offset, int whence) = 0;
  virtual int64_t Tell() = 0;
  virtual int Eof() = 0;
  // True if reading may block, so it must stay off the UI and IO threads.
  virtual bool MayBlock() = 0;
};

class CefStreamReader : public virtual CefBaseRefCounted {
 public:
  static CefRefPtr<CefStreamReader> CreateForFile(const CefString& fileName);
  // |data| is copied.
  static CefRefPtr<CefStreamReader> CreateForData(void* data, size_t size);
  static CefRefPtr<CefStreamReader> CreateForHandler(
      CefRefPtr<CefReadHandler> handler);

  // Reads up to |n| items of |size| bytes; returns the items read.
  virtual size_t Read(void* ptr, size_t size, size_t n) = 0;
  // Returns 0 on success, non-zero otherwise.
  virtual int Seek(int64_t offset, int whence) = 0;
  virtual int64_t Tell() = 0;
  // Non-zero at the end of the stream.
  virtual int Eof() = 0;
  virtual bool MayBlock() = 0;
};

// Client-side sink of bytes for a CefStreamWriter.
class CefWriteHandler : public virtual CefBaseRefCounted {
 public:
  virtual size_t Write(const void* ptr, size_t size, size_t n) = 0;
  virtual int Seek(int64_t offset, int whence) = 0;
  virtual int64_t Tell() = 0;
  virtual int Flush() = 0;
  virtual bool MayBlock() = 0;
};

class CefStreamWriter : public virtual CefBaseRefCounted {
 public:
  static CefRefPtr<CefStreamWriter> CreateForFile(const CefString& fileName);
  static CefRefPtr<CefStreamWriter> CreateForHandler(
      CefRefPtr<CefWriteHandler> handler);

  // Writes |n| items of |size| bytes; returns the items written.
  virtual size_t Write(const void* ptr, size_t size, size_t n) = 0;
  // Returns 0 on success, non-zero otherwise.
  virtual int Seek(int64_t offset, int whence) = 0;
  virtual int64_t Tell() = 0;
  // Returns 0 on success.
  virtual int Flush() = 0;
  virtual bool MayBlock() = 0;
};

#endif  // CEF_INCLUDE_CEF_STREAM_H_
