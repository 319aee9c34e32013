#include "handlers/download_handler.h"
#include "handlers/find_handler.h"
#include "handlers/focus_handler.h"
#include "handlers/print_dialog_handler.h"

#include <QDir>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{
class SaveAs : public CefBeforeDownloadCallback
{
public:
    void Continue(const CefString& download_path, bool show_dialog) override
    {
        path = download_path.ToString();
        dialog = show_dialog;
    }
    std::string path;
    bool dialog = false;
    IMPLEMENT_REFCOUNTING(SaveAs);
};
} // namespace

TEST(SmallHandlers, PaperFocusFindAndDownloadsAnswerAsTheHostExpects)
{
    CefRefPtr<PrintDialogHandler> print = new PrintDialogHandler();
    EXPECT_EQ(print->GetPdfPaperSize(nullptr, 100), CefSize(850, 1100));
    EXPECT_EQ(print->GetPdfPaperSize(nullptr, 97), CefSize(824, 1067));
    EXPECT_TRUE(print->OnPrintDialog(nullptr, false, nullptr));
    EXPECT_FALSE(print->OnPrintJob(nullptr, "doc", "/tmp/doc.pdf", nullptr));

    CefRefPtr<FocusHandler> focus = new FocusHandler();
    QSignalSpy lost(focus.get(), &FocusHandler::focusLost);
    focus->OnTakeFocus(nullptr, true);
    ASSERT_EQ(lost.size(), 1);
    EXPECT_TRUE(lost.at(0).at(0).toBool());

    CefRefPtr<FindHandler> find = new FindHandler();
    QSignalSpy results(find.get(), &FindHandler::searchResultsReady);
    find->OnFindResult(nullptr, 3, 7, CefRect(1, 2, 30, 40), 2, false);
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results.at(0).at(2).toRect(), QRect(1, 2, 30, 40));
    EXPECT_FALSE(results.at(0).at(4).toBool());

    // Without a folder the name resolves against the current directory; the engine always asks.
    CefRefPtr<DownloadHandler> downloads = new DownloadHandler();
    downloads->setDownloadLocation(CefString());
    CefRefPtr<SaveAs> saveAs = new SaveAs();
    EXPECT_TRUE(downloads->OnBeforeDownload(nullptr, nullptr, "report.pdf", saveAs));
    EXPECT_EQ(QString::fromStdString(saveAs->path), QDir::current().absoluteFilePath("report.pdf"));
    EXPECT_TRUE(saveAs->dialog);
}
