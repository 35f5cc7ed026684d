// The model tree: the root, the sub-objects nested by parent and, under each, its attach
// points, attach normals, ground points and gun points. It follows the document (rebuilt
// when the structure changes, its selection kept in step) and turns the tree's events into
// selection changes and commands: hover, select, drop (reparent, combine, a point to another
// sub-object), rename.
#pragma once

#include <QObject>
#include <QPoint>
#include <QString>

#include "model/model_data.h"

namespace mw {

class Document;
class treeControl;

// Node keys: the root "-1M", sub-object i "iS", point i of a type "iATCHP" and so on.
QString RootKey();
QString SubObjectKey(int s);
QString PointKey(PointType type, int i);
// The text of sub-object s's node: its name, or "Unnamed" and its index.
QString SubObjectText(const ModelData& model, int s);

class ModelTree : public QObject {
    Q_OBJECT
  public:
    ModelTree(treeControl& tree, Document& doc);

    void PopulateTree();
    void PopulatePointNodes();

    // The tree's events.
    void NodeHover(const QString& key, const QString& targetKey);
    void NodeSelected(const QString& key);
    void NodeDropped(const QString& source, QString target, bool combine);
    void LabelEdited(const QString& text);

  signals:
    // The Edit menu is to pop up at the pointer.
    void editMenuRequested(const QPoint& globalPos);

  private:
    void connectSignals();
    // Selects the node of the document's selection (without raising events).
    void ShowSelection();
    QString SelectionKey() const;

    treeControl& tree_;
    Document& doc_;
};

}  // namespace mw
