#include "support/engine_downloads.h"

#include <QDir>

namespace brovia_test
{
QStringList engineDownloadFiles()
{
    QStringList files;
    const QDir temp = QDir::temp();
    for (const QString& folder : temp.entryList({QStringLiteral("brovia-downloads-*")}, QDir::Dirs))
        for (const QString& file : QDir(temp.filePath(folder)).entryList(QDir::Files | QDir::Hidden))
            files << folder + QLatin1Char('/') + file;
    return files;
}
} // namespace brovia_test
