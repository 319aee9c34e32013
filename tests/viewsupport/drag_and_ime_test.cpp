#include <QDragEnterEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QUrl>

#include <gtest/gtest.h>

#include "fake_browser.h"
#include "host/view_support/drag_drop_event.h"
#include "host/view_support/drag_enter_event.h"
#include "host/view_support/drag_leave_event.h"
#include "host/view_support/drag_move_event.h"
#include "host/view_support/input_method_event.h"

TEST(DragEvents, EnterCarriesTheDataMoveAndDropThePoint) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QMimeData mime;
  mime.setText("hello");
  mime.setHtml("<b>hello</b>");
  mime.setUrls({QUrl("https://example.org/a"),
                QUrl::fromLocalFile("/tmp/some dir/file.txt")});

  QDragEnterEvent enter(QPoint(40, 60), Qt::CopyAction | Qt::LinkAction, &mime,
                        Qt::LeftButton, Qt::ControlModifier);
  DragEnterEvent(browser.get(), QPoint(20, 30), &enter).send();
  QDragMoveEvent move(QPoint(42, 62), Qt::MoveAction, &mime, Qt::LeftButton,
                      Qt::NoModifier);
  DragMoveEvent(browser.get(), QPoint(21, 31), &move).send();
  QDropEvent drop(QPointF(44, 64), Qt::MoveAction, &mime, Qt::NoButton,
                  Qt::NoModifier);
  DragDropEvent(browser.get(), QPoint(22, 32), &drop).send();
  QDragLeaveEvent leave;
  DragLeaveEvent(browser.get(), &leave).send();

  const std::vector<DragCall>& drags = browser->host->drags;
  ASSERT_EQ(drags.size(), 4u);
  EXPECT_EQ(drags[0].kind, DragCall::Enter);
  EXPECT_EQ(drags[0].event.x, 20);
  EXPECT_EQ(drags[0].event.y, 30);
  EXPECT_EQ(drags[0].event.modifiers,
            static_cast<uint32_t>(EVENTFLAG_CONTROL_DOWN |
                                  EVENTFLAG_LEFT_MOUSE_BUTTON));
  EXPECT_EQ(drags[0].allowedOps,
            DRAG_OPERATION_COPY | DRAG_OPERATION_LINK);
  CefRefPtr<CefDragData> data = drags[0].data;
  ASSERT_TRUE(data);
  EXPECT_EQ(data->GetFragmentText().ToString(), "hello");
  EXPECT_EQ(data->GetFragmentHtml().ToString(), "<b>hello</b>");
  EXPECT_EQ(data->GetLinkURL().ToString(), "https://example.org/a");
  std::vector<CefString> paths, names;
  ASSERT_TRUE(data->GetFilePaths(paths));
  ASSERT_TRUE(data->GetFileNames(names));
  ASSERT_EQ(paths.size(), 1u);
  EXPECT_EQ(paths[0].ToString(), "/tmp/some dir/file.txt");
  EXPECT_EQ(names[0].ToString(), "file.txt");

  EXPECT_EQ(drags[1].kind, DragCall::Over);
  EXPECT_EQ(drags[1].event.x, 21);
  EXPECT_EQ(drags[1].allowedOps, DRAG_OPERATION_MOVE);
  EXPECT_EQ(drags[2].kind, DragCall::Drop);
  EXPECT_EQ(drags[2].event.y, 32);
  EXPECT_EQ(drags[3].kind, DragCall::Leave);
}

TEST(InputMethodEvent, CommitComposeAndCancel) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QInputMethodEvent preedit(
      QString::fromUtf16(u"\u306b\u307b"),
      {QInputMethodEvent::Attribute(QInputMethodEvent::Cursor, 1, 1,
                                    QVariant())});
  InputMethodEvent(browser.get(), &preedit).send();

  QInputMethodEvent commit;
  commit.setCommitString(QString::fromUtf16(u"\u65e5\u672c"));
  InputMethodEvent(browser.get(), &commit).send();

  QInputMethodEvent cancel;
  InputMethodEvent(browser.get(), &cancel).send();

  const std::vector<ImeCall>& ime = browser->host->ime;
  ASSERT_EQ(ime.size(), 3u);
  EXPECT_EQ(ime[0].kind, ImeCall::Compose);
  EXPECT_EQ(ime[0].text.ToString16(), u"\u306b\u307b");
  EXPECT_EQ(ime[0].selection.from, 1u);
  EXPECT_EQ(ime[0].selection.to, 1u);
  ASSERT_EQ(ime[0].underlines.size(), 1u);
  EXPECT_EQ(ime[0].underlines[0].range.from, 0u);
  EXPECT_EQ(ime[0].underlines[0].range.to, 2u);
  EXPECT_EQ(ime[1].kind, ImeCall::Commit);
  EXPECT_EQ(ime[1].text.ToString16(), u"\u65e5\u672c");
  EXPECT_EQ(ime[2].kind, ImeCall::Cancel);
}
