#include "shell/qt/database_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <string>

#include "market_data/data_source.h"
#include "market_data/odbc_dialog.h"
#include "market_data/odbc_sql_file.h"
#if VELORIN_HAS_ODBC
#include "market_data/odbc_driver_manager.h"
#endif

namespace velorin {
namespace {

QString FromLocal(const std::string& text) {
    return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
}

std::string ToLocal(const QString& text) {
    const QByteArray local = text.toLocal8Bit();
    return std::string(local.constData(), static_cast<std::size_t>(local.size()));
}

QString IdName(int id) {
    return QString::number(id);
}

class DatabaseDialog final : public QDialog {
  public:
    explicit DatabaseDialog(QWidget* parent) : QDialog(parent) {
        setObjectName(QStringLiteral("DSNSQL"));
        setWindowTitle(QStringLiteral("Database Connectivity"));
        const SqlDialogView view = OpenSqlDialogView();

        auto* grid = new QGridLayout;
        const char* labels[] = {"Name", "Table Name", "Fields", "Where Field", "Code"};
        for (int i = 0; i < 5; ++i) {
            const SqlCombo& c = view.combos[i];
            combos_[i] = new QComboBox(this);
            combos_[i]->setObjectName(IdName(c.controlId));
            combos_[i]->setEditable(true);
            combos_[i]->setInsertPolicy(QComboBox::NoInsert);
            combos_[i]->setMinimumWidth(260);
            for (const std::string& choice : c.choices)
                combos_[i]->addItem(FromLocal(choice));
            combos_[i]->setCurrentIndex(c.selected);
            if (c.selected < 0) combos_[i]->setEditText(QString());
            auto* label = new QLabel(QString::fromLatin1(labels[i]), this);
            label->setBuddy(combos_[i]);
            grid->addWidget(label, i, 0);
            grid->addWidget(combos_[i], i, 1);
        }
        user_ = new QLineEdit(FromLocal(view.userName), this);
        user_->setObjectName(IdName(dsnsql::Username));
        user_->setMaxLength(19);
        password_ = new QLineEdit(FromLocal(view.password), this);
        password_->setObjectName(IdName(dsnsql::Password));
        password_->setEchoMode(QLineEdit::Password);
        password_->setMaxLength(19);
        grid->addWidget(new QLabel(QStringLiteral("Username"), this), 5, 0);
        grid->addWidget(user_, 5, 1);
        grid->addWidget(new QLabel(QStringLiteral("Password"), this), 6, 0);
        grid->addWidget(password_, 6, 1);

        text_ = new QPlainTextEdit(this);
        text_->setObjectName(IdName(dsnsql::SqlText));
        text_->setMinimumSize(420, 140);
        SetTextQuietly(FromLocal(view.sqlText));
        procedure_ = new QCheckBox(QStringLiteral("Procedure"), this);
        procedure_->setObjectName(IdName(dsnsql::Procedure));
        procedure_->setChecked(view.procedure);
        // Typing in the box, while it holds SQL text rather than a
        // procedure's name, makes the text unsaved.
        connect(text_, &QPlainTextEdit::textChanged, this, [this] {
            if (!quiet_) SqlTextEdited(procedure_->isChecked());
        });

        auto* ok = Button("OK", 1);
        auto* cancel = Button("Cancel", 2);
        auto* open = Button("Open", dsnsql::Open);
        auto* clear = Button("Clear", dsnsql::Clear);
        // "Save All" starts the Make All run of the whole database.
        auto* saveAll = Button("Save All", dsnsql::SaveAll);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, [this] { Finish(SqlDialogOk); });
        connect(saveAll, &QPushButton::clicked, this, [this] { Finish(SqlDialogSaveAll); });
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
        connect(open, &QPushButton::clicked, this, [this] {
            if (LoadSqlFile(0)) {
                SetTextQuietly(QString::fromLocal8Bit(marketData.selection.currentSqlText));
                procedure_->setChecked(false);
            }
        });
        connect(clear, &QPushButton::clicked, this, [this] {
            ClearSqlDialogText();
            SetTextQuietly(QString());
        });

        auto* textRow = new QHBoxLayout;
        textRow->addWidget(new QLabel(QStringLiteral("SQLText"), this));
        textRow->addStretch();
        textRow->addWidget(procedure_);
        auto* buttons = new QHBoxLayout;
        for (QPushButton* b : {ok, cancel, open, clear, saveAll})
            buttons->addWidget(b);
        auto* layout = new QVBoxLayout(this);
        layout->addLayout(grid);
        layout->addLayout(textRow);
        layout->addWidget(text_);
        layout->addLayout(buttons);
    }

    int Run() {
        result_ = SqlDialogCancel;
        exec();
        return result_;
    }

  private:
    QPushButton* Button(const char* text, int id) {
        auto* b = new QPushButton(QString::fromLatin1(text), this);
        b->setObjectName(IdName(id));
        b->setAutoDefault(false);
        return b;
    }

    void SetTextQuietly(const QString& text) {
        quiet_ = true;
        text_->setPlainText(text);
        quiet_ = false;
    }

    void Finish(int button) {
        SqlDialogInput in;
        std::string* const fields[] = {&in.dsn, &in.table, &in.fields, &in.where, &in.code};
        for (int i = 0; i < 5; ++i) {
            const QString text = combos_[i]->currentText();
            *fields[i] = ToLocal(text);
            in.comboSelection[i] = combos_[i]->findText(text, Qt::MatchExactly);
        }
        in.userName = ToLocal(user_->text());
        in.password = ToLocal(password_->text());
        in.sqlText = ToLocal(text_->toPlainText());
        in.procedure = procedure_->isChecked();
        const int result = AcceptSqlDialog(in, button);
        if (result == SqlDialogStayOpen) return;
        result_ = result;
        accept();
    }

    QComboBox* combos_[5] = {};
    QLineEdit* user_ = nullptr;
    QLineEdit* password_ = nullptr;
    QPlainTextEdit* text_ = nullptr;
    QCheckBox* procedure_ = nullptr;
    bool quiet_ = false;
    int result_ = SqlDialogCancel;
};

class QtSqlDialogHost final : public SqlDialogHost {
  public:
    int RunSqlDialog() override { return ExecDatabaseDialog(QApplication::activeWindow()); }
};

} // namespace

int ExecDatabaseDialog(QWidget* parent) {
    DatabaseDialog dialog(parent);
    return dialog.Run();
}

void InstallDatabaseConnectivity() {
    static QtSqlDialogHost host;
    InstallSqlDialog(&host);
#if VELORIN_HAS_ODBC
    InstallOdbcDriverManager();
#endif
}

} // namespace velorin
