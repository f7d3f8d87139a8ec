// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "screenreader.h"

#include "eventually.h"

#include <QDBusArgument>
#include <QFileInfo>

namespace testsupport
{

namespace
{

const auto registryName = QStringLiteral("org.a11y.atspi.Registry");

} // namespace

QDBusMessage HeardNode::call(const QString &interface, const char *method,
                             const QVariantList &arguments) const
{
    constexpr int answerTime = 10000;
    QDBusMessage message =
        QDBusMessage::createMethodCall(program, path, interface, QLatin1String(method));
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, answerTime);
}

QVariant HeardNode::property(const char *interface, const char *which) const
{
    return QDBusReply<QVariant>(
        call("org.freedesktop.DBus.Properties"_s, "Get", {atspi(interface), QLatin1String(which)}));
}

bool HeardNode::hasState(int number) const
{
    constexpr int wordBits = 32;
    const auto words = ask<QList<uint>>("Accessible", "GetState");
    return (words.value(number / wordBits) >> (number % wordBits) & 1U) != 0;
}

QVector<HeardNode> HeardNode::children() const
{
    QVector<HeardNode> nodes;
    const QDBusMessage answer = call(atspi("Accessible"), "GetChildren", {});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return nodes;
    const auto list = answer.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString itsProgram;
        QDBusObjectPath itsPath;
        list.beginStructure();
        list >> itsProgram >> itsPath;
        list.endStructure();
        nodes.append(HeardNode(bus, itsProgram, itsPath.path()));
    }
    list.endArray();
    return nodes;
}

std::optional<HeardNode> HeardNode::find(const QString &role, const QString &name) const
{
    const QVector<HeardNode> nodes = children();
    for (const HeardNode &child : nodes) {
        if (!child.isShowing())
            continue;
        if (child.role() == role && (name.isEmpty() || child.name() == name))
            return child;
        if (const std::optional<HeardNode> below = child.find(role, name))
            return below;
    }
    return std::nullopt;
}

QStringList HeardNode::readAloud() const
{
    QStringList words{role() + ": "_s + name()};
    const QVector<HeardNode> nodes = children();
    for (const HeardNode &child : nodes) {
        if (child.isShowing())
            words += child.readAloud();
    }
    return words;
}

bool HeardNode::press(const QString &name) const
{
    return eventually([&] {
        const std::optional<HeardNode> button = find("push button"_s, name);
        return button && button->isEnabled() && button->act();
    });
}

bool ScreenReader::isInstalled()
{
    return testsupport::isInstalled("dbus-daemon"_s)
           && QFileInfo::exists("/usr/share/dbus-1/services/org.a11y.Bus.service"_s);
}

bool ScreenReader::start(DesktopSession &desktop)
{
    sessionBus.launch(desktop.environment(),
                      wordsOf("dbus-daemon --session --nofork --print-address"_s));
    const QString sessionAddress = QString::fromUtf8(sessionBus.firstLine());
    QProcessEnvironment variables;
    variables.insert("DBUS_SESSION_BUS_ADDRESS"_s, sessionAddress);
    // Qt would else wait until a screen reader says that it is there.
    variables.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, "1"_s);
    desktop.addVariables(variables);
    const QDBusConnection session =
        QDBusConnection::connectToBus(sessionAddress, "shredder-session"_s);
    // The session bus starts the accessibility bus when it is asked for.
    const QDBusReply<QString> address = session.call(QDBusMessage::createMethodCall(
        "org.a11y.Bus"_s, "/org/a11y/bus"_s, "org.a11y.Bus"_s, "GetAddress"_s));
    if (!address.isValid())
        return false;
    accessibilityBus = QDBusConnection::connectToBus(address, "shredder-accessibility"_s);
    return accessibilityBus->isConnected() && listen();
}

/// Programs announce only what somebody said to listen for.
bool ScreenReader::listen()
{
    bool willing = true;
    for (const QString &kind : {"object:state-changed:"_s, "object:children-changed:"_s,
                                "object:property-change:accessible-value"_s}) {
        QDBusMessage request = QDBusMessage::createMethodCall(
            registryName, "/org/a11y/atspi/registry"_s, registryName, "RegisterEvent"_s);
        // Without the name of a program, as older registries ignore a request that has one.
        request.setArguments({kind, QStringList()});
        willing = willing && accessibilityBus->call(request).type() == QDBusMessage::ReplyMessage;
    }
    for (const QString &kind : {"StateChanged"_s, "ChildrenChanged"_s, "PropertyChange"_s}) {
        willing =
            willing
            && accessibilityBus->connect(QString(), QString(), "org.a11y.atspi.Event.Object"_s,
                                         kind, this, SLOT(hear(QDBusMessage)));
    }
    return willing;
}

void ScreenReader::hear(const QDBusMessage &announcement)
{
    announcements.insert(announcement.service() + announcement.path(),
                         announcement.arguments().value(0).toString());
}

std::optional<HeardNode> ScreenReader::waitForWindow(const QString &name) const
{
    const HeardNode registry(*accessibilityBus, registryName, "/org/a11y/atspi/accessible/root"_s);
    std::optional<HeardNode> found;
    eventually([&] {
        const QVector<HeardNode> programs = registry.children();
        for (const HeardNode &program : programs) {
            const QVector<HeardNode> windows = program.children();
            for (const HeardNode &window : windows) {
                if (window.name() == name && window.isShowing())
                    found = window;
            }
        }
        return found.has_value();
    });
    return found;
}

} // namespace testsupport
