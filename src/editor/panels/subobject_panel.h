// The sub-object panel ("SubModel"): name, radius, bounding box, pivot offset, and the one
// property the game reads from the sub-object, with the fields of that property.
#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>

class QCheckBox;
class QComboBox;
class QFrame;
class QLineEdit;
class QListWidget;
class QStackedWidget;

namespace mw {

class Document;
class Prompts;
class spinControl;
struct PropertyValues;

// The property list's items: text and flag ("Monitor01-08" carries all eight monitor flags).
struct PropertyItem {
    const char* text;
    std::uint32_t flag;
};
inline constexpr std::uint32_t kAllMonitors = 4080;

class SubObjectPanel : public QWidget {
    Q_OBJECT
  public:
    SubObjectPanel(Document& doc, Prompts& prompts, QWidget* parent = nullptr);

    // Fills the panel from sub-object curSOBJ.
    void ShowSubModelPanel();
    void ShowSOBJProperty();
    // Selects the first property item whose text holds `key` (any case) and shows its frame.
    void SelectPropertyItem(const QString& key);
    // Gives the selected sub-object `flag` with the values of the fields.
    void StoreSOBJProperty(std::uint32_t flag);
    // The colour dialog for the glow colour.
    void PickColor();

  private:
    void BuildProperties(QWidget* box);
    void connectSignals();
    void CommitName();
    void StoreOffset();
    void ShowPropertyFrame(int item);
    void UpdateGlowPreview();
    PropertyValues Values() const;
    std::uint32_t ItemFlag(int item) const;

    Document& doc_;
    Prompts& prompts_;
    bool filling_ = false;
    QLineEdit* txtSOBJName_ = nullptr;
    QCheckBox* chkShowSOBJRadius_ = nullptr;
    spinControl* txtSOBJRadius_ = nullptr;
    QCheckBox* chkShowSOBJBounding_ = nullptr;
    spinControl* txtSOBJOffset_[3]{};
    QCheckBox* chkAffectPivot_ = nullptr;
    QComboBox* cboProperties_ = nullptr;
    QStackedWidget* fraProperties_ = nullptr;
    spinControl* txtRotate_ = nullptr;
    spinControl* txtFOV_[3]{};
    spinControl* txtGlow_[4]{};
    QFrame* picGlow_ = nullptr;
    QListWidget* lstMonitor_ = nullptr;
};

}  // namespace mw
