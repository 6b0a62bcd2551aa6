#include "core/signal_label.h"

#include <gtest/gtest.h>

namespace {

struct Receiver {
    QStringList received;
    void attach(lx::SignalLabel &label)
    {
        QObject::connect(&label, &lx::SignalLabel::captionChanged,
                         [this](const QString &caption) { received << caption; });
    }
};

TEST(SignalLabel, RunsTheReceiverOncePerChange)
{
    lx::SignalLabel label;
    Receiver receiver;
    receiver.attach(label);

    label.setCaption(QStringLiteral("Concept"));
    label.setCaption(QStringLiteral("Concept"));
    EXPECT_EQ(receiver.received, QStringList{QStringLiteral("Concept")});
    EXPECT_EQ(label.caption(), QStringLiteral("Concept"));
}

TEST(SignalLabel, EmptyStringFirstResendsTheSameValue)
{
    lx::SignalLabel label;
    Receiver receiver;
    receiver.attach(label);

    // The protocol of a sender that may repeat itself: blank, then the value.
    for (int i = 0; i < 2; ++i) {
        label.setCaption(QString());
        label.setCaption(QStringLiteral("1OBJECT"));
    }
    // The first blank is no change from the initial empty caption.
    EXPECT_EQ(receiver.received,
              (QStringList{QStringLiteral("1OBJECT"), QString(), QStringLiteral("1OBJECT")}));
}

} // namespace
