#include "shell/qt/button_bar_widget.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QSvgRenderer>

#include <utility>

#include "shell/core/shell_state.h"

namespace velorin {

namespace {

const QColor BarGrey(0xc0, 0xc0, 0xc0);
const QColor HintBackground(0xff, 0xff, 0xa0); // pale yellow
const QColor HintInk(0x00, 0x00, 0x80);        // dark blue

// The picture of a greyed button: the same drawing in grey, half faded.
void Fade(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = line[x];
            const int a = qAlpha(p) / 2;
            // Premultiplied: grey from the colour, scaled to the new alpha.
            const int g = qAlpha(p) ? qGray(p) * a / qAlpha(p) : 0;
            line[x] = qRgba(g, g, g, a);
        }
    }
}

} // namespace

// One button: a raised face with its picture, sunken while pressed. It takes
// no mouse input itself; the bar hit-tests and forwards.
class ButtonFace final : public QWidget {
  public:
    ButtonFace(const QString& picture, QWidget* parent) : QWidget(parent), svg_(picture) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }
    void SetDown(bool down) {
        if (down_ == down) return;
        down_ = down;
        update();
    }
    bool isDown() const { return down_; }

  protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::EnabledChange) cache_ = QImage();
        QWidget::changeEvent(event);
    }
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        const QRectF r(0, 0, ButtonWidth, ButtonHeight);
        p.fillRect(r, BarGrey);
        p.drawImage(QPointF(down_ ? 1 : 0, down_ ? 1 : 0), Picture());
        // A one-pixel bevel: light above and left, dark below and right;
        // the other way round while pressed.
        const QColor light = down_ ? QColor(0x40, 0x40, 0x40) : QColor(Qt::white);
        const QColor dark = down_ ? QColor(Qt::white) : QColor(0x40, 0x40, 0x40);
        p.setPen(QPen(light, 1));
        p.drawLine(QPointF(0.5, ButtonHeight - 1), QPointF(0.5, 0.5));
        p.drawLine(QPointF(0.5, 0.5), QPointF(ButtonWidth - 1, 0.5));
        p.setPen(QPen(dark, 1));
        p.drawLine(QPointF(ButtonWidth - 0.5, 0), QPointF(ButtonWidth - 0.5, ButtonHeight - 0.5));
        p.drawLine(QPointF(ButtonWidth - 0.5, ButtonHeight - 0.5), QPointF(0, ButtonHeight - 0.5));
    }

  private:
    // The picture at the screen's pixel density, drawn once per density and
    // state, so that it is sharp at any scale.
    const QImage& Picture() {
        const qreal dpr = devicePixelRatioF();
        if (cache_.isNull() || cache_.devicePixelRatio() != dpr) {
            cache_ = QImage(QSize(qRound(ButtonWidth * dpr), qRound(ButtonHeight * dpr)),
                            QImage::Format_ARGB32_Premultiplied);
            cache_.fill(Qt::transparent);
            QPainter p(&cache_);
            svg_.render(&p, QRectF(0, 0, cache_.width(), cache_.height()));
            p.end();
            if (!isEnabled()) Fade(cache_);
            cache_.setDevicePixelRatio(dpr);
        }
        return cache_;
    }

    QSvgRenderer svg_;
    QImage cache_;
    bool down_ = false;
};

ButtonBarWidget::ButtonBarWidget(ButtonBar& table, QWidget* frame, std::function<void(int)> send)
    : QWidget(frame), table_(table), send_(std::move(send)) {
    LayOutButtonBar(table_, QFontMetrics(frame->font()).height());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setFixedHeight(table_.barHeight);
    for (int i = 0; i < ButtonCount; ++i) {
        const ToolButton& e = table_.entries[i];
        const char* name = ButtonPictureName(e.bitmapId);
        if (IsGap(e) || !name) continue;
        auto* face =
            new ButtonFace(QStringLiteral(":/buttons/%1.svg").arg(QLatin1String(name)), this);
        face->setObjectName(QString::fromLatin1(e.label));
        face->setGeometry(e.left, ButtonTop, ButtonWidth, ButtonHeight);
        faces_[i] = face;
    }
    SyncEnabled();

    hint_ = new QLabel(frame);
    hint_->setObjectName(QStringLiteral("buttonHint"));
    hint_->setAutoFillBackground(true);
    hint_->setMargin(0);
    hint_->setIndent(0);
    QPalette pal = hint_->palette();
    pal.setColor(QPalette::Window, HintBackground);
    pal.setColor(QPalette::WindowText, HintInk);
    hint_->setPalette(pal);
    hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
    hint_->hide();
}

ButtonBarWidget::~ButtonBarWidget() {
    if (shell.hintCaptured) HideHint();
}

QWidget* ButtonBarWidget::button(int index) const {
    return index >= 0 && index < ButtonCount ? faces_[index] : nullptr;
}

QSize ButtonBarWidget::sizeHint() const {
    const ToolButton& last = table_.entries[ButtonCount - 1];
    return QSize(last.left + ButtonAdvance, table_.barHeight);
}

void ButtonBarWidget::SyncEnabled() {
    for (int i = 0; i < ButtonCount; ++i)
        if (faces_[i]) faces_[i]->setEnabled(table_.state[i].enabled == 1);
}

void ButtonBarWidget::HideHint() {
    Apply(HideHintMessage(shell.hintCaptured));
}

void ButtonBarWidget::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), BarGrey);
}

void ButtonBarWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    Apply(BarMouseMove(table_, at.x(), at.y(), shell.hintCaptured));
}

void ButtonBarWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const QPoint at = event->position().toPoint();
    const HintStep step = BarMouseDown(table_, at.x(), at.y(), shell.hintCaptured);
    Apply(step);
    if (step.press >= 0 && faces_[step.press]) {
        pressed_ = step.press;
        faces_[pressed_]->SetDown(true);
    }
}

void ButtonBarWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || pressed_ < 0) return;
    const int index = pressed_;
    pressed_ = -1;
    ButtonFace* face = faces_[index];
    face->SetDown(false);
    // As a push button does: the command goes when the button comes up over
    // the button it went down on, and only while that button is enabled.
    if (face->geometry().contains(event->position().toPoint()) && table_.state[index].enabled == 1)
        send_(table_.entries[index].commandId);
}

void ButtonBarWidget::Apply(const HintStep& step) {
    if (step.release && mouseGrabber() == this) releaseMouse();
    if (step.hide) hint_->hide();
    // step.focus: the bar is told that it has the focus; the keyboard stays
    // with the window that holds it, as the notice moves nothing.
    if (step.show >= 0) ShowHint(step.show);
    if (step.capture) grabMouse();
}

void ButtonBarWidget::ShowHint(int index) {
    const QString text = QString::fromStdString(HintText(table_.entries[index]));
    hint_->setFont(font());
    hint_->setText(text);
    const QSize size = QFontMetrics(hint_->font()).size(Qt::TextSingleLine, text);
    const QPoint at =
        mapTo(hint_->parentWidget(), QPoint(table_.entries[index].left, table_.barHeight));
    hint_->setGeometry(QRect(at, size));
    hint_->raise();
    hint_->show();
}

HintKeyFilter::HintKeyFilter(std::function<void()> hideHint, QObject* parent)
    : QObject(parent), hideHint_(std::move(hideHint)) {
    qApp->installEventFilter(this);
}

HintKeyFilter::~HintKeyFilter() {
    qApp->removeEventFilter(this);
}

bool HintKeyFilter::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::KeyPress) hideHint_();
    return false;
}

} // namespace velorin
