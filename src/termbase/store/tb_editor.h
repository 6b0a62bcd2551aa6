#pragma once

#include "core/file_steps.h"

#include <QString>

namespace lx {

// The options dialog as the user leaves it: the code of the checked language button ("en",
// "es", "fr", "de", "it", "nl"; empty if none), the browsing check box and the list button.
struct TermbaseOptionsChoice {
    QString Language;
    bool CSBrowser = false;
    bool List = false;
};

// The termbase editor window as the termbase life cycle sees it: its counters and the few things
// the logic asks of its controls. The window implements it; nothing here knows widgets.
class TermbaseEditor {
public:
    virtual ~TermbaseEditor() = default;

    QString BaseCaption = QStringLiteral("TermBase Editor");
    qint32 EntryCount = 0;
    qint32 TermCount = 0;
    qint32 LastElemID = 0;
    qint32 CurrentElemID = 0;
    QString CurrentCategory;

    virtual void SetCaption(const QString &caption) = 0;
    virtual void SetWindowPointer(int pointer) = 0;
    virtual void EnableEditor() = 0;
    virtual void DisableEditor() = 0;
    // The category pane: ListView1 when `asList`, else Tree2.
    virtual void ShowCategoryPane(bool asList) = 0;
    // The ontology's name, the entries and the terms into the three panels of the status bar.
    virtual void ShowCounts() = 0;
    virtual void ClearStatusPanels() = 0;
    // Empties and hides the trees, hides the browser, leaves edit mode.
    virtual void ClearTermbaseView() = 0;
    // Fills the category pane and the element tree of the open termbase.
    virtual void LoadTermbaseView() = 0;
    // After a change of DCLang: the category names, the pane and the element tree again.
    virtual void ReloadCategoryNames() = 0;
    // Panel 1 of the ontology editor's status bar.
    virtual void SetOntologyPanel(const QString &text) = 0;

    // The properties dialog of a new termbase, with its working ontology, filled with `texts`
    // and shown modally; returns its boxes as the user left them, the dialog unloaded.
    virtual PropertiesTexts ShowNewTermbaseProperties(const PropertiesTexts &texts,
                                                      const QString &workingOntology) = 0;
    // The ontology's properties dialog captioned "TermBase Properties", the same way.
    virtual PropertiesTexts ShowTermbaseProperties(const PropertiesTexts &texts) = 0;
    // The options dialog, set from `current`, shown modally; returns it as the user left it.
    virtual TermbaseOptionsChoice ShowTermbaseOptions(const TermbaseOptionsChoice &current) = 0;
};

} // namespace lx
