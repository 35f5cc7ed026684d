// One game object's page as the Game Object dialog shows it: its main fields, the animation
// ranges of one movement class beside the model's frame range, and the weapon batteries
// beside the model's batteries. A range past the model's keys and a firing mask naming a gun
// point the model lacks are marked. Fields are checked as they are typed; an accepted edit
// is handed on as a field path and a value, and nothing is changed here.
#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "gamedata/gam_table.h"
#include "model/model_data.h"

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QTableWidget;
class QTableWidgetItem;

namespace mw {

class GameObjectPage : public QWidget {
    Q_OBJECT
  public:
    explicit GameObjectPage(QWidget* parent = nullptr);

    // What the table says of a field's new value: "" when it may stand.
    using FieldCheck = std::function<std::string(const std::string& path, const std::string&)>;
    void SetFieldCheck(FieldCheck check) { check_ = std::move(check); }

    // Shows a page (nullptr: none) against the model; only a mission's page can be edited.
    void Show(const TablePage* page, const ModelData& model, bool editable);

    // The movement class whose ranges the table shows (0 standing ... 4 jumping).
    void ShowMovementClass(int c);
    QTableWidget& animationTable() { return *animation_; }
    QTableWidget& batteryTable() { return *batteries_; }
    // True when row `state` of the animation table, or row `row` of the battery table, is
    // marked as not fitting the model.
    bool AnimationMarked(int state) const;
    bool BatteryMarked(int row) const;

  signals:
    void fieldEdited(const QString& path, const QString& value);
    // The problem with the field being typed, "" when there is none.
    void problemChanged(const QString& text);

  private:
    QLineEdit* AddField(QGridLayout* grid, int row, const QString& caption, const char* name,
                        const char* path);
    void FieldTyped(QLineEdit* field);
    void FieldLeft(QLineEdit* field);
    void FillFields();
    void FillAnimation();
    void FillBatteries();
    void AnimationCellChanged(QTableWidgetItem* item);
    static void Mark(QTableWidgetItem* item, const QString& why);

    FieldCheck check_;
    const TablePage* page_ = nullptr;
    const ModelData* model_ = nullptr;
    bool editable_ = false;
    bool filling_ = false;
    QLabel* kind_ = nullptr;
    QLabel* frames_ = nullptr;
    QLabel* note_ = nullptr;
    std::vector<QLineEdit*> fields_;
    QComboBox* movement_ = nullptr;
    QTableWidget* animation_ = nullptr;
    QTableWidget* batteries_ = nullptr;
};

}  // namespace mw
