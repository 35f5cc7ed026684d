// The textures panel ("Textures"): the model's textures as the game data resolved them, the
// selected one's image name and size, and its picture. It edits nothing.
#pragma once

#include <QWidget>

class QLabel;
class QListWidget;
class QVBoxLayout;

namespace mw {

class Document;
class Prompts;
class TexturePreview;
class Viewport;
struct GameData;
struct Settings;

class TexturesPanel : public QWidget {
    Q_OBJECT
  public:
    TexturesPanel(Document& doc, GameData& game, const Settings& settings,
                  QWidget* parent = nullptr);

    // Adds the picture, drawn with the viewport's textures (needs an OpenGL display).
    void AttachViewport(Viewport& viewport, Prompts& prompts);
    TexturePreview* preview() const { return picTexture_; }

    void PopulateTextureList();
    // The list's click handler: shows the selected texture's names, size and picture.
    void ShowSelectedTexture();

  private:
    Document& doc_;
    GameData& game_;
    const Settings& settings_;
    QListWidget* lstTextures_ = nullptr;
    QLabel* lblTexName_[2]{};
    QLabel* lblTextureSize_ = nullptr;
    QVBoxLayout* pictureLayout_ = nullptr;
    TexturePreview* picTexture_ = nullptr;
};

// The list entry of a texture: its game name, else its file name, marked "*" unless both
// names are known; empty when it has neither.
QString TextureListEntry(const std::string& gameName, const std::string& fileName);

}  // namespace mw
