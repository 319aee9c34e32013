#include "engine/global_service.h"

#include "engine/cef_manager.h"
#include "host/cef_common/cef_common_data.h"
#include "host/matrix/numeric_array.h"

bool QCefGlobalService::s_initialized = false;
bool QCefGlobalService::s_started = false;

void QCefGlobalService::initialize(const QCefGlobalSettings& settings)
{
    s_initialized = CCefManager::getInstance().initialize(settings);
}

void QCefGlobalService::startup()
{
    s_started = CCefManager::getInstance().startup();
}

void getRemoteDebugPort(int /*outputCount*/, txArray_tag** outputs, int /*inputCount*/, const txArray_tag** /*inputs*/)
{
    const unsigned long dimensions[] = {1, 1};
    auto array = matrix::detail::do_create_numeric(matrix::span<const unsigned long>(dimensions, 2),
                                                   txClassID(6), txComplexity(0));
    const int port = cef_common::CefCommonData::getInstance()->remoteDebugPort(-1);
    matrix::realData(array.get())[0] = static_cast<double>(port);
    outputs[0] = array.release();
}
