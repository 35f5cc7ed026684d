// The textures panel ("Textures"): the model's textures as the game data resolved them, the
// selected one's image name and size, and its picture. It edits nothing; it fills itself
// when shown and when the textures change while it shows.
#pragma once

#include <QWidget>

class QLabel;
class QListWidget;
class QVBoxLayout;

namespace mw {

class Document;
class ModelTextures;
class TexturePreview;

class TexturesPanel : public QWidget {
    Q_OBJECT
  public:
    // `withPicture` adds the picture (it needs an OpenGL display).
    TexturesPanel(Document& doc, const ModelTextures& textures, bool withPicture = true,
                  QWidget* parent = nullptr);

    TexturePreview* preview() const { return picTexture_; }

    void PopulateTextureList();
    // The list's click handler: shows the selected texture's names, size and picture.
    void ShowSelectedTexture();

  protected:
    void showEvent(QShowEvent* e) override;

  private:
    Document& doc_;
    const ModelTextures& textures_;
    QListWidget* lstTextures_ = nullptr;
    QLabel* lblTexName_[2]{};
    QLabel* lblTextureSize_ = nullptr;
    TexturePreview* picTexture_ = nullptr;
};

// The list entry of a texture: its game name, else its file name, marked "+" when it would
// come from a loose image, else "*" unless both names are known; empty when it has neither.
QString TextureListEntry(const std::string& gameName, const std::string& fileName,
                         bool looseImage = false);

}  // namespace mw
