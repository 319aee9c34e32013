#include "app/demo_window.h"

#include "host/view_interface/iqcef_view_impl.h"
#include "host/view_interface/qcef_view_settings.h"
#include "view/view_impl_service.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

DemoWindow::DemoWindow(QWidget* parent)
    : QMainWindow(parent)
{
    QCefViewSettings settings;
    m_view = QCefViewImplService::create(this, settings);
    setCentralWidget(m_view);

    QToolBar* bar = addToolBar(tr("Navigation"));
    bar->setMovable(false);
    m_back = bar->addAction(style()->standardIcon(QStyle::SP_ArrowBack), tr("Back"), m_view, &IQCefViewImpl::back);
    m_forward =
        bar->addAction(style()->standardIcon(QStyle::SP_ArrowForward), tr("Forward"), m_view, &IQCefViewImpl::forward);
    m_reloadOrStop = bar->addAction(style()->standardIcon(QStyle::SP_BrowserReload), tr("Reload"), this, [this] {
        if (m_loading)
            m_view->stop();
        else
            m_view->reload();
    });
    m_back->setEnabled(false);
    m_forward->setEnabled(false);
    m_address = new QLineEdit(bar);
    m_address->setPlaceholderText(tr("Address"));
    bar->addWidget(m_address);
    connect(m_address, &QLineEdit::returnPressed, this, &DemoWindow::onAddressEntered);

    m_status = new QLabel(this);
    statusBar()->addWidget(m_status, 1);

    connect(m_view, &IQCefViewImpl::titleChanged, this, [this](const QString& title) {
        setWindowTitle(title.isEmpty() ? tr("brovia demo") : title + tr(" - brovia demo"));
    });
    connect(m_view, &IQCefViewImpl::urlChanged, this, [this](const QUrl& url) {
        m_address->setText(url.isEmpty() ? QString() : url.toString());
    });
    connect(m_view, &IQCefViewImpl::loadStateChanged, this, &DemoWindow::onLoadStateChanged);
    connect(m_view, &IQCefViewImpl::loadFinished, this, [this](const QString& url, bool ok) {
        m_status->setText(ok ? tr("Done") : tr("Failed to load %1").arg(url));
        Q_EMIT pageLoaded(ok);
    });
    connect(m_view, &IQCefViewImpl::linkClicked, this, [this](const QUrl& url) {
        if (url.scheme() == QLatin1String("torvex"))
            m_status->setText(tr("The page asked the host for \"%1\"").arg(url.path()));
    });

    setWindowTitle(tr("brovia demo"));
    resize(1024, 720);
}

void DemoWindow::openDemoPage()
{
    QFile page(QStringLiteral(":/demo/demo_page.html"));
    page.open(QIODevice::ReadOnly);
    m_view->setHtml(QString::fromUtf8(page.readAll()));
}

void DemoWindow::open(const QUrl& url)
{
    m_address->setText(url.toString());
    m_view->load(url);
}

void DemoWindow::onLoadStateChanged(const QString&, bool isLoading, bool canGoBack, bool canGoForward)
{
    m_loading = isLoading;
    m_back->setEnabled(canGoBack);
    m_forward->setEnabled(canGoForward);
    m_reloadOrStop->setText(isLoading ? tr("Stop") : tr("Reload"));
    m_reloadOrStop->setIcon(style()->standardIcon(isLoading ? QStyle::SP_BrowserStop : QStyle::SP_BrowserReload));
    if (isLoading)
        m_status->setText(tr("Loading..."));
}

void DemoWindow::onAddressEntered()
{
    QUrl url = QUrl::fromUserInput(m_address->text());
    if (url.isValid())
        open(url);
}
