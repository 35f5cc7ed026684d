#include "editor/panels/panel_host.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
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
    tabs_->setFocusPolicy(Qt::StrongFocus);
    // Access keys: Alt+P, Alt+T, Alt+B, Alt+A.
    for (const char* key : {"&Properties", "&Textures", "&Batteries", "&Animation"})
        tabs_->addTab(key);
    lowerLayout->addWidget(tabs_);
    area_ = new QScrollArea(lower);
    area_->setObjectName("picTabMain");
    area_->setAccessibleName("Panel");
    area_->setMinimumHeight(120);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lowerLayout->addWidget(area_, 1);
    parked_ = new QWidget(this);
    parked_->hide();
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
    connect(tabs_, &QTabBar::currentChanged, this, &PanelHost::TabChanged);
    for (const auto& [keys, step] :
         {std::pair{QKeySequence(Qt::CTRL | Qt::Key_Tab), 1},
          std::pair{QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), -1}}) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, step = step] { StepTab(step); });
    }
    connectSignals();
    RefreshPanels();
}

void PanelHost::connectSignals() {
    for (auto signal :
         {&Document::modelReset, &Document::structureChanged, &Document::selectionChanged}) {
        connect(&doc_, signal, this, &PanelHost::RefreshPanels);
    }
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

void PanelHost::AddPanel(const QString& key, QWidget* frame) {
    frame->setParent(parked_);
    frame->setProperty("panelKey", key);
    frame->installEventFilter(this);
    for (QWidget* child : frame->findChildren<QLabel*>())
        child->installEventFilter(this);
    frames_[key] = frame;
}

QWidget* PanelHost::FindPanel(const QString& key) const {
    const auto it = frames_.find(key);
    return it == frames_.end() ? nullptr : it->second;
}

void PanelHost::ShowPanel(const QString& key) {
    QWidget* next = FindPanel(key);
    if (next == nullptr || area_->widget() == next) return;
    if (QWidget* current = area_->takeWidget()) current->setParent(parked_);
    area_->setWidget(next);
    next->show();
    shown_ = key;
}

void PanelHost::TabChanged(int index) {
    if (index < 0) return;
    curTab_ = tabs_->tabText(index).remove('&');
    RefreshPanels();
}

void PanelHost::StepTab(int step) {
    if (!tabs_->isEnabled() || tabs_->count() == 0) return;
    tabs_->setCurrentIndex((tabs_->currentIndex() + step + tabs_->count()) % tabs_->count());
}

void PanelHost::RefreshPanels() {
    // The tree has nodes exactly when the model has sub-objects.
    if (doc_.hasModel()) {
        tabs_->setEnabled(true);
        if (curTab_ == "Properties") {
            const SelectionState& sel = doc_.selection();
            const QString key = sel.curSOBJ != -1  ? "SubModel"
                                : sel.curPNT == -1 ? "Model"
                                                   : "Points";
            ShowPanel(key);
        } else {
            ShowPanel(curTab_);
        }
        return;
    }
    ShowPanel("Main");
    {
        const QSignalBlocker block(tabs_);
        tabs_->setCurrentIndex(0);
    }
    tabs_->setEnabled(false);
    curTab_ = "Properties";
}

// A frame taller than the panel area is dragged up and down with the left button.
bool PanelHost::eventFilter(QObject* watched, QEvent* e) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr) return false;
    QScrollBar* bar = area_->verticalScrollBar();
    const bool tall = bar->maximum() > 0;
    switch (e->type()) {
        case QEvent::Enter:
            widget->setCursor(tall ? Qt::SizeVerCursor : Qt::ArrowCursor);
            break;
        case QEvent::MouseButtonPress: {
            auto* m = static_cast<QMouseEvent*>(e);
            dragging_ = m->button() == Qt::LeftButton && tall;
            dragY_ = static_cast<int>(m->globalPosition().y());
            break;
        }
        case QEvent::MouseMove: {
            if (!dragging_) break;
            auto* m = static_cast<QMouseEvent*>(e);
            const int y = static_cast<int>(m->globalPosition().y());
            bar->setValue(bar->value() - (y - dragY_));
            dragY_ = y;
            return true;
        }
        case QEvent::MouseButtonRelease:
            dragging_ = false;
            break;
        default:
            break;
    }
    return false;
}

}  // namespace mw
