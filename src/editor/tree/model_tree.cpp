#include "editor/tree/model_tree.h"

#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/file_text.h"
#include "editor/toolbar_icons.h"
#include "editor/tree/tree_control.h"
#include "gamedata/file_names.h"

namespace mw {
namespace {

// The sub-object a key names, with a point's key standing for its owner.
int SubObjectOfKey(const ModelData& model, const QString& key) {
    if (key.endsWith('S')) return KeyNumber(key);
    if (key.endsWith('P') && key.size() > 5) {
        const auto type = PointTypeFromTag(key.mid(key.size() - 5, 4).toStdString());
        const int i = KeyNumber(key);
        if (type && i >= 0 && i < static_cast<int>(model.Points(*type).size()))
            return model.Points(*type)[static_cast<std::size_t>(i)].Parent;
    }
    return -1;
}

}  // namespace

QString RootKey() {
    return "-1M";
}

QString SubObjectKey(int s) {
    return QString::number(s) + "S";
}

QString PointKey(PointType type, int i) {
    return QString::number(i) + PointTag(type) + "P";
}

QString SubObjectText(const ModelData& model, int s) {
    const std::string& name = model.Sub(s).Name;
    if (name.empty()) return "Unnamed" + QString::number(s);
    return FromFileText(name);
}

ModelTree::ModelTree(treeControl& tree, Document& doc) : QObject(&tree), tree_(tree), doc_(doc) {
    connectSignals();
    PopulateTree();
}

void ModelTree::connectSignals() {
    connect(&doc_, &Document::modelReset, this, &ModelTree::PopulateTree);
    connect(&doc_, &Document::structureChanged, this, &ModelTree::PopulateTree);
    connect(&doc_, &Document::pointsChanged, this, [this] {
        PopulatePointNodes();
        ShowSelection();
    });
    connect(&doc_, &Document::fileChanged, this, [this] {
        if (QTreeWidgetItem* root = tree_.FindNode(RootKey()))
            tree_.SetLabel(root, doc_.ModelTitle());
    });
    connect(&doc_, &Document::subObjectChanged, this, [this](int s) {
        if (!doc_.model().IsRecord(s)) return;
        if (QTreeWidgetItem* node = tree_.FindNode(SubObjectKey(s)))
            tree_.SetLabel(node, SubObjectText(doc_.model(), s));
    });
    connect(&doc_, &Document::selectionChanged, this, &ModelTree::ShowSelection);
    connect(&tree_, &treeControl::nodeHover, this, &ModelTree::NodeHover);
    connect(&tree_, &treeControl::nodeSelected, this, &ModelTree::NodeSelected);
    connect(&tree_, &treeControl::nodeDropped, this, &ModelTree::NodeDropped);
    connect(&tree_, &treeControl::labelEdited, this,
            [this](const QString& text, const QString&) { LabelEdited(text); });
    connect(&tree_, &treeControl::contextRequested, this, [this](const QString&, const QPoint& at) {
        const SelectionState& sel = doc_.selection();
        if (sel.curSOBJ != -1 || sel.curPNT != -1) emit editMenuRequested(at);
    });
}

void ModelTree::PopulateTree() {
    tree_.setUpdatesEnabled(false);
    tree_.Clear();
    const ModelData& model = doc_.model();
    if (model.SubObjectCount() > 0) {
        const QString title =
            doc_.ModelTitle().isEmpty()
                ? QString::fromStdString(FileNameOf(doc_.ModelPath().toStdString()))
                : doc_.ModelTitle();
        tree_.AddItem({}, RootKey(), title, ToolbarIcon("ROOT"))->setExpanded(true);
        // Save-slot order puts every parent before its children.
        for (int k = 0; k < model.SubObjectCount(); ++k) {
            const int s = model.Head(k);
            const int parent = model.Sub(s).Parent;
            const QString parentKey = parent == -1 ? RootKey() : SubObjectKey(parent);
            tree_
                .AddItem(parentKey, SubObjectKey(s), SubObjectText(model, s), ToolbarIcon("SOBJ"),
                         true)
                ->setExpanded(true);
        }
        PopulatePointNodes();
    }
    tree_.setUpdatesEnabled(true);
    ShowSelection();
}

void ModelTree::PopulatePointNodes() {
    // Every point node goes, then each sub-object gets its points again, type by type.
    std::vector<QTreeWidgetItem*> points;
    for (QTreeWidgetItemIterator it(&tree_); *it != nullptr; ++it) {
        if (treeControl::KeyOf(*it).endsWith('P')) points.push_back(*it);
    }
    for (auto it = points.rbegin(); it != points.rend(); ++it)
        tree_.RemoveNode(*it);

    const ModelData& model = doc_.model();
    std::vector<QString> subObjects;
    for (QTreeWidgetItemIterator it(&tree_); *it != nullptr; ++it) {
        const QString key = treeControl::KeyOf(*it);
        if (key.endsWith('S')) subObjects.push_back(key);
    }
    for (const QString& key : subObjects) {
        const int s = KeyNumber(key);
        for (PointType t : kPointTypes) {
            const auto& list = model.Points(t);
            for (int i = 0; i < static_cast<int>(list.size()); ++i) {
                if (list[static_cast<std::size_t>(i)].Parent != s) continue;
                tree_.AddItem(key, PointKey(t, i), QString(PointTag(t)) + QString::number(i),
                              ToolbarIcon(PointTag(t)));
            }
        }
    }
}

QString ModelTree::SelectionKey() const {
    const SelectionState& sel = doc_.selection();
    if (sel.curSOBJ != -1) return SubObjectKey(sel.curSOBJ);
    if (sel.curPNT != -1) {
        if (const auto type = PointTypeFromTag(sel.curPNTtype)) return PointKey(*type, sel.curPNT);
    }
    return RootKey();
}

void ModelTree::ShowSelection() {
    if (tree_.topLevelItemCount() == 0) return;
    tree_.SelectKey(SelectionKey());
}

void ModelTree::NodeHover(const QString& key, const QString& targetKey) {
    const ModelData& model = doc_.model();
    int hilite = doc_.selection().hiliteSOBJ;
    int hilite2 = doc_.selection().hiliteSOBJ2;
    if (key.endsWith('M') || key.endsWith('P')) hilite = -1;
    if (key.endsWith('S')) hilite = KeyNumber(key);
    if (targetKey.endsWith('M')) hilite2 = -1;
    if (targetKey.endsWith('S') || targetKey.endsWith('P'))
        hilite2 = SubObjectOfKey(model, targetKey);
    doc_.SetHighlights(hilite, hilite2);
}

void ModelTree::NodeSelected(const QString& key) {
    if (key.endsWith('M')) {
        doc_.SelectRoot();
    } else if (key.endsWith('S')) {
        doc_.SelectSubObject(KeyNumber(key));
    } else if (key.endsWith('P') && key.size() > 5) {
        if (const auto type = PointTypeFromTag(key.mid(key.size() - 5, 4).toStdString()))
            doc_.SelectPoint(*type, KeyNumber(key));
    } else {
        return;
    }
    doc_.SetHighlights(doc_.selection().hiliteSOBJ, -1);
}

void ModelTree::NodeDropped(const QString& source, QString target, bool combine) {
    const ModelData& model = doc_.model();
    // A point as target stands for its sub-object.
    if (target.endsWith('P')) {
        const int owner = SubObjectOfKey(model, target);
        target = owner == -1 ? RootKey() : SubObjectKey(owner);
    }
    if (combine) {
        if (source.endsWith('S') && target.endsWith('S'))
            doc_.Apply(MakeCombineCommand(doc_, KeyNumber(source), KeyNumber(target)));
        return;
    }
    if (source.endsWith('S')) {
        const int parent = target.endsWith('M') ? -1 : KeyNumber(target);
        if (!doc_.Apply(MakeReparentCommand(doc_, KeyNumber(source), parent)))
            doc_.SelectSubObject(KeyNumber(source));
    } else if (source.endsWith('P') && !target.endsWith('M') && source.size() > 5) {
        const auto type = PointTypeFromTag(source.mid(source.size() - 5, 4).toStdString());
        if (type)
            doc_.Apply(MakePointParentCommand(doc_, *type, KeyNumber(source), KeyNumber(target)));
    }
}

void ModelTree::LabelEdited(const QString& text) {
    const int s = doc_.selection().curSOBJ;
    if (s == -1 || !doc_.model().IsRecord(s)) return;
    doc_.Apply(MakeRenameCommand(doc_, s, ToFileText(text)));
    doc_.EndEditSession();
}

}  // namespace mw
