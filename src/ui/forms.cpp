#include "ui/forms.h"

#include "core/interaction.h"
#include "core/signal_label.h"
#include "core/text/like.h"

namespace lx::ui {

FormCollection &Forms()
{
    static FormCollection forms;
    return forms;
}

namespace {

void RunUnloadSteps(QWidget *form)
{
    if (auto *steps = dynamic_cast<UnloadSteps *>(form))
        steps->Form_Unload();
}

} // namespace

void FormCollection::add(QWidget *form)
{
    m_forms.append(form);
    QObject::connect(form, &QObject::destroyed, [this, form] {
        m_forms.removeIf([form](const QPointer<QWidget> &p) { return p.isNull() || p == form; });
    });
}

void FormCollection::Unload(QWidget *form)
{
    const qsizetype at = m_forms.indexOf(form);
    if (at < 0)
        return;
    m_forms.removeAt(at);
    RunUnloadSteps(form);
    form->hide();
    form->deleteLater();
}

void FormCollection::UnloadAll()
{
    while (!m_forms.isEmpty()) {
        const QPointer<QWidget> form = m_forms.takeLast();
        if (form)
            RunUnloadSteps(form);
        delete form.data(); // the collection owns what it loaded
    }
}

QList<QWidget *> FormCollection::list() const
{
    QList<QWidget *> forms;
    for (const QPointer<QWidget> &form : m_forms) {
        if (form)
            forms.append(form.data());
    }
    return forms;
}

QList<QWidget *> FormCollection::WithCaptionLike(QStringView pattern) const
{
    QList<QWidget *> found;
    for (QWidget *form : list()) {
        if (text::Like(form->windowTitle(), pattern))
            found.append(form);
    }
    return found;
}

QWidget *FormCollection::FindByCaption(QStringView pattern) const
{
    const QList<QWidget *> found = WithCaptionLike(pattern);
    return found.isEmpty() ? nullptr : found.first();
}

void RefreshDialogs(const std::function<bool(const QString &caption)> &wanted, const QString &text)
{
    for (QWidget *form : Forms().list()) {
        if (!wanted(form->windowTitle()))
            continue;
        if (auto *label = form->findChild<SignalLabel *>(QStringLiteral("lblRefresh"))) {
            label->setCaption(QString());
            label->setCaption(text);
        }
    }
}

} // namespace lx::ui
