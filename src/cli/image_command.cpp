#include <QImage>
#include <ostream>

#include "cli/cli.h"
#include "cli/json_writer.h"
#include "gamedata/file_names.h"
#include "gamedata/ogf.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kImageUsage =
    "Usage: meshwright-cli image SOURCE [--frame K] [--png OUT] [--json]\n"
    "       meshwright-cli image encode|encode-animation ... (see image encode --help)\n"
    "Decodes an OGF or OAF image. SOURCE is a loose .ogf/.oaf file or ARCHIVE:ENTRY.\n"
    "--png writes the decoded image (frame K of an animation, from 0) as PNG.\n";

bool WritePng(const std::uint32_t* pixels, int width, int height, const std::string& path) {
    // Pixels hold red, green, blue and alpha bytes in that order in memory.
    QImage image(reinterpret_cast<const uchar*>(pixels), width, height, width * 4,
                 QImage::Format_RGBA8888);
    return image.save(QString::fromStdString(path), "PNG");
}

}  // namespace

int ImageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (!args.empty() && (args[0] == "encode" || args[0] == "encode-animation"))
        return EncodeImageCommand(args, out, err);
    if (WantsHelp(args)) {
        out << kImageUsage;
        return 0;
    }
    std::string source, png;
    int frame = 0;
    bool json = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--json") {
            json = true;
        } else if (args[i] == "--png" && i + 1 < args.size()) {
            png = args[++i];
        } else if (args[i] == "--frame" && i + 1 < args.size()) {
            if (!ParseInt(args[++i], frame) || frame < 0) {
                err << kImageUsage;
                return kExitUsage;
            }
        } else if (!args[i].starts_with("--") && source.empty()) {
            source = args[i];
        } else {
            err << kImageUsage;
            return kExitUsage;
        }
    }
    if (source.empty()) {
        err << kImageUsage;
        return kExitUsage;
    }

    std::vector<std::uint8_t> bytes;
    std::string name = source;
    std::error_code ec;
    const auto colon = source.rfind(':');
    if (std::filesystem::is_regular_file(source, ec) || colon == std::string::npos) {
        auto file = ReadFileBytes(source);
        if (!file) {
            err << "Cannot open " << source << "\n";
            return kExitNoInput;
        }
        bytes = std::move(*file);
    } else {
        name = source.substr(colon + 1);
        if (const int status = ExtractHogEntry(source.substr(0, colon), name, bytes, err)) {
            return status;
        }
    }

    clsOGF ogf;
    ByteReader r(bytes);
    TextureSlot slot;
    FrameStore store;
    const bool animation = ContainsIgnoringCase(name, ".oaf");
    const OgfStatus status = animation ? ogf.ReadOAF(r, slot, store) : ogf.ReadOGF(r);
    const int frames = animation ? slot.FrameCount : 1;
    if (status != OgfStatus::Ok && (!animation || store.Pixels.empty())) {
        err << "Cannot decode " << source << " (status " << static_cast<int>(status) << ")\n";
        return static_cast<int>(status);
    }
    if (frame >= frames) {
        err << source << " has " << frames << " frame(s)\n";
        return kExitUsage;
    }
    // The frame asked for, from the frame store for an animation.
    const int width = animation ? slot.Width : ogf.Image.Width;
    const int height = animation ? slot.Height : ogf.Image.Height;
    const std::uint32_t* pixels =
        animation ? store.Pixels.data() + slot.FrameBase +
                        static_cast<std::size_t>(frame) * static_cast<std::size_t>(slot.PixelCount)
                  : ogf.Image.Pixels.data();

    if (!png.empty() && !WritePng(pixels, width, height, png)) {
        err << "Error writing " << png << "\n";
        return kExitCantCreate;
    }
    const DecodedImage& image = ogf.Image;
    if (json) {
        JsonWriter j;
        j.beginObject().field("type", static_cast<int>(image.Type)).field("width", width);
        j.field("height", height).field("depth", static_cast<int>(image.Depth));
        j.field("mip_count", static_cast<int>(image.MipCount));
        j.field("has_alpha", animation ? slot.HasAlpha : image.HasAlpha);
        j.field("frames", frames).field("name", Utf8From1252(image.Name)).endObject();
        out << j.str() << "\n";
    } else {
        out << Utf8From1252(image.Name) << ": type " << static_cast<int>(image.Type) << ", "
            << width << " x " << height << ", depth " << static_cast<int>(image.Depth) << ", "
            << static_cast<int>(image.MipCount) << " mip level(s), " << frames << " frame(s)"
            << ((animation ? slot.HasAlpha : image.HasAlpha) ? ", with alpha" : "") << "\n";
    }
    if (status != OgfStatus::Ok) {
        err << "Frame " << frames << " of " << source << " is damaged (status "
            << static_cast<int>(status) << ")\n";
    }
    return 0;
}

}  // namespace mw
