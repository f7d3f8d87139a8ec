// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The job list, its controls and what enters it.

#include "modelwalle.h"

#include <algorithm>

namespace testsupport
{

namespace
{

constexpr quint32 notFound = 0x01;
constexpr quint32 unknownType = 0x02;
constexpr quint32 noPermission = 0x04;
constexpr quint32 duplicate = 0x08;
constexpr quint32 overLimit = 0x10;
constexpr int mostRows = 200;

/// What the system has everywhere and an ordinary user may not write.
bool isSystemFolder(const QString &path)
{
    return QStringList{QStringLiteral("/"), QStringLiteral("/etc"), QStringLiteral("/usr/bin"),
                       QStringLiteral("/proc")}
        .contains(path);
}

} // namespace

ModelWalle::ModelWalle(const QByteArray &root)
    : picture(root)
    , worker(picture, [this](const SignalRecord &report) { hearWorker(report); })
{
}

void ModelWalle::say(const char *name, const QVariantList &arguments)
{
    said.append(SignalRecord(name, arguments));
    if (onSignal)
        onSignal(said.last());
}

void ModelWalle::lookAtDisk()
{
    picture = ModelDisk(picture.folder());
}

QStringList ModelWalle::paths() const
{
    QStringList all;
    for (const Row &row : rows)
        all.append(row.path);
    return all;
}

int ModelWalle::rowOf(const QString &path) const
{
    return paths().indexOf(path);
}

int ModelWalle::firstChecked() const
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [](const Row &row) { return row.checked; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

bool ModelWalle::anyUnchecked() const
{
    return std::any_of(rows.begin(), rows.end(), [](const Row &row) { return !row.checked; });
}

/// The one reason not to take @p path in, or 0.
quint32 ModelWalle::admit(const QString &path)
{
    const QByteArray name = path.toUtf8();
    const bool isLink = picture.isLink(name);
    if (path == QLatin1String("/dev/null"))
        return unknownType;
    if (isSystemFolder(path))
        return noPermission;
    if (!isLink) { // a link stands for itself, whatever it leads to
        if (!picture.exists(name))
            return notFound;
        if (!picture.isFile(name) && !picture.isDirectory(name))
            return unknownType;
        if (!picture.isOpenToUser(name))
            return noPermission;
    }
    if (rowOf(path) >= 0)
        return duplicate;
    if (rows.size() >= mostRows)
        return overLimit;
    rows.append(Row{path});
    say("addRowToMainTable", {path});
    return 0;
}

void ModelWalle::choose(const QStringList &names)
{
    quint32 reasons = 0;
    for (const QString &name : names)
        reasons |= admit(name);
    finishBatch(reasons);
}

void ModelWalle::drop(const QStringList &paths)
{
    quint32 reasons = 0;
    for (const QString &path : paths) {
        if (path.isEmpty())
            break;
        const quint32 reason = admit(path);
        reasons |= reason;
        if (reason == overLimit)
            break;
    }
    finishBatch(reasons);
}

void ModelWalle::finishBatch(quint32 reasons)
{
    refresh(1);
    if (reasons != 0)
        say("alertDialog", {reasons});
}

void ModelWalle::setAllChecked(bool checked)
{
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).checked == checked)
            continue;
        rows[row].checked = checked;
        say("setTableItemCheckBoxState", {row, checked});
    }
    refresh(checked ? 3 : 4);
}

void ModelWalle::click(const QString &path)
{
    const int row = rowOf(path);
    if (row < 0)
        return;
    const bool checked = !rows.at(row).checked;
    rows[row].checked = checked;
    say("setTableItemCheckBoxState", {row, checked});
    if (checked)
        refresh(anyUnchecked() ? 5 : 3);
    else
        refresh(hasChecked() ? 6 : 4);
}

void ModelWalle::removeChecked()
{
    for (int row = firstChecked(); row >= 0; row = firstChecked()) {
        rows.removeAt(row);
        say("removeRowFromMainTable", {row});
    }
    refresh(2);
}

void ModelWalle::sayCrushAndRemove(bool enabled)
{
    say("setCrushButtonEnabled", {enabled});
    say("setRemoveButtonEnabled", {enabled});
}

/// What the controls are told after each kind of change; the numbers are those of the situations.
void ModelWalle::refresh(int situation)
{
    const bool none = rows.isEmpty();
    switch (situation) {
    case 1:
        if (none)
            return;
        say("setSelectAllCheckBoxEnabled", {true});
        if (hasChecked())
            sayCrushAndRemove(true);
        if (!anyUnchecked())
            say("setSelectAllCheckBoxState", {true});
        return;
    case 2:
        if (!hasChecked())
            sayCrushAndRemove(false);
        if (none) {
            say("setSelectAllCheckBoxState", {false});
            say("setSelectAllCheckBoxEnabled", {false});
        }
        return;
    case 3:
    case 4:
        say("setSelectAllCheckBoxState", {situation == 3});
        return sayCrushAndRemove(situation == 3);
    case 5:
        return sayCrushAndRemove(true);
    case 6:
        return say("setSelectAllCheckBoxState", {false});
    case 7:
        return say("setCrushButtonEnabled", {false});
    case 8:
        say("setSelectAllCheckBoxEnabled", {!none});
        sayCrushAndRemove(hasChecked());
        if (!none)
            say("setSelectAllCheckBoxState", {!anyUnchecked()});
        return;
    default:
        return;
    }
}

} // namespace testsupport
