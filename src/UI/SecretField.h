#pragma once

// A field for a secret: it shows dots, and gives its text to nobody but its owner.
//
// It cannot be undone, copied or dragged, and input methods do not learn from it. Screen readers hear of dots. Main
// thread only.

#include "UI/TextField.h"

namespace orvesa {

class SecretField final : public TextField {
    Q_OBJECT

public:
    explicit SecretField(QWidget *parent = nullptr);

    /// Empties the field without leaving what was in it to an undo.
    void wipe();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
};

} // namespace orvesa
