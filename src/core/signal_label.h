#pragma once

#include <QObject>
#include <QString>

namespace lx {

// A hidden label through which one window signals another: the sender sets the caption and
// the receiver's handler runs on the change. Setting the value it already holds runs nothing,
// so a sender that may repeat a value sets the empty string first.
class SignalLabel : public QObject {
    Q_OBJECT

public:
    explicit SignalLabel(QObject *parent = nullptr) : QObject(parent) {}

    const QString &caption() const { return m_caption; }
    void setCaption(const QString &caption);

Q_SIGNALS:
    void captionChanged(const QString &caption);

private:
    QString m_caption;
};

} // namespace lx
