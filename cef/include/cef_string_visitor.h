// Receives a string produced asynchronously (page source, page text).

#ifndef CEF_INCLUDE_CEF_STRING_VISITOR_H_
#define CEF_INCLUDE_CEF_STRING_VISITOR_H_
#pragma once

#include "include/cef_base.h"

class CefStringVisitor : public virtual CefBaseRefCounted {
 public:
  // Called once with the whole string.
  virtual void Visit(const CefString& string) = 0;
};

#endif  // CEF_INCLUDE_CEF_STRING_VISITOR_H_
