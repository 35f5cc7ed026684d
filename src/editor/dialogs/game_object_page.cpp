#include "editor/dialogs/game_object_page.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <set>

#include "editor/panels/panel_widgets.h"
#include "gamedata/gam_fields.h"
#include "gamedata/gam_json.h"
#include "gamedata/table_check.h"
#include "model/text_codec.h"

namespace mw {
namespace {

const char* const kClassCaptions[kMovementClasses] = {"Standing", "Flying", "Rolling", "Walking",
                                                      "Jumping"};
const char* const kPathProperty = "fieldPath";
const QColor kMarked(255, 205, 205);

QString JsonText(const nlohmann::ordered_json& j) {
    if (j.is_string()) return QString::fromStdString(j.get<std::string>());
    if (j.is_number_float()) return QString::number(j.get<double>(), 'g', 7);
    if (j.is_number()) return QString::fromStdString(j.dump());
    return {};
}

// "0+1, 2": the gun points each firing mask of a battery fires.
QString MaskText(const BatteryBlock& b) {
    QStringList masks;
    const int count = std::max<int>(b.MaskCount, 1);
    for (int k = 0; k < count && k < kBatteryMasks; ++k) {
        QStringList guns;
        for (int g = 0; g < 8; ++g) {
            if (b.Masks[static_cast<std::size_t>(k)].Mask & (1u << g)) guns << QString::number(g);
        }
        masks << (guns.isEmpty() ? QString("-") : guns.join('+'));
    }
    return masks.join(", ");
}

QString WeaponText(const std::array<std::string, kBatteryGunPoints>& weapons) {
    std::set<std::string> seen;
    QStringList names;
    for (const std::string& w : weapons) {
        if (!w.empty() && seen.insert(w).second) names << QString::fromStdString(Utf8From1252(w));
    }
    return names.join(", ");
}

QTableWidgetItem* Cell(const QString& text, bool editable) {
    auto* item = new QTableWidgetItem(text);
    if (!editable) item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

QTableWidget* MakeTable(QWidget* parent, const char* name, const QString& accessible,
                        const QStringList& headers) {
    auto* table = new QTableWidget(0, static_cast<int>(headers.size()), parent);
    table->setMinimumHeight(200);
    table->setObjectName(name);
    table->setAccessibleName(accessible);
    table->setHorizontalHeaderLabels(headers);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->setTabKeyNavigation(false);  // Tab leaves the table; the arrows move in it
    return table;
}

}  // namespace

GameObjectPage::GameObjectPage(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* main = new QGroupBox("Page", this);
    main->setObjectName("fraPage");
    auto* box = new QVBoxLayout(main);
    auto* columns = new QHBoxLayout;
    auto* left = new QGridLayout;
    auto* right = new QGridLayout;
    AddField(left, 0, "&Name:", "txtName", "name");
    AddField(left, 1, "&Model:", "txtModel", "model");
    AddField(left, 2, "M&edium detail model:", "txtMediumModel", "medium_model");
    AddField(left, 3, "&Low detail model:", "txtLowModel", "low_model");
    kind_ = new QLabel(main);
    kind_->setObjectName("lblKind");
    AddRow(right, 0, "Kind:", kind_);
    AddField(right, 1, "Si&ze:", "txtSize", "size");
    AddField(right, 2, "&Hit points:", "txtHitPoints", "hit_points");
    AddField(right, 3, "Sc&ore:", "txtScore", "score");
    columns->addLayout(left, 3);
    columns->addSpacing(12);
    columns->addLayout(right, 1);
    box->addLayout(columns);
    note_ = new QLabel(main);
    note_->setObjectName("lblPageNote");
    note_->setWordWrap(true);
    box->addWidget(note_);
    layout->addWidget(main);

    auto* anim = new QGroupBox("Animation ranges", this);
    anim->setObjectName("fraObjectAnimation");
    auto* animLayout = new QVBoxLayout(anim);
    frames_ = new QLabel(anim);
    frames_->setObjectName("lblModelFrames");
    animLayout->addWidget(frames_);
    auto* classRow = new QGridLayout;
    movement_ = new QComboBox(anim);
    movement_->setObjectName("cboMovement");
    for (const char* c : kClassCaptions)
        movement_->addItem(c);
    AddRow(classRow, 0, "Mo&vement:", movement_);
    classRow->setColumnStretch(2, 1);
    animLayout->addLayout(classRow);
    animation_ =
        MakeTable(anim, "tblAnimation", "Animation ranges", {"State", "From", "To", "Seconds"});
    animLayout->addWidget(animation_);
    layout->addWidget(anim);
    connect(movement_, &QComboBox::currentIndexChanged, this, [this] { FillAnimation(); });
    connect(animation_, &QTableWidget::itemChanged, this, &GameObjectPage::AnimationCellChanged);

    auto* guns = new QGroupBox("Weapon batteries", this);
    guns->setObjectName("fraObjectBatteries");
    auto* gunLayout = new QVBoxLayout(guns);
    batteries_ = MakeTable(guns, "tblBatteries", "Weapon batteries",
                           {"Battery", "Weapons", "Firing masks", "The model's gun points"});
    gunLayout->addWidget(batteries_);
    layout->addWidget(guns);
    static const ModelData kNoModel;
    Show(nullptr, kNoModel, false);
}

QLineEdit* GameObjectPage::AddField(QGridLayout* grid, int row, const QString& caption,
                                    const char* name, const char* path) {
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    field->setProperty(kPathProperty, path);
    AddRow(grid, row, caption, field);
    fields_.push_back(field);
    connect(field, &QLineEdit::textEdited, this, [this, field] { FieldTyped(field); });
    connect(field, &QLineEdit::editingFinished, this, [this, field] { FieldLeft(field); });
    return field;
}

void GameObjectPage::Show(const TablePage* page, const ModelData& model, bool editable) {
    page_ = page;
    model_ = &model;
    editable_ = editable && page != nullptr;
    filling_ = true;
    FillFields();
    // A page opens on the first movement class that has a range.
    if (const auto* g = page ? RecordAs<GenericRecord>(page->Record()) : nullptr) {
        for (int c = 0; c < kMovementClasses; ++c) {
            bool any = false;
            for (const AnimRange& r : g->Animation[static_cast<std::size_t>(c)])
                any = any || r.From != 0 || r.To != 0;
            if (any) {
                movement_->setCurrentIndex(c);
                break;
            }
        }
    }
    FillAnimation();
    FillBatteries();
    filling_ = false;
}

void GameObjectPage::FillFields() {
    const nlohmann::ordered_json j = page_ ? PageJson(*page_) : nlohmann::ordered_json::object();
    kind_->setText(page_ ? QString::fromStdString(j.value("kind", std::string())) : "-");
    const bool weapon = page_ && page_->Type == static_cast<std::uint8_t>(PageType::Weapon);
    for (QLineEdit* f : fields_) {
        std::string path = f->property(kPathProperty).toString().toStdString();
        if (weapon && path == "model") path = "fire_image";
        const bool has = j.contains(path);
        f->setText(has ? JsonText(j[path]) : QString());
        f->setEnabled(has);
        f->setReadOnly(!editable_);
        f->setStyleSheet({});
        f->setToolTip({});
    }
    note_->setText(page_ == nullptr ? "Choose a page above."
                   : editable_      ? QString()
                                    : "This page is the game's. Replace... puts a copy into the "
                                      "mission, where it can be changed.");
    note_->setVisible(!note_->text().isEmpty());
    emit problemChanged({});
}

void GameObjectPage::FieldTyped(QLineEdit* field) {
    std::string path = field->property(kPathProperty).toString().toStdString();
    if (page_ && page_->Type == static_cast<std::uint8_t>(PageType::Weapon) && path == "model")
        path = "fire_image";
    const std::string problem = check_ ? check_(path, field->text().toStdString()) : "";
    field->setStyleSheet(problem.empty() ? QString() : "background: #ffcdcd;");
    field->setToolTip(QString::fromStdString(problem));
    emit problemChanged(QString::fromStdString(problem));
}

void GameObjectPage::FieldLeft(QLineEdit* field) {
    if (!editable_ || filling_ || !field->isModified()) return;
    field->setModified(false);
    QString path = field->property(kPathProperty).toString();
    if (page_->Type == static_cast<std::uint8_t>(PageType::Weapon) && path == "model")
        path = "fire_image";
    emit fieldEdited(path, field->text());
}

void GameObjectPage::ShowMovementClass(int c) {
    movement_->setCurrentIndex(c);
}

void GameObjectPage::Mark(QTableWidgetItem* item, const QString& why) {
    item->setBackground(kMarked);
    item->setToolTip(why);
    item->setData(Qt::UserRole, true);
}

void GameObjectPage::FillAnimation() {
    const bool was = filling_;
    filling_ = true;
    const auto* g = page_ ? RecordAs<GenericRecord>(page_->Record()) : nullptr;
    frames_->setText(
        QString("The model's keys: frames %1 to %2.").arg(model_->FrameMin).arg(model_->FrameMax));
    animation_->setRowCount(g ? kAnimStates : 0);
    animation_->setEnabled(g != nullptr);
    movement_->setEnabled(g != nullptr);
    const int c = movement_->currentIndex();
    int firstMarked = -1;
    for (int a = 0; g && a < kAnimStates; ++a) {
        const AnimRange& r = g->Animation[static_cast<std::size_t>(c)][static_cast<std::size_t>(a)];
        QTableWidgetItem* cells[4] = {Cell(kAnimStateKeys[a], false),
                                      Cell(QString::number(r.From), editable_),
                                      Cell(QString::number(r.To), editable_),
                                      Cell(QString::number(r.Speed, 'g', 7), editable_)};
        const bool fits = AnimRangeFits(r, *model_);
        for (int col = 0; col < 4; ++col) {
            if (!fits) {
                Mark(cells[col], QString("Frames %1 to %2 are not within the model's keys "
                                         "(frames %3 to %4).")
                                     .arg(r.From)
                                     .arg(r.To)
                                     .arg(model_->FrameMin)
                                     .arg(model_->FrameMax));
            }
            animation_->setItem(a, col, cells[col]);
        }
        if (!fits) cells[0]->setText(cells[0]->text() + " (past the model's keys)");
        if (!fits && firstMarked < 0) firstMarked = a;
    }
    // A marked range is in view.
    if (firstMarked >= 0) {
        QTimer::singleShot(0, animation_, [table = animation_, firstMarked] {
            if (QTableWidgetItem* item = table->item(firstMarked, 0))
                table->scrollToItem(item, QAbstractItemView::PositionAtCenter);
        });
    }
    animation_->resizeColumnToContents(0);
    filling_ = was;
}

void GameObjectPage::AnimationCellChanged(QTableWidgetItem* item) {
    if (filling_ || !editable_ || item->column() == 0) return;
    static const char* const kKeys[4] = {"", "from", "to", "speed"};
    const QString path = QString("animation.%1.%2.%3")
                             .arg(kMovementClassKeys[movement_->currentIndex()])
                             .arg(kAnimStateKeys[item->row()])
                             .arg(kKeys[item->column()]);
    emit fieldEdited(path, item->text().trimmed());
}

void GameObjectPage::FillBatteries() {
    const BatteryBlock* blocks[kPageBatteries] = {};
    const std::array<std::string, kBatteryGunPoints>* weapons[kPageBatteries] = {};
    if (const auto* g = page_ ? RecordAs<GenericRecord>(page_->Record()) : nullptr) {
        for (int b = 0; b < kPageBatteries; ++b) {
            blocks[b] = &g->Batteries[static_cast<std::size_t>(b)];
            weapons[b] = &g->Weapons[static_cast<std::size_t>(b)];
        }
    } else if (const auto* s = page_ ? RecordAs<ShipRecord>(page_->Record()) : nullptr) {
        for (int b = 0; b < kPageBatteries; ++b) {
            blocks[b] = &s->Weapons[static_cast<std::size_t>(b)].Battery;
            weapons[b] = &s->Weapons[static_cast<std::size_t>(b)].Weapons;
        }
    }
    batteries_->setRowCount(0);
    const int modelBatteries = static_cast<int>(model_->Batteries.size());
    for (int b = 0; blocks[0] != nullptr && b < kPageBatteries; ++b) {
        const QString weaponText = WeaponText(*weapons[b]);
        bool fires = !weaponText.isEmpty();
        for (const FiringMask& f : blocks[b]->Masks)
            fires = fires || f.Mask != 0;
        if (!fires && b >= modelBatteries) continue;
        const std::size_t guns =
            b < modelBatteries ? model_->Batteries[static_cast<std::size_t>(b)].GunPoints.size()
                               : 0;
        QString why;
        if (fires && b >= modelBatteries) {
            why = QString("The model has %1 weapon batteries.").arg(modelBatteries);
        } else {
            for (int k = 0; k < kBatteryMasks && why.isEmpty(); ++k) {
                const int g =
                    FirstMissingGunPoint(blocks[b]->Masks[static_cast<std::size_t>(k)].Mask, guns);
                if (g >= 0) {
                    why = QString("Firing mask %1 fires gun point %2; the model's battery has %3.")
                              .arg(k)
                              .arg(g)
                              .arg(guns);
                }
            }
        }
        const int row = batteries_->rowCount();
        batteries_->insertRow(row);
        QString modelText = "none in the model";
        if (b < modelBatteries) {
            QStringList points;
            for (std::int32_t p : model_->Batteries[static_cast<std::size_t>(b)].GunPoints)
                points << QString::number(p);
            modelText = QString("%1 (GPNT %2)").arg(guns).arg(points.join(", "));
        }
        QTableWidgetItem* cells[4] = {Cell(QString::number(b), false), Cell(weaponText, false),
                                      Cell(fires ? MaskText(*blocks[b]) : QString(), false),
                                      Cell(modelText, false)};
        for (int col = 0; col < 4; ++col) {
            if (!why.isEmpty()) Mark(cells[col], why);
            batteries_->setItem(row, col, cells[col]);
        }
        if (!why.isEmpty()) cells[2]->setText(cells[2]->text() + " (gun point missing)");
    }
    batteries_->resizeColumnsToContents();
}

bool GameObjectPage::AnimationMarked(int state) const {
    const QTableWidgetItem* item = animation_->item(state, 0);
    return item != nullptr && item->data(Qt::UserRole).toBool();
}

bool GameObjectPage::BatteryMarked(int row) const {
    const QTableWidgetItem* item = batteries_->item(row, 0);
    return item != nullptr && item->data(Qt::UserRole).toBool();
}

}  // namespace mw
