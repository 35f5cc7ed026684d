// Writes the seed corpora of the fuzz targets: make_fuzz_seeds DIR (one folder per target).
#include <filesystem>
#include <iostream>
#include <span>
#include <tuple>

#include "convert/gltf_export.h"
#include "convert/orf_writer.h"
#include "gamedata/hog.h"
#include "gamedata/settings.h"
#include "model/file_io.h"
#include "model/oof_writer.h"
#include "sample_gamedata.h"
#include "sample_model.h"

namespace fs = std::filesystem;

namespace {

bool Put(const fs::path& dir, const std::string& name, std::span<const std::uint8_t> bytes) {
    fs::create_directories(dir);
    return mw::WriteFileReplacing(dir / name, bytes).empty();
}

std::vector<std::uint8_t> Text(const std::string& s) {
    return {s.begin(), s.end()};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: make_fuzz_seeds DIR\n";
        return 64;
    }
    const fs::path dir = argv[1];
    bool ok = true;

    mw::ModelData ship = mw::BuildSampleModel();
    ship.Special = mw::SpecialPoint{"$special", "", {1, 2, 3}, 0.5f};
    ok &= Put(dir / "oof", "ship.oof", mw::WriteOOF(ship));
    mw::ModelData small = mw::BuildSampleModel();
    small.MergeTable.resize(1);
    small.Batteries.clear();
    ok &= Put(dir / "oof", "hull.oof", mw::WriteOOF(small));
    ok &= Put(dir / "gltf", "ship.glb", mw::ExportGLB(mw::BuildSampleModel(), {}).bytes());
    ok &= Put(dir / "gltf", "hull.glb", mw::ExportGLB(small, {}).bytes());
    // A file as another program writes it: one triangle under a turned node, an empty
    // named as a gun point, no extras.
    ok &= Put(dir / "gltf", "triangle.gltf",
              Text(R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],)"
                   R"("nodes":[{"name":"Body","mesh":0,"rotation":[0,0.7071,0,0.7071],)"
                   R"("children":[1]},{"name":"Gun_0","translation":[0,0,1]}],)"
                   R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],)"
                   R"("buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,)"
                   R"(AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}],)"
                   R"("bufferViews":[{"buffer":0,"byteLength":36}],)"
                   R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3",)"
                   R"("min":[0,0,0],"max":[1,1,0]}]})"));

    for (bool points : {false, true}) {
        std::vector<int> slots;
        for (int s = 0; s < ship.SubObjectCount(); ++s)
            slots.push_back(s);
        std::vector<std::uint8_t> room;
        ok &= mw::BuildORF(ship, slots, {true, points, 1.0f}, room).empty();
        ok &= Put(dir / "orf", points ? "points.orf" : "ship.orf", room);
    }

    const auto archive = mw::BuildSampleArchive();
    ok &= Put(dir / "hog", "d3.hog", archive);
    std::vector<mw::HogDirectoryEntry> entries;
    mw::ReadHogEntries(archive, entries);
    for (const auto& e : entries) {
        const std::vector<std::uint8_t> file(
            archive.begin() + static_cast<std::ptrdiff_t>(e.Offset),
            archive.begin() + static_cast<std::ptrdiff_t>(e.Offset + e.Length));
        const std::string kind = mw::HogEntryKind(e.Name);
        const char* target = kind == "texture" ? "ogf" : kind == "animation" ? "oaf" : "gam";
        ok &= Put(dir / target, e.Name, file);
    }
    // Tables with every page kind, old versions and a procedural texture, for the page fuzzer.
    mw::GamWriter pages;
    for (int v : {4, 6, 7})
        pages.oldTexture("Lava", "lava.ogf", v, v >= 6 ? 1 : 0);
    pages.sound("Laser Fire", "laser.wav").door("Door", "door.oof", 2).door("Door3", "d.oof");
    pages.object(mw::ObjectPage("Robot", {"r.oof", "", ""}, 0, 19));
    pages.object(mw::ObjectPage("Shield", {"s.oof", "", ""}, 0, 27, 7));
    pages.ship("Pyro-GL", "pyro.oof", 5).weapon("Laser", "laser.oof", 0, 6).otherPage(8, 12);
    ok &= Put(dir / "pages", "every.gam", pages.bytes());
    for (const auto& e : entries) {
        if (std::string_view(mw::HogEntryKind(e.Name)) != "table") continue;
        const std::vector<std::uint8_t> table(
            archive.begin() + static_cast<std::ptrdiff_t>(e.Offset),
            archive.begin() + static_cast<std::ptrdiff_t>(e.Offset + e.Length));
        ok &= Put(dir / "pages", e.Name, table);
    }
    const mw::RgbaImage picture{
        4,
        3,
        {0xFF0000FFu, 0xFF00FF00u, 0x80FF0000u, 0x00000000u, 0xFF0000FFu, 0xFF0000FFu, 0xFF0000FFu,
         0xFFFFFFFFu, 0x12345678u, 0x12345678u, 0x9ABCDEF0u, 0xFF000000u}};
    for (std::uint8_t type : {2, 10, 121, 122, 123, 124, 127}) {
        for (std::uint8_t depth : {24, 32}) {
            if (type >= 121 && depth == 24) continue;
            ok &=
                Put(dir / "ogf", "t" + std::to_string(type) + "_" + std::to_string(depth) + ".ogf",
                    mw::WriteOGF(picture, {type, depth, type == 2, 2, "seed", 1}));
        }
    }
    ok &= Put(dir / "oaf", "old_header.oaf",
              mw::WriteOAF({picture, picture, picture}, {122, 32, true, 1, "f", 0}, false));

    // Targa pictures: true-colour bottom-up with alpha, and run-length top-down.
    for (const auto& [name, type, descriptor] :
         {std::tuple{"plain.tga", std::uint8_t{2}, std::uint8_t{8}},
          std::tuple{"runs.tga", std::uint8_t{10}, std::uint8_t{0x28}}}) {
        std::vector<std::uint8_t> tga{0, 0, type, 0, 0, 0, 0, 0,  0,
                                      0, 0, 0,    4, 0, 3, 0, 32, descriptor};
        for (std::uint32_t p : picture.Pixels) {
            if (type == 10) tga.push_back(0);  // a raw packet of one pixel
            for (int shift : {16, 8, 0, 24})
                tga.push_back(static_cast<std::uint8_t>(p >> shift));
        }
        ok &= Put(dir / "targa", name, tga);
    }

    // Edits: a model (its length first), then operations. One seed runs every operation once
    // on the sample, others a few on smaller models.
    const auto editSeed = [&](const std::string& name, const mw::ModelData& model,
                              const std::vector<std::uint8_t>& operations) {
        mw::ModelData copy = model;
        const auto bytes = mw::WriteOOF(copy);
        std::vector<std::uint8_t> seed(4);
        const auto length = static_cast<std::uint32_t>(bytes.size());
        for (int i = 0; i < 4; ++i)
            seed[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(length >> (8 * i));
        seed.insert(seed.end(), bytes.begin(), bytes.end());
        seed.insert(seed.end(), operations.begin(), operations.end());
        ok &= Put(dir / "edits", name, seed);
    };
    std::vector<std::uint8_t> everyOperation;
    for (std::uint8_t op = 0; op < 30; ++op) {
        everyOperation.push_back(op);
        for (std::uint8_t arg : {3, 1, 2, 1, 8, 1, 1, 0})
            everyOperation.push_back(arg);
    }
    editSeed("every_operation", ship, everyOperation);
    editSeed("hull_scale_combine", small, {6, 200, 1, 0, 0, 7, 11, 1});
    mw::ModelData stretched = ship;  // stored normals of other lengths, as exporters leave them
    for (auto& sub : stretched.SubObjects) {
        for (auto& v : sub.Vertices)
            v.Normal = {v.Normal.X * 2.0f, v.Normal.Y * 0.5f, v.Normal.Z};
    }
    editSeed("stretched_normals", stretched, {7, 1, 4, 0, 2, 0, 0, 5, 1, 3, 2});

    mw::clsIniFile ini;
    ini.SetText("; seed\n[My Own]\nkeep=1\n");
    mw::Settings s;
    s.D3HogPath = "/games/d3/d3.hog";
    s.RecentFiles = {"/a.oof", "/b.orf"};
    s.PofChunkSplits = {1, 2, 3};
    mw::SaveSettings(ini, s, [](const std::string&) { return true; });
    ok &= Put(dir / "settings", "MWUIData.ini", Text(ini.Text()));

    if (!ok) {
        std::cerr << "Could not write the seeds into " << dir << "\n";
        return 73;
    }
    return 0;
}
