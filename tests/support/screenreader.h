// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The person who hears the program instead of seeing it: walks the tree that a
// program offers to screen readers over the accessibility bus, and presses what is
// in it. Session bus and accessibility bus are private and end with the object.

#pragma once

#include "desktopsession.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QMultiHash>
#include <QVector>

#include <optional>

namespace testsupport
{

/// One thing in a program's tree. Asking one that has gone gives nothing.
class HeardNode
{
public:
    HeardNode(const QDBusConnection &onBus, const QString &ofProgram, const QString &atPath)
        : bus(onBus)
        , program(ofProgram)
        , path(atPath)
    {
    }

    QString name() const { return property("Accessible", "Name").toString(); }
    QString description() const { return property("Accessible", "Description").toString(); }
    /// As screen readers call it: frame, push button, list item.
    QString role() const { return ask<QString>("Accessible", "GetRoleName"); }
    bool isChecked() const { return hasState(4); }
    bool isEnabled() const { return hasState(8); }
    bool isShowing() const { return hasState(25); }
    /// Of a progress bar, in percent.
    int value() const { return property("Value", "CurrentValue").toInt(); }

    QVector<HeardNode> children() const;
    /// The first node below this one, in reading order, with that role and, if it is not empty,
    /// that name; hidden ones are passed over.
    std::optional<HeardNode> find(const QString &role, const QString &name = QString()) const;
    /// "role: name" for this node and everything below it that shows, in reading order.
    QStringList readAloud() const;

    /// Does what the node offers first: presses a button, ticks a row.
    bool act() const { return ask<bool>("Action", "DoAction", {0}); }
    /// Presses the button called @p name below this node, once it can be pressed.
    bool press(const QString &name) const;
    bool write(const QString &contents) const
    {
        return ask<bool>("EditableText", "SetTextContents", {contents});
    }

    /// No other node of any program has the same.
    QString address() const { return program + path; }

private:
    bool hasState(int number) const;
    QVariant property(const char *interface, const char *which) const;
    QDBusMessage call(const QString &interface, const char *method,
                      const QVariantList &arguments) const;
    template <class Answer>
    Answer ask(const char *interface, const char *method, const QVariantList &arguments = {}) const
    {
        return QDBusReply<Answer>(call(atspi(interface), method, arguments));
    }
    static QString atspi(const char *interface)
    {
        return "org.a11y.atspi."_s + QLatin1String(interface);
    }

    QDBusConnection bus;
    QString program;
    QString path;
};

class ScreenReader : public QObject
{
    Q_OBJECT

public:
    static bool isInstalled();
    /// Starts both buses, and has every program of @p desktop be heard from now on; false when
    /// that fails.
    bool start(DesktopSession &desktop);
    /// Waits for a program's window called @p name.
    std::optional<HeardNode> waitForWindow(const QString &name) const;

    /// Whether a program has announced of @p node that it changed in @p word: "add", "checked",
    /// "focused", "accessible-value".
    bool hasHeard(const HeardNode &node, const QString &word) const
    {
        return announcements.contains(node.address(), word);
    }
    /// Begins to listen anew.
    void forget() { announcements.clear(); }

private slots:
    void hear(const QDBusMessage &announcement);

private:
    bool listen();

    TiedProcess sessionBus;
    std::optional<QDBusConnection> accessibilityBus;
    QMultiHash<QString, QString> announcements; ///< by the node's address
};

} // namespace testsupport
