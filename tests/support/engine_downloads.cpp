#include "support/engine_downloads.h"

#include <QCoreApplication>
#include <QDir>

namespace brovia_test
{
QStringList engineDownloadFiles()
{
    QStringList files;
    const QDir temp = QDir::temp();
    // This process's engine only: other test programs may be downloading at the same time.
    const QString mine = QStringLiteral("brovia-downloads-%1-*").arg(QCoreApplication::applicationPid());
    for (const QString& folder : temp.entryList({mine}, QDir::Dirs))
        for (const QString& file : QDir(temp.filePath(folder)).entryList(QDir::Files | QDir::Hidden))
            files << folder + QLatin1Char('/') + file;
    return files;
}
} // namespace brovia_test
