#pragma once

#include "core/file_steps.h"
#include "core/store/recordset.h"

#include <QString>

namespace lx {

// The ontology editor window as the life cycle and the concept list see it: the window's own
// state (the concept on screen, the counts, the recordsets behind its list) and the few things
// the logic asks of its controls. The main window implements it; nothing here knows widgets.
class OntologyEditor {
public:
    virtual ~OntologyEditor() = default;

    QString BaseCaption;
    QString CurrentConcept; // the concept on screen, empty if none
    quint8 CurrentType = 0; // its Type
    qint32 TotalConcepts = 0;
    qint32 ListedConcepts = 0;
    store::Recordset rsList;     // behind the concept list
    store::Recordset rsInverses; // table INVERSES, index Relation, kept open

    virtual void SetCaption(const QString &caption) = 0;
    // The window's own pointer (pointer::Hourglass, pointer::Arrow), not the screen's.
    virtual void SetWindowPointer(int pointer) = 0;
    virtual void EnableOntologyCommands() = 0;
    virtual void DisableOntologyCommands() = 0;
    virtual void UpdateStatusCounts() = 0;
    virtual void ClearConceptView() = 0;
    virtual void LoadConceptView() = 0;

    // The data source takes rsList and the list refills from it.
    virtual void ShowConceptList() = 0;
    // Selects the list's first row; returns its text.
    virtual QString SelectFirstListRow() = 0;
    // The list field, data field and bound column of the concept list.
    virtual void BindConceptList(const QString &field) = 0;

    // Every loaded window but the first whose caption isn't like "Ontology Editor*", from the
    // last loaded down.
    virtual void UnloadOtherWindows() = 0;

    // A fresh properties dialog, captioned "Ontology Properties", filled with `texts` and shown
    // modally; returns its boxes as the user left them, the dialog unloaded.
    virtual PropertiesTexts ShowProperties(const PropertiesTexts &texts) = 0;
};

// The editor with no window behind it: what the logic asks of the controls does nothing, and the
// properties come back as given. Work without a screen runs the commands through it.
class WindowlessEditor : public OntologyEditor {
public:
    void SetCaption(const QString &) override {}
    void SetWindowPointer(int) override {}
    void EnableOntologyCommands() override {}
    void DisableOntologyCommands() override {}
    void UpdateStatusCounts() override {}
    void ClearConceptView() override {}
    void LoadConceptView() override {}
    void ShowConceptList() override {}
    QString SelectFirstListRow() override { return {}; }
    void BindConceptList(const QString &) override {}
    void UnloadOtherWindows() override {}
    PropertiesTexts ShowProperties(const PropertiesTexts &texts) override { return texts; }
};

} // namespace lx
