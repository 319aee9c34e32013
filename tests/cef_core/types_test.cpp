#include <gtest/gtest.h>

#include "include/cef_base.h"

namespace {

TEST(TypesTest, SettingsCopyStringsDeeply) {
  CefSettings settings;
  EXPECT_EQ(settings.size, sizeof(cef_settings_t));
  CefString(&settings.cache_path) = "/tmp/profile";
  CefString(&settings.locale) = u"fr-CA";
  settings.windowless_rendering_enabled = true;

  CefSettings copy(settings);
  CefString(&settings.cache_path) = "/elsewhere";
  EXPECT_EQ(CefString(&copy.cache_path).ToString(), "/tmp/profile");
  EXPECT_EQ(CefString(&copy.locale).ToString(), "fr-CA");
  EXPECT_TRUE(copy.windowless_rendering_enabled);
  EXPECT_NE(copy.cache_path.str, settings.cache_path.str);
}

TEST(TypesTest, DetachHandsStringsToThePlainStruct) {
  cef_browser_settings_t plain = {};
  {
    CefBrowserSettings settings;
    CefString(&settings.default_encoding) = "UTF-8";
    settings.windowless_frame_rate = 60;
    settings.DetachTo(plain);
  }
  EXPECT_EQ(plain.size, sizeof(cef_browser_settings_t));
  EXPECT_EQ(CefString(&plain.default_encoding).ToString(), "UTF-8");
  EXPECT_EQ(plain.windowless_frame_rate, 60);
  cef_string_clear(&plain.default_encoding);
}

TEST(TypesTest, WindowInfoAndGeometry) {
  CefWindowInfo info;
  info.SetAsWindowless(kNullWindowHandle);
  EXPECT_TRUE(info.windowless_rendering_enabled);
  EXPECT_EQ(info.runtime_style, CEF_RUNTIME_STYLE_ALLOY);

  CefRect rect(10, 20, 30, 40);
  EXPECT_TRUE(rect.Contains(10, 20));
  EXPECT_FALSE(rect.Contains(40, 20));  // right edge is outside
  EXPECT_FALSE(rect.IsEmpty());
  EXPECT_TRUE(CefRect(0, 0, 0, 5).IsEmpty());
  EXPECT_EQ(CefRange::InvalidRange().from, UINT32_MAX);
}

TEST(TypesTest, TimeConversions) {
  CefTime time(static_cast<time_t>(86400 * 365));  // 1971-01-01
  EXPECT_EQ(time.year, 1971);
  EXPECT_EQ(time.month, 1);
  EXPECT_EQ(time.day_of_month, 1);
  EXPECT_EQ(time.day_of_week, 5);  // a Friday
  EXPECT_EQ(time.GetTimeT(), 86400 * 365);
  CefTime later(86400.0 * 365 + 1.25);
  EXPECT_EQ(later.millisecond, 250);
  EXPECT_EQ(time.Delta(later), 1250);

  cef_basetime_t base;
  ASSERT_TRUE(cef_time_to_basetime(&later, &base));
  cef_time_t back;
  ASSERT_TRUE(cef_time_from_basetime(base, &back));
  EXPECT_EQ(CefTime(back).GetDoubleT(), later.GetDoubleT());

  cef_time_t invalid = {};
  time_t out = 0;
  EXPECT_FALSE(cef_time_to_timet(&invalid, &out));  // month 0
}

}  // namespace
