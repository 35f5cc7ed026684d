#include "editor/model_textures.h"

#include <filesystem>
#include <random>

#include "convert/texture_images.h"
#include "editor/document.h"
#include "editor/file_text.h"
#include "editor/prompts.h"
#include "gamedata/file_names.h"

namespace mw {
namespace {

// Keeps what the loader decodes instead of sending it to a GPU.
class PictureStore : public TextureUploader {
  public:
    explicit PictureStore(std::vector<RgbaImage>& pictures) : pictures_(pictures) {}
    void AllocModelTextures(int count) override {
        pictures_.assign(static_cast<std::size_t>(count), RgbaImage{});
    }
    void UploadModelTexture(int texture, int width, int height,
                            const std::uint32_t* pixels) override {
        if (texture < 0 || static_cast<std::size_t>(texture) >= pictures_.size()) return;
        const auto n = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        pictures_[static_cast<std::size_t>(texture)] = {width, height, {pixels, pixels + n}};
    }

  private:
    std::vector<RgbaImage>& pictures_;
};

RgbaImage PictureOf(DecodedImage image) {
    return {image.Width, image.Height, std::move(image.Pixels)};
}

}  // namespace

ModelTextures::ModelTextures(Document& doc, GameData& game, const Settings& settings,
                             Prompts* prompts, QObject* parent)
    : QObject(parent),
      doc_(doc),
      game_(game),
      settings_(settings),
      prompts_(prompts),
      missing_(MakeMissingTexture(std::random_device{}())),
      glow_(PictureOf(GeneratedGlowImage())) {
    setObjectName("modelTextures");
    connectSignals();
}

void ModelTextures::connectSignals() {
    connect(&doc_, &Document::modelReset, this, &ModelTextures::Reload);
    // An edit that changes the texture list needs the list resolved again.
    connect(&doc_, &Document::structureChanged, this, [this] {
        if (loaded_.Names.size() != doc_.model().Textures.size()) Reload();
    });
}

const RgbaImage* ModelTextures::picture(int t) const {
    if (t < 0 || t >= count()) return nullptr;
    return &pictures_[static_cast<std::size_t>(t)];
}

QString ModelTextures::GameName(int t) const {
    if (t < 0 || static_cast<std::size_t>(t) >= loaded_.Names.size()) return {};
    const TextureNames& names = loaded_.Names[static_cast<std::size_t>(t)];
    return FromFileText(names.GameName.empty() ? names.FileName : names.GameName);
}

QString ModelTextures::ImageName(int t) const {
    if (t < 0 || static_cast<std::size_t>(t) >= loaded_.Names.size()) return {};
    const auto ti = static_cast<std::size_t>(t);
    const TextureNames& names = loaded_.Names[ti];
    const ResolvedTexture& resolved = loaded_.Resolved[ti];
    switch (resolved.Source) {
        case TextureSource::Loose:
            return QString::fromStdString(std::filesystem::path(resolved.Path).filename().string());
        case TextureSource::Missing:
            return names.GameName.empty() ? QString() : FromFileText(names.GameName) + ".ogf";
        default:
            return FromFileText(names.FileName) +
                   (ContainsIgnoringCase(resolved.Path, ".oaf") ? ".oaf" : ".ogf");
    }
}

QString ModelTextures::SizeText(int t) const {
    if (t < 0 || static_cast<std::size_t>(t) >= loaded_.Resolved.size()) return {};
    if (!loaded_.Resolved[static_cast<std::size_t>(t)].Decoded) return {};
    const RgbaImage& p = pictures_[static_cast<std::size_t>(t)];
    return QString("%1x%2").arg(p.Width).arg(p.Height);
}

void ModelTextures::UploadTo(TextureUploader& uploader) const {
    uploader.AllocModelTextures(count());
    for (int t = 0; t < count(); ++t) {
        const RgbaImage& p = pictures_[static_cast<std::size_t>(t)];
        uploader.UploadModelTexture(t, p.Width, p.Height, p.Pixels.data());
    }
}

bool ModelTextures::FromLooseImage(int t) const {
    return t >= 0 && static_cast<std::size_t>(t) < loaded_.Resolved.size() &&
           loaded_.Resolved[static_cast<std::size_t>(t)].Source == TextureSource::Loose;
}

void ModelTextures::Reload() {
    PictureStore store(pictures_);
    pictures_.clear();
    const std::string path = doc_.ModelPath().toStdString();
    LoadModelTextures(doc_.model(), path, game_, settings_, missing_, store, loaded_,
                      DecodePictureFile);
    emit texturesChanged();
}

void ModelTextures::LoadGlow() {
    std::optional<DecodedImage> glow = DecodeGameTexture("thrustball", game_, settings_);
    if (!glow) {
        if (prompts_ != nullptr) {
            prompts_->Message(nullptr,
                              "Glow Texture-thrustball.ogf not found. Creating similar texture.",
                              PromptIcon::None);
        }
        glow = GeneratedGlowImage();
    }
    glow_ = PictureOf(std::move(*glow));
    emit glowChanged();
}

}  // namespace mw
