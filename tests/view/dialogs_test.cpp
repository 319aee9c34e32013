#include "view_harness.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace
{
bool titleBecomes(QSignalSpy& titles, const QString& title)
{
    return waitUntil([&] { return !titles.isEmpty() && titles.last().at(0).toString() == title; });
}

} // namespace

TEST(ScriptDialogs, TheBuiltInDialogsAnswerUnlessTheHostTakesOver)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    QSignalSpy requests(view.get(), &IQCefViewImpl::jsDialogRequested);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<p>dialogs</p>"))));

    // The built-in prompt opens empty; what the user typed goes to the page.
    answerNextDialog([](QWidget* dialog) {
        auto* input = qobject_cast<QInputDialog*>(dialog);
        ASSERT_NE(input, nullptr);
        EXPECT_TRUE(input->textValue().isEmpty());
        input->setTextValue(QStringLiteral("typed"));
        input->accept();
    });
    view->runJavaScript(QStringLiteral("document.title = String(prompt('Name?', 'preset'))"), [](const QVariant&) {});
    EXPECT_TRUE(titleBecomes(titles, QStringLiteral("typed")));

    answerNextDialog([](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        ASSERT_NE(box, nullptr);
        EXPECT_NE(box->button(QMessageBox::Cancel), nullptr);
        box->button(QMessageBox::Cancel)->click();
    });
    view->runJavaScript(QStringLiteral("document.title = 'confirm ' + confirm('Sure?')"), [](const QVariant&) {});
    EXPECT_TRUE(titleBecomes(titles, QStringLiteral("confirm false")));
    ASSERT_EQ(requests.size(), 2);
    EXPECT_EQ(requests.at(1).at(1).value<QCefDataTypes::JSDialogType>(), QCefDataTypes::Confirm);
    EXPECT_EQ(requests.at(1).at(2).toString(), QStringLiteral("Sure?"));

    // Taken over, no dialog opens and the page waits for the host's answer.
    view->setJSDialogHandledByHost(true);
    view->setJSDialogHandledByHost(false);
    view->runJavaScript(QStringLiteral("document.title = 'host ' + confirm('Host?')"), [](const QVariant&) {});
    ASSERT_TRUE(waitUntil([&] { return requests.size() == 3; }));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    view->continueJSDialog(true, QString());
    EXPECT_TRUE(titleBecomes(titles, QStringLiteral("host true")));
}

TEST(FileDialogs, APageFileInputOpensAQtDialogAndGetsTheChosenFile)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    ASSERT_TRUE(loadAndWait(
        view.get(),
        htmlPage(QStringLiteral(
            "<input id='f' type='file' accept='.txt' style='position:absolute;left:0;top:0;width:200px;height:40px'"
            " onchange=\"document.title = this.files.length ? this.files[0].name + ' ' + this.files[0].size : "
            "'none'\">"))));

    QTemporaryDir folder;
    const QString chosen = folder.filePath(QStringLiteral("notes.txt"));
    QFile file(chosen);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("hello");
    file.close();

    answerNextDialog([&](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(files, nullptr);
        EXPECT_TRUE(files->nameFilters().contains(QStringLiteral(".txt*.txt")));
        files->selectFile(chosen);
        QMetaObject::invokeMethod(files, "accept", Qt::DirectConnection);
    });
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 20));
    EXPECT_TRUE(titleBecomes(titles, QStringLiteral("notes.txt 5")));
}

TEST(FileDialogs, APageAsksTheHostForAFileAndGetsItsPath)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<p>files</p>"))));

    QTemporaryDir folder;
    const QString chosen = folder.filePath(QStringLiteral("project.txapp"));
    QFile file(chosen);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    answerNextDialog([&](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(files, nullptr);
        files->selectFile(chosen);
        QMetaObject::invokeMethod(files, "accept", Qt::DirectConnection);
    });
    view->runJavaScript(QStringLiteral("cefclient('openFile', ['%1'], 'Pick a project')"
                                       ".then(paths => document.title = 'picked ' + paths.join())")
                            .arg(folder.path()),
                        [](const QVariant&) {});
    EXPECT_TRUE(titleBecomes(titles, QStringLiteral("picked ") + chosen));
}
