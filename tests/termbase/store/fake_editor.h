#pragma once

#include "termbase/store/tb_editor.h"

namespace lx {

// The editor window as the life cycle sees it, recording what it is told.
class FakeTermbaseEditor : public TermbaseEditor {
public:
    QString caption;
    QString ontologyPanel = QStringLiteral("untouched");
    bool enabled = false;
    bool asList = false;
    int viewLoads = 0;
    int nameReloads = 0;
    int cleared = 0;
    PropertiesTexts propertiesAnswer{QStringLiteral("Demo"),
                                     {},
                                     {},
                                     QStringLiteral("Owner"),
                                     QStringLiteral("Author"),
                                     QStringLiteral("About"),
                                     QStringLiteral("me@example.org")};
    QString propertiesOntology;
    TermbaseOptionsChoice optionsShown, optionsAnswer;

    void SetCaption(const QString &c) override { caption = c; }
    void SetWindowPointer(int) override {}
    void EnableEditor() override { enabled = true; }
    void DisableEditor() override { enabled = false; }
    void ShowCategoryPane(bool list) override { asList = list; }
    void ShowCounts() override {}
    void ClearStatusPanels() override {}
    void ClearTermbaseView() override { ++cleared; }
    void LoadTermbaseView() override { ++viewLoads; }
    void ReloadCategoryNames() override { ++nameReloads; }
    void SetOntologyPanel(const QString &text) override { ontologyPanel = text; }
    PropertiesTexts ShowTermbaseProperties(const PropertiesTexts &texts) override
    {
        return ShowNewTermbaseProperties(texts, QString());
    }
    PropertiesTexts ShowNewTermbaseProperties(const PropertiesTexts &texts,
                                              const QString &workingOntology) override
    {
        propertiesOntology = workingOntology;
        PropertiesTexts answer = propertiesAnswer;
        answer.Created = texts.Created;
        answer.Modified = texts.Modified;
        return answer;
    }
    TermbaseOptionsChoice ShowTermbaseOptions(const TermbaseOptionsChoice &current) override
    {
        optionsShown = current;
        return optionsAnswer;
    }
};

} // namespace lx
