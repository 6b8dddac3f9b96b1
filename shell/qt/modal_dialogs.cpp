#include "shell/qt/modal_dialogs.h"

#include <QColor>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <string>
#include <vector>

#include "resources/icons.h"

namespace velorin {
namespace {

// The boxes hold and hand back at most this many characters.
constexpr int MaxFieldText = 50;

QString FromLocal(const std::string& text) {
    return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
}

std::string ToLocal(const QString& text) {
    const QByteArray local = text.toLocal8Bit();
    return std::string(local.constData(), static_cast<std::size_t>(local.size()));
}

QIcon IconByName(const std::string& name) {
    if (name == "RED") return RedIcon();
    if (name == "YELLOW") return YellowIcon();
    if (name == "GREEN") return GreenIcon();
    return QIcon();
}

QLabel* IconLabel(const std::string& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    const QIcon icon = IconByName(name);
    if (!icon.isNull()) label->setPixmap(icon.pixmap(32, 32));
    return label;
}

// A read-only dialog has nothing to cancel, so Esc and the title bar's close
// button end it exactly as OK does: the user is never held in it, and no
// caller can tell the ways apart.
class ValuesBox final : public QDialog {
  public:
    using QDialog::QDialog;
    void reject() override { accept(); }
};

} // namespace

int ExecComboDialog(ComboDialog& dialog, QWidget* parent) {
    QDialog box(parent);
    box.setObjectName(FromLocal(dialog.name));
    box.setWindowTitle(FromLocal(dialog.title));
    box.setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* grid = new QGridLayout;
    std::vector<QComboBox*> combos;
    int row = 0;
    for (const ComboField& field : dialog.fields) {
        grid->addWidget(IconLabel(field.icon, &box), row, 0);
        if (!field.label.empty()) grid->addWidget(new QLabel(FromLocal(field.label), &box), row, 1);
        auto* combo = new QComboBox(&box);
        combo->setObjectName(QString::number(field.controlId));
        combo->setEditable(true);
        // What the user types is the answer, not a new entry of the list.
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->lineEdit()->setMaxLength(MaxFieldText);
        combo->setMinimumContentsLength(8);
        for (const std::string& choice : field.choices)
            combo->addItem(FromLocal(choice));
        // Filling the list selects its first entry; the edit line shows the
        // current value instead.
        combo->setCurrentIndex(combo->findText(FromLocal(field.text)));
        combo->setEditText(FromLocal(field.text));
        grid->addWidget(combo, row, 2);
        combos.push_back(combo);
        ++row;
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &box);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &box, &QDialog::reject);
    auto* layout = new QVBoxLayout(&box);
    layout->addLayout(grid);
    layout->addWidget(buttons);
    if (!combos.empty()) combos.front()->setFocus();

    if (box.exec() != QDialog::Accepted) return 1;
    for (std::size_t i = 0; i < combos.size(); ++i)
        dialog.fields[i].text = ToLocal(combos[i]->currentText().left(MaxFieldText));
    return 0;
}

void ExecValuesDialog(const ValuesDialog& dialog, QWidget* parent) {
    ValuesBox box(parent);
    box.setObjectName(FromLocal(dialog.name));
    box.setWindowTitle(FromLocal(dialog.title));
    box.setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* grid = new QGridLayout;
    int row = 0;
    for (const auto& [label, value] : dialog.rows) {
        // A keyed value has its coloured icon in place of the label.
        const std::size_t at = static_cast<std::size_t>(row);
        const QIcon key = at < dialog.icons.size() ? KeyIcon(dialog.icons[at].c_str()) : QIcon();
        auto* name = new QLabel(&box);
        if (key.isNull()) {
            name->setText(FromLocal(label));
        } else {
            name->setPixmap(key.pixmap(16, 16));
            name->setToolTip(FromLocal(label));
        }
        grid->addWidget(name, row, 0);
        auto* field = new QLineEdit(FromLocal(value), &box);
        field->setReadOnly(true);
        field->setAlignment(Qt::AlignRight);
        grid->addWidget(field, row, 1);
        ++row;
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &box);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    auto* layout = new QVBoxLayout(&box);
    layout->addLayout(grid);
    layout->addWidget(buttons);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    box.exec();
}

int ExecColourDialog(std::uint32_t& rgb, QWidget* parent) {
    const QColor start(static_cast<int>((rgb >> 16) & 0xFF), static_cast<int>((rgb >> 8) & 0xFF),
                       static_cast<int>(rgb & 0xFF));
    // The static dialog keeps its custom colours in the application for the
    // whole run, so what the user set up is there the next time.
    const QColor chosen = QColorDialog::getColor(start, parent);
    if (!chosen.isValid()) return 0;
    rgb = (static_cast<std::uint32_t>(chosen.red()) << 16) |
          (static_cast<std::uint32_t>(chosen.green()) << 8) |
          static_cast<std::uint32_t>(chosen.blue());
    return 1;
}

} // namespace velorin
