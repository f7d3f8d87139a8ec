// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/deliveryfence.h"
#include "eventually.h"
#include "suites.h"

#include <QSemaphore>
#include <QtTest>

#include <optional>
#include <thread>

class TestDeliveryFence : public QObject
{
    Q_OBJECT

private slots:
    void onlyCallsAreDeliveredNotInput();
    void otherThreadWaitsUntilAllIsDelivered();
    void waitEndsThoughNobodyServesEvents();
    void whatFollowsAWaitIsNotDeliveredWithin();

private:
    static void emitAndWait(DeliveryFence &fence, QSemaphore &returned)
    {
        {
            const DeliveryFence::Emission emission(fence);
        }
        fence.waitUntilDelivered();
        returned.release();
    }
};

void TestDeliveryFence::onlyCallsAreDeliveredNotInput()
{
    class Listener : public QObject
    {
    public:
        bool event(QEvent *event) override
        {
            heard = heard || event->type() == QEvent::User;
            return QObject::event(event);
        }
        bool heard = false;
    };

    DeliveryFence fence;
    Listener listener;
    QCoreApplication::postEvent(&listener, new QEvent(QEvent::User));
    {
        const DeliveryFence::Emission emission(fence);
    }
    fence.deliverPending();
    QVERIFY(!listener.heard);
    QTRY_VERIFY(listener.heard);
}

void TestDeliveryFence::otherThreadWaitsUntilAllIsDelivered()
{
    constexpr int fewMilliseconds = 200;
    DeliveryFence fence;
    QSemaphore returned;
    std::thread other([&] { emitAndWait(fence, returned); });
    // Nothing is delivered meanwhile, as this does not serve the event loop.
    const bool waited = !returned.tryAcquire(1, fewMilliseconds);
    QTRY_VERIFY(fence.isClear());
    other.join();
    QVERIFY(waited);
}

void TestDeliveryFence::waitEndsThoughNobodyServesEvents()
{
    DeliveryFence fence;
    QSemaphore returned;
    std::thread other([&] { emitAndWait(fence, returned); });
    QVERIFY(returned.tryAcquire(1, testsupport::patience));
    QVERIFY(!fence.isClear());
    other.join();
}

/// A report that opens a dialog must not be delivered inside a slot that calls deliverPending().
/// A slow call behind the end of the emission gives the other thread time to post its report
/// into the same delivery.
void TestDeliveryFence::whatFollowsAWaitIsNotDeliveredWithin()
{
    constexpr int fewMilliseconds = 200;
    const auto callLater = [this](const std::function<void()> &step) {
        QMetaObject::invokeMethod(this, step, Qt::QueuedConnection);
    };
    DeliveryFence fence;
    QSemaphore underWay;
    QSemaphore reportPosted;
    bool within = false;
    std::optional<bool> reportedWithin;
    std::thread other([&] {
        {
            const DeliveryFence::Emission emission(fence);
        }
        callLater([&] { reportPosted.tryAcquire(1, fewMilliseconds); });
        underWay.release();
        fence.waitUntilDelivered();
        callLater([&] { reportedWithin = within; });
        reportPosted.release();
    });
    underWay.acquire();
    within = true;
    fence.deliverPending();
    within = false;
    other.join();
    QTRY_VERIFY(reportedWithin);
    QVERIFY(!*reportedWithin);
}

TEST_SUITE(deliveryfence, TestDeliveryFence)
#include "deliveryfence.moc"
