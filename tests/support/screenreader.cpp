// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "screenreader.h"

#include "eventually.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QStandardPaths>

namespace testsupport
{

namespace
{

const auto sessionName = QStringLiteral("shredder-session");
const auto accessibilityName = QStringLiteral("shredder-accessibility");
const auto rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const auto prefix = QStringLiteral("org.a11y.atspi.");
const auto registryName = QStringLiteral("org.a11y.atspi.Registry");
constexpr int answerTime = 10000;

} // namespace

HeardNode::HeardNode(const QDBusConnection &onBus, const QString &ofProgram, const QString &atPath)
    : bus(onBus)
    , program(ofProgram)
    , path(atPath)
{
}

QDBusMessage HeardNode::call(const QString &interface, const QString &method,
                             const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(program, path, interface, method);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, answerTime);
}

QVariant HeardNode::property(const QString &interfaceAndName) const
{
    const QDBusMessage answer =
        call(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
             {prefix + interfaceAndName.section(QLatin1Char('.'), 0, 0),
              interfaceAndName.section(QLatin1Char('.'), 1)});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

QString HeardNode::role() const
{
    return call(prefix + QStringLiteral("Accessible"), QStringLiteral("GetRoleName"))
        .arguments()
        .value(0)
        .toString();
}

bool HeardNode::hasState(int number) const
{
    const QDBusReply<QList<uint>> words =
        call(prefix + QStringLiteral("Accessible"), QStringLiteral("GetState"));
    constexpr int wordBits = 32;
    return words.isValid()
           && (words.value().value(number / wordBits) >> (number % wordBits) & 1U) != 0;
}

QVector<HeardNode> HeardNode::children() const
{
    QVector<HeardNode> nodes;
    const QDBusMessage answer =
        call(prefix + QStringLiteral("Accessible"), QStringLiteral("GetChildren"));
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
        const std::optional<HeardNode> below = child.find(role, name);
        if (below)
            return below;
    }
    return std::nullopt;
}

QStringList HeardNode::readAloud() const
{
    QStringList words{role() + QStringLiteral(": ") + name()};
    const QVector<HeardNode> nodes = children();
    for (const HeardNode &child : nodes) {
        if (child.isShowing())
            words += child.readAloud();
    }
    return words;
}

bool HeardNode::act() const
{
    const QDBusReply<bool> done =
        call(prefix + QStringLiteral("Action"), QStringLiteral("DoAction"), {0});
    return done.isValid() && done.value();
}

bool HeardNode::press(const QString &name) const
{
    return eventually([&] {
        const std::optional<HeardNode> button = find(QStringLiteral("push button"), name);
        return button && button->isEnabled() && button->act();
    });
}

bool HeardNode::write(const QString &contents) const
{
    const QDBusReply<bool> done = call(prefix + QStringLiteral("EditableText"),
                                       QStringLiteral("SetTextContents"), {contents});
    return done.isValid() && done.value();
}

ScreenReader::~ScreenReader()
{
    accessibilityBus.reset();
    QDBusConnection::disconnectFromBus(accessibilityName);
    QDBusConnection::disconnectFromBus(sessionName);
}

bool ScreenReader::isInstalled()
{
    return !QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()
           && QFileInfo::exists(QStringLiteral("/usr/share/dbus-1/services/org.a11y.Bus.service"));
}

bool ScreenReader::start(const QProcessEnvironment &environment)
{
    sessionBus.setProcessEnvironment(environment);
    sessionBus.setStandardErrorFile(QProcess::nullDevice());
    sessionBus.start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--session"), QStringLiteral("--nofork"),
                      QStringLiteral("--print-address")});
    while (!sessionBus.canReadLine() && sessionBus.waitForReadyRead(patience))
        continue;
    sessionAddress = QString::fromUtf8(sessionBus.readLine().trimmed());
    QDBusConnection session = QDBusConnection::connectToBus(sessionAddress, sessionName);
    // The session bus starts the accessibility bus when it is asked for.
    const QDBusReply<QString> address = session.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    if (!address.isValid())
        return false;
    accessibilityBus = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(address.value(), accessibilityName));
    return accessibilityBus->isConnected() && listen();
}

/// Programs announce only what somebody said to listen for.
bool ScreenReader::listen()
{
    bool willing = true;
    for (const char *kind : {"object:state-changed:", "object:children-changed:",
                             "object:property-change:accessible-value"}) {
        QDBusMessage request = QDBusMessage::createMethodCall(
            registryName, QStringLiteral("/org/a11y/atspi/registry"),
            prefix + QStringLiteral("Registry"), QStringLiteral("RegisterEvent"));
        // Without the name of a program, as older registries ignore a request that has one.
        request.setArguments({QString::fromLatin1(kind), QStringList()});
        willing = willing && accessibilityBus->call(request).type() == QDBusMessage::ReplyMessage;
    }
    for (const char *kind : {"StateChanged", "ChildrenChanged", "PropertyChange"}) {
        willing = willing
                  && accessibilityBus->connect(
                      QString(), QString(), prefix + QStringLiteral("Event.Object"),
                      QString::fromLatin1(kind), this, SLOT(hear(QDBusMessage)));
    }
    return willing;
}

void ScreenReader::hear(const QDBusMessage &announcement)
{
    announcements.insert(announcement.service() + announcement.path(),
                         announcement.arguments().value(0).toString());
}

bool ScreenReader::hasHeard(const HeardNode &node, const QString &word) const
{
    return announcements.contains(node.address(), word);
}

QProcessEnvironment ScreenReader::variables() const
{
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), sessionAddress);
    // Qt would else wait until a screen reader says that it is there.
    variables.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    return variables;
}

QVector<HeardNode> ScreenReader::windowsOf(qint64 pid) const
{
    const HeardNode registry(*accessibilityBus, registryName, rootPath);
    QVector<HeardNode> windows;
    const QVector<HeardNode> programs = registry.children();
    for (const HeardNode &program : programs) {
        const QDBusReply<uint> itsPid = accessibilityBus->interface()->servicePid(program.owner());
        if (itsPid.isValid() && itsPid.value() == pid)
            windows += program.children();
    }
    return windows;
}

std::optional<HeardNode> ScreenReader::waitForWindow(qint64 pid, const QString &name) const
{
    std::optional<HeardNode> found;
    eventually([&] {
        const QVector<HeardNode> windows = windowsOf(pid);
        for (const HeardNode &window : windows) {
            if (window.name() == name && window.isShowing())
                found = window;
        }
        return found.has_value();
    });
    return found;
}

} // namespace testsupport
