// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/reporttexts.h"

#include "widgets/customdialog.h"

#include <QStringList>

#include <array>

namespace reporttexts
{

namespace
{

struct ReasonLine {
    RejectReasons reason;
    const char *line;
};

constexpr std::array<ReasonLine, 6> reasonLines = {{
    {RejectNotFound, "文件或目录不存在"},
    {RejectUnknownType, "不能确定文件或目录的类型"},
    {RejectNoPermission, "文件或目录没有读写权限"},
    {RejectDuplicate, "重复添加文件或目录"},
    {RejectOverLimit, "已经超出文件粉碎机的单次处理上限(200个)"},
    {RejectSystemPath, "属于系统目录"},
}};

QString countLine(uint count, const QString &words)
{
    return QLatin1Char('\n') + QString::number(static_cast<int>(count)) + words;
}

} // namespace

QString rejectionText(RejectReasons reasons)
{
    QStringList lines;
    for (const ReasonLine &known : reasonLines) {
        if ((reasons & known.reason) != 0)
            lines.append(QString::fromUtf8(known.line));
    }
    QString text = QStringLiteral("您添加的部分文件或目录由于以下原因无法被添加到文件粉碎机中：");
    const bool numbered = lines.size() >= 2;
    for (int index = 0; index < lines.size(); ++index) {
        text += QLatin1Char('\n');
        if (numbered)
            text += QString::number(index + 1) + QLatin1Char('.');
        text += lines.at(index);
    }
    return text;
}

QString resultText(uint succeeded, uint failed)
{
    QString text = QStringLiteral("本次文件粉碎任务已经结束");
    if (succeeded != 0)
        text += countLine(succeeded, QStringLiteral(" 个文件(文件夹)已被成功粉碎"));
    if (failed != 0)
        text += countLine(failed, QStringLiteral(" 个文件(文件夹)未能完成粉碎"));
    return text;
}

int resultDialogKind(uint succeeded, uint failed)
{
    if (succeeded == 0)
        return DialogKind::Failure;
    return failed == 0 ? DialogKind::Success : DialogKind::PartialSuccess;
}

} // namespace reporttexts
