#include "convert/gltf_material_writer.h"

#include <QBuffer>
#include <QImage>
#include <algorithm>
#include <bit>
#include <cstdio>
#include <set>

#include "convert/gltf_common.h"
#include "model/text_codec.h"

namespace mw {

using nlohmann::json;
using namespace gltf;

namespace {

// More face colours than this in one model are written as vertex colours.
constexpr std::size_t kMaxColourMaterials = 16;

std::vector<std::uint8_t> EncodePng(const RgbaImage& image) {
    const QImage picture(reinterpret_cast<const uchar*>(image.Pixels.data()), image.Width,
                         image.Height, image.Width * 4, QImage::Format_RGBA8888);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return {bytes.begin(), bytes.end()};
}

bool HasTranslucency(const RgbaImage& image) {
    return std::any_of(image.Pixels.begin(), image.Pixels.end(),
                       [](std::uint32_t p) { return (p >> 24) != 255; });
}

// A file name for a picture beside a .gltf: the texture's name, plain characters only.
std::string PictureFileName(const std::string& texture, int index) {
    std::string name;
    for (const char c : Utf8From1252(texture)) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '_' || c == '-';
        name += plain ? c : '_';
    }
    if (name.empty()) name = "texture" + std::to_string(index);
    return name + ".png";
}

}  // namespace

void MaterialWriter::Write() {
    json& doc = doc_;
    for (std::size_t t = 0; t < m_.Textures.size(); ++t) {
        const std::string& name = m_.Textures[t].Name;
        json material{{"name", Utf8From1252(name)}};
        material["extras"]["d3_texture"] = Utf8From1252(name);
        json pbr{{"metallicFactor", 0.0}, {"roughnessFactor", 1.0}};
        if (t < pictures_.size() && pictures_[t] && pictures_[t]->Width > 0) {
            pbr["baseColorTexture"] = {{"index", Picture(static_cast<int>(t))}};
            if (HasTranslucency(*pictures_[t])) material["alphaMode"] = "BLEND";
        }
        material["pbrMetallicRoughness"] = std::move(pbr);
        doc["materials"].push_back(std::move(material));
    }
    UntexturedColours();
}

// A texture (and its image and sampler) for model texture t; returns its index.
int MaterialWriter::Picture(int t) {
    json& doc = doc_;
    if (!doc.contains("samplers")) {
        doc["samplers"] = json::array({{{"magFilter", 9729}, {"minFilter", 9987}}});
        doc["images"] = json::array();
        doc["textures"] = json::array();
    }
    const RgbaImage& image = *pictures_[static_cast<std::size_t>(t)];
    std::vector<std::uint8_t> png = EncodePng(image);
    json entry{{"name", Utf8From1252(m_.Textures[static_cast<std::size_t>(t)].Name)}};
    if (embed_) {
        entry["bufferView"] = buffers_.View(png, std::nullopt);
        entry["mimeType"] = "image/png";
    } else {
        std::string file = PictureFileName(m_.Textures[static_cast<std::size_t>(t)].Name, t);
        for (const auto& [other, bytes] : pictures_out_) {
            if (other == file) file = std::to_string(t) + "_" + file;
        }
        entry["uri"] = file;
        pictures_out_.emplace_back(file, std::move(png));
    }
    doc["images"].push_back(std::move(entry));
    doc["textures"].push_back(
        {{"sampler", 0}, {"source", static_cast<int>(doc["images"].size()) - 1}});
    return static_cast<int>(doc["textures"].size()) - 1;
}

// Untextured faces get a material of their colour, unless the model has so many colours
// that a primitive per colour and sub-object would swamp viewers (and the file): then one
// material with the colours as vertex colours.
void MaterialWriter::UntexturedColours() {
    std::set<std::uint32_t> colours;
    for (const SubObject& sub : m_.SubObjects) {
        for (const Face& f : sub.Faces) {
            if (f.TextureIndex < 0 || f.TextureIndex >= static_cast<int>(m_.Textures.size()))
                colours.insert(std::bit_cast<std::uint32_t>(f.Color) & 0xffffffu);
        }
    }
    vertexColours_ = colours.size() > kMaxColourMaterials;
}

int MaterialWriter::UntexturedMaterial() {
    if (untextured_ < 0) {
        json& materials = doc_["materials"];
        materials.push_back(
            {{"name", "untextured"},
             {"pbrMetallicRoughness", {{"metallicFactor", 0.0}, {"roughnessFactor", 1.0}}},
             {"extras", {{"d3_untextured", true}}}});
        untextured_ = static_cast<int>(materials.size()) - 1;
    }
    return untextured_;
}

// The material of an untextured face: one per colour.
int MaterialWriter::ColourMaterial(const std::array<std::uint8_t, 4>& colour) {
    const std::uint32_t key = std::bit_cast<std::uint32_t>(colour);
    if (const auto found = colours_.find(key); found != colours_.end()) return found->second;
    char name[24];
    std::snprintf(name, sizeof name, "colour_%02x%02x%02x", colour[0], colour[1], colour[2]);
    json factor = json::array();
    for (int c = 0; c < 3; ++c)
        factor.push_back(LinearFromByte(colour[static_cast<std::size_t>(c)]));
    factor.push_back(1.0);
    json& materials = doc_["materials"];
    materials.push_back(
        {{"name", name},
         {"pbrMetallicRoughness",
          {{"baseColorFactor", factor}, {"metallicFactor", 0.0}, {"roughnessFactor", 1.0}}},
         {"extras", {{"d3_untextured", true}}}});
    const int index = static_cast<int>(materials.size()) - 1;
    colours_.emplace(key, index);
    return index;
}

int MaterialWriter::MaterialOf(const Face& face) {
    const int textures = static_cast<int>(m_.Textures.size());
    if (face.TextureIndex >= 0 && face.TextureIndex < textures) return face.TextureIndex;
    return vertexColours_ ? UntexturedMaterial() : ColourMaterial(face.Color);
}

}  // namespace mw
