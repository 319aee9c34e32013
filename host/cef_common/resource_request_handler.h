#pragma once

#include "include/cef_resource_request_handler.h"

namespace cef_common
{
// The host's handler for the resource requests of a browser. The engine's defaults serve the
// host: the default network loader, cookies as the request context decides, no redirects of its
// own and no launch of external programs for unknown schemes. Engine IO thread.
class ResourceRequestHandler : public CefResourceRequestHandler
{
public:
    ResourceRequestHandler() = default;

private:
    IMPLEMENT_REFCOUNTING(ResourceRequestHandler);
};
} // namespace cef_common
