#include "editor/tree/tree_control.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include "editor/prompts.h"

namespace mw {
namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kLabelRole = Qt::UserRole + 1;

bool IsDescendant(const QTreeWidgetItem* node, const QTreeWidgetItem* ancestor) {
    for (const QTreeWidgetItem* p = node->parent(); p != nullptr; p = p->parent()) {
        if (p == ancestor) return true;
    }
    return false;
}

}  // namespace

int KeyNumber(const QString& key) {
    int i = 0;
    if (i < key.size() && key[i] == '-') ++i;
    while (i < key.size() && key[i].isDigit())
        ++i;
    return key.left(i).toInt();
}

treeControl::treeControl(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    tmrAutoExpand_ = new QTimer(this);
    tmrAutoExpand_->setObjectName("tmrAutoExpand");
    tmrAutoExpand_->setInterval(500);
    tmrAutoExpand_->setSingleShot(true);
    connect(tmrAutoExpand_, &QTimer::timeout, this, &treeControl::AutoExpandTick);
    tmrAutoScroll_ = new QTimer(this);
    tmrAutoScroll_->setObjectName("tmrAutoScroll");
    tmrAutoScroll_->setInterval(100);
    connect(tmrAutoScroll_, &QTimer::timeout, this, &treeControl::AutoScrollTick);

    // Label edits: trimmed; an empty one puts the old label back.
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int) {
        if (settingLabel_) return;
        const QString old = item->data(0, kLabelRole).toString();
        const QString text = item->text(0).trimmed();
        settingLabel_ = true;
        item->setText(0, text.isEmpty() ? old : text);
        if (!text.isEmpty()) item->setData(0, kLabelRole, text);
        settingLabel_ = false;
        if (!text.isEmpty() && text != old) emit labelEdited(text, KeyOf(item));
    });
    // The node "-1A" stays open.
    connect(this, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* item) {
        if (KeyOf(item) == "-1A") expandItem(item);
    });
}

void treeControl::Clear() {
    EndDrag();
    pressItem_ = nullptr;
    settingLabel_ = true;
    clear();
    nodes_.clear();
    settingLabel_ = false;
}

void treeControl::RemoveNode(QTreeWidgetItem* item) {
    if (item == nullptr) return;
    for (int i = item->childCount() - 1; i >= 0; --i)
        RemoveNode(item->child(i));
    if (item == pressItem_) pressItem_ = nullptr;
    if (item == target_) target_ = nullptr;
    nodes_.remove(KeyOf(item));
    delete item;
}

QTreeWidgetItem* treeControl::AddItem(const QString& parentKey, const QString& key,
                                      const QString& text, const QIcon& icon, bool editable) {
    QTreeWidgetItem* parent = parentKey.isEmpty() ? nullptr : FindNode(parentKey);
    settingLabel_ = true;
    auto* item = parent != nullptr ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    item->setText(0, text);
    item->setIcon(0, icon);
    item->setData(0, kKeyRole, key);
    item->setData(0, kLabelRole, text);
    if (editable) item->setFlags(item->flags() | Qt::ItemIsEditable);
    settingLabel_ = false;
    nodes_.insert(key, item);
    return item;
}

QTreeWidgetItem* treeControl::FindNode(const QString& key) const {
    return nodes_.value(key, nullptr);
}

QString treeControl::KeyOf(const QTreeWidgetItem* item) {
    return item == nullptr ? QString("-1") : item->data(0, kKeyRole).toString();
}

void treeControl::SelectKey(const QString& key) {
    QTreeWidgetItem* item = FindNode(key);
    const QSignalBlocker block(this);
    setCurrentItem(item);
    if (item != nullptr) scrollToItem(item);
}

QString treeControl::selectedKey() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? QString("-1") : KeyOf(selected.front());
}

void treeControl::SetLabel(QTreeWidgetItem* item, const QString& text) {
    settingLabel_ = true;
    item->setText(0, text);
    item->setData(0, kLabelRole, text);
    settingLabel_ = false;
}

QWidget* treeControl::dragImage() const {
    return image_;
}

void treeControl::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton && !dragging_) {
        EndDrag();
        mouseDown_ = true;
        pressPos_ = e->position().toPoint();
        hoverKey_ = "-1";
        pressItem_ = itemAt(pressPos_);
        if (pressItem_ != nullptr) emit nodeHover(KeyOf(pressItem_), "-1");
    }
    QTreeWidget::mousePressEvent(e);
}

void treeControl::StartDrag(const QPoint& pos) {
    dragging_ = true;
    dragged_ = pressItem_;
    // The drag image: the node's picture and label, following the pointer.
    image_ = new QLabel(nullptr, Qt::ToolTip | Qt::FramelessWindowHint);
    image_->setObjectName("dragImage");
    const QString text = dragged_->text(0);
    const QPixmap icon = dragged_->icon(0).pixmap(16, 16);
    QPixmap picture(fontMetrics().horizontalAdvance(text) + 24, 18);
    picture.fill(Qt::transparent);
    QPainter p(&picture);
    p.setOpacity(0.75);
    p.drawPixmap(0, 1, icon);
    p.drawText(QRect(20, 0, picture.width() - 20, 18), Qt::AlignVCenter, text);
    p.end();
    image_->setPixmap(picture);
    image_->setAttribute(Qt::WA_TransparentForMouseEvents);
    image_->move(viewport()->mapToGlobal(pos) + QPoint(8, 8));
    image_->show();
}

void treeControl::mouseMoveEvent(QMouseEvent* e) {
    const QPoint pos = e->position().toPoint();
    lastPos_ = pos;
    if (!mouseDown_ || !(e->buttons() & Qt::LeftButton)) {
        QTreeWidget::mouseMoveEvent(e);
        return;
    }
    if (!dragging_) {
        const QPoint moved = pos - pressPos_;
        const int distance = QApplication::startDragDistance();
        if (pressItem_ == nullptr ||
            (std::abs(moved.x()) < distance && std::abs(moved.y()) < distance)) {
            return;
        }
        StartDrag(pos);
    }
    image_->move(viewport()->mapToGlobal(pos) + QPoint(8, 8));
    QTreeWidgetItem* target = itemAt(pos);
    if (target != target_) {
        SetDropTarget(target);
        emit nodeHover(KeyOf(dragged_), target == nullptr ? QString("-1") : KeyOf(target));
        if (target != nullptr && !target->isExpanded() && target->childCount() > 0) {
            tmrAutoExpand_->start();
        } else {
            tmrAutoExpand_->stop();
        }
    }
    if (NearEdge(pos)) {
        if (!tmrAutoScroll_->isActive()) tmrAutoScroll_->start();
    } else {
        tmrAutoScroll_->stop();
    }
}

// One row's height.
int treeControl::EdgeMargin() const {
    return std::max(8, sizeHintForRow(0));
}

bool treeControl::NearEdge(const QPoint& pos) const {
    const int margin = EdgeMargin();
    const QRect area = viewport()->rect();
    return pos.y() < area.top() + margin || pos.y() > area.bottom() - margin ||
           pos.x() < area.left() + margin || pos.x() > area.right() - margin;
}

void treeControl::SetDropTarget(QTreeWidgetItem* item) {
    if (target_ != nullptr) target_->setBackground(0, QBrush());
    target_ = item;
    if (target_ != nullptr) target_->setBackground(0, palette().highlight().color().lighter(160));
}

void treeControl::AutoExpandTick() {
    if (!dragging_ || target_ == nullptr) return;
    if (itemAt(lastPos_) == target_ && !target_->isExpanded() && target_->childCount() > 0)
        expandItem(target_);
}

void treeControl::AutoScrollTick() {
    if (!dragging_) {
        tmrAutoScroll_->stop();
        return;
    }
    const QRect area = viewport()->rect();
    const int margin = EdgeMargin();
    QScrollBar* v = verticalScrollBar();
    QScrollBar* h = horizontalScrollBar();
    if (lastPos_.y() < area.top() + margin && v->value() > v->minimum()) {
        v->triggerAction(QAbstractSlider::SliderSingleStepSub);
    } else if (lastPos_.y() > area.bottom() - margin && v->value() < v->maximum()) {
        v->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    }
    if (lastPos_.x() < area.left() + margin && h->value() > h->minimum()) {
        h->triggerAction(QAbstractSlider::SliderSingleStepSub);
    } else if (lastPos_.x() > area.right() - margin && h->value() < h->maximum()) {
        h->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    }
}

void treeControl::EndDrag() {
    tmrAutoExpand_->stop();
    tmrAutoScroll_->stop();
    SetDropTarget(nullptr);
    delete image_;
    image_ = nullptr;
    dragging_ = false;
    dragged_ = nullptr;
}

void treeControl::Refuse(bool combine) {
    const QString text = combine ? "You can not combine a Parent Sub-Object to it's childen"
                                 : "You can not make a Sub-Object a child of its children";
    if (prompts_ != nullptr) {
        prompts_->Message(this, text, PromptIcon::None);
    } else {
        QMessageBox::information(this, kAppTitle, text);
    }
}

void treeControl::mouseReleaseEvent(QMouseEvent* e) {
    const QPoint pos = e->position().toPoint();
    if (dragging_) {
        QTreeWidgetItem* dragged = dragged_;
        const QString draggedKey = KeyOf(dragged);
        QTreeWidgetItem* target = itemAt(pos);
        EndDrag();
        mouseDown_ = false;
        if (target != nullptr && target != dragged) {
            const bool combine = e->modifiers() == Qt::ShiftModifier;
            if (IsDescendant(target, dragged)) {
                Refuse((e->modifiers() & Qt::ShiftModifier) != 0);
            } else {
                emit nodeDropped(draggedKey, KeyOf(target), combine);
            }
        }
        hoverKey_ = "-1";
        emit nodeHover("-1", draggedKey);
    } else {
        mouseDown_ = false;
        QTreeWidget::mouseReleaseEvent(e);
    }
    if (topLevelItemCount() > 0) emit nodeSelected(selectedKey());
    if (e->button() == Qt::RightButton) {
        const QString key = selectedKey();
        if (!selectedItems().isEmpty() && KeyNumber(key) >= -1)
            emit contextRequested(key, e->globalPosition().toPoint());
    }
}

void treeControl::keyPressEvent(QKeyEvent* e) {
    if (dragging_ && e->key() == Qt::Key_Escape) {
        EndDrag();
        mouseDown_ = false;
        return;
    }
    QTreeWidget::keyPressEvent(e);
}

void treeControl::keyReleaseEvent(QKeyEvent* e) {
    QTreeWidget::keyReleaseEvent(e);
    if (topLevelItemCount() == 0 || state() == QAbstractItemView::EditingState) return;
    const QString key = selectedKey();
    emit nodeHover(key, "-1");
    emit nodeSelected(key);
}

}  // namespace mw
