#include <QMimeData>
#include <QUrl>

#include <gtest/gtest.h>

#include "host/view_support/conversions.h"
#include "libcef/drag_data_impl.h"

TEST(Conversions, RectsKeepTheirGeometryAndEmptiness) {
  EXPECT_EQ(Conversions::convertRect(CefRect(-4, 7, 30, 20)),
            QRect(-4, 7, 30, 20));
  const CefRect back = Conversions::convertRect(QRect(-4, 7, 30, 20));
  EXPECT_EQ(back.x, -4);
  EXPECT_EQ(back.y, 7);
  EXPECT_EQ(back.width, 30);
  EXPECT_EQ(back.height, 20);

  EXPECT_TRUE(Conversions::convertRect(CefRect(5, 6, 0, 0)).isEmpty());
  EXPECT_TRUE(Conversions::convertRect(CefRect(5, 6, 10, 0)).isEmpty());
  EXPECT_TRUE(Conversions::convertRect(QRect()).IsEmpty());

  // Both corners at (0, 0) make one pixel in Qt's model.
  const CefRect pixel =
      Conversions::convertRect(QRect(QPoint(0, 0), QPoint(0, 0)));
  EXPECT_EQ(pixel.width, 1);
  EXPECT_EQ(pixel.height, 1);
}

TEST(Conversions, StringsRoundTripAndNullIsEmpty) {
  EXPECT_TRUE(Conversions::convertString(CefString()).isEmpty());
  const QString text = QString::fromUtf16(u"gr\u00fc\u00dfe \U0001F600 \u65e5");
  const CefString cef = Conversions::convertString(text);
  EXPECT_EQ(cef.ToString16(), text.toStdU16String());
  EXPECT_EQ(Conversions::convertString(cef), text);
  EXPECT_EQ(Conversions::convertString(CefString("plain")), "plain");
}

TEST(Conversions, BinaryKeepsEveryByte) {
  EXPECT_TRUE(Conversions::convertBinary(nullptr).isEmpty());
  const char bytes[] = {'\x89', 'P', '\0', 'N', '\xff'};
  EXPECT_EQ(Conversions::convertBinary(
                CefBinaryValue::Create(bytes, sizeof(bytes))),
            QByteArray(bytes, sizeof(bytes)));
}

TEST(Conversions, NestedValuesBecomeVariants) {
  const char bytes[] = {'a', '\0', 'b'};
  CefRefPtr<CefDictionaryValue> inner = CefDictionaryValue::Create();
  inner->SetDouble("x", 3.5);
  CefRefPtr<CefListValue> list = CefListValue::Create();
  list->SetInt(0, 1);
  list->SetString(1, "two");
  list->SetDictionary(2, inner);
  list->SetNull(3);
  CefRefPtr<CefDictionaryValue> outer = CefDictionaryValue::Create();
  outer->SetBool("b", true);
  outer->SetInt("i", -42);
  outer->SetString("s", Conversions::convertString(QString::fromUtf16(u"\u00fc")));
  outer->SetBinary("bin", CefBinaryValue::Create(bytes, sizeof(bytes)));
  outer->SetList("list", list);
  outer->SetNull("n");
  CefRefPtr<CefValue> value = CefValue::Create();
  value->SetDictionary(outer);

  const QVariantMap expected{
      {"b", true},
      {"i", -42},
      {"s", QString::fromUtf16(u"\u00fc")},
      {"bin", QByteArray(bytes, sizeof(bytes))},
      {"list", QVariantList{1, "two", QVariantMap{{"x", 3.5}}, QVariant()}},
      {"n", QVariant()},
  };
  const QVariant converted = Conversions::convertValue(value);
  EXPECT_EQ(converted, QVariant(expected));
  // Types count, not only values that compare equal.
  const QVariantMap map = converted.toMap();
  EXPECT_EQ(map["b"].userType(), QMetaType::Bool);
  EXPECT_EQ(map["i"].userType(), QMetaType::Int);
  EXPECT_EQ(map["bin"].userType(), QMetaType::QByteArray);
  EXPECT_EQ(map["list"].toList().at(2).toMap()["x"].userType(),
            QMetaType::Double);
  EXPECT_FALSE(map["n"].isValid());

  EXPECT_FALSE(Conversions::convertValue(nullptr).isValid());
  EXPECT_FALSE(Conversions::convertValue(CefValue::Create()).isValid());
  // The dictionary took the list over; read it back from there.
  EXPECT_EQ(Conversions::convertList(value->GetDictionary()->GetList("list")),
            expected["list"].toList());
  EXPECT_TRUE(Conversions::convertList(nullptr).isEmpty());
}

TEST(Conversions, CursorsAndDropActions) {
  EXPECT_EQ(Conversions::convertCursor(CT_POINTER), Qt::ArrowCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_HAND), Qt::PointingHandCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_IBEAM), Qt::IBeamCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_NORTHEASTRESIZE), Qt::SizeBDiagCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_NORTHWESTSOUTHEASTRESIZE),
            Qt::SizeFDiagCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_COLUMNRESIZE), Qt::SplitHCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_NOTALLOWED), Qt::ForbiddenCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_NONE), Qt::BlankCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_GRABBING), Qt::ClosedHandCursor);
  EXPECT_EQ(Conversions::convertCursor(CT_CUSTOM), Qt::CustomCursor);

  EXPECT_EQ(Conversions::convertDropActions(DRAG_OPERATION_NONE),
            Qt::DropActions(Qt::IgnoreAction));
  EXPECT_EQ(Conversions::convertDropActions(DRAG_OPERATION_EVERY),
            Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
  EXPECT_EQ(Conversions::convertDropActions(static_cast<cef_drag_operations_mask_t>(
                DRAG_OPERATION_COPY | DRAG_OPERATION_GENERIC)),
            Qt::CopyAction | Qt::MoveAction);
}

TEST(Conversions, MimeDataFromDragData) {
  std::unique_ptr<QMimeData> empty(Conversions::convertMimeData(nullptr));
  ASSERT_TRUE(empty);
  EXPECT_TRUE(empty->formats().isEmpty());

  // A link alone: URL and the URL as text.
  CefRefPtr<CefDragData> link = CefDragData::Create();
  link->SetLinkURL("https://example.org/page");
  std::unique_ptr<QMimeData> linkMime(Conversions::convertMimeData(link));
  EXPECT_EQ(linkMime->urls(), QList<QUrl>{QUrl("https://example.org/page")});
  EXPECT_EQ(linkMime->text(), "https://example.org/page");

  // A selection with files: the text stays the text, files follow the link.
  CefRefPtr<CefDragData> mixed = CefDragData::Create();
  mixed->SetFragmentText("words");
  mixed->SetFragmentHtml("<i>words</i>");
  mixed->SetLinkURL("https://example.org/");
  mixed->AddFile("/tmp/a.txt", "");
  std::unique_ptr<QMimeData> mixedMime(Conversions::convertMimeData(mixed));
  EXPECT_EQ(mixedMime->text(), "words");
  EXPECT_EQ(mixedMime->html(), "<i>words</i>");
  EXPECT_EQ(mixedMime->urls(),
            (QList<QUrl>{QUrl("https://example.org/"),
                         QUrl::fromLocalFile("/tmp/a.txt")}));

  // An image dragged out of the page carries its bytes.
  CefRefPtr<cefengine::DragDataImpl> image = new cefengine::DragDataImpl();
  image->SetLinkURL("https://example.org/pic.png");
  image->SetFileContents("pic.png", std::string("\x89PNG\0data", 9));
  std::unique_ptr<QMimeData> imageMime(
      Conversions::convertMimeData(image.get()));
  EXPECT_EQ(imageMime->data("image/png"), QByteArray("\x89PNG\0data", 9));
}
