#include "client/browser_client.h"

void BrowserClient::cleanup()
{
    m_cleanedUp = true;
}
