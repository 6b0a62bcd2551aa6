#include "names_options_fixture.h"
#include "ui/frm_tb_editor.h"

using namespace lx;
using namespace lx::test;

namespace {

class OntoCommTest : public NamesOptionsTest {
protected:
    void SetUp() override
    {
        openSample();
        form.CurrentConcept = QStringLiteral("ANIMAL");
        editor = &ui::Forms().Load<ui::frmTBEDitor>();
        editor->setWindowTitle(QStringLiteral("TermBase Editor"));
        QObject::connect(editor->lblOntoComm, &SignalLabel::captionChanged,
                         [this](const QString &caption) { heard.append(caption); });
    }

    ui::frmTBEDitor *editor = nullptr;
    QStringList heard;
};

TEST_F(OntoCommTest, SignalCarriesTheDigitAndTheCurrentConcept)
{
    ui::SendOntoComm(3, form.CurrentConcept);
    EXPECT_EQ(heard, QStringList{QStringLiteral("3ANIMAL")});
    // Cleared first, so the same word twice is heard twice.
    ui::SendOntoComm(3, form.CurrentConcept);
    EXPECT_EQ(heard,
              (QStringList{QStringLiteral("3ANIMAL"), QString(), QStringLiteral("3ANIMAL")}));
    EXPECT_EQ(editor->lblOntoComm->caption(), QStringLiteral("3ANIMAL"));
}

TEST_F(OntoCommTest, OnlyWindowsCaptionedTermBaseHearIt)
{
    editor->setWindowTitle(QStringLiteral("Termbase"));
    ui::SendOntoComm(1, form.CurrentConcept);
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(OntoCommTest, WithoutLinksNoSignal)
{
    form.PropagateConceptToTermBases(QStringLiteral("BIRD"), QString(), 1);
    EXPECT_TRUE(heard.isEmpty());
}

} // namespace
