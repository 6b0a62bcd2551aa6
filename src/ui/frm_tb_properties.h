#pragma once

#include "ui/frm_properties.h"

class QLineEdit;

namespace lx::ui {

// The properties of a new termbase: those of an ontology, with its working ontology shown above
// them, not to be changed. OK behaves as in frmProperties.
class frmTBProperties : public frmProperties {
    Q_OBJECT

public:
    frmTBProperties();

    QLineEdit *txtWOntology;
};

} // namespace lx::ui
