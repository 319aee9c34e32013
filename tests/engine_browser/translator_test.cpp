// CEF's input events and error names in the protocol's terms.

#include <gtest/gtest.h>

#include <QJsonArray>

#include "libcef/browser/input_translator.h"
#include "libcef/browser/navigation_entry_impl.h"
#include "libcef/browser/net_error.h"

namespace engine_browser_test {
namespace {

using cefengine::InputTranslator;

TEST(InputTranslator, ModifiersAndButtonsUseTheProtocolBits) {
  EXPECT_EQ(InputTranslator::Modifiers(EVENTFLAG_ALT_DOWN), 1);
  EXPECT_EQ(InputTranslator::Modifiers(EVENTFLAG_CONTROL_DOWN), 2);
  EXPECT_EQ(InputTranslator::Modifiers(EVENTFLAG_COMMAND_DOWN), 4);
  EXPECT_EQ(InputTranslator::Modifiers(EVENTFLAG_SHIFT_DOWN), 8);
  EXPECT_EQ(InputTranslator::Modifiers(EVENTFLAG_CAPS_LOCK_ON | EVENTFLAG_LEFT_MOUSE_BUTTON), 0);
  EXPECT_EQ(InputTranslator::Buttons(EVENTFLAG_LEFT_MOUSE_BUTTON | EVENTFLAG_MIDDLE_MOUSE_BUTTON), 5);

  CefMouseEvent event;
  event.x = 3;
  event.y = 4;
  event.modifiers = EVENTFLAG_RIGHT_MOUSE_BUTTON;
  QJsonObject down = InputTranslator::MouseClick(event, MBT_LEFT, false, 2);
  EXPECT_EQ(down.value("type").toString(), "mousePressed");
  EXPECT_EQ(down.value("button").toString(), "left");
  EXPECT_EQ(down.value("buttons").toInt(), 3);
  EXPECT_EQ(down.value("clickCount").toInt(), 2);
  event.modifiers = EVENTFLAG_LEFT_MOUSE_BUTTON;
  QJsonObject up = InputTranslator::MouseClick(event, MBT_LEFT, true, 1);
  EXPECT_EQ(up.value("type").toString(), "mouseReleased");
  EXPECT_EQ(up.value("buttons").toInt(), 0) << "the released button is up";
  QJsonObject drag = InputTranslator::MouseMove(event, false);
  EXPECT_EQ(drag.value("button").toString(), "left");
  EXPECT_EQ(InputTranslator::MouseMove(event, true).value("x").toInt(), -1);
}

TEST(InputTranslator, WheelDeltasFlipSign) {
  CefMouseEvent event;
  const QJsonObject wheel = InputTranslator::MouseWheel(event, 30, -120);
  EXPECT_EQ(wheel.value("type").toString(), "mouseWheel");
  EXPECT_EQ(wheel.value("deltaX").toInt(), -30);
  EXPECT_EQ(wheel.value("deltaY").toInt(), 120);
}

TEST(InputTranslator, KeysGetDomNamesAndCharactersText) {
  CefKeyEvent key;
  key.type = KEYEVENT_RAWKEYDOWN;
  key.windows_key_code = 0x0D;
  key.modifiers = EVENTFLAG_CONTROL_DOWN | EVENTFLAG_IS_REPEAT;
  QJsonObject enter = InputTranslator::KeyEvent(key);
  EXPECT_EQ(enter.value("type").toString(), "rawKeyDown");
  EXPECT_EQ(enter.value("key").toString(), "Enter");
  EXPECT_EQ(enter.value("code").toString(), "Enter");
  EXPECT_EQ(enter.value("modifiers").toInt(), 2);
  EXPECT_TRUE(enter.value("autoRepeat").toBool());
  EXPECT_FALSE(enter.contains("text"));

  key.type = KEYEVENT_KEYUP;
  key.windows_key_code = 0x10;
  key.modifiers = EVENTFLAG_IS_RIGHT;
  EXPECT_EQ(InputTranslator::KeyEvent(key).value("code").toString(), "ShiftRight");
  EXPECT_EQ(InputTranslator::KeyEvent(key).value("location").toInt(), 2);

  key.type = KEYEVENT_KEYUP;
  key.windows_key_code = 'Q';
  key.character = 0;
  key.modifiers = EVENTFLAG_CAPS_LOCK_ON;
  EXPECT_EQ(InputTranslator::KeyEvent(key).value("key").toString(), "Q");
  key.modifiers = EVENTFLAG_CAPS_LOCK_ON | EVENTFLAG_SHIFT_DOWN;
  EXPECT_EQ(InputTranslator::KeyEvent(key).value("key").toString(), "q");
  EXPECT_EQ(InputTranslator::KeyEvent(key).value("code").toString(), "KeyQ");

  key.type = KEYEVENT_CHAR;
  key.windows_key_code = 0xE9;
  key.character = u'é';
  key.unmodified_character = 0;
  const QJsonObject typed = InputTranslator::KeyEvent(key);
  EXPECT_EQ(typed.value("type").toString(), "char");
  EXPECT_EQ(typed.value("text").toString(), QString::fromUtf8("é"));
  EXPECT_EQ(typed.value("unmodifiedText").toString(), QString::fromUtf8("é"));
}

TEST(InputTranslator, ImeRangesAndDragOperations) {
  const CefRange none(UINT32_MAX, UINT32_MAX);
  QJsonObject composition = InputTranslator::ImeComposition("abc", none, none);
  EXPECT_EQ(composition.value("selectionStart").toInt(), 3) << "caret after the text";
  EXPECT_FALSE(composition.contains("replacementStart"));
  composition = InputTranslator::ImeComposition("abc", CefRange(1, 2), CefRange(0, 1));
  EXPECT_EQ(composition.value("replacementEnd").toInt(), 2);
  EXPECT_EQ(composition.value("selectionEnd").toInt(), 1);

  const QJsonObject drag = InputTranslator::DragEvent(
      "dragOver", CefMouseEvent(), DRAG_OPERATION_EVERY, nullptr);
  EXPECT_EQ(drag.value("data").toObject().value("dragOperationsMask").toInt(), 1 | 2 | 16);
  EXPECT_TRUE(drag.value("data").toObject().value("items").toArray().isEmpty());
}

TEST(NetError, NamesMapToCefCodes) {
  EXPECT_EQ(cefengine::NetErrorFromText("net::ERR_NAME_NOT_RESOLVED").code, ERR_NAME_NOT_RESOLVED);
  EXPECT_EQ(cefengine::NetErrorFromText("net::ERR_NAME_NOT_RESOLVED").name, "ERR_NAME_NOT_RESOLVED");
  const cefengine::NetError unknown = cefengine::NetErrorFromText("net::ERR_HTTP2_PROTOCOL_ERROR");
  EXPECT_EQ(unknown.code, ERR_FAILED);
  EXPECT_EQ(unknown.name, "ERR_HTTP2_PROTOCOL_ERROR") << "the name is kept";
  EXPECT_EQ(cefengine::NetErrorFromText("").name, "ERR_FAILED");
  EXPECT_EQ(cefengine::TransitionFromProtocol("form_submit"), TT_FORM_SUBMIT);
  EXPECT_EQ(cefengine::TransitionFromProtocol("address_bar"), TT_EXPLICIT | TT_DIRECT_LOAD_FLAG);
  EXPECT_EQ(cefengine::TransitionFromProtocol("nonsense"), TT_LINK);
}

}  // namespace
}  // namespace engine_browser_test
