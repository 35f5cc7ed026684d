#include "editor/panels/panel_host.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QSplitter>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "editor/document.h"
#include "editor/tree/tree_control.h"

namespace mw {

float ClampTreeSplit(float split) {
    return std::clamp(split, kMinTreeSplit, kMaxTreeSplit);
}

PanelHost::PanelHost(Document& doc, const QPixmap& logo, QWidget* parent)
    : QWidget(parent), doc_(doc) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    caption_ = new QLabel("Model/Sub-Model Selector/Viewer", this);
    caption_->setObjectName("lblTree");
    layout->addWidget(caption_);

    splitter_ = new QSplitter(Qt::Vertical, this);
    splitter_->setObjectName("fraTabDrag");
    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(6);
    tree_ = new treeControl(splitter_);
    tree_->setObjectName("tvMain");
    tree_->setHeaderHidden(true);
    tree_->setAccessibleName(caption_->text());
    caption_->setBuddy(tree_);

    auto* lower = new QWidget(splitter_);
    auto* lowerLayout = new QVBoxLayout(lower);
    lowerLayout->setContentsMargins(0, 0, 0, 0);
    lowerLayout->setSpacing(0);
    tabs_ = new QTabBar(lower);
    tabs_->setObjectName("ssTabMain");
    tabs_->setAccessibleName("Panels");
    tabs_->setExpanding(false);
    tabs_->setUsesScrollButtons(false);
    tabs_->setElideMode(Qt::ElideNone);
    for (const char* key : {"Properties", "Textures", "Batteries", "Animation"})
        tabs_->addTab(key);
    lowerLayout->addWidget(tabs_);
    area_ = new QWidget(lower);
    area_->setObjectName("picTabMain");
    area_->setMinimumHeight(120);
    area_->installEventFilter(this);
    lowerLayout->addWidget(area_, 1);
    layout->addWidget(splitter_, 1);
    setMinimumWidth(tabs_->sizeHint().width() + 8);

    // The start-up frame with the logo.
    auto* mainFrame = new QLabel(area_);
    mainFrame->setObjectName("fraTabMain_Main");
    mainFrame->setAlignment(Qt::AlignCenter);
    mainFrame->setPixmap(logo);
    mainFrame->setAccessibleName("Main");
    AddPanel("Main", mainFrame);
    ShowPanel("Main");

    connect(splitter_, &QSplitter::splitterMoved, this, [this] {
        const QList<int> sizes = splitter_->sizes();
        const int total = sizes.value(0) + sizes.value(1);
        if (total > 0) SetTreeSplit(static_cast<float>(sizes.value(0)) / total);
    });
    connect(tabs_, &QTabBar::tabBarClicked, this, &PanelHost::TabClicked);
    connectSignals();
    RefreshPanels(true);
}

void PanelHost::connectSignals() {
    connect(&doc_, &Document::modelReset, this, [this] { RefreshPanels(true); });
    connect(&doc_, &Document::structureChanged, this, [this] { RefreshPanels(true); });
    connect(&doc_, &Document::selectionChanged, this, [this] { RefreshPanels(false); });
}

void PanelHost::SetTreeSplit(float split) {
    treeSplit_ = ClampTreeSplit(split);
    ApplySplit();
}

void PanelHost::ApplySplit() {
    const int total = splitter_->height() - splitter_->handleWidth();
    if (total <= 0) return;
    const int treeHeight = static_cast<int>(static_cast<float>(total) * treeSplit_);
    const QSignalBlocker block(splitter_);
    splitter_->setSizes({treeHeight, total - treeHeight});
}

void PanelHost::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    ApplySplit();
}

// A frame is as wide as the area and at least as tall; a taller one keeps its top between the
// area's top and the point where its bottom meets the area's bottom.
void PanelHost::FitFrame(QWidget* frame, int top) {
    frame->resize(area_->width(), std::max(area_->height(), frame->sizeHint().height()));
    frame->move(0, std::clamp(top, area_->height() - frame->height(), 0));
}

void PanelHost::AddPanel(const QString& key, QWidget* frame) {
    frame->setParent(area_);
    frame->setProperty("panelKey", key);
    frame->installEventFilter(this);
    for (QWidget* child : frame->findChildren<QLabel*>())
        child->installEventFilter(this);
    frame->hide();
    frames_[key] = frame;
}

QWidget* PanelHost::FindPanel(const QString& key) const {
    const auto it = frames_.find(key);
    return it == frames_.end() ? nullptr : it->second;
}

void PanelHost::ShowPanel(const QString& key) {
    QWidget* next = FindPanel(key);
    if (next == nullptr) return;
    if (QWidget* current = FindPanel(shown_); current != nullptr && current != next)
        current->hide();
    FitFrame(next, 0);
    next->show();
    shown_ = key;
}

void PanelHost::TabClicked(int index) {
    if (index < 0) return;
    curTab_ = tabs_->tabText(index);
    if (curTab_ != "Properties" && FindPanel(curTab_) != nullptr) ShowPanel(curTab_);
    RefreshPanels(true);
}

void PanelHost::RefreshPanels(bool reload) {
    // The tree has nodes exactly when the model has sub-objects.
    if (doc_.hasModel()) {
        tabs_->setEnabled(true);
        if (curTab_ == "Properties") {
            const SelectionState& sel = doc_.selection();
            const QString key = sel.curSOBJ != -1  ? "SubModel"
                                : sel.curPNT == -1 ? "Model"
                                                   : "Points";
            if (FindPanel(key) != nullptr) ShowPanel(key);
        } else if (FindPanel(curTab_) != nullptr) {
            ShowPanel(curTab_);
        }
        emit panelRefreshRequested(curTab_, reload);
        return;
    }
    ShowPanel("Main");
    tabs_->setCurrentIndex(0);
    tabs_->setEnabled(false);
    curTab_ = "Properties";
    emit panelRefreshRequested(curTab_, reload);
}

// A frame taller than the panel area is dragged up and down with the left button.
bool PanelHost::eventFilter(QObject* watched, QEvent* e) {
    if (watched == area_) {
        if (e->type() == QEvent::Resize) {
            for (auto& [key, frame] : frames_)
                FitFrame(frame, frame->y());
        }
        return false;
    }
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr) return false;
    QWidget* frame = widget;
    while (frame != nullptr && !frame->property("panelKey").isValid())
        frame = frame->parentWidget();
    if (frame == nullptr) return false;
    const bool tall = frame->height() > area_->height();
    switch (e->type()) {
        case QEvent::Enter:
            widget->setCursor(tall ? Qt::SizeVerCursor : Qt::ArrowCursor);
            break;
        case QEvent::MouseButtonPress: {
            auto* m = static_cast<QMouseEvent*>(e);
            if (m->button() == Qt::LeftButton && tall) {
                draggedFrame_ = frame;
                dragY_ = static_cast<int>(m->globalPosition().y());
            }
            break;
        }
        case QEvent::MouseMove: {
            if (draggedFrame_ != frame) break;
            auto* m = static_cast<QMouseEvent*>(e);
            const int y = static_cast<int>(m->globalPosition().y());
            FitFrame(frame, frame->y() + y - dragY_);
            dragY_ = y;
            return true;
        }
        case QEvent::MouseButtonRelease:
            draggedFrame_ = nullptr;
            break;
        default:
            break;
    }
    return false;
}

}  // namespace mw
