#pragma once
// The small dialogs of the shell.

#include <QDialog>

namespace velorin {

// "STARTUP": modal, closes itself after five seconds and cannot be
// dismissed before.
class StartupDialog final : public QDialog {
    Q_OBJECT
  public:
    explicit StartupDialog(QWidget* parent = nullptr, int milliseconds = 5000);
    void reject() override {}

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool timeUp_ = false;
};

// "ABOUT", closed by its OK button.
void RunAboutDialog(QWidget* parent);

} // namespace velorin
