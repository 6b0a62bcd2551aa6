#include "ui/forms.h"
#include "ui_fixture.h"

#include <QPointer>

namespace {

using lx::ui::Forms;

// A window with a caption, as the slot dialogs and the termbase editor are found by theirs.
class Captioned : public QWidget {
    Q_OBJECT
public:
    explicit Captioned(const QString &caption) { setWindowTitle(caption); }
};

class Other : public QWidget {
    Q_OBJECT
};

class FormCollectionTest : public lx::test::UiTest {};

QStringList Captions(const QList<QWidget *> &forms)
{
    QStringList captions;
    for (const QWidget *form : forms)
        captions << form->windowTitle();
    return captions;
}

TEST_F(FormCollectionTest, KeepsLoadOrderAndFindsCaptionsByPattern)
{
    Forms().Load<Captioned>(QStringLiteral("Ontology Editor"));
    Forms().Load<Captioned>(QStringLiteral("Add Relation"));
    Forms().Load<Captioned>(QStringLiteral("TermBase Editor - med.ltb"));
    Forms().Load<Captioned>(QStringLiteral("Edit Relation"));

    EXPECT_EQ(Captions(Forms().list()),
              (QStringList{QStringLiteral("Ontology Editor"), QStringLiteral("Add Relation"),
                           QStringLiteral("TermBase Editor - med.ltb"),
                           QStringLiteral("Edit Relation")}));
    EXPECT_EQ(Captions(Forms().WithCaptionLike(u"* Relation")),
              (QStringList{QStringLiteral("Add Relation"), QStringLiteral("Edit Relation")}));
    EXPECT_EQ(Forms().FindByCaption(u"TermBase *")->windowTitle(),
              QStringLiteral("TermBase Editor - med.ltb"));
    // Patterns are case-sensitive and anchored at both ends.
    EXPECT_EQ(Forms().FindByCaption(u"termbase *"), nullptr);
    EXPECT_EQ(Forms().FindByCaption(u"* Relation "), nullptr);
}

TEST_F(FormCollectionTest, UnloadForgetsAtOnceAndDeletesLater)
{
    auto &first = Forms().Load<Captioned>(QStringLiteral("A"));
    auto &second = Forms().Load<Captioned>(QStringLiteral("B Relation"));
    const QPointer<QWidget> watch(&second);

    Forms().Unload(&second);
    EXPECT_EQ(Forms().list(), QList<QWidget *>{&first});
    EXPECT_EQ(Forms().FindByCaption(u"* Relation"), nullptr);
    EXPECT_FALSE(watch.isNull()); // a window may unload itself from its own handler
    lx::test::FlushDeletes();
    EXPECT_TRUE(watch.isNull());
}

TEST_F(FormCollectionTest, AWindowDeletedElsewhereLeavesTheCollection)
{
    Forms().Load<Captioned>(QStringLiteral("A"));
    auto &doomed = Forms().Load<Captioned>(QStringLiteral("B"));
    doomed.deleteLater();
    lx::test::FlushDeletes();
    EXPECT_EQ(Captions(Forms().list()), QStringList{QStringLiteral("A")});
}

TEST_F(FormCollectionTest, UnloadAllGoesFromLastToFirst)
{
    QStringList order;
    for (const char *caption : {"first", "second", "third"}) {
        auto &form = Forms().Load<Captioned>(QString::fromLatin1(caption));
        QObject::connect(&form, &QObject::destroyed,
                         [&order, caption] { order << QString::fromLatin1(caption); });
    }
    Forms().UnloadAll();
    EXPECT_EQ(order, (QStringList{QStringLiteral("third"), QStringLiteral("second"),
                                  QStringLiteral("first")}));
    EXPECT_EQ(Forms().count(), 0);
}

TEST_F(FormCollectionTest, GetReturnsTheDefaultInstance)
{
    EXPECT_EQ(Forms().Find<Other>(), nullptr);
    auto &made = Forms().Get<Other>();
    Forms().Load<Captioned>(QStringLiteral("x"));
    EXPECT_EQ(&Forms().Get<Other>(), &made);
    EXPECT_EQ(Forms().count(), 2);
}

} // namespace

#include "forms_test.moc"
