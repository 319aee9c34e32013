#include "engine/browser_process_handler.h"

void BrowserProcessHandler::OnScheduleMessagePumpWork(int64_t delay_ms)
{
    Q_EMIT scheduleMessagePumpWork(delay_ms);
}
