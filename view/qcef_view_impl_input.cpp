// Qt input on its way to the page: which keys the page gets and which stay with the host's
// shortcuts, what Ctrl with a zoom key or the wheel means, and widget pixels to the engine's
// logical pixels. Everything here runs on the Qt main thread.

#include "view/qcef_view_impl.h"

#include "client/browser_client.h"
#include "host/instrument/instrument.h"
#include "host/view_support/drag_drop_event.h"
#include "host/view_support/drag_enter_event.h"
#include "host/view_support/drag_leave_event.h"
#include "host/view_support/drag_move_event.h"
#include "host/view_support/input_method_event.h"
#include "host/view_support/key_down_event.h"
#include "host/view_support/key_up_event.h"
#include "host/view_support/mouse_click_event.h"
#include "host/view_support/mouse_move_event.h"
#include "host/view_support/mouse_wheel_event.h"

#include "include/cef_browser.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMimeData>
#include <QMouseEvent>
#include <QWheelEvent>

#include <array>

namespace
{
// Keys a text field takes even with Ctrl held.
const std::array<QKeySequence::StandardKey, 6> s_editKeys = {QKeySequence::Undo, QKeySequence::Redo,
                                                             QKeySequence::SelectAll, QKeySequence::Cut,
                                                             QKeySequence::Copy, QKeySequence::Paste};

bool isCommand(const QKeyEvent* event)
{
    return event->modifiers() & (Qt::MetaModifier | Qt::ControlModifier);
}
} // namespace

CefRefPtr<CefBrowser> QCefViewImpl::inputBrowser() const
{
    return liveBrowser();
}

QPoint QCefViewImpl::logicalPoint(const QPointF& position) const
{
    return QPoint(m_client->DeviceToLogical(qRound(position.x())), m_client->DeviceToLogical(qRound(position.y())));
}

bool QCefViewImpl::shouldForwardKey(QKeyEvent* event) const
{
    switch (m_keyboardMode)
    {
    case 2:
        return !isCommand(event) || m_client->IsFocusedNodeEditable();
    case 3:
        return false;
    default:
        return true;
    }
}

bool QCefViewImpl::shouldAcceptKey(QKeyEvent* event) const
{
    bool matched = false;
    for (QKeySequence::StandardKey key : s_editKeys)
        matched = matched || event->matches(key);

    bool accept = true;
    if (m_keyboardMode == 3)
        accept = false;
    else if (m_keyboardMode == 0 || m_keyboardMode == 2)
        accept = (m_keyboardFlag & 0xff) != 0 || event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab ||
                 (m_client->IsFocusedNodeEditable() && (!isCommand(event) || matched));

    // The host's zoom shortcuts see these in every mode.
    const int key = event->key();
    if ((key == Qt::Key_Plus || key == Qt::Key_Minus || key == Qt::Key_0 || key == Qt::Key_Equal) &&
        (event->modifiers() & Qt::ControlModifier))
        accept = false;
    return accept;
}

void QCefViewImpl::keyPressEvent(QKeyEvent* event)
{
    BROVIA_INSTRUMENT_CONTEXT("keyPressEvent", "event", event->text().toStdString());
    CefRefPtr<CefBrowser> browser = inputBrowser();
    if (!browser)
        return;
    if (event->modifiers() & Qt::ControlModifier)
    {
        // The view changes no zoom itself: the host decides.
        switch (event->key())
        {
        case Qt::Key_0:
            Q_EMIT zoomRestoreRequested(m_client->GetZoomLevel());
            break;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            Q_EMIT zoomInRequested(m_client->GetZoomLevel());
            break;
        case Qt::Key_Minus:
        case Qt::Key_Underscore:
            Q_EMIT zoomOutRequested(m_client->GetZoomLevel());
            break;
        default:
            break;
        }
    }
    const bool forward = shouldForwardKey(event);
    const bool accept = shouldAcceptKey(event);
    if (forward)
        KeyDownEvent(browser, event).send();
    event->setAccepted(accept);
    if (event->matches(QKeySequence::Find))
        Q_EMIT searchTriggered();
}

void QCefViewImpl::keyReleaseEvent(QKeyEvent* event)
{
    BROVIA_INSTRUMENT_CONTEXT("keyReleaseEvent", "event", event->text().toStdString());
    CefRefPtr<CefBrowser> browser = inputBrowser();
    if (!browser)
        return;
    const bool forward = shouldForwardKey(event);
    const bool accept = shouldAcceptKey(event);
    if (forward)
        KeyUpEvent(browser, event).send();
    event->setAccepted(accept);
}

void QCefViewImpl::mousePressEvent(QMouseEvent* event)
{
    BROVIA_INSTRUMENT("mousePressEvent");
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
        MouseClickEvent(MouseEvent::Type::Press, browser, logicalPoint(event->localPos()), event,
                        m_clickCounter.m_count)
            .send();
}

void QCefViewImpl::mouseReleaseEvent(QMouseEvent* event)
{
    BROVIA_INSTRUMENT("mouseReleaseEvent");
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
        MouseClickEvent(MouseEvent::Type::Release, browser, logicalPoint(event->localPos()), event,
                        m_clickCounter.m_count)
            .send();
}

void QCefViewImpl::mouseDoubleClickEvent(QMouseEvent* event)
{
    BROVIA_INSTRUMENT("mouseDoubleClickEvent");
    // The counter already holds the second click: the page sees a press with a count of two.
    mousePressEvent(event);
}

void QCefViewImpl::mouseMoveEvent(QMouseEvent* event)
{
    BROVIA_INSTRUMENT("mouseMoveEvent");
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
        MouseMoveEvent(MouseEvent::Type::Move, browser, logicalPoint(event->localPos()), event).send();
}

void QCefViewImpl::enterEvent(QEvent*)
{
    CefRefPtr<CefBrowser> browser = inputBrowser();
    if (!browser)
        return;
    const QPoint local = mapFromGlobal(QCursor::pos());
    QMouseEvent mouseEvent(QEvent::MouseMove, local, Qt::NoButton, Qt::NoButton,
                           QGuiApplication::keyboardModifiers());
    MouseMoveEvent(MouseEvent::Type::Enter, browser, logicalPoint(mouseEvent.localPos()), &mouseEvent).send();
}

void QCefViewImpl::leaveEvent(QEvent*)
{
    BROVIA_INSTRUMENT("leaveEvent");
    CefRefPtr<CefBrowser> browser = inputBrowser();
    if (!browser)
        return;
    // The page hears of a leave as a move with the leave flag, at the cursor outside the widget.
    const QPoint global = QCursor::pos();
    const QPoint local = mapFromGlobal(global);
    QMouseEvent mouseEvent(QEvent::MouseMove, local, global, Qt::NoButton, Qt::NoButton,
                           QGuiApplication::keyboardModifiers());
    MouseMoveEvent(MouseEvent::Type::Leave, browser, logicalPoint(mouseEvent.localPos()), &mouseEvent).send();
}

void QCefViewImpl::wheelEvent(QWheelEvent* event)
{
    BROVIA_INSTRUMENT("wheelEvent");
    CefRefPtr<CefBrowser> browser = inputBrowser();
    if (!browser)
        return;
    if (event->modifiers() == Qt::ControlModifier)
    {
        if (event->angleDelta().y() < 1)
            Q_EMIT zoomOutRequested(m_client->GetZoomLevel());
        else
            Q_EMIT zoomInRequested(m_client->GetZoomLevel());
        return;
    }
    // Truncated, not rounded, unlike the other pointer events.
    const QPointF position = event->position();
    const QPoint point(m_client->DeviceToLogical(static_cast<int>(position.x())),
                       m_client->DeviceToLogical(static_cast<int>(position.y())));
    MouseWheelEvent(browser, point, event).send();
}

void QCefViewImpl::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    CefRefPtr<CefBrowser> browser = inputBrowser();
    // A popup taking the focus is no focus change to the page or the host.
    if (browser && reason != Qt::PopupFocusReason)
    {
        browser->GetHost()->SetFocus(true);
        Q_EMIT focusChanged(true, reason);
    }
    QWidget::focusInEvent(event);
}

void QCefViewImpl::focusOutEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    CefRefPtr<CefBrowser> browser = inputBrowser();
    if (browser && reason != Qt::PopupFocusReason)
    {
        browser->GetHost()->SetFocus(false);
        Q_EMIT focusChanged(false, reason);
    }
    QWidget::focusOutEvent(event);
}

void QCefViewImpl::onFocusLost(bool focusNext)
{
    BROVIA_INSTRUMENT("onFocusLost");
    // The page tabbed past its last or first element.
    focusNextPrevChild(focusNext);
}

void QCefViewImpl::inputMethodEvent(QInputMethodEvent* event)
{
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
        InputMethodEvent(browser, event).send();
    QWidget::inputMethodEvent(event);
}

void QCefViewImpl::dragEnterEvent(QDragEnterEvent* event)
{
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
    {
        DragEnterEvent(browser, logicalPoint(event->posF()), event).send();
        event->setAccepted(true);
    }
    QWidget::dragEnterEvent(event);
}

namespace
{
// What a page can take from a drag: text, HTML, URLs, or a drag out of this very view.
bool pageCanTake(const QDropEvent* event, const QWidget* view)
{
    const QMimeData* data = event->mimeData();
    return event->source() == view || (data && (data->hasText() || data->hasHtml() || data->hasUrls()));
}
} // namespace

void QCefViewImpl::dragMoveEvent(QDragMoveEvent* event)
{
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
    {
        if (pageCanTake(event, this))
        {
            DragMoveEvent(browser, logicalPoint(event->posF()), event).send();
            event->setAccepted(true);
        }
        else
        {
            event->setAccepted(false);
        }
    }
    QWidget::dragMoveEvent(event);
}

void QCefViewImpl::dragLeaveEvent(QDragLeaveEvent* event)
{
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
    {
        DragLeaveEvent(browser, event).send();
        event->setAccepted(true);
    }
    QWidget::dragLeaveEvent(event);
}

void QCefViewImpl::dropEvent(QDropEvent* event)
{
    if (CefRefPtr<CefBrowser> browser = inputBrowser())
    {
        if (pageCanTake(event, this))
        {
            DragDropEvent(browser, logicalPoint(event->posF()), event).send();
            event->setAccepted(true);
        }
        else
        {
            event->setAccepted(false);
        }
    }
    QWidget::dropEvent(event);
}
