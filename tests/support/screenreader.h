// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The person who hears the program instead of seeing it: walks the tree that a
// program offers to screen readers over the accessibility bus, and presses what is
// in it. Session bus and accessibility bus are private and end with the object.

#pragma once

#include "tiedprocess.h"

#include <QDBusConnection>
#include <QMultiHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

class QDBusMessage;

namespace testsupport
{

/// One thing in a program's tree. Asking one that has gone gives nothing.
class HeardNode
{
public:
    HeardNode(const QDBusConnection &onBus, const QString &ofProgram, const QString &atPath);

    QString name() const { return property(QStringLiteral("Accessible.Name")).toString(); }
    QString description() const
    {
        return property(QStringLiteral("Accessible.Description")).toString();
    }
    /// As screen readers call it: frame, push button, list item.
    QString role() const;
    bool isChecked() const { return hasState(checkedState); }
    bool isEnabled() const { return hasState(enabledState); }
    bool isShowing() const { return hasState(showingState); }
    /// Of a progress bar, in percent.
    int value() const { return property(QStringLiteral("Value.CurrentValue")).toInt(); }

    QVector<HeardNode> children() const;
    /// The first node below this one, in reading order, with that role and, if it is not empty,
    /// that name; hidden ones are passed over.
    std::optional<HeardNode> find(const QString &role, const QString &name = QString()) const;
    /// "role: name" for this node and everything below it that shows, in reading order.
    QStringList readAloud() const;

    /// Does what the node offers first: presses a button, ticks a row.
    bool act() const;
    /// Presses the button called @p name below this node, once it can be pressed.
    bool press(const QString &name) const;
    bool write(const QString &contents) const;

    /// The program's name on the accessibility bus.
    QString owner() const { return program; }
    /// No other node of any program has the same.
    QString address() const { return program + path; }

private:
    static constexpr int checkedState = 4;
    static constexpr int enabledState = 8;
    static constexpr int showingState = 25;

    bool hasState(int number) const;
    QVariant property(const QString &interfaceAndName) const;
    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;

    QDBusConnection bus;
    QString program;
    QString path;
};

class ScreenReader : public QObject
{
    Q_OBJECT

public:
    ScreenReader() = default;
    ~ScreenReader() override;

    static bool isInstalled();
    /// Starts both buses; false when that fails.
    bool start(const QProcessEnvironment &environment);
    /// What a program needs in its environment to be heard.
    QProcessEnvironment variables() const;

    /// The windows of process @p pid, which may be none yet.
    QVector<HeardNode> windowsOf(qint64 pid) const;
    /// Waits for a window of process @p pid called @p name.
    std::optional<HeardNode> waitForWindow(qint64 pid, const QString &name) const;

    /// Whether a program has announced of @p node that it changed in @p word: "add", "checked",
    /// "focused", "accessible-value".
    bool hasHeard(const HeardNode &node, const QString &word) const;
    /// Begins to listen anew.
    void forget() { announcements.clear(); }

private slots:
    void hear(const QDBusMessage &announcement);

private:
    bool listen();

    QString sessionAddress;
    TiedProcess sessionBus;
    std::unique_ptr<QDBusConnection> accessibilityBus;
    QMultiHash<QString, QString> announcements; ///< by the node's address
};

} // namespace testsupport
