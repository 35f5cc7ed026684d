#!/bin/sh
# A ship made in Blender and exported as GLB and as FBX (blender_make_ship.py) imports from
# both with keys for the turret and the radar, the thruster as one face, the same size and
# gun points, and no check finding. Skipped (exit 77) without Blender.
set -eu
cli="$1"; script="$2"; work="$3"
if ! command -v blender >/dev/null 2>&1; then
    echo "SKIPPED: Blender is not installed."
    exit 77
fi
rm -rf "$work"
mkdir -p "$work"
if ! blender -b --python "$script" -- "$work" >"$work/blender.log" 2>&1 ||
    [ ! -f "$work/ship.glb" ] || [ ! -f "$work/ship.fbx" ]; then
    echo "SKIPPED: Blender could not export the ship (see $work/blender.log)."
    exit 77
fi
for kind in glb fbx; do
    "$cli" import "$work/ship.$kind" "$work/$kind.oof" >"$work/$kind.log"
    "$cli" check "$work/$kind.oof" | grep -q "No findings"
    "$cli" info "$work/$kind.oof" --json >"$work/$kind.json"
done
python3 - "$work/glb.json" "$work/fbx.json" <<'PY'
import json, sys
models = [json.load(open(path)) for path in sys.argv[1:]]
def part(model, name):
    return next(s for s in model["subobjects"] if s["name"] == name)
def turned(model, name):
    return sum(k["angle"] for k in part(model, name)["rot_keys"])
def rounded(values):
    return [round(v, 3) + 0.0 for v in values]
for model in models:
    assert turned(model, "turret") == 16384, turned(model, "turret")
    assert turned(model, "radar") == 65536, turned(model, "radar")
    assert len(part(model, "turret")["rot_keys"]) == 2, part(model, "turret")["rot_keys"]
    assert part(model, "thruster")["faces"] == 1
glb, fbx = models
assert abs(glb["radius"] - fbx["radius"]) < 1e-3, (glb["radius"], fbx["radius"])
guns = [[(p["parent"], rounded(p["position"]), rounded(p["normal"])) for p in m["points"]["GPNT"]]
        for m in models]
assert guns[0] == guns[1], guns
assert len(guns[0]) == 2 and guns[0][0][2] == [0.0, 0.0, 1.0], guns[0]
print("GLB and FBX give the same ship:", guns[0])
PY
