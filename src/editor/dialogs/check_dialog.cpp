#include "editor/dialogs/check_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "editor/document.h"
#include "editor/file_text.h"
#include "editor/prompts.h"

namespace mw {
QString FindingPlace(const ModelData& model, const Finding& f) {
    if (f.Point) return QString("%1 %2").arg(PointTag(f.Point->Type)).arg(f.Point->Index);
    if (f.SubObject >= 0 && model.IsRecord(f.SubObject))
        return FromFileText(model.Sub(f.SubObject).Name);
    if (f.Texture >= 0 && f.Texture < static_cast<int>(model.Textures.size())) {
        const Texture& t = model.Textures[static_cast<std::size_t>(f.Texture)];
        return "texture " + FromFileText(t.Name.empty() ? t.GameName : t.Name);
    }
    if (f.Battery >= 0) return QString("battery %1").arg(f.Battery + 1);
    return "model";
}

CheckDialog::CheckDialog(Document& doc, ModelCheck check, QWidget* parent)
    : QDialog(parent), doc_(doc), check_(std::move(check)) {
    setObjectName("frmCheck");
    setWindowTitle(QString("Check Model - ") + kAppTitle);
    auto* layout = new QVBoxLayout(this);
    summary_ = new QLabel(this);
    summary_->setObjectName("lblCheckSummary");
    summary_->setWordWrap(true);
    layout->addWidget(summary_);
    list_ = new QTreeWidget(this);
    list_->setObjectName("lstFindings");
    list_->setAccessibleName("Findings");
    list_->setRootIsDecorated(false);
    list_->setHeaderLabels({"Severity", "Where", "Code", "Message"});
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list_->header()->setStretchLastSection(true);
    layout->addWidget(list_, 1);
    details_ = new QLabel(this);
    details_->setObjectName("lblFinding");
    details_->setWordWrap(true);
    details_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    details_->setMinimumHeight(details_->fontMetrics().lineSpacing() * 2);
    layout->addWidget(details_);
    connect(list_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        details_->setText(item == nullptr ? QString() : item->text(3));
    });
    auto* hint = new QLabel("Double-click a finding to select its part of the model.", this);
    layout->addWidget(hint);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* again = buttons->addButton("Check Again", QDialogButtonBox::ActionRole);
    again->setObjectName("cmdCheckAgain");
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(again, &QPushButton::clicked, this, &CheckDialog::Refresh);
    connect(list_, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { SelectFinding(list_->indexOfTopLevelItem(item)); });
    // While the window is open the list follows the model: every edit and its undo checks
    // again. A closed window checks when it is opened.
    const auto follow = [this] {
        if (isVisible()) Refresh();
    };
    for (auto signal :
         {&Document::modelReset, &Document::structureChanged, &Document::pointsChanged,
          &Document::batteriesChanged, &Document::modelValuesChanged}) {
        connect(&doc_, signal, this, follow);
    }
    connect(&doc_, &Document::subObjectChanged, this, follow);
    connect(&doc_, &Document::keysChanged, this, follow);
    connect(&doc_, &Document::geometryChanged, this, follow);
    resize(760, 360);
    Refresh();
}

void CheckDialog::Refresh() {
    findings_ = doc_.hasModel() ? check_() : std::vector<Finding>{};
    list_->clear();
    int errors = 0;
    const QIcon errorIcon = style()->standardIcon(QStyle::SP_MessageBoxCritical);
    const QIcon warningIcon = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    for (const Finding& f : findings_) {
        const bool error = f.Level == Severity::Error;
        errors += error;
        auto* item = new QTreeWidgetItem(
            list_, {SeverityName(f.Level), FindingPlace(doc_.model(), f),
                    QString::fromStdString(f.Code), QString::fromStdString(f.Message)});
        item->setIcon(0, error ? errorIcon : warningIcon);
        item->setToolTip(3, item->text(3));
    }
    if (list_->topLevelItemCount() > 0) list_->setCurrentItem(list_->topLevelItem(0));
    const int warnings = static_cast<int>(findings_.size()) - errors;
    if (!doc_.hasModel()) {
        summary_->setText("No model is open.");
    } else if (findings_.empty()) {
        summary_->setText("No findings: the game takes this model as it is.");
    } else {
        summary_->setText(QString("%1 error(s): the game refuses the model or stops on it. "
                                  "%2 warning(s): the game changes or ignores something.")
                              .arg(errors)
                              .arg(warnings));
    }
}

void CheckDialog::SelectFinding(int i) {
    if (i < 0 || i >= static_cast<int>(findings_.size())) return;
    const Finding& f = findings_[static_cast<std::size_t>(i)];
    if (f.Point) {
        if (f.Point->Index < static_cast<int>(doc_.model().Points(f.Point->Type).size()))
            doc_.SelectPoint(f.Point->Type, f.Point->Index);
    } else if (f.SubObject >= 0 && doc_.model().IsRecord(f.SubObject)) {
        doc_.SelectSubObject(f.SubObject);
    }
}

}  // namespace mw
