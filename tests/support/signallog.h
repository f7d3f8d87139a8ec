// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Everything an object says, in the order it says it: one list across all the signals that
// the object's own class declares, so that a test compares whole conversations.

#pragma once

#include <QByteArrayList>
#include <QDebug>
#include <QList>
#include <QMetaMethod>
#include <QMutex>
#include <QMutexLocker>
#include <QObject>
#include <QStringList>
#include <QTest>
#include <QVariant>

#include <functional>

namespace testsupport
{

struct SignalRecord {
    SignalRecord(const QByteArray &signal, const QVariantList &values = {})
        : name(signal)
        , arguments(values)
    {
    }

    QByteArray name;
    QVariantList arguments;
};

using SignalRecords = QList<SignalRecord>;

inline bool operator==(const SignalRecord &one, const SignalRecord &other)
{
    return one.name == other.name && one.arguments == other.arguments;
}

inline bool operator!=(const SignalRecord &one, const SignalRecord &other)
{
    return !(one == other);
}

/// What QCOMPARE prints for the first record that differs.
inline char *toString(const SignalRecord &record)
{
    QString text;
    QDebug(&text).nospace() << record.name.constData() << ' ' << record.arguments;
    return qstrdup(text.toUtf8().constData());
}

/// Lives in the thread of the test; must go before the object it listens to unless that one has
/// fallen silent. Reading is safe while other threads emit.
class SignalLog final : public QObject
{
public:
    /// By default a signal is recorded in the thread that emits it, before the emit returns. With
    /// Qt::BlockingQueuedConnection, which the signals @p blocking have anyway, it is recorded in
    /// the thread that made the log, whose event loop has to run for that.
    explicit SignalLog(const QObject *sender, Qt::ConnectionType type = Qt::DirectConnection,
                       const QByteArrayList &blocking = {})
    {
        const QMetaObject *meta = sender->metaObject();
        for (int index = meta->methodOffset(); index < meta->methodCount(); ++index) {
            const QMetaMethod method = meta->method(index);
            if (method.methodType() != QMetaMethod::Signal)
                continue;
            const int slot = QObject::staticMetaObject.methodCount() + heard.size();
            heard.append(method);
            const bool waits = blocking.contains(method.name());
            if (!QMetaObject::connect(sender, index, this, slot,
                                      waits ? Qt::BlockingQueuedConnection : type, nullptr))
                qFatal("cannot listen to %s", method.methodSignature().constData());
        }
    }

    /// Called with each record once it is in the list, in the thread that recorded it: a test
    /// that has to step in at a certain signal does it here. Set it before anything is emitted.
    std::function<void(const SignalRecord &)> onRecord;

    SignalRecords records() const
    {
        const QMutexLocker locker(&mutex);
        return list;
    }

    int count() const { return records().size(); }

    int count(const char *name) const { return firstArguments(name).size(); }

    /// The first argument of every record of the signal @p name, in order, as text.
    QStringList firstArguments(const char *name) const
    {
        QStringList texts;
        const SignalRecords all = records();
        for (const SignalRecord &record : all) {
            if (record.name == name)
                texts.append(record.arguments.value(0).toString());
        }
        return texts;
    }

    void clear()
    {
        const QMutexLocker locker(&mutex);
        list.clear();
    }

    /// Receives the signals; the class has no slots of its own, so each signal of the sender is
    /// connected to a number behind the methods of QObject.
    int qt_metacall(QMetaObject::Call call, int id, void **values) override
    {
        id = QObject::qt_metacall(call, id, values);
        if (id < 0 || call != QMetaObject::InvokeMetaMethod)
            return id;
        if (id < heard.size())
            append(heard.at(id), values);
        return id - heard.size();
    }

private:
    void append(const QMetaMethod &signal, void **values)
    {
        QVariantList arguments;
        for (int index = 0; index < signal.parameterCount(); ++index)
            arguments.append(QVariant(signal.parameterType(index), values[index + 1]));
        const SignalRecord record(signal.name(), arguments);
        {
            const QMutexLocker locker(&mutex);
            list.append(record);
        }
        if (onRecord)
            onRecord(record);
    }

    QList<QMetaMethod> heard;
    mutable QMutex mutex; ///< guards list
    SignalRecords list;
};

} // namespace testsupport

Q_DECLARE_METATYPE(testsupport::SignalRecords)
