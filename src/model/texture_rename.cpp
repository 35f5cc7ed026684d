#include "model/texture_rename.h"

#include <array>
#include <utility>

namespace mw {
namespace {

// Old bitmap name, new name; both in lower case. The first matching row wins.
constexpr std::array<std::pair<std::string_view, std::string_view>, 76> kRenames{{
    {"6escape", "7escape"},
    {"br3exitbw", "br2exitbw"},
    {"briefinglayout2", "briefinglayout"},
    {"explosiondisknew2", "explosionblast2"},
    {"corona26", "headlightflare"},
    {"mediumscreennew", "mediumscreen"},
    {"pxobkrd_02", "multimain"},
    {"flameblastring", "red_blast_wave"},
    {"smallscreen3b", "smallscreen"},
    {"corona29", "starflare"},
    {"corona30", "sunflare"},
    {"d3upsell", "upsell"},
    {"antlite000", "antenna"},
    {"bacwait1", "bacwait"},
    {"biowarn1", "biowarn"},
    {"blacksmoke01", "black_smoke"},
    {"bluespark01", "bluespark"},
    {"citylights1", "citylights"},
    {"computerhubmonitors000", "computerhubmonitors"},
    {"controlpanela01", "conpana"},
    {"controlpanelb2_01", "conpanblocked"},
    {"conpanc01", "conpanc"},
    {"conpanc2_01", "conpanc02"},
    {"controlpanela2_01", "conpanela02"},
    {"controlpanelb01", "conpanelb"},
    {"cwt1", "cwt"},
    {"datapani1", "databpani"},
    {"ed1", "ed"},
    {"emeevac1", "emeevac"},
    {"fireball01", "explosion"},
    {"explosionaa01", "explosionaa"},
    {"explosionbb01", "explosionbb"},
    {"explosionblkshrk01", "explosionblkshrk"},
    {"explosioncc01", "explosioncc"},
    {"explosiondd01", "explosiondd"},
    {"explosione01", "explosione"},
    {"explosionff01", "explosionff"},
    {"explosiong01", "explosiong"},
    {"explosionh01", "explosionh"},
    {"explosionimpact01", "explosionimpact"},
    {"flarepuff01", "flarepuff"},
    {"flarepuffalt01", "flarepuffalt"},
    {"secflylit-flashers000", "flashers"},
    {"kitty1", "kitty"},
    {"lg_00", "lg"},
    {"mcrowd1", "mcrowd"},
    {"napalm01", "napalm"},
    {"napalmfire01", "napalmfire"},
    {"napalmgunblob01", "napalmgunblob"},
    {"orangespark01", "orangespark"},
    {"p-storefan1", "pfan1"},
    {"pill001", "pillar"},
    {"plasmafire01", "plasmafire"},
    {"prislock1", "prislock"},
    {"rma1", "rsa"},
    {"screwutoo1", "screwutoo"},
    {"secmon1", "secmon"},
    {"securmonitor002", "securmonitor"},
    {"shatb_01", "shatterbig"},
    {"shats_01", "shattersmall"},
    {"she-blink1", "she-blink"},
    {"shield", "shield"},
    {"smokepuff01", "smokepuff"},
    {"smoketrailvortex01", "smoketrailvortex"},
    {"snet1", "snet"},
    {"sparkvauss01", "sparkvauss"},
    {"ssalights1", "ssalights"},
    {"statictoo1", "statictoo"},
    {"tech pan neons a", "techpan"},
    {"testnapalm01", "testnapalm"},
    {"track1", "track"},
    {"weak00", "trackweak"},
    {"warp00", "warp"},
    {"yellowspark01", "yellowspark"},
    {"ngrflarepuff01", "ngrflarepuff"},
    {"ngrflarepuffalt01", "ngrflarepuffalt"},
}};

}  // namespace

std::string RenamedTexture(std::string_view lowerName) {
    for (const auto& [from, to] : kRenames) {
        if (from == lowerName) return std::string(to);
    }
    return std::string(lowerName);
}

}  // namespace mw
