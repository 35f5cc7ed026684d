// The point panel ("Points"): the location and the direction of the selected attach point,
// attach normal, ground point or gun point. The direction is shown as an L/R and a U/D angle,
// typed into spinners or picked in two dials.
#pragma once

#include <QWidget>
#include <optional>

#include "model/model_data.h"

class QLabel;

namespace mw {

class Document;
class VectorControl;
class spinControl;

class PointPanel : public QWidget {
    Q_OBJECT
  public:
    PointPanel(Document& doc, QWidget* parent = nullptr);

    // Fills the panel from the selected point.
    void ShowPointPanel();

  private:
    void connectSignals();
    std::optional<PointType> SelectedType() const;
    void StoreLocation();
    void AngleChanged(int i);

    Document& doc_;
    bool filling_ = false;
    // While the panel stores its own edit it keeps the values as entered: the stored direction
    // read back would differ from the typed angles by rounding.
    bool storing_ = false;
    QLabel* lblPointType_ = nullptr;
    spinControl* txtPointLoc_[3]{};
    spinControl* txtPointAngle_[2]{};
    VectorControl* picPointAngle_[2]{};
};

}  // namespace mw
