#pragma once
// The button bar above the desk: a grey strip of 24 by 22 buttons that send
// their command ids to the frame, and the pale yellow hint under a button.
// The bar sees every mouse event over it (the buttons only paint) and
// carries out the steps of the Qt-free rules in shell/core/button_bar.h.

#include <QObject>
#include <QWidget>

#include <functional>

#include "shell/core/button_bar.h"

class QLabel;

namespace velorin {

class ButtonFace;

class ButtonBarWidget final : public QWidget {
    Q_OBJECT
  public:
    // `table` is the frame's, defined and kept by it; the bar lays it out
    // with the character height of `frame`'s font. `send` receives the
    // command id of a clicked button. The hint is a child of `frame`.
    ButtonBarWidget(ButtonBar& table, QWidget* frame, std::function<void(int)> send);
    ~ButtonBarWidget() override;

    // The buttons take on the enabled states of the table (after the menu
    // state has written them).
    void SyncEnabled();
    // The frame's hide-hint message: the capture goes back, the hint goes.
    void HideHint();

    int barHeight() const { return table_.barHeight; }
    QWidget* button(int index) const;
    QLabel* hint() const { return hint_; }

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void Apply(const HintStep& step);
    void ShowHint(int index);

    ButtonBar& table_;
    std::function<void(int)> send_;
    ButtonFace* faces_[ButtonCount] = {};
    QLabel* hint_ = nullptr;
    int pressed_ = -1; // the button a click went down on, until it comes up
};

// Every key press anywhere in the program sends the frame its hide-hint
// message, so a key takes the hint off the screen.
class HintKeyFilter final : public QObject {
  public:
    HintKeyFilter(std::function<void()> hideHint, QObject* parent);
    ~HintKeyFilter() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void()> hideHint_;
};

} // namespace velorin
