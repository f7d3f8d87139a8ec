// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the windows and their style sheets rely on in the bundle. How the images look
// is for eyes to judge.

#include "suites.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QResource>
#include <QSet>
#include <QtTest>

namespace
{

struct BundledImage {
    const char *name;
    int width;
    int height;
};

constexpr BundledImage bundledImages[] = {
    {"bk", 800, 550},           {"bk_history", 700, 500},   {"bk_dialog", 420, 230},
    {"bk_item", 1, 30},         {"bk_table_head", 6, 26},   {"sp_table_head", 6, 26},
    {"logo", 48, 48},           {"icon_logo", 16, 16},      {"icon_add", 16, 16},
    {"icon_remove", 16, 16},    {"ico_file", 16, 16},       {"ico_folder", 16, 16},
    {"ico_smile", 42, 44},      {"ico_ok", 45, 45},         {"ico_war", 45, 45},
    {"ico_war2", 45, 45},       {"ico_war3", 45, 45},       {"ico_war4", 45, 45},
    {"btn_quit_s1", 27, 27},    {"btn_quit_s2", 27, 27},    {"btn_quit_s3", 27, 27},
    {"btn_mini_s1", 27, 27},    {"btn_mini_s2", 27, 27},    {"btn_mini_s3", 27, 27},
    {"btn_gray_s1", 76, 27},    {"btn_gray_s2", 76, 27},    {"btn_gray_s3", 76, 27},
    {"btn_green_s1", 76, 27},   {"btn_green_s2", 76, 27},   {"btn_green_s3", 76, 27},
    {"btn_green_s4", 76, 27},   {"btn_gray_90_s1", 90, 27}, {"btn_gray_90_s2", 90, 27},
    {"btn_gray_90_s3", 90, 27},
};

QString pathOf(const QString &name)
{
    return QStringLiteral(":/images/") + name;
}

QImage imageOf(const char *name)
{
    return QImage(pathOf(QLatin1String(name))).convertToFormat(QImage::Format_ARGB32);
}

/// The images that the sources name, by whole path or by a literal that only an image can be.
QSet<QString> imagesNamedIn(const QString &directory)
{
    static const QRegularExpression image(
        QStringLiteral("(?<=:/images/)[a-z0-9_]+|"
                       "(?<=\")(?:bk|logo|(?:bk|btn|ico|icon|sp)_[a-z0-9_]+)(?=\")"));
    QSet<QString> names;
    const QStringList kinds{QStringLiteral("*.h"), QStringLiteral("*.cpp")};
    const QFileInfoList sources = QDir(directory).entryInfoList(kinds, QDir::Files);
    for (const QFileInfo &source : sources) {
        QFile file(source.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        auto found = image.globalMatch(QString::fromUtf8(file.readAll()));
        while (found.hasNext())
            names.insert(found.next().captured());
    }
    return names;
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void imageIsAPngOfItsSizeStoredUncompressed_data();
    void imageIsAPngOfItsSizeStoredUncompressed();
    void bundleHoldsNothingElse();
    void everyImageNamedInTheSourcesIsBundled();
    void picturesThatMustDifferDo_data();
    void picturesThatMustDifferDo();
    void backgroundsAreOpaque();
    void tilesJoinWithoutASeam();
    void closeCrossIsCentred();
};

void TestResources::imageIsAPngOfItsSizeStoredUncompressed_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    for (const BundledImage &image : bundledImages)
        QTest::newRow(image.name) << pathOf(QLatin1String(image.name))
                                  << QSize(image.width, image.height);
}

void TestResources::imageIsAPngOfItsSizeStoredUncompressed()
{
    QFETCH(QString, path);
    QTEST(QImage(path, "png").size(), "size");
    // QResource points to what is stored, and a packed image would not begin like one.
    const QResource resource(path);
    const QByteArray stored(reinterpret_cast<const char *>(resource.data()),
                            static_cast<int>(resource.size()));
    QVERIFY(stored.startsWith("\x89PNG\r\n\x1a\n"));
}

void TestResources::bundleHoldsNothingElse()
{
    QStringList expected;
    for (const BundledImage &image : bundledImages)
        expected << QLatin1String(image.name);
    expected.sort();
    QCOMPARE(QDir(QStringLiteral(":/images")).entryList(QDir::NoFilter, QDir::Name), expected);
}

void TestResources::everyImageNamedInTheSourcesIsBundled()
{
    const QSet<QString> names = imagesNamedIn(QStringLiteral(SOURCE_DIRECTORY "/widgets"))
                                + imagesNamedIn(QStringLiteral(SOURCE_DIRECTORY "/ui"));
    QVERIFY2(names.contains(QStringLiteral("logo")), "do the sources still lie there?");
    // A name stands for itself, or for the states of a button that begin with it.
    for (const QString &name : names)
        QVERIFY2(QFile::exists(pathOf(name)) || QFile::exists(pathOf(name + QStringLiteral("_s1"))),
                 qPrintable(name));
}

void TestResources::picturesThatMustDifferDo_data()
{
    QTest::addColumn<QStringList>("names");
    const auto add = [](const char *title, const char *names) {
        QTest::newRow(title) << QString::fromLatin1(names).split(QLatin1Char(' '));
    };
    add("close", "btn_quit_s1 btn_quit_s2 btn_quit_s3");
    add("minimise", "btn_mini_s1 btn_mini_s2 btn_mini_s3");
    add("grey", "btn_gray_s1 btn_gray_s2 btn_gray_s3");
    add("wide grey", "btn_gray_90_s1 btn_gray_90_s2 btn_gray_90_s3");
    add("green", "btn_green_s1 btn_green_s2 btn_green_s3 btn_green_s4");
    add("messages", "ico_ok ico_war ico_war2 ico_war3 ico_war4");
    add("small pictures", "ico_file ico_folder icon_add icon_remove icon_logo");
}

void TestResources::picturesThatMustDifferDo()
{
    QFETCH(QStringList, names);
    for (int i = 0; i < names.size(); ++i)
        for (int j = 0; j < i; ++j)
            QVERIFY2(QImage(pathOf(names[i])) != QImage(pathOf(names[j])), qPrintable(names[i]));
}

void TestResources::backgroundsAreOpaque()
{
    for (const char *name : {"bk", "bk_history", "bk_dialog", "bk_item", "bk_table_head"})
        QVERIFY2(!QImage(pathOf(QLatin1String(name))).hasAlphaChannel(), name);
}

void TestResources::tilesJoinWithoutASeam()
{
    const QImage head = imageOf("bk_table_head");
    QCOMPARE(head.copy(1, 0, 5, 26), head.copy(0, 0, 5, 26));
    // The labels of a row repeat its image from their own corners, so it is flat.
    const QImage row = imageOf("bk_item");
    QCOMPARE(row.copy(0, 1, 1, 28), row.copy(0, 0, 1, 28));
    QVERIFY(row.pixel(0, 29) != row.pixel(0, 28));
}

void TestResources::closeCrossIsCentred()
{
    const QImage cross = imageOf("btn_quit_s1");
    const QImage turned = cross.mirrored(true, true);
    constexpr int rendererRounding = 8; // of 255, where a slope crosses a pixel
    QCOMPARE(qAlpha(cross.pixel(13, 13)), 255);
    for (int y = 0; y < cross.height(); ++y)
        for (int x = 0; x < cross.width(); ++x)
            QVERIFY(qAbs(qAlpha(cross.pixel(x, y)) - qAlpha(turned.pixel(x, y)))
                    <= rendererRounding);
}

TEST_SUITE(resources, TestResources)
#include "resources.moc"
