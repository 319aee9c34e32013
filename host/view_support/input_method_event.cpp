#include "host/view_support/input_method_event.h"

#include <QInputMethodEvent>

#include <vector>

#include "host/view_support/conversions.h"

namespace {

constexpr cef_color_t kUnderlineColor = 0xFF000000;  // opaque black

}  // namespace

InputMethodEvent::InputMethodEvent(CefRefPtr<CefBrowser> browser,
                                   QInputMethodEvent* event)
    : InputEvent(browser),
      m_commitString(event->commitString()),
      m_preeditString(event->preeditString()),
      m_cursor(m_preeditString.size()) {
  for (const QInputMethodEvent::Attribute& attribute : event->attributes()) {
    if (attribute.type == QInputMethodEvent::Cursor)
      m_cursor = qBound(0, attribute.start, m_preeditString.size());
  }
}

void InputMethodEvent::send() const {
  if (!m_host)
    return;
  if (m_commitString.isEmpty() && m_preeditString.isEmpty()) {
    m_host->ImeCancelComposition();
    return;
  }
  if (!m_commitString.isEmpty()) {
    m_host->ImeCommitText(Conversions::convertString(m_commitString),
                          CefRange::InvalidRange(), 0);
  }
  if (!m_preeditString.isEmpty()) {
    CefCompositionUnderline underline;
    underline.range =
        CefRange(0, static_cast<uint32_t>(m_preeditString.size()));
    underline.color = kUnderlineColor;
    underline.background_color = 0;
    underline.thick = 0;
    underline.style = CEF_CUS_SOLID;
    const std::vector<CefCompositionUnderline> underlines{underline};
    const uint32_t caret = static_cast<uint32_t>(m_cursor);
    m_host->ImeSetComposition(Conversions::convertString(m_preeditString),
                              underlines, CefRange::InvalidRange(),
                              CefRange(caret, caret));
  }
}
