// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/droppedurls.h"
#include "suites.h"

#include <QtTest>

class TestDroppedUrls : public QObject
{
    Q_OBJECT

private slots:
    void pathsAreThoseOfTheUrls_data();
    void pathsAreThoseOfTheUrls();
    void firstUrlThatIsNoLocalFileEndsTheDrop_data();
    void firstUrlThatIsNoLocalFileEndsTheDrop();
};

void TestDroppedUrls::pathsAreThoseOfTheUrls_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("path");
    const auto row = [](const char *url, const char *path) {
        QTest::newRow(url) << QString::fromUtf8(url) << QString::fromUtf8(path);
    };
    row("file:///home/u/a.txt", "/home/u/a.txt");
    row("file:///%E7%B2%89%E7%A2%8E", "/粉碎");
    row("file:///a%3Fb%23c", "/a?b#c");
    row("file:///folder/", "/folder/");
    row("file:///a/../b", "/a/../b");
    row("file:///a//b", "/a//b");
    row("file:///%25", "/%");
}

void TestDroppedUrls::pathsAreThoseOfTheUrls()
{
    QFETCH(QString, url);
    QFETCH(QString, path);
    QCOMPARE(localPathsOf({QUrl(url)}), QStringList{path});
}

void TestDroppedUrls::firstUrlThatIsNoLocalFileEndsTheDrop_data()
{
    QTest::addColumn<QString>("url");
    for (const char *url : {"http://example.com/b", "sftp://example.com/b", "trash:///b", ""})
        QTest::newRow(url) << QString::fromLatin1(url);
}

void TestDroppedUrls::firstUrlThatIsNoLocalFileEndsTheDrop()
{
    QFETCH(QString, url);
    const QUrl first = QUrl::fromLocalFile(QStringLiteral("/a"));
    const QUrl behind = QUrl::fromLocalFile(QStringLiteral("/c"));
    QCOMPARE(localPathsOf({first, QUrl(url), behind}), QStringList{QStringLiteral("/a")});
}

TEST_SUITE(droppedurls, TestDroppedUrls)
#include "droppedurls.moc"
