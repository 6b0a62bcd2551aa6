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

} // namespace
