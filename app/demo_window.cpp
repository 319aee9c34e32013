#include "app/demo_window.h"

#include "app/demo_server.h"
#include "app/find_bar.h"
#include "host/view_interface/iqcef_view_impl.h"
#include "host/view_interface/qcef_view_settings.h"
#include "view/view_impl_service.h"

#include <QAction>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <chrono>
#include <cmath>

namespace
{
// One step of zoom: the engine's level is a power of 1.2, so half a level is about 10 percent.
constexpr double kZoomStep = 0.5;

// The page's answer to a host call, and what the host writes into the page.
const char* const kHostScript =
    "document.getElementById('fromHost').textContent ="
    " 'Written by the host at ' + new Date().toLocaleTimeString('en-GB');"
    "document.querySelectorAll('section').length";
} // namespace

DemoWindow::DemoWindow(QWidget* parent)
    : QMainWindow(parent)
{
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_view = QCefViewImplService::create(centre, QCefViewSettings());
    // A page's window.print() then opens a print dialog that ends in a PDF; read at the first load.
    m_view->setPrintDialogEnabled(true);
    m_findBar = new FindBar(centre);
    m_findBar->hide();
    layout->addWidget(m_view, 1);
    layout->addWidget(m_findBar);
    setCentralWidget(centre);

    buildToolBars();

    m_status = new QLabel(this);
    statusBar()->addWidget(m_status, 1);
    m_download = new QProgressBar(this);
    m_download->setMaximumWidth(220);
    m_download->hide();
    statusBar()->addPermanentWidget(m_download);

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
    connect(m_view, &IQCefViewImpl::receivedCefClientMessage, this, &DemoWindow::onPageMessage);
    connect(m_view, &IQCefViewImpl::jsDialogRequested, this,
            [this](const QString&, QCefDataTypes::JSDialogType, const QString& text, const QString&) {
                m_status->setText(tr("The page opened a dialog: %1").arg(text));
            });
    connect(m_view, &IQCefViewImpl::zoomInRequested, this, [this](double level) {
        m_zoomLevel = level;
        zoomIn();
    });
    connect(m_view, &IQCefViewImpl::zoomOutRequested, this, [this](double level) {
        m_zoomLevel = level;
        zoomOut();
    });
    connect(m_view, &IQCefViewImpl::zoomRestoreRequested, this, &DemoWindow::resetZoom);
    connect(m_view, &IQCefViewImpl::searchTriggered, this, [this] { openFind(); });
    connect(m_view, &IQCefViewImpl::searchResultsReady, this,
            [this](int, int count, const QRect&, int index, bool final) {
                m_findBar->showMatches(count, index);
                Q_EMIT matchesFound(count, index, final);
            });
    connect(m_findBar, &FindBar::findRequested, this, [this](const QString& text, bool forward, bool findNext) {
        m_view->find(0, text, forward, false, findNext);
    });
    connect(m_findBar, &FindBar::closed, m_view, qOverload<>(&QWidget::setFocus));

    setWindowTitle(tr("brovia demo"));
    resize(1100, 760);
}

void DemoWindow::buildToolBars()
{
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
    m_address->setMinimumWidth(420);
    bar->addWidget(m_address);
    connect(m_address, &QLineEdit::returnPressed, this, &DemoWindow::onAddressEntered);

    addToolBarBreak();
    QToolBar* tools = addToolBar(tr("Page"));
    tools->setMovable(false);
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    tools->addAction(tr("-"), this, &DemoWindow::zoomOut)->setToolTip(tr("Zoom out (Ctrl+-)"));
    m_zoomReset = tools->addAction(tr("100%"), this, &DemoWindow::resetZoom);
    m_zoomReset->setToolTip(tr("Reset the zoom (Ctrl+0)"));
    tools->addAction(tr("+"), this, &DemoWindow::zoomIn)->setToolTip(tr("Zoom in (Ctrl++)"));
    tools->addSeparator();
    QAction* find = tools->addAction(tr("Find"), this, [this] { openFind(); });
    find->setShortcut(QKeySequence::Find);
    QAction* print = tools->addAction(tr("Print to PDF"), this, [this] {
        m_view->runJavaScript(QStringLiteral("window.print()"), [](const QVariant&) {});
    });
    print->setShortcut(QKeySequence::Print);
    tools->addAction(tr("Inspector"), m_view, &IQCefViewImpl::showDevTools)->setShortcut(Qt::Key_F12);
    tools->addSeparator();
    tools->addAction(tr("Run script in page"), this, &DemoWindow::runHostScript);
}

void DemoWindow::openDemoPage()
{
    QFile file(QStringLiteral(":/demo/demo_page.html"));
    file.open(QIODevice::ReadOnly);
    const QByteArray page = file.readAll();
    if (!m_server)
    {
        m_server = new DemoServer(page, this);
        connect(m_server, &DemoServer::downloadProgress, this, &DemoWindow::onDownloadProgress);
        connect(m_server, &DemoServer::downloadFinished, this, &DemoWindow::onDownloadFinished);
        if (!m_server->listen())
        {
            // Without a port the page still shows, without its download.
            delete m_server;
            m_server = nullptr;
        }
    }
    if (m_server)
        open(m_server->pageUrl());
    else
        m_view->setHtml(QString::fromUtf8(page));
}

void DemoWindow::open(const QUrl& url)
{
    m_address->setText(url.toString());
    m_view->load(url);
    if (!m_browserMade)
    {
        // These reach the browser's handlers, which the first load makes.
        m_browserMade = true;
        m_view->setContextMenuEnabled(true);
        m_view->setInspectEnabled(true);
    }
}

void DemoWindow::zoomIn()
{
    setZoom(m_zoomLevel + kZoomStep);
}

void DemoWindow::zoomOut()
{
    setZoom(m_zoomLevel - kZoomStep);
}

void DemoWindow::resetZoom()
{
    setZoom(0.0);
}

void DemoWindow::setZoom(double level)
{
    m_zoomLevel = level;
    m_view->setZoomLevel(level);
    m_zoomReset->setText(tr("%1%").arg(std::lround(100.0 * std::pow(1.2, level))));
}

void DemoWindow::openFind(const QString& text)
{
    m_findBar->open();
    if (!text.isEmpty())
        m_findBar->setText(text);
}

void DemoWindow::closeFind()
{
    m_findBar->hide();
    m_view->setFocus();
}

void DemoWindow::runHostScript()
{
    m_view->runJavaScript(QString::fromLatin1(kHostScript), [this](const QVariant& result) {
        m_status->setText(tr("The host's script ran in the page and counted %1 sections").arg(result.toInt()));
        Q_EMIT hostScriptFinished(result);
    });
}

void DemoWindow::onPageMessage(const QString& method, const QList<QVariant>& args)
{
    const QString shown = QString::fromUtf8(QJsonDocument(QJsonArray::fromVariantList(args)).toJson(QJsonDocument::Compact));
    m_status->setText(tr("The page called the host: %1(%2)").arg(method, shown.mid(1, shown.size() - 2)));
    if (method == QLatin1String("greetHost"))
    {
        // The answer goes back as a script; the JSON text is a valid script literal.
        const QString answer = QJsonDocument(QJsonArray{tr("The host got \"%1\"").arg(args.value(0).toList().value(0).toString())})
                                   .toJson(QJsonDocument::Compact);
        m_view->runJavaScript(QStringLiteral("showHostAnswer(%1[0])").arg(answer), [](const QVariant&) {});
    }
    Q_EMIT pageCalledHost(method);
}

void DemoWindow::onDownloadProgress(const QString& fileName, qint64 sent, qint64 total)
{
    m_download->show();
    m_download->setRange(0, 1000);
    m_download->setValue(int(sent * 1000 / std::max<qint64>(total, 1)));
    m_download->setFormat(tr("%1: %p%").arg(fileName));
    Q_EMIT downloadProgressed(sent, total);
}

void DemoWindow::onDownloadFinished(const QString& fileName, bool ok)
{
    m_status->setText(ok ? tr("Sent %1 to the engine").arg(fileName) : tr("The download of %1 stopped").arg(fileName));
    QTimer::singleShot(std::chrono::seconds(3), m_download, &QWidget::hide);
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
