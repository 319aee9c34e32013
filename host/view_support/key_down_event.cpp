#include "host/view_support/key_down_event.h"

#include <QKeyEvent>

#include "host/view_support/key_event_converter.h"

namespace {

// Return and Tab act on their character (new line, form submission, tab
// insertion). Other control characters (Backspace, Escape, Delete, Ctrl with
// a letter) act on the key down alone; a page could insert Delete's 0x7f.
bool typesText(QChar unit) {
  const char16_t code = unit.unicode();
  return code == u'\r' || code == u'\t' || (code >= 0x20 && code != 0x7f);
}

}  // namespace

KeyDownEvent::KeyDownEvent(CefRefPtr<CefBrowser> browser, QKeyEvent* event)
    : InputEvent(browser),
      m_keyEvent(KeyEventConverter::convert(event)),
      m_text(event->text()) {}

void KeyDownEvent::send() const {
  if (!m_host)
    return;
  CefKeyEvent down = m_keyEvent;
  down.type = KEYEVENT_RAWKEYDOWN;
  m_host->SendKeyEvent(down);

  CefKeyEvent character = m_keyEvent;
  character.type = KEYEVENT_CHAR;
  for (const QChar unit : m_text) {
    if (!typesText(unit))
      continue;
    character.character = static_cast<char16_t>(unit.unicode());
    // Only a single character can be matched with the unshifted key.
    if (m_text.size() > 1)
      character.unmodified_character = character.character;
    m_host->SendKeyEvent(character);
  }
}
