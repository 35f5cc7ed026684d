#include "editor/panels/textures_panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include "editor/document.h"
#include "editor/file_text.h"
#include "editor/model_textures.h"
#include "editor/panels/panel_widgets.h"
#include "editor/panels/texture_preview.h"
#include "editor/widgets/value_label.h"

namespace mw {
QString TextureListEntry(const std::string& gameName, const std::string& fileName,
                         bool looseImage) {
    const std::string& shown = !gameName.empty() ? gameName : fileName;
    if (shown.empty()) return {};
    const bool resolved = !gameName.empty() && !fileName.empty();
    const QString mark = looseImage ? QString("+") : resolved ? QString() : QString("*");
    return mark + FromFileText(shown);
}

TexturesPanel::TexturesPanel(Document& doc, const ModelTextures& textures, bool withPicture,
                             QWidget* parent)
    : QWidget(parent), doc_(doc), textures_(textures) {
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
        SetValueCaption(lblTexName_[i], lblTexName_[i]->accessibleName());
    }
    lblTextureSize_ = new QLabel(general);
    lblTextureSize_->setObjectName("lblTextureSize");
    AddRow(grid, 3, "Size WxH:", lblTextureSize_);
    SetValueCaption(lblTextureSize_, lblTextureSize_->accessibleName());
    if (withPicture) {
        picTexture_ = new TexturePreview(textures_, general);
        picTexture_->setFixedSize(144, 144);
        grid->addWidget(picTexture_, 4, 0, 1, 2, Qt::AlignHCenter);
    }
    layout->addWidget(general);
    layout->addStretch(1);

    connect(lstTextures_, &QListWidget::currentRowChanged, this,
            &TexturesPanel::ShowSelectedTexture);
    connect(lstTextures_, &QListWidget::itemClicked, this, &TexturesPanel::ShowSelectedTexture);
    connect(&textures_, &ModelTextures::texturesChanged, this, [this] {
        if (isVisible()) PopulateTextureList();
    });
}

void TexturesPanel::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    PopulateTextureList();
}

void TexturesPanel::PopulateTextureList() {
    {
        const QSignalBlocker block(lstTextures_);
        const int row = lstTextures_->currentRow();
        lstTextures_->clear();
        const auto& names = textures_.loaded().Names;
        for (std::size_t t = 0; t < names.size(); ++t) {
            lstTextures_->addItem(TextureListEntry(names[t].GameName, names[t].FileName,
                                                   textures_.FromLooseImage(static_cast<int>(t))));
        }
        if (row < lstTextures_->count()) lstTextures_->setCurrentRow(row);
    }
    ShowSelectedTexture();
}

void TexturesPanel::ShowSelectedTexture() {
    const int t = lstTextures_->currentRow();
    ShowValue(lblTexName_[0], textures_.GameName(t));
    ShowValue(lblTexName_[1], textures_.ImageName(t));
    ShowValue(lblTextureSize_, textures_.SizeText(t));
    if (picTexture_ != nullptr) picTexture_->SetTexture(doc_.modelReady() ? t : -1);
}

}  // namespace mw
