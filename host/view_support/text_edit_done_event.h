// The host's event that tells that an inline text edit has ended.

#pragma once

#include <QEvent>

namespace Ivorn {

// Registered with Qt once, on first use; the same value ever after. Any
// thread.
QEvent::Type TextEditDoneEventType();

}  // namespace Ivorn
