#pragma once
// The program's own help: the HTML pages of docs/help in a window of the
// program, opened by Help > Contents at the contents page.

#include <QString>
#include <QWidget>

class QTextBrowser;

namespace velorin {

// The contents page of the help for a program in `programDir`: beside it
// (help/index.html, the build tree) or in the install prefix
// (../share/velorin/help/index.html). Empty when neither exists.
QString HelpIndexPath(const QString& programDir);

class HelpWindow final : public QWidget {
    Q_OBJECT
  public:
    explicit HelpWindow(const QString& indexPath, QWidget* parent = nullptr);
    // Back to the contents page, in front.
    void ShowContents();
    QTextBrowser* browser() const { return browser_; }

  private:
    QString indexPath_;
    QTextBrowser* browser_ = nullptr;
};

// Help > Contents: the one help window of `owner`, made on first use, at its
// contents page. Says so through the user seam when no help is installed.
HelpWindow* OpenHelpContents(QWidget* owner);

} // namespace velorin
