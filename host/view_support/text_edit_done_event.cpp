#include "host/view_support/text_edit_done_event.h"

namespace Ivorn {

QEvent::Type TextEditDoneEventType() {
  static const QEvent::Type type =
      static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

}  // namespace Ivorn
