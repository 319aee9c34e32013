#include "host/view_support/conversions.h"

#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>

#include <climits>
#include <vector>

#include "include/cef_stream.h"

namespace {

// Collects what CefDragData::GetFileContents writes.
class ByteArrayWriteHandler : public CefWriteHandler {
 public:
  explicit ByteArrayWriteHandler(QByteArray* target) : m_target(target) {}

  size_t Write(const void* ptr, size_t size, size_t n) override {
    m_target->append(static_cast<const char*>(ptr),
                     static_cast<int>(size * n));
    return n;
  }
  int Seek(int64_t offset, int whence) override { return -1; }
  int64_t Tell() override { return m_target->size(); }
  int Flush() override { return 0; }
  bool MayBlock() override { return false; }

 private:
  QByteArray* m_target;

  IMPLEMENT_REFCOUNTING(ByteArrayWriteHandler);
};

QByteArray fileContents(CefRefPtr<CefDragData> dragData) {
  QByteArray contents;
  if (dragData->GetFileContents(nullptr) == 0)
    return contents;
  CefRefPtr<CefStreamWriter> writer = CefStreamWriter::CreateForHandler(
      new ByteArrayWriteHandler(&contents));
  if (writer)
    dragData->GetFileContents(writer);
  return contents;
}

QVariantMap convertDictionary(CefRefPtr<CefDictionaryValue> dictionary) {
  QVariantMap map;
  CefDictionaryValue::KeyList keys;
  if (!dictionary || !dictionary->GetKeys(keys))
    return map;
  for (const CefString& key : keys)
    map.insert(Conversions::convertString(key),
               Conversions::convertValue(dictionary->GetValue(key)));
  return map;
}

}  // namespace

QRect Conversions::convertRect(const CefRect& rect) {
  return QRect(rect.x, rect.y, rect.width, rect.height);
}

CefRect Conversions::convertRect(const QRect& rect) {
  return CefRect(rect.x(), rect.y(), rect.width(), rect.height());
}

QString Conversions::convertString(const CefString& string) {
  if (string.empty())
    return QString();
  return QString(reinterpret_cast<const QChar*>(string.c_str()),
                 static_cast<int>(string.length()));
}

CefString Conversions::convertString(const QString& string) {
  return CefString(string.toStdU16String());
}

QByteArray Conversions::convertBinary(CefRefPtr<CefBinaryValue> binary) {
  // QByteArray holds at most INT_MAX bytes; anything larger is dropped.
  if (!binary || binary->GetSize() == 0 ||
      binary->GetSize() > static_cast<size_t>(INT_MAX)) {
    return QByteArray();
  }
  QByteArray bytes(static_cast<int>(binary->GetSize()), Qt::Uninitialized);
  const size_t copied = binary->GetData(bytes.data(), bytes.size(), 0);
  bytes.truncate(static_cast<int>(copied));
  return bytes;
}

Qt::CursorShape Conversions::convertCursor(cef_cursor_type_t type) {
  switch (type) {
    case CT_POINTER:
    case CT_CONTEXTMENU:
      return Qt::ArrowCursor;
    // The display handler builds it from the engine's image.
    case CT_CUSTOM:
      return Qt::CustomCursor;
    case CT_CROSS:
    case CT_CELL:
      return Qt::CrossCursor;
    case CT_HAND:
      return Qt::PointingHandCursor;
    case CT_IBEAM:
    case CT_VERTICALTEXT:
      return Qt::IBeamCursor;
    case CT_WAIT:
      return Qt::WaitCursor;
    case CT_PROGRESS:
      return Qt::BusyCursor;
    case CT_HELP:
      return Qt::WhatsThisCursor;
    case CT_EASTRESIZE:
    case CT_WESTRESIZE:
    case CT_EASTWESTRESIZE:
      return Qt::SizeHorCursor;
    case CT_NORTHRESIZE:
    case CT_SOUTHRESIZE:
    case CT_NORTHSOUTHRESIZE:
      return Qt::SizeVerCursor;
    case CT_NORTHEASTRESIZE:
    case CT_SOUTHWESTRESIZE:
    case CT_NORTHEASTSOUTHWESTRESIZE:
      return Qt::SizeBDiagCursor;
    case CT_NORTHWESTRESIZE:
    case CT_SOUTHEASTRESIZE:
    case CT_NORTHWESTSOUTHEASTRESIZE:
      return Qt::SizeFDiagCursor;
    case CT_COLUMNRESIZE:
      return Qt::SplitHCursor;
    case CT_ROWRESIZE:
      return Qt::SplitVCursor;
    case CT_MIDDLEPANNING:
    case CT_EASTPANNING:
    case CT_NORTHPANNING:
    case CT_NORTHEASTPANNING:
    case CT_NORTHWESTPANNING:
    case CT_SOUTHPANNING:
    case CT_SOUTHEASTPANNING:
    case CT_SOUTHWESTPANNING:
    case CT_WESTPANNING:
    case CT_MIDDLE_PANNING_VERTICAL:
    case CT_MIDDLE_PANNING_HORIZONTAL:
    case CT_MOVE:
      return Qt::SizeAllCursor;
    case CT_ALIAS:
    case CT_DND_LINK:
      return Qt::DragLinkCursor;
    case CT_COPY:
    case CT_DND_COPY:
      return Qt::DragCopyCursor;
    case CT_DND_MOVE:
      return Qt::DragMoveCursor;
    case CT_NODROP:
    case CT_NOTALLOWED:
    case CT_DND_NONE:
      return Qt::ForbiddenCursor;
    case CT_NONE:
      return Qt::BlankCursor;
    case CT_GRAB:
      return Qt::OpenHandCursor;
    case CT_GRABBING:
      return Qt::ClosedHandCursor;
    // Qt has no zoom cursors.
    case CT_ZOOMIN:
    case CT_ZOOMOUT:
    default:
      return Qt::ArrowCursor;
  }
}

Qt::DropActions Conversions::convertDropActions(cef_drag_operations_mask_t ops) {
  Qt::DropActions actions = Qt::IgnoreAction;
  if (ops & DRAG_OPERATION_COPY)
    actions |= Qt::CopyAction;
  if (ops & DRAG_OPERATION_LINK)
    actions |= Qt::LinkAction;
  // Blink's generic operation is a move everywhere but on the Mac.
  if (ops & (DRAG_OPERATION_MOVE | DRAG_OPERATION_GENERIC))
    actions |= Qt::MoveAction;
  return actions;
}

QMimeData* Conversions::convertMimeData(CefRefPtr<CefDragData> dragData) {
  auto* mimeData = new QMimeData();
  if (!dragData)
    return mimeData;

  const QString text = convertString(dragData->GetFragmentText());
  const QString html = convertString(dragData->GetFragmentHtml());
  const QString link = convertString(dragData->GetLinkURL());
  if (!html.isEmpty())
    mimeData->setHtml(html);

  QList<QUrl> urls;
  if (!link.isEmpty())
    urls.append(QUrl(link));
  std::vector<CefString> paths;
  if (dragData->GetFilePaths(paths)) {
    for (const CefString& path : paths)
      urls.append(QUrl::fromLocalFile(convertString(path)));
  }
  if (!urls.isEmpty())
    mimeData->setUrls(urls);
  // A link alone still drops as text into plain text targets.
  if (!text.isEmpty())
    mimeData->setText(text);
  else if (!link.isEmpty())
    mimeData->setText(link);

  const QString fileName = convertString(dragData->GetFileName());
  const QByteArray contents = fileContents(dragData);
  if (!contents.isEmpty()) {
    const QString type =
        QMimeDatabase().mimeTypeForFile(fileName, QMimeDatabase::MatchExtension)
            .name();
    mimeData->setData(type, contents);
  }
  return mimeData;
}

QVariant Conversions::convertValue(CefRefPtr<CefValue> value) {
  if (!value || !value->IsValid())
    return QVariant();
  switch (value->GetType()) {
    case VTYPE_BOOL:
      return QVariant(value->GetBool());
    case VTYPE_INT:
      return QVariant(value->GetInt());
    case VTYPE_DOUBLE:
      return QVariant(value->GetDouble());
    case VTYPE_STRING:
      return QVariant(convertString(value->GetString()));
    case VTYPE_BINARY:
      return QVariant(convertBinary(value->GetBinary()));
    case VTYPE_DICTIONARY:
      return QVariant(convertDictionary(value->GetDictionary()));
    case VTYPE_LIST:
      return QVariant(convertList(value->GetList()));
    case VTYPE_INVALID:
    case VTYPE_NULL:
    default:
      return QVariant();
  }
}

QVariantList Conversions::convertList(CefRefPtr<CefListValue> list) {
  QVariantList result;
  if (!list)
    return result;
  const size_t size = list->GetSize();
  for (size_t i = 0; i < size; ++i)
    result.append(convertValue(list->GetValue(i)));
  return result;
}
