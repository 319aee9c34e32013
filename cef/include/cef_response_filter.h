// Rewrites a response body on its way to the page.

#ifndef CEF_INCLUDE_CEF_RESPONSE_FILTER_H_
#define CEF_INCLUDE_CEF_RESPONSE_FILTER_H_
#pragma once

#include "include/cef_base.h"

// Called on the IO thread.
class CefResponseFilter : public virtual CefBaseRefCounted {
 public:
  typedef cef_response_filter_status_t FilterStatus;

  // Prepares the filter; false skips filtering.
  virtual bool InitFilter() = 0;

  // Consumes up to |data_in_size| bytes of |data_in| (null once the input
  // has ended) and writes up to |data_out_size| bytes into |data_out|,
  // reporting the counts in |data_in_read| and |data_out_written|.
  // RESPONSE_FILTER_NEED_MORE_DATA asks for more input,
  // RESPONSE_FILTER_DONE ends the output, RESPONSE_FILTER_ERROR fails the
  // request. Called again while output remains.
  virtual FilterStatus Filter(void* data_in,
                              size_t data_in_size,
                              size_t& data_in_read,
                              void* data_out,
                              size_t data_out_size,
                              size_t& data_out_written) = 0;
};

#endif  // CEF_INCLUDE_CEF_RESPONSE_FILTER_H_
