#pragma once

#include <QStringList>

namespace brovia_test
{
// The files this process's engine is saving right now, as "folder/file" under the temporary
// directory: a download in progress has one, a finished or cancelled one none.
QStringList engineDownloadFiles();
} // namespace brovia_test
