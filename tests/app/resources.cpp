// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the windows and their style sheets rely on in the bundle. How the images look
// is for eyes to judge.

#include "literals.h"
#include "suites.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QResource>
#include <QSet>
#include <QtTest>

using namespace testsupport;

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
    return ":/images/"_s + name;
}

QImage imageOf(const QString &name)
{
    return QImage(pathOf(name)).convertToFormat(QImage::Format_ARGB32);
}

/// The images that the sources name, by whole path or by a literal that only an image can be.
QSet<QString> imagesNamedIn(const QString &directory)
{
    static const QRegularExpression image(
        "(?<=:/images/)[a-z0-9_]+|"
        "(?<=\")(?:bk|logo|(?:bk|btn|ico|icon|sp)_[a-z0-9_]+)(?=\")"_s);
    QSet<QString> names;
    const QStringList kinds{"*.h"_s, "*.cpp"_s};
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
    void imageIsAPngOfItsSizeStoredUncompressed();
    void bundleHoldsNothingElse();
    void everyImageNamedInTheSourcesIsBundled();
    void picturesThatMustDifferDo_data();
    void picturesThatMustDifferDo();
    void backgroundsAreOpaque();
    void tilesJoinWithoutASeam();
    void closeCrossIsCentred();
};

void TestResources::imageIsAPngOfItsSizeStoredUncompressed()
{
    for (const BundledImage &image : bundledImages) {
        const QString path = pathOf(QLatin1String(image.name));
        QVERIFY2(QImage(path, "png").size() == QSize(image.width, image.height), image.name);
        // QResource points to what is stored, and a packed image would not begin like one.
        const QResource resource(path);
        const QByteArray stored(reinterpret_cast<const char *>(resource.data()),
                                static_cast<int>(resource.size()));
        QVERIFY2(stored.startsWith("\x89PNG\r\n\x1a\n"), image.name);
    }
}

void TestResources::bundleHoldsNothingElse()
{
    QStringList expected;
    for (const BundledImage &image : bundledImages)
        expected << QLatin1String(image.name);
    expected.sort();
    QCOMPARE(QDir(":/images"_s).entryList(QDir::NoFilter, QDir::Name), expected);
}

void TestResources::everyImageNamedInTheSourcesIsBundled()
{
    const QSet<QString> names = imagesNamedIn(QStringLiteral(SOURCE_DIRECTORY "/widgets"))
                                + imagesNamedIn(QStringLiteral(SOURCE_DIRECTORY "/ui"));
    QVERIFY2(names.contains("logo"_s), "do the sources still lie there?");
    // A name stands for itself, or for the states of a button that begin with it.
    for (const QString &name : names)
        QVERIFY2(QFile::exists(pathOf(name)) || QFile::exists(pathOf(name + "_s1"_s)),
                 qPrintable(name));
}

void TestResources::picturesThatMustDifferDo_data()
{
    QTest::addColumn<QStringList>("names");
    for (const char *names :
         {"btn_quit_s1 btn_quit_s2 btn_quit_s3", "btn_mini_s1 btn_mini_s2 btn_mini_s3",
          "btn_gray_s1 btn_gray_s2 btn_gray_s3", "btn_gray_90_s1 btn_gray_90_s2 btn_gray_90_s3",
          "btn_green_s1 btn_green_s2 btn_green_s3 btn_green_s4",
          "ico_ok ico_war ico_war2 ico_war3 ico_war4",
          "ico_file ico_folder icon_add icon_remove icon_logo"})
        QTest::newRow(names) << QString::fromLatin1(names).split(QLatin1Char(' '));
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
    for (const QString &name :
         {"bk"_s, "bk_history"_s, "bk_dialog"_s, "bk_item"_s, "bk_table_head"_s})
        QVERIFY2(!QImage(pathOf(name)).hasAlphaChannel(), qPrintable(name));
}

void TestResources::tilesJoinWithoutASeam()
{
    const QImage head = imageOf("bk_table_head"_s);
    QCOMPARE(head.copy(1, 0, 5, 26), head.copy(0, 0, 5, 26));
    // The labels of a row repeat its image from their own corners, so it is flat.
    const QImage row = imageOf("bk_item"_s);
    QCOMPARE(row.copy(0, 1, 1, 28), row.copy(0, 0, 1, 28));
    QVERIFY(row.pixel(0, 29) != row.pixel(0, 28));
}

void TestResources::closeCrossIsCentred()
{
    const QImage cross = imageOf("btn_quit_s1"_s);
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
