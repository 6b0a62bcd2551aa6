#pragma once

#include <QList>
#include <QPointer>
#include <QStringView>
#include <QWidget>

#include <functional>
#include <memory>
#include <utility>

namespace lx::ui {

// A window with steps of its own to run when it is unloaded: closing what it holds open, saving
// its place. Unload runs them before it returns, so whatever comes next finds them done.
class UnloadSteps {
public:
    virtual ~UnloadSteps() = default;
    virtual void Form_Unload() = 0;
};

// The loaded windows, in load order. A window is loaded through Load (or Get, for the one
// default instance of a form) and from then on belongs to the collection: Unload takes it out
// and deletes it. A window deleted any other way leaves the collection by itself.
class FormCollection {
public:
    FormCollection() = default;
    FormCollection(const FormCollection &) = delete;
    FormCollection &operator=(const FormCollection &) = delete;

    // A new instance of F, registered as the last loaded window.
    template <class F, class... Args> F &Load(Args &&...args)
    {
        auto form = std::make_unique<F>(std::forward<Args>(args)...);
        add(form.get());
        return *form.release(); // owned by the collection from here on
    }

    // The first loaded instance of F, or null.
    template <class F> F *Find() const
    {
        for (QWidget *form : list()) {
            if (auto *found = qobject_cast<F *>(form))
                return found;
        }
        return nullptr;
    }

    // The default instance of F: the loaded one, else a new one (its load runs now).
    template <class F> F &Get()
    {
        if (F *form = Find<F>())
            return *form;
        return Load<F>();
    }

    // Forgets the window, runs its unload steps and hides it, all at once; the object itself is
    // deleted when control returns to the event loop, so that a window may unload itself from
    // its own handler.
    void Unload(QWidget *form);
    // Every window, from the last loaded to the first, its unload steps run and deleted at once.
    void UnloadAll();

    QList<QWidget *> list() const;
    qsizetype count() const { return list().size(); }
    // Windows whose caption matches a case-sensitive Like pattern ("* Relation").
    QList<QWidget *> WithCaptionLike(QStringView pattern) const;
    // The first of them, or null.
    QWidget *FindByCaption(QStringView pattern) const;

private:
    void add(QWidget *form);

    QList<QPointer<QWidget>> m_forms;
};

// The program's one collection.
FormCollection &Forms();

// Tells every loaded window whose caption `wanted` accepts, through its hidden label
// "lblRefresh": the empty string first, then `text`, so that the same text twice still fires.
void RefreshDialogs(const std::function<bool(const QString &caption)> &wanted, const QString &text);

} // namespace lx::ui
