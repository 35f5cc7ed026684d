// The textures of the open model, resolved against the game data and decoded, beside the
// document: what the tables made of each texture (game name, image file, properties), where
// its image came from, and its pixels. Views upload from here and say nothing back; the
// model's own texture names are never changed by a lookup.
#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <vector>

#include "gamedata/ogf_writer.h"
#include "gamedata/texture_loader.h"

namespace mw {

class Document;
class Prompts;

class ModelTextures : public QObject {
    Q_OBJECT
  public:
    // `prompts` (may be null) hears that the glow texture was not found.
    ModelTextures(Document& doc, GameData& game, const Settings& settings,
                  Prompts* prompts = nullptr, QObject* parent = nullptr);

    const LoadedTextures& loaded() const { return loaded_; }
    // Each texture's first picture (the placeholder where the game data had none), as the
    // exporter and the image writers take them.
    const std::vector<RgbaImage>& pictures() const { return pictures_; }
    const RgbaImage* picture(int t) const;
    const RgbaImage& glow() const { return glow_; }
    int count() const { return static_cast<int>(pictures_.size()); }

    // The names the textures panel shows for texture t: the game name (else the model's own
    // name), the image file, and "WxH" when the image was decoded.
    QString GameName(int t) const;
    QString ImageName(int t) const;
    QString SizeText(int t) const;

    // True when the loader found texture t as a loose image (beside the model, or in the
    // folder of loose images) rather than in the game data: a package would bring it.
    bool FromLooseImage(int t) const;

    // Hands every picture to an uploader (a view's renderer) as the loader would.
    void UploadTo(TextureUploader& uploader) const;

    // Resolves and decodes the model's textures again (after a load, or when the game data
    // changed) and says so.
    void Reload();
    // Decodes the glow sprites' texture ("thrustball", or a made one) and says so.
    void LoadGlow();

  signals:
    void texturesChanged();
    void glowChanged();

  private:
    void connectSignals();

    Document& doc_;
    GameData& game_;
    const Settings& settings_;
    Prompts* prompts_;
    std::vector<std::uint32_t> missing_;
    LoadedTextures loaded_;
    std::vector<RgbaImage> pictures_;
    RgbaImage glow_;
};

}  // namespace mw
