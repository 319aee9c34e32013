#include <QKeyEvent>

#include <gtest/gtest.h>

#include "fake_browser.h"
#include "host/view_support/key_down_event.h"
#include "host/view_support/key_up_event.h"

namespace {

// X11 keycodes of a US keyboard.
constexpr quint32 kKeycodeA = 38;
constexpr quint32 kKeycodeShiftRight = 62;

QKeyEvent press(int key,
                Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                const QString& text = QString(),
                quint32 scanCode = 0,
                quint32 nativeModifiers = 0,
                bool autoRepeat = false) {
  return QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, 0,
                   nativeModifiers, text, autoRepeat);
}

// The key codes a browser receives for one press.
std::vector<CefKeyEvent> sent(const QKeyEvent& event) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QKeyEvent copy(event);
  KeyDownEvent(browser.get(), &copy).send();
  return browser->host->keys;
}

int vk(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  return sent(press(key, modifiers)).at(0).windows_key_code;
}

}  // namespace

TEST(KeyMapping, LettersDigitsAndFunctionKeys) {
  EXPECT_EQ(vk(Qt::Key_A), 0x41);
  EXPECT_EQ(vk(Qt::Key_Z, Qt::ShiftModifier), 0x5A);
  EXPECT_EQ(vk(Qt::Key_0), 0x30);
  EXPECT_EQ(vk(Qt::Key_9), 0x39);
  EXPECT_EQ(vk(Qt::Key_F1), 0x70);
  EXPECT_EQ(vk(Qt::Key_F12), 0x7B);
  EXPECT_EQ(vk(Qt::Key_F24), 0x87);
}

TEST(KeyMapping, EditingAndNavigationKeys) {
  EXPECT_EQ(vk(Qt::Key_Backspace), 0x08);
  EXPECT_EQ(vk(Qt::Key_Tab), 0x09);
  EXPECT_EQ(vk(Qt::Key_Backtab, Qt::ShiftModifier), 0x09);
  EXPECT_EQ(vk(Qt::Key_Return), 0x0D);
  EXPECT_EQ(vk(Qt::Key_Escape), 0x1B);
  EXPECT_EQ(vk(Qt::Key_Space), 0x20);
  EXPECT_EQ(vk(Qt::Key_PageUp), 0x21);
  EXPECT_EQ(vk(Qt::Key_PageDown), 0x22);
  EXPECT_EQ(vk(Qt::Key_End), 0x23);
  EXPECT_EQ(vk(Qt::Key_Home), 0x24);
  EXPECT_EQ(vk(Qt::Key_Left), 0x25);
  EXPECT_EQ(vk(Qt::Key_Up), 0x26);
  EXPECT_EQ(vk(Qt::Key_Right), 0x27);
  EXPECT_EQ(vk(Qt::Key_Down), 0x28);
  EXPECT_EQ(vk(Qt::Key_Insert), 0x2D);
  EXPECT_EQ(vk(Qt::Key_Delete), 0x2E);
  EXPECT_EQ(vk(Qt::Key_CapsLock), 0x14);
  EXPECT_EQ(vk(Qt::Key_NumLock), 0x90);
}

TEST(KeyMapping, PunctuationIsTheKeyNotTheSymbol) {
  const std::vector<std::pair<int, int>> keys = {
      {Qt::Key_Semicolon, 0xBA}, {Qt::Key_Colon, 0xBA},
      {Qt::Key_Equal, 0xBB},     {Qt::Key_Plus, 0xBB},
      {Qt::Key_Comma, 0xBC},     {Qt::Key_Less, 0xBC},
      {Qt::Key_Minus, 0xBD},     {Qt::Key_Underscore, 0xBD},
      {Qt::Key_Period, 0xBE},    {Qt::Key_Slash, 0xBF},
      {Qt::Key_QuoteLeft, 0xC0}, {Qt::Key_AsciiTilde, 0xC0},
      {Qt::Key_BracketLeft, 0xDB}, {Qt::Key_Backslash, 0xDC},
      {Qt::Key_BracketRight, 0xDD}, {Qt::Key_Apostrophe, 0xDE},
      {Qt::Key_QuoteDbl, 0xDE},  {Qt::Key_Exclam, 0x31},
      {Qt::Key_ParenRight, 0x30}, {Qt::Key_Asterisk, 0x38},
  };
  for (const auto& [key, code] : keys)
    EXPECT_EQ(vk(key), code) << "Qt key 0x" << std::hex << key;
}

TEST(KeyMapping, KeypadKeysAreTheirOwn) {
  EXPECT_EQ(vk(Qt::Key_5, Qt::KeypadModifier), 0x65);
  EXPECT_EQ(vk(Qt::Key_Asterisk, Qt::KeypadModifier), 0x6A);
  EXPECT_EQ(vk(Qt::Key_Plus, Qt::KeypadModifier), 0x6B);
  EXPECT_EQ(vk(Qt::Key_Minus, Qt::KeypadModifier), 0x6D);
  EXPECT_EQ(vk(Qt::Key_Period, Qt::KeypadModifier), 0x6E);
  EXPECT_EQ(vk(Qt::Key_Slash, Qt::KeypadModifier), 0x6F);
  EXPECT_EQ(vk(Qt::Key_Enter, Qt::KeypadModifier), 0x0D);
  // Without NumLock the keypad navigates.
  EXPECT_EQ(vk(Qt::Key_Home, Qt::KeypadModifier), 0x24);
  const CefKeyEvent event = sent(press(Qt::Key_1, Qt::KeypadModifier)).at(0);
  EXPECT_TRUE(event.modifiers & EVENTFLAG_IS_KEY_PAD);
}

TEST(KeyMapping, ModifierKeysAndFlags) {
  EXPECT_EQ(vk(Qt::Key_Shift, Qt::ShiftModifier), 0x10);
  EXPECT_EQ(vk(Qt::Key_Control, Qt::ControlModifier), 0x11);
  EXPECT_EQ(vk(Qt::Key_Alt, Qt::AltModifier), 0x12);
  EXPECT_EQ(vk(Qt::Key_Meta, Qt::MetaModifier), 0x5B);

  const CefKeyEvent all =
      sent(press(Qt::Key_A, Qt::ShiftModifier | Qt::ControlModifier |
                                Qt::AltModifier | Qt::MetaModifier))
          .at(0);
  EXPECT_EQ(all.modifiers, static_cast<uint32_t>(
                               EVENTFLAG_SHIFT_DOWN | EVENTFLAG_CONTROL_DOWN |
                               EVENTFLAG_ALT_DOWN | EVENTFLAG_COMMAND_DOWN));

  const CefKeyEvent rightShift =
      sent(press(Qt::Key_Shift, Qt::ShiftModifier, {}, kKeycodeShiftRight))
          .at(0);
  EXPECT_TRUE(rightShift.modifiers & EVENTFLAG_IS_RIGHT);
  EXPECT_FALSE(rightShift.modifiers & EVENTFLAG_IS_LEFT);

  // Caps Lock on (X11 LockMask) while auto-repeating.
  const CefKeyEvent repeated =
      sent(press(Qt::Key_A, Qt::NoModifier, "A", kKeycodeA, 0x02, true)).at(0);
  EXPECT_TRUE(repeated.modifiers & EVENTFLAG_CAPS_LOCK_ON);
  EXPECT_TRUE(repeated.modifiers & EVENTFLAG_IS_REPEAT);
  EXPECT_FALSE(repeated.modifiers & EVENTFLAG_IS_LEFT);
}

TEST(KeyMapping, OtherLayoutsFallBackToTheKeyPosition) {
  // Cyrillic "ef" sits on the US "A" key; Qt reports the symbol.
  const std::vector<CefKeyEvent> events =
      sent(press(0x0444, Qt::NoModifier, QString(QChar(0x0444)), kKeycodeA));
  EXPECT_EQ(events.at(0).windows_key_code, 0x41);
  EXPECT_EQ(events.at(0).native_key_code, static_cast<int>(kKeycodeA));
  EXPECT_EQ(events.at(1).character, 0x0444);
}

TEST(KeyDownEvent, RawKeyDownThenOneCharPerCharacter) {
  const std::vector<CefKeyEvent> events =
      sent(press(Qt::Key_A, Qt::ShiftModifier, "A", kKeycodeA));
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].type, KEYEVENT_RAWKEYDOWN);
  EXPECT_EQ(events[1].type, KEYEVENT_CHAR);
  EXPECT_EQ(events[1].character, u'A');
  EXPECT_EQ(events[1].unmodified_character, u'a');
  EXPECT_EQ(events[1].windows_key_code, 0x41);
  EXPECT_EQ(events[1].native_key_code, static_cast<int>(kKeycodeA));
  EXPECT_TRUE(events[1].modifiers & EVENTFLAG_SHIFT_DOWN);

  // Return types a carriage return; arrows, Delete, Escape and Ctrl+C type
  // nothing, though Qt gives the last three a control character.
  const std::vector<CefKeyEvent> enter = sent(press(Qt::Key_Return, {}, "\r"));
  ASSERT_EQ(enter.size(), 2u);
  EXPECT_EQ(enter[1].character, u'\r');
  EXPECT_EQ(sent(press(Qt::Key_Left)).size(), 1u);
  EXPECT_EQ(sent(press(Qt::Key_Delete, {}, "\x7f")).size(), 1u);
  EXPECT_EQ(sent(press(Qt::Key_Escape, {}, "\x1b")).size(), 1u);
  EXPECT_EQ(sent(press(Qt::Key_C, Qt::ControlModifier, "\x03")).size(), 1u);

  // A dead key followed by a letter gives two characters.
  const std::vector<CefKeyEvent> composed =
      sent(press(Qt::Key_E, {}, QString::fromUtf16(u"\u00b4e")));
  ASSERT_EQ(composed.size(), 3u);
  EXPECT_EQ(composed[1].character, u'\u00b4');
  EXPECT_EQ(composed[2].character, u'e');
}

TEST(KeyUpEvent, SendsOneKeyUp) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QKeyEvent release(QEvent::KeyRelease, Qt::Key_Z, Qt::ControlModifier, 52, 0,
                    0, "\x1a");
  KeyUpEvent(browser.get(), &release).send();
  ASSERT_EQ(browser->host->keys.size(), 1u);
  const CefKeyEvent& event = browser->host->keys[0];
  EXPECT_EQ(event.type, KEYEVENT_KEYUP);
  EXPECT_EQ(event.windows_key_code, 0x5A);
  EXPECT_EQ(event.native_key_code, 52);
  EXPECT_EQ(event.modifiers, static_cast<uint32_t>(EVENTFLAG_CONTROL_DOWN));
  EXPECT_EQ(event.unmodified_character, u'z');
}

TEST(KeyDownEvent, WithoutBrowserNothingIsSent) {
  QKeyEvent event = press(Qt::Key_A, {}, "a");
  KeyDownEvent(nullptr, &event).send();  // must not crash
  KeyUpEvent(nullptr, &event).send();
}
