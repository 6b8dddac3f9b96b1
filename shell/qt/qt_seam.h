#pragma once
// The desktop implementation of the user seam: Qt message boxes, file
// dialogs, the override cursor, and the modal dialogs of shell/qt/modal_dialogs.h.

#include "base/user_seam.h"

class QWidget;

namespace velorin {

class QtUserSeam final : public UserSeam {
  public:
    int ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) override;
    int AskFile(const FileDialogRequest& request, std::string& pathOut) override;
    void SetWaitCursor(bool on) override;
    int RunComboDialog(ComboDialog& dialog) override;
    void ShowValuesDialog(const ValuesDialog& dialog) override;
    int ChooseColour(std::uint32_t& rgb) override;

  private:
    static QWidget* Owner();
};

} // namespace velorin
