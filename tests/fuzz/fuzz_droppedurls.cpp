// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A drop brings a text/uri-list that another program wrote. Only the local files before the
// first URL that is none become paths: a wrong path would be a wrong file destroyed.

#include "controller/droppedurls.h"

#include <QMimeData>

#include <cstdint>
#include <cstdlib>

static void require(bool holds)
{
    if (!holds)
        std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QMimeData dropped;
    dropped.setData(QStringLiteral("text/uri-list"),
                    QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    const QList<QUrl> urls = dropped.urls();
    const QStringList paths = localPathsOf(urls);

    require(paths.size() <= urls.size());
    for (int index = 0; index < paths.size(); ++index) {
        require(!paths.at(index).isEmpty());
        require(urls.at(index).isLocalFile());
        // Back to a URL an absolute path names the same file. Two slashes there would begin the
        // name of a server.
        const QString &path = paths.at(index);
        if (path.startsWith(QLatin1Char('/')) && !path.startsWith(QLatin1String("//")))
            require(QUrl::fromLocalFile(path).toLocalFile() == path);
    }
    require(paths.size() == urls.size() || urls.at(paths.size()).toLocalFile().isEmpty());
    return 0;
}
