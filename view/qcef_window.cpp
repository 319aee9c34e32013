#include "view/qcef_window.h"

QCefWindow::QCefWindow(QWindow* parent)
    : QWindow(parent)
{
    setFlags(Qt::FramelessWindowHint);
    create();
}

QCefWindow::~QCefWindow()
{
    destroy();
}

QSize QCefWindow::size() const
{
    return geometry().size();
}

void QCefWindow::exposeEvent(QExposeEvent* event)
{
    QWindow::exposeEvent(event);
}

void QCefWindow::resizeEvent(QResizeEvent* event)
{
    QWindow::resizeEvent(event);
}
