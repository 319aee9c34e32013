// The widgets behind the engine's dialog and menu callbacks: file dialogs and the page's context
// menu. Qt main thread, delivered from the engine's UI thread as queued calls.

#include "view/qcef_view_impl.h"

#include "client/browser_client.h"
#include "handlers/file_dialog_handler.h"
#include "host/view_support/conversions.h"

#include "include/cef_browser.h"

#include <QActionGroup>
#include <QFileDialog>
#include <QKeySequence>
#include <QMenu>
#include <QPrintDialog>
#include <QPointer>
#include <QPrinter>

#include <map>
#include <memory>

void QCefViewImpl::onCefFileDialogRequested(int mode, const QString& default_file_path, const QString& fileFilter)
{
    if (!m_client)
        return;
    // The dialog runs a nested event loop, in which the view may be destroyed.
    const QPointer<QCefViewImpl> self(this);
    // Never shown: the parent of the dialog below.
    std::unique_ptr<QFileDialog> carrier(new QFileDialog(nullptr, QString(), QString(), QString()));
    QStringList paths;
    const QMetaObject& context = IQCefViewImpl::staticMetaObject;
    switch (mode)
    {
    case FILE_DIALOG_OPEN:
        // A cancel gives one empty path, which the engine hears as a path.
        paths << QFileDialog::getOpenFileName(carrier.get(), context.tr("Open File", nullptr), default_file_path,
                                              fileFilter);
        break;
    case FILE_DIALOG_OPEN_MULTIPLE:
        paths = QFileDialog::getOpenFileNames(carrier.get(), context.tr("Open Files", nullptr), default_file_path,
                                              fileFilter);
        break;
    case FILE_DIALOG_OPEN_FOLDER:
        paths << QFileDialog::getExistingDirectory(carrier.get(), context.tr("Open Folder", nullptr), default_file_path,
                                                   QFileDialog::ShowDirsOnly);
        break;
    case FILE_DIALOG_SAVE:
        paths << QFileDialog::getSaveFileName(carrier.get(), context.tr("Save File", nullptr), default_file_path,
                                              fileFilter);
        break;
    default:
        break;
    }
    // The dialog ran an event loop of its own: the client may have been cleaned up meanwhile.
    if (self && m_client && !m_client->isCleanedUp())
        m_client->fileDialogHandler()->setSelectedFiles(paths);
}

void QCefViewImpl::onCefContextMenuRequested(ContextMenuHandler::MenuModelState state, QPoint point)
{
    auto* menu = new QMenu(this);
    std::map<int, QActionGroup*> groups;
    for (int index = 0; index < state.count; ++index)
    {
        const size_t at = static_cast<size_t>(index);
        QAction* action = nullptr;
        switch (state.types.at(at))
        {
        case MENUITEMTYPE_COMMAND:
            action = new QAction(menu);
            break;
        case MENUITEMTYPE_CHECK:
        case MENUITEMTYPE_RADIO:
            action = new QAction(menu);
            action->setCheckable(true);
            action->setChecked(state.checked.at(at));
            break;
        case MENUITEMTYPE_SEPARATOR:
            action = new QAction(menu);
            action->setSeparator(true);
            break;
        default:
            // Sub-menus are not shown.
            continue;
        }
        action->setText(QString::fromStdString(state.labels.at(at).ToString()));
        action->setData(QVariant(state.commandIds.at(at)));
        action->setEnabled(state.enabled.at(at));
        action->setVisible(state.visible.at(at));
        if (state.hasAccelerator.at(at) && state.acceleratorValid.at(at))
            action->setShortcut(QKeySequence(state.accelerators.at(at)));
        if (state.groupIds.at(at) != -1)
        {
            QActionGroup*& group = groups[state.groupIds.at(at)];
            if (!group)
            {
                // The first item of a group decides whether it is exclusive.
                group = new QActionGroup(menu);
                group->setExclusive(state.types.at(at) == MENUITEMTYPE_RADIO);
            }
            action->setActionGroup(group);
        }
        menu->addAction(action);
    }
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    if (m_client)
        connect(menu, &QMenu::triggered, m_client->contextMenuHandler().get(), &ContextMenuHandler::onActionTriggered);
    menu->popup(mapToGlobal(point), nullptr);
}

void QCefViewImpl::onCefPrintDialogRequested(int browserId)
{
    if (!m_client || m_client->isCleanedUp() || browserId != m_client->GetBrowserId())
        return;
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    QPrintDialog dialog(&printer, nullptr);
    // Before the dialog opens, whatever the user then does.
    Q_EMIT loadPrintDialogFinished(true);
    // The dialog runs a nested event loop, in which the view may be destroyed.
    const QPointer<QCefViewImpl> self(this);
    if (dialog.exec() != QDialog::Accepted || !self)
        return;
    const QString path = printer.outputFileName();
    CefPdfPrintSettings settings;
    settings.landscape = printer.pageLayout().orientation() == QPageLayout::Landscape ? 1 : 0;
    settings.print_background = 1;
    // The printable area, not the paper, in inches.
    const QRectF area = printer.pageRect(QPrinter::DevicePixel);
    settings.paper_width = area.width() / printer.resolution();
    settings.paper_height = area.height() / printer.resolution();
    // In points, with the default margin type: the engine does not apply them.
    const QMarginsF margins = printer.pageLayout().margins(QPageLayout::Point);
    settings.margin_top = margins.top();
    settings.margin_right = margins.right();
    settings.margin_bottom = margins.bottom();
    settings.margin_left = margins.left();
    settings.margin_type = PDF_PRINT_MARGIN_DEFAULT;
    // The dialog ran an event loop of its own: the client may have been cleaned up meanwhile.
    if (CefRefPtr<CefBrowser> browser = liveBrowser())
        browser->GetHost()->PrintToPDF(Conversions::convertString(path), settings, nullptr);
}
