#pragma once
// The modal dialogs the user seam runs on the desktop: dialogs of editable
// combo boxes, a read-only values dialog and the colour dialog.

#include <cstdint>

#include "base/user_seam.h"

class QWidget;

namespace velorin {

// Runs `dialog` modally over `parent`. Each field is an icon, its label when
// it has one, and an editable drop-down holding the choices with the field's
// text in its edit line. Returns 0 after OK with every field's text set to
// what its box held (at most 50 characters), 1 after Cancel.
// The dialog's object name is the dialog's name; each box is named by its
// control id ("20201").
int ExecComboDialog(ComboDialog& dialog, QWidget* parent);

// Shows the rows as read-only fields until the user closes it.
void ExecValuesDialog(const ValuesDialog& dialog, QWidget* parent);

// The colour dialog started on `rgb` (0x00RRGGBB). Returns 1 with `rgb` set
// after OK, 0 after Cancel. The custom colours the user sets there last for
// the whole run.
int ExecColourDialog(std::uint32_t& rgb, QWidget* parent);

} // namespace velorin
