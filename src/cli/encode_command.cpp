// meshwright-cli image encode / encode-animation: pictures into the game's OGF and OAF
// images.
#include <charconv>
#include <ostream>

#include "cli/cli.h"
#include "convert/texture_images.h"
#include "gamedata/ogf_writer.h"
#include "model/file_io.h"

namespace mw {
namespace {

constexpr const char* kEncodeUsage =
    "Usage: meshwright-cli image encode IN OUT.ogf [options]\n"
    "       meshwright-cli image encode-animation OUT.oaf FRAME... [options]\n"
    "Encodes pictures (any Qt reads, PNG, BMP, JPEG..., or Targa) as the game's compressed,\n"
    "mip-mapped texture images.\n"
    "  --format auto|1555|4444  pixel format; auto: 4444 when some alpha lies between 0 and\n"
    "                           255, else 1555\n"
    "  --mipmaps N              mip levels (default: as many as the game builds)\n"
    "  --no-mipmaps             the full-size image only\n"
    "  --resize                 scale a side that is no power of two to the nearest one\n"
    "  --frame-time S           seconds each frame of an animation shows (default 0.1)\n";

struct EncodeOptions {
    OgfEncodeOptions ogf;
    bool resize = false;
    float frameTime = 0.1f;
    std::vector<std::string> files;
};

bool ParseFloat(const std::string& text, float& value) {
    const char* end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, value);
    return error == std::errc{} && at == end;
}

bool ParseOptions(const std::vector<std::string>& args, EncodeOptions& o) {
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--format" && hasValue) {
            const std::string& f = args[++i];
            if (f == "auto") {
                o.ogf.Format = OgfFormat::Auto;
            } else if (f == "1555") {
                o.ogf.Format = OgfFormat::F1555;
            } else if (f == "4444") {
                o.ogf.Format = OgfFormat::F4444;
            } else {
                return false;
            }
        } else if (a == "--mipmaps" && hasValue) {
            if (!ParseInt(args[++i], o.ogf.MipLevels) || o.ogf.MipLevels < 1) return false;
        } else if (a == "--no-mipmaps") {
            o.ogf.MipLevels = 1;
        } else if (a == "--resize") {
            o.resize = true;
        } else if (a == "--frame-time" && hasValue) {
            if (!ParseFloat(args[++i], o.frameTime) || !(o.frameTime > 0.0f)) return false;
        } else if (a.starts_with("--")) {
            return false;
        } else {
            o.files.push_back(a);
        }
    }
    return true;
}

// Reads and checks one picture; 0 or the exit status (the reason on `err`).
int LoadPicture(const std::string& path, bool resize, RgbaImage& image, std::ostream& err) {
    std::string error;
    auto read = ReadTextureImage(path, error);
    if (!read) {
        err << error << "\n";
        return kExitNoInput;
    }
    if (read->Width == 0 || read->Height == 0) {
        err << path << " has a side of 0 pixels.\n";
        return kExitRefused;
    }
    if (!IsPowerOfTwo(read->Width) || !IsPowerOfTwo(read->Height)) {
        if (!resize) {
            err << path << " is " << read->Width << "x" << read->Height
                << ": the game needs each side a power of two (2, 4, ... 256). --resize scales it "
                   "to the nearest.\n";
            return kExitRefused;
        }
        *read = ResizeToPowerOfTwo(*read);
    }
    if (read->Width > kLargestSafeTextureSide || read->Height > kLargestSafeTextureSide) {
        err << "Warning: " << path << " is " << read->Width << "x" << read->Height
            << "; the game's renderer is known to fail on textures with a side above "
            << kLargestSafeTextureSide << ".\n";
    }
    image = std::move(*read);
    return 0;
}

// The image name stored in the file: the output's file name.
std::string ImageName(const std::string& out, std::ostream& err) {
    const std::string name = std::filesystem::path(out).filename().string();
    if (name.size() > kOgfNameLength) {
        err << "Warning: the name " << name << " is longer than the " << kOgfNameLength
            << " characters an image's name field holds; it is cut.\n";
    }
    return name;
}

int Write(const std::string& out, const std::vector<std::uint8_t>& bytes, std::ostream& err) {
    const std::string failure = WriteFileReplacing(out, bytes);
    if (!failure.empty()) {
        err << failure << "\n";
        return kExitCantCreate;
    }
    return 0;
}

}  // namespace

int EncodeImageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kEncodeUsage;
        return 0;
    }
    EncodeOptions o;
    const bool animation = !args.empty() && args[0] == "encode-animation";
    if (!ParseOptions(args, o) || o.files.size() < 2 || (!animation && o.files.size() != 2)) {
        err << kEncodeUsage;
        return kExitUsage;
    }
    const std::string& target = animation ? o.files[0] : o.files[1];
    o.ogf.Name = ImageName(target, err);
    if (!animation) {
        RgbaImage image;
        if (const int status = LoadPicture(o.files[0], o.resize, image, err)) return status;
        return Write(target, EncodeOGF(image, o.ogf), err);
    }
    std::vector<RgbaImage> frames;
    for (std::size_t i = 1; i < o.files.size(); ++i) {
        RgbaImage frame;
        if (const int status = LoadPicture(o.files[i], o.resize, frame, err)) return status;
        if (!frames.empty() &&
            (frame.Width != frames[0].Width || frame.Height != frames[0].Height)) {
            err << o.files[i] << " is " << frame.Width << "x" << frame.Height
                << "; every frame must be " << frames[0].Width << "x" << frames[0].Height
                << " like the first.\n";
            return kExitRefused;
        }
        frames.push_back(std::move(frame));
    }
    if (frames.size() > 255) {
        err << "An animation holds at most 255 frames.\n";
        return kExitRefused;
    }
    return Write(target, EncodeOAF(frames, o.ogf, o.frameTime), err);
}

}  // namespace mw
