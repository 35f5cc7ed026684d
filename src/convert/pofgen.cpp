#include "convert/pofgen.h"

#include <algorithm>

#include "gamedata/file_names.h"
#include "gamedata/ini_file.h"

namespace mw {

bool NamesCompiler(std::string_view path) {
    return ContainsIgnoringCase(path, "bspgen.exe") || ContainsIgnoringCase(path, "pofgen.exe");
}

void BuildPofgenSwitches(Settings& s) {
    if (!NamesCompiler(s.POFGENPath)) s.POFGENPath.clear();
    std::string out;
    constexpr float kMinScale = 0.0254f;
    constexpr float kMaxValue = 65535.0f;
    if (!(s.PofScale > 0.0f)) s.PofScale = kMinScale;
    s.PofScale = std::min(s.PofScale, kMaxValue);
    if (s.PofScale > kMinScale) out += "-s" + FloatText(s.PofScale) + " ";
    if (!(s.PofErrorFactor >= 0.0f)) s.PofErrorFactor = 0.0f;
    s.PofErrorFactor = std::min(s.PofErrorFactor, kMaxValue);
    if (s.PofErrorFactor > 0.0f) out += "-e" + FloatText(s.PofErrorFactor) + " ";
    s.PofShadingMode = std::min<std::uint8_t>(s.PofShadingMode, 2);
    if (s.PofShadingMode != 0) out += "-d" + std::to_string(s.PofShadingMode) + " ";
    int sum = 0;
    for (std::uint8_t& c : s.PofChunkSplits) {
        if (c < 2) c = 0;
        sum += c;
    }
    if (sum > 0) {
        out += "-n" + std::to_string(s.PofChunkSplits[0]) + "," +
               std::to_string(s.PofChunkSplits[1]) + "," + std::to_string(s.PofChunkSplits[2]) +
               " ";
    }
    for (const PofgenFlag& flag : kPofgenFlags) {
        if (s.*flag.field) out += flag.text;
    }
    s.PofgenSwitches = out;
}

std::string PofgenSwitchesFromFields(const PofgenFields& f) {
    std::string out;
    // The fields hold eight decimals, so text order is number order here.
    if (f.scale > "0.02540000") out += "-s" + f.scale + " ";
    if (f.error > "0.00000000") out += "-e" + f.error + " ";
    if (f.shading == 1 || f.shading == 2) out += "-d" + std::to_string(f.shading) + " ";
    if (f.chunks[0] + f.chunks[1] + f.chunks[2] != "000") {
        out += "-n" + f.chunks[0] + "," + f.chunks[1] + "," + f.chunks[2] + " ";
    }
    for (std::size_t i = 0; i < kPofgenFlags.size(); ++i) {
        if (f.flags[i]) out += kPofgenFlags[i].text;
    }
    return out;
}

bool CompilerReportedErrors(std::string_view output) {
    return ContainsIgnoringCase(output, "error processing");
}

std::string CompiledModelPath(const std::string& p3dPath) {
    if (p3dPath.size() < 3) return "OOF";
    return p3dPath.substr(0, p3dPath.size() - 3) + "OOF";
}

}  // namespace mw
