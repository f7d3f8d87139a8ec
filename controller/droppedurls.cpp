// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/droppedurls.h"

QStringList localPathsOf(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls) {
        const QString path = url.toLocalFile();
        if (path.isEmpty())
            break;
        paths.append(path);
    }
    return paths;
}
