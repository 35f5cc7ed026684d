// treeControl: a tree view whose nodes carry keys, with the drag and drop the model tree
// needs: a drag image under the pointer, a collapsed node held under it opens after 500 ms,
// the view scrolls near its edges every 100 ms, Escape cancels, and a node cannot be dropped
// onto its own descendants. Its events carry node keys.
#pragma once

#include <QHash>
#include <QIcon>
#include <QString>
#include <QTreeWidget>

class QLabel;
class QTimer;

namespace mw {

class Prompts;

// The number a node key starts with ("12S" is 12, "-1M" is -1; 0 when there is none).
int KeyNumber(const QString& key);

class treeControl : public QTreeWidget {
    Q_OBJECT
  public:
    explicit treeControl(QWidget* parent = nullptr);

    // Refusal messages go through `prompts` (Qt's message boxes when null).
    void SetPrompts(Prompts* prompts) { prompts_ = prompts; }

    void Clear();
    // Adds a node under the node `parentKey` (top level for an empty key); returns it.
    QTreeWidgetItem* AddItem(const QString& parentKey, const QString& key, const QString& text,
                             const QIcon& icon, bool editable = false);
    QTreeWidgetItem* FindNode(const QString& key) const;
    // Removes a node (with its children).
    void RemoveNode(QTreeWidgetItem* item);
    static QString KeyOf(const QTreeWidgetItem* item);
    // Selects the node of a key without raising events, and shows it.
    void SelectKey(const QString& key);
    QString selectedKey() const;
    // Sets a node's label without raising a label edit.
    void SetLabel(QTreeWidgetItem* item, const QString& text);

    bool dragging() const { return dragging_; }
    QWidget* dragImage() const;

    // The drag's timers, as their ticks run them (and tests call them).
    void AutoExpandTick();
    void AutoScrollTick();

  signals:
    void nodeHover(const QString& key, const QString& targetKey);
    void nodeSelected(const QString& key);
    void nodeDropped(const QString& source, const QString& target, bool combine);
    void labelEdited(const QString& text, const QString& key);
    void contextRequested(const QString& key, const QPoint& globalPos);

  protected:
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;

  private:
    void StartDrag(const QPoint& pos);
    void EndDrag();
    void SetDropTarget(QTreeWidgetItem* item);
    int EdgeMargin() const;
    bool NearEdge(const QPoint& pos) const;
    void Refuse(bool combine);

    Prompts* prompts_ = nullptr;
    QHash<QString, QTreeWidgetItem*> nodes_;
    bool mouseDown_ = false;
    bool dragging_ = false;
    bool settingLabel_ = false;
    QPoint pressPos_;
    QTreeWidgetItem* pressItem_ = nullptr;
    QTreeWidgetItem* dragged_ = nullptr;
    QTreeWidgetItem* target_ = nullptr;
    QString hoverKey_ = "-1";
    QLabel* image_ = nullptr;
    QTimer* tmrAutoExpand_ = nullptr;
    QTimer* tmrAutoScroll_ = nullptr;
    QPoint lastPos_;
};

}  // namespace mw
