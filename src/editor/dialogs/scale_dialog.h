// frmScale: scale the model by a new radius or by a percentage.
#pragma once

#include <QDialog>

class QDoubleSpinBox;
class QRadioButton;

namespace mw {

// The percentage to scale by: by radius, the new radius over the current one (100 when the
// model's radius is not above 0); otherwise the percentage itself.
float ScaleAmount(bool byRadius, double newRadius, double percent, float modelRadius);

class frmScale : public QDialog {
    Q_OBJECT
  public:
    frmScale(float modelRadius, QWidget* parent = nullptr);

    // After OK: the percentage; 100 after Cancel.
    float amount() const { return amount_; }

    QDoubleSpinBox& radius() { return *txtScaleRadius_; }
    QDoubleSpinBox& percent() { return *txtScalePercent_; }
    void SetByRadius(bool byRadius);

  private:
    void Accept();

    float modelRadius_;
    float amount_ = 100.0f;
    QRadioButton* optRadius_ = nullptr;
    QRadioButton* optPercent_ = nullptr;
    QDoubleSpinBox* txtScaleRadius_ = nullptr;
    QDoubleSpinBox* txtScalePercent_ = nullptr;
};

}  // namespace mw
