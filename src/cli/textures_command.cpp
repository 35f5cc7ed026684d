#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "cli/json_writer.h"
#include "convert/texture_images.h"
#include "gamedata/texture_loader.h"
#include "model/properties.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kTexturesHead =
    "Usage: meshwright-cli textures MODEL [--json] [game data]\n"
    "Resolves the model's textures through the game data as the editor does: a loose image\n"
    "in the OGF folder, then the mission archive (or loose .gam table), Extra13.hog and\n"
    "d3.hog. \"source\" is loose, mission, extra13.hog, d3.hog or missing.\n";

// Keeps what the loader uploads: only the sizes matter here.
class CountingUploader : public TextureUploader {
  public:
    void AllocModelTextures(int count) override {
        uploads.assign(static_cast<std::size_t>(count), {});
    }
    void UploadModelTexture(int texture, int width, int height, const std::uint32_t*) override {
        uploads[static_cast<std::size_t>(texture)] = {width, height};
    }
    std::vector<std::pair<int, int>> uploads;
};

}  // namespace

int TexturesCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kTexturesHead << kGameDataUsage;
        return 0;
    }
    std::string model;
    GameDataOptions gameData;
    bool json = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--json") {
            json = true;
        } else if (TakeGameDataOption(args, i, gameData)) {
        } else if (!a.starts_with("-") && model.empty()) {
            model = a;
        } else {
            err << kTexturesHead << kGameDataUsage;
            return kExitUsage;
        }
    }
    if (model.empty()) {
        err << kTexturesHead << kGameDataUsage;
        return kExitUsage;
    }

    Settings settings;
    if (const int status = ResolveGameData(gameData, settings, err)) return status;

    ModelData data;
    if (const int status = LoadModelFile(model, data, err)) return status;
    GameData game;
    ReadGameData(settings, game, err);
    CountingUploader uploader;
    LoadedTextures loaded;
    LoadModelTextures(data, model, game, settings, MakeMissingTexture(1), uploader, loaded,
                      DecodePictureFile);

    JsonWriter j;
    j.beginObject().field("object_kind", static_cast<int>(loaded.ObjectKind));
    j.key("textures").beginArray();
    for (std::size_t t = 0; t < data.Textures.size(); ++t) {
        const TextureNames& tex = loaded.Names[t];
        const ResolvedTexture& r = loaded.Resolved[t];
        const TextureSlot& slot = loaded.Slots[t];
        const auto [width, height] = uploader.uploads[t];
        if (!json) {
            out << t << "  " << Utf8From1252(tex.FileName) << "  (" << Utf8From1252(tex.GameName)
                << ")  " << TextureSourceName(r.Source) << " " << r.Path << "  " << width << " x "
                << height
                << (slot.FrameCount > 0 ? "  " + std::to_string(slot.FrameCount) + " frames of " +
                                              PlainNumber(slot.FrameTime) + " s"
                                        : "")
                << (slot.HasAlpha ? "  alpha" : "") << (r.Decoded ? "" : "  placeholder") << "\n";
            continue;
        }
        j.beginObject().field("name", Utf8From1252(tex.FileName));
        j.field("game_name", Utf8From1252(tex.GameName));
        j.field("source", TextureSourceName(r.Source)).field("path", Utf8From1252(r.Path));
        j.field("decoded", r.Decoded).field("status", static_cast<int>(r.Status));
        j.field("width", width).field("height", height).field("frames", slot.FrameCount);
        // The game shows each frame for the page's speed divided by the frame count.
        j.field("frame_time", slot.FrameCount > 0 ? slot.FrameTime : 0.0f);
        j.field("has_alpha", slot.HasAlpha);
        j.field("gam_flags", static_cast<std::int64_t>(slot.Gam.GamFlags));
        j.field("anim_time", slot.Gam.AnimationTime()).field("slide_u", slot.Gam.SlideTimeU());
        j.field("slide_v", slot.Gam.SlideTimeV()).endObject();
    }
    j.endArray().endObject();
    if (json) out << j.str() << "\n";
    return 0;
}

}  // namespace mw
