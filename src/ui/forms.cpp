#include "ui/forms.h"

#include "core/text/like.h"

namespace lx::ui {

FormCollection &Forms()
{
    static FormCollection forms;
    return forms;
}

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
    form->hide();
    form->deleteLater();
}

void FormCollection::UnloadAll()
{
    while (!m_forms.isEmpty()) {
        const QPointer<QWidget> form = m_forms.takeLast();
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

} // namespace lx::ui
