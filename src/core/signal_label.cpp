#include "core/signal_label.h"

namespace lx {

void SignalLabel::setCaption(const QString &caption)
{
    if (caption == m_caption)
        return;
    m_caption = caption;
    Q_EMIT captionChanged(m_caption);
}

} // namespace lx
