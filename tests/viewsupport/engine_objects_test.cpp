// The engine's own drag data and image, which the view support classes build
// and read.

#include <QImage>

#include <gtest/gtest.h>

#include "include/cef_drag_data.h"
#include "include/cef_image.h"
#include "libcef/drag_data_impl.h"

namespace {

// 2 x 1 premultiplied BGRA: opaque red, half-transparent green.
const unsigned char kPixels[] = {0x00, 0x00, 0xff, 0xff,
                                 0x00, 0x40, 0x00, 0x80};

}  // namespace

TEST(DragData, FlagsFollowTheContentAndClonesAreIndependent) {
  CefRefPtr<CefDragData> data = CefDragData::Create();
  EXPECT_FALSE(data->IsLink() || data->IsFragment() || data->IsFile());
  data->SetFragmentText("text");
  EXPECT_TRUE(data->IsFragment());
  data->SetLinkURL("https://example.org/");
  EXPECT_TRUE(data->IsLink());
  EXPECT_FALSE(data->IsFragment());
  data->AddFile("/tmp/x/report.pdf", "");
  EXPECT_TRUE(data->IsFile());

  CefRefPtr<CefDragData> copy = data->Clone();
  data->ClearFilenames();
  std::vector<CefString> names;
  EXPECT_FALSE(data->GetFileNames(names));
  ASSERT_TRUE(copy->GetFileNames(names));
  EXPECT_EQ(names.at(0).ToString(), "report.pdf");
  EXPECT_EQ(copy->GetLinkURL().ToString(), "https://example.org/");
}

TEST(DragData, ReadOnlyRefusesChanges) {
  CefRefPtr<cefengine::DragDataImpl> data = new cefengine::DragDataImpl();
  data->SetFragmentText("kept");
  data->SetReadOnly(true);
  data->SetFragmentText("changed");
  data->AddFile("/tmp/f", "f");
  EXPECT_EQ(data->GetFragmentText().ToString(), "kept");
  EXPECT_FALSE(data->IsFile());
  EXPECT_FALSE(data->Clone()->IsReadOnly());
}

TEST(Image, RepresentationsShareOneLogicalSize) {
  CefRefPtr<CefImage> image = CefImage::CreateImage();
  EXPECT_TRUE(image->IsEmpty());
  EXPECT_FALSE(image->AddBitmap(1.0f, 2, 1, CEF_COLOR_TYPE_BGRA_8888,
                                CEF_ALPHA_TYPE_PREMULTIPLIED, kPixels, 7));
  ASSERT_TRUE(image->AddBitmap(1.0f, 2, 1, CEF_COLOR_TYPE_BGRA_8888,
                               CEF_ALPHA_TYPE_PREMULTIPLIED, kPixels,
                               sizeof(kPixels)));
  EXPECT_EQ(image->GetWidth(), 2u);
  EXPECT_EQ(image->GetHeight(), 1u);

  QImage doubled(4, 2, QImage::Format_ARGB32_Premultiplied);
  doubled.fill(Qt::blue);
  EXPECT_FALSE(image->AddBitmap(2.0f, 2, 1, CEF_COLOR_TYPE_BGRA_8888,
                                CEF_ALPHA_TYPE_PREMULTIPLIED, kPixels,
                                sizeof(kPixels)));
  ASSERT_TRUE(image->AddBitmap(2.0f, 4, 2, CEF_COLOR_TYPE_BGRA_8888,
                               CEF_ALPHA_TYPE_PREMULTIPLIED,
                               doubled.constBits(), doubled.sizeInBytes()));

  float scale = 0;
  int width = 0, height = 0;
  ASSERT_TRUE(image->GetRepresentationInfo(1.7f, scale, width, height));
  EXPECT_FLOAT_EQ(scale, 2.0f);
  EXPECT_EQ(width, 4);
  EXPECT_TRUE(image->RemoveRepresentation(2.0f));
  EXPECT_FALSE(image->HasRepresentation(2.0f));
}

TEST(Image, EncodesAndDecodesPixels) {
  CefRefPtr<CefImage> image = CefImage::CreateImage();
  ASSERT_TRUE(image->AddBitmap(1.0f, 2, 1, CEF_COLOR_TYPE_BGRA_8888,
                               CEF_ALPHA_TYPE_PREMULTIPLIED, kPixels,
                               sizeof(kPixels)));
  int width = 0, height = 0;
  CefRefPtr<CefBinaryValue> png = image->GetAsPNG(1.0f, true, width, height);
  ASSERT_TRUE(png);
  EXPECT_EQ(width, 2);
  std::vector<unsigned char> bytes(png->GetSize());
  png->GetData(bytes.data(), bytes.size(), 0);

  QImage decoded;
  ASSERT_TRUE(decoded.loadFromData(bytes.data(), static_cast<int>(bytes.size()),
                                   "PNG"));
  EXPECT_EQ(decoded.pixel(0, 0), qRgba(0xff, 0, 0, 0xff));
  EXPECT_EQ(qAlpha(decoded.pixel(1, 0)), 0x80);
  EXPECT_NEAR(qGreen(decoded.pixel(1, 0)), 0x80, 1);  // unpremultiplied

  // The PNG goes back into an image, and out as RGBA bytes.
  CefRefPtr<CefImage> again = CefImage::CreateImage();
  ASSERT_TRUE(again->AddPNG(1.0f, bytes.data(), bytes.size()));
  CefRefPtr<CefBinaryValue> rgba = again->GetAsBitmap(
      1.0f, CEF_COLOR_TYPE_RGBA_8888, CEF_ALPHA_TYPE_PREMULTIPLIED, width,
      height);
  ASSERT_TRUE(rgba);
  ASSERT_EQ(rgba->GetSize(), 8u);
  unsigned char out[8];
  rgba->GetData(out, sizeof(out), 0);
  EXPECT_EQ(out[0], 0xff);  // red first
  EXPECT_EQ(out[2], 0x00);
  EXPECT_EQ(out[3], 0xff);
  EXPECT_EQ(out[7], 0x80);

  EXPECT_FALSE(CefImage::CreateImage()->GetAsPNG(1.0f, true, width, height));
  EXPECT_FALSE(again->AddJPEG(1.0f, bytes.data(), bytes.size()));
}
