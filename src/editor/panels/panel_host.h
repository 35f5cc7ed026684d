// The left column of the main window: the caption, the model tree, the splitter bar, the tab
// strip and the panel area, whose frames are shown one at a time by key. The tree takes the
// fraction `treeSplit` of the column's free height (0.1 to 0.8). A tab shows its panel however
// it became current (mouse, keyboard, Ctrl+Tab, access keys, assistive tools); a panel taller
// than the area scrolls, and can be dragged up and down.
#pragma once

#include <QString>
#include <QWidget>
#include <map>

class QLabel;
class QScrollArea;
class QSplitter;
class QTabBar;

namespace mw {

class Document;
class treeControl;

inline constexpr float kMinTreeSplit = 0.1f;
inline constexpr float kMaxTreeSplit = 0.8f;
float ClampTreeSplit(float split);

class PanelHost : public QWidget {
    Q_OBJECT
  public:
    PanelHost(Document& doc, const QPixmap& logo, QWidget* parent = nullptr);

    treeControl& tree() { return *tree_; }
    QTabBar& tabs() { return *tabs_; }

    float treeSplit() const { return treeSplit_; }
    void SetTreeSplit(float split);

    // Adds a panel frame under its key ("Model", "SubModel", "Points", ...).
    void AddPanel(const QString& key, QWidget* frame);
    // The frame of a key, or nullptr; the one shown.
    QWidget* FindPanel(const QString& key) const;
    QString shownPanel() const { return shown_; }
    void ShowPanel(const QString& key);

    const QString& curTab() const { return curTab_; }

    // Brings the tabs and the shown panel in line with the model and the selection.
    void RefreshPanels();

  protected:
    void resizeEvent(QResizeEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

  private:
    void connectSignals();
    void ApplySplit();
    void TabChanged(int index);
    void StepTab(int step);

    Document& doc_;
    QLabel* caption_ = nullptr;
    treeControl* tree_ = nullptr;
    QSplitter* splitter_ = nullptr;
    QTabBar* tabs_ = nullptr;
    QScrollArea* area_ = nullptr;
    QWidget* parked_ = nullptr;  // holds the frames not shown
    std::map<QString, QWidget*> frames_;
    QString shown_;
    QString curTab_ = "Properties";
    float treeSplit_ = 0.4f;
    // Dragging a frame taller than the area.
    bool dragging_ = false;
    int dragY_ = 0;
};

}  // namespace mw
