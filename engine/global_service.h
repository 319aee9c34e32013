#pragma once

#include "engine/qcef_global_settings.h"
#include "host/export/brovia_export.h"

struct txArray_tag;

// The host's entry to the engine: initialize once, then startup once, then create views.
// Qt main thread only.
class BROVIA_EXPORT QCefGlobalService
{
public:
    QCefGlobalService() = delete;

    static void initialize(const QCefGlobalSettings& settings);
    static void startup();

    // Results of the last initialize and startup calls; written here, read by the host.
    static bool s_initialized;
    static bool s_started;
};

// Gateway for the host's scripting language: outputs[0] receives a 1x1 double array holding the
// remote debugging port, or -1 when there is none. The counts and inputs are not looked at.
BROVIA_EXPORT void getRemoteDebugPort(int outputCount, txArray_tag** outputs, int inputCount, const txArray_tag** inputs);
