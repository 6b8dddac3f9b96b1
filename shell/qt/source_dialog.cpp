#include "shell/qt/source_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <string>

#include "base/user_seam.h"
#include "market_data/source_dialog.h"

namespace velorin {
namespace {

QString FromLocal(const char* text) {
    return QString::fromLocal8Bit(text);
}

std::string ToLocal(const QString& text) {
    const QByteArray local = text.toLocal8Bit();
    return std::string(local.constData(), static_cast<std::size_t>(local.size()));
}

class SourceDialog final : public QDialog {
  public:
    explicit SourceDialog(QWidget* parent) : QDialog(parent) {
        setObjectName(QStringLiteral("SOURCE"));
        setWindowTitle(QStringLiteral("Source"));
        const SourceDialogState state = OpenSourceDialog();

        // Shown top down as Source, Topic, Item, Timer.
        struct Row {
            int combo, id;
            const char* label;
        };
        const Row rows[] = {{ComboSource, source_dialog::Source, "Source"},
                            {ComboTopic, source_dialog::Topic, "Topic"},
                            {ComboItem, source_dialog::Item, "Item"},
                            {ComboTimer, source_dialog::Timer, "Timer"}};
        auto* grid = new QGridLayout;
        int line = 0;
        for (const Row& r : rows) {
            QComboBox* box = combos_[r.combo] = new QComboBox(this);
            box->setObjectName(QString::number(r.id));
            box->setEditable(true);
            box->setInsertPolicy(QComboBox::NoInsert);
            box->setMinimumWidth(300);
            Fill(r.combo);
            box->setCurrentIndex(state.selection[r.combo]);
            box->setEditText(FromLocal(state.text[r.combo].c_str()));
            connect(box, &QComboBox::editTextChanged, this, [this] { FollowEdits(); });
            auto* label = new QLabel(QString::fromLatin1(r.label), this);
            label->setBuddy(box);
            grid->addWidget(label, line, 0);
            grid->addWidget(box, line++, 1);
        }

        full_ = Check("FullQuote", source_dialog::FullQuote, state.fullQuote);
        tick_ = Check("TickbyTick", source_dialog::TickByTick, state.tickByTick);
        offset_ = Check("OffsetTime", source_dialog::OffsetTime, state.offsetTime);
        daily_ = Radio("d", source_dialog::Daily, state.resolution == 'd');
        weekly_ = Radio("w", source_dialog::Weekly, state.resolution == 'w');
        monthly_ = Radio("m", source_dialog::Monthly, state.resolution == 'm');
        auto* boxes = new QHBoxLayout;
        for (QWidget* w :
             std::initializer_list<QWidget*>{full_, tick_, offset_, daily_, weekly_, monthly_})
            boxes->addWidget(w);
        boxes->addStretch();

        auto* ok = Button("OK", 1);
        auto* cancel = Button("Cancel", 2);
        auto* add = Button("Add", source_dialog::Add);
        auto* remove = Button("Delete", source_dialog::Delete);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, [this] {
            if (SourceDialogOk(Read()) == 0) {
                result_ = 0;
                accept();
            } else {
                reject();
            }
        });
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
        connect(add, &QPushButton::clicked, this, [this] { ListCommand(SourceDialogAdd); });
        connect(remove, &QPushButton::clicked, this, [this] { ListCommand(SourceDialogDelete); });
        auto* buttons = new QHBoxLayout;
        for (QPushButton* b : {ok, cancel, add, remove})
            buttons->addWidget(b);

        auto* layout = new QVBoxLayout(this);
        layout->addLayout(grid);
        layout->addLayout(boxes);
        layout->addLayout(buttons);
        FollowEdits();
    }

    int Run() {
        exec();
        return result_;
    }

  private:
    QCheckBox* Check(const char* text, int id, bool on) {
        auto* box = new QCheckBox(QString::fromLatin1(text), this);
        box->setObjectName(QString::number(id));
        box->setChecked(on);
        connect(box, &QCheckBox::toggled, this, [this] { FollowEdits(); });
        return box;
    }
    QRadioButton* Radio(const char* text, int id, bool on) {
        auto* button = new QRadioButton(QString::fromLatin1(text), this);
        button->setObjectName(QString::number(id));
        button->setChecked(on);
        return button;
    }
    QPushButton* Button(const char* text, int id) {
        auto* button = new QPushButton(QString::fromLatin1(text), this);
        button->setObjectName(QString::number(id));
        button->setAutoDefault(false);
        return button;
    }

    void Fill(int combo) {
        QComboBox* box = combos_[combo];
        const QString edit = box->currentText();
        box->blockSignals(true);
        box->clear();
        for (int row = 0; row < SourceListLength(combo); ++row)
            box->addItem(FromLocal(SourceListRow(combo, row)));
        box->setCurrentIndex(box->findText(edit, Qt::MatchExactly | Qt::MatchCaseSensitive));
        box->setEditText(edit);
        box->blockSignals(false);
    }

    SourceDialogState Read() const {
        SourceDialogState s;
        for (int combo = 0; combo < SourceComboCount; ++combo) {
            s.text[combo] = ToLocal(combos_[combo]->currentText());
            const int at = combos_[combo]->currentIndex();
            const bool shown =
                at >= 0 && combos_[combo]->itemText(at) == combos_[combo]->currentText();
            s.selection[combo] = shown ? at : -1;
        }
        s.fullQuote = full_->isChecked();
        s.tickByTick = tick_->isChecked();
        s.offsetTime = offset_->isChecked();
        s.resolution = monthly_->isChecked() ? 'm' : weekly_->isChecked() ? 'w' : 'd';
        return s;
    }

    // The resolution buttons only for the history topic of the live
    // service, whose rows are never ticks.
    void FollowEdits() {
        const bool shown = ResolutionButtonsShown(ToLocal(combos_[ComboSource]->currentText()),
                                                  ToLocal(combos_[ComboTopic]->currentText()));
        for (QRadioButton* b : {daily_, weekly_, monthly_})
            if (b) b->setVisible(shown);
        if (shown && tick_) tick_->setChecked(false);
    }

    void ListCommand(const char* (*command)(const SourceDialogState&)) {
        const char* message = command(Read());
        for (int combo = 0; combo < SourceComboCount; ++combo)
            Fill(combo);
        if (message) Seam().ShowMessage(message, "QDX-Velorin", MessageIcon::Information);
    }

    QComboBox* combos_[SourceComboCount] = {};
    QCheckBox* full_ = nullptr;
    QCheckBox* tick_ = nullptr;
    QCheckBox* offset_ = nullptr;
    QRadioButton* daily_ = nullptr;
    QRadioButton* weekly_ = nullptr;
    QRadioButton* monthly_ = nullptr;
    int result_ = 1;
};

class QtSourceDialogRunner final : public SourceDialogRunner {
  public:
    int RunSourceDialog() override { return ExecSourceDialog(QApplication::activeWindow()); }
};

} // namespace

int ExecSourceDialog(QWidget* parent) {
    SourceDialog dialog(parent);
    return dialog.Run();
}

void InstallSourceDialog() {
    static QtSourceDialogRunner runner;
    InstallSourceDialogRunner(&runner);
}

} // namespace velorin
