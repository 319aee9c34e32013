#pragma once

#include <QWindow>

// Thin wrapper of a native engine window, for views that render in the engine's own window.
// The library makes none today; the view only honours one if it exists.
class QCefWindow : public QWindow
{
    Q_OBJECT

public:
    explicit QCefWindow(QWindow* parent = nullptr);
    ~QCefWindow() override;

    QSize size() const;

protected:
    void exposeEvent(QExposeEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void* m_nativeWindow = nullptr;
};
