#include "editor/panels/textures_panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>
#include <filesystem>

#include "editor/document.h"
#include "editor/file_text.h"
#include "editor/panels/panel_widgets.h"
#include "editor/panels/texture_preview.h"
#include "editor/viewport.h"
#include "gamedata/texture_loader.h"

namespace mw {
QString TextureListEntry(const std::string& gameName, const std::string& fileName) {
    const std::string& shown = !gameName.empty() ? gameName : fileName;
    if (shown.empty()) return {};
    const bool resolved = !gameName.empty() && !fileName.empty();
    return (resolved ? QString() : QString("*")) + FromFileText(shown);
}

TexturesPanel::TexturesPanel(Document& doc, GameData& game, const Settings& settings,
                             QWidget* parent)
    : QWidget(parent), doc_(doc), game_(game), settings_(settings) {
    setObjectName("fraTextures");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeHeading(this, "Texture Viewer"));
    auto* general = new QGroupBox("General", this);
    auto* grid = new QGridLayout(general);
    lstTextures_ = new QListWidget(general);
    lstTextures_->setObjectName("lstTextures");
    lstTextures_->setAccessibleName("Textures");
    lstTextures_->setMinimumHeight(100);
    lstTextures_->setMaximumHeight(100);
    grid->addWidget(lstTextures_, 0, 0, 1, 2);
    const char* const captions[2] = {"Texture Name:", "Image Name:"};
    for (int i = 0; i < 2; ++i) {
        lblTexName_[i] = new QLabel(general);
        lblTexName_[i]->setObjectName(QString("lblTexName_%1").arg(i));
        lblTexName_[i]->setTextInteractionFlags(Qt::TextSelectableByMouse);
        AddRow(grid, 1 + i, captions[i], lblTexName_[i]);
    }
    lblTextureSize_ = new QLabel(general);
    lblTextureSize_->setObjectName("lblTextureSize");
    AddRow(grid, 3, "Size WxH:", lblTextureSize_);
    pictureLayout_ = new QVBoxLayout;
    grid->addLayout(pictureLayout_, 4, 0, 1, 2);
    layout->addWidget(general);
    layout->addStretch(1);

    connect(lstTextures_, &QListWidget::currentRowChanged, this,
            &TexturesPanel::ShowSelectedTexture);
    connect(lstTextures_, &QListWidget::itemClicked, this, &TexturesPanel::ShowSelectedTexture);
    connect(&doc_, &Document::modelReset, this, &TexturesPanel::PopulateTextureList);
}

void TexturesPanel::AttachViewport(Viewport& viewport, Prompts& prompts) {
    if (picTexture_ != nullptr) return;
    picTexture_ = new TexturePreview(viewport, prompts, this);
    picTexture_->setFixedSize(144, 144);
    pictureLayout_->addWidget(picTexture_, 0, Qt::AlignHCenter);
    // Game names are known once the viewport has resolved the textures.
    connect(&viewport, &Viewport::texturesLoaded, this, &TexturesPanel::PopulateTextureList);
}

void TexturesPanel::PopulateTextureList() {
    {
        const QSignalBlocker block(lstTextures_);
        lstTextures_->clear();
        for (const Texture& tex : doc_.model().Textures)
            lstTextures_->addItem(TextureListEntry(tex.GameName, tex.Name));
    }
    ShowSelectedTexture();
}

void TexturesPanel::ShowSelectedTexture() {
    const int t = lstTextures_->currentRow();
    const auto& textures = doc_.model().Textures;
    if (t < 0 || t >= static_cast<int>(textures.size())) {
        for (QLabel* label : {lblTexName_[0], lblTexName_[1], lblTextureSize_})
            label->clear();
        if (picTexture_ != nullptr) picTexture_->SetTexture(-1);
        return;
    }
    const Texture& tex = textures[static_cast<std::size_t>(t)];
    lblTexName_[0]->setText(FromFileText(tex.GameName.empty() ? tex.Name : tex.GameName));
    const TexLookup found = game_.Hog.GetTexIndex(tex.Name, settings_);
    QString image;
    if (found.index == kLooseImageIndex) {
        image = QString::fromStdString(std::filesystem::path(found.path).filename().string());
    } else if (found.index >= 0) {
        const bool animated = !game_.Hog.Textures[static_cast<std::size_t>(found.index)].IsOGF;
        image = FromFileText(tex.Name) + (animated ? ".oaf" : ".ogf");
    } else if (!tex.GameName.empty()) {
        image = FromFileText(tex.GameName) + ".ogf";
    }
    lblTexName_[1]->setText(image);
    QString size;
    if (found.index >= 0) {
        if (const auto decoded = DecodeGameTexture(tex.Name, game_, settings_))
            size = QString("%1x%2").arg(decoded->Width).arg(decoded->Height);
    }
    lblTextureSize_->setText(size);
    if (picTexture_ != nullptr && doc_.modelReady()) picTexture_->SetTexture(t);
}

}  // namespace mw
