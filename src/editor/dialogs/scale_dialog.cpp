#include "editor/dialogs/scale_dialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QRadioButton>
#include <QVBoxLayout>

namespace mw {
namespace {

QDoubleSpinBox* Spinner(QWidget* parent, const char* name, double min, double max, double value) {
    auto* spin = new QDoubleSpinBox(parent);
    spin->setObjectName(name);
    spin->setRange(min, max);
    spin->setDecimals(2);
    spin->setSingleStep(0.01);
    spin->setValue(value);
    spin->setAccelerated(true);
    return spin;
}

}  // namespace

float ScaleAmount(bool byRadius, double newRadius, double percent, float modelRadius) {
    if (!byRadius) return static_cast<float>(percent);
    if (modelRadius > 0.0f) return static_cast<float>(newRadius / modelRadius * 100.0);
    return 100.0f;
}

frmScale::frmScale(float modelRadius, QWidget* parent)
    : QDialog(parent), modelRadius_(modelRadius) {
    setObjectName("frmScale");
    setWindowTitle("Scale Model");
    auto* grid = new QGridLayout;
    optRadius_ = new QRadioButton("Scale by Radius", this);
    optRadius_->setObjectName("optScaleRadius");
    optPercent_ = new QRadioButton("Scale by Percentage", this);
    optPercent_->setObjectName("optScalePercent");
    txtScaleRadius_ = Spinner(this, "txtScaleRadius", 0.1, 90000.0, modelRadius);
    txtScaleRadius_->setAccessibleName(optRadius_->text());
    txtScalePercent_ = Spinner(this, "txtScalePercent", 1.0, 10000.0, 100.0);
    txtScalePercent_->setAccessibleName(optPercent_->text());
    grid->addWidget(optRadius_, 0, 0);
    grid->addWidget(txtScaleRadius_, 0, 1);
    grid->addWidget(optPercent_, 1, 0);
    grid->addWidget(txtScalePercent_, 1, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmScale::Accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(buttons);

    connect(optRadius_, &QRadioButton::toggled, this, [this](bool on) { SetByRadius(on); });
    optPercent_->setChecked(true);
    SetByRadius(false);
}

void frmScale::SetByRadius(bool byRadius) {
    optRadius_->setChecked(byRadius);
    optPercent_->setChecked(!byRadius);
    txtScaleRadius_->setEnabled(byRadius);
    txtScalePercent_->setEnabled(!byRadius);
}

void frmScale::Accept() {
    amount_ = ScaleAmount(optRadius_->isChecked(), txtScaleRadius_->value(),
                          txtScalePercent_->value(), modelRadius_);
    accept();
}

}  // namespace mw
