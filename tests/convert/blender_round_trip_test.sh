#!/bin/sh
# Exports the sample as .glb, has Blender import it and export it again (custom properties
# on), imports that and compares it with the sample: everything but the meshes (which
# Blender rebuilds as triangles) must come back. Skipped (exit 77) without Blender.
set -eu
cli="$1"; sample="$2"; work="$3"
if ! command -v blender >/dev/null 2>&1; then
    echo "SKIPPED: Blender is not installed."
    exit 77
fi
mkdir -p "$work"
"$cli" export "$sample" "$work/ship.glb" >/dev/null
cat >"$work/through_blender.py" <<PY
import numpy
# Debian 12's Blender 3.4 glTF add-on still uses numpy.bool, which its numpy no longer has.
if not hasattr(numpy, "bool"):
    numpy.bool = bool
import bpy
bpy.ops.wm.read_factory_settings(use_empty=True)
bpy.ops.import_scene.gltf(filepath="$work/ship.glb")
bpy.ops.export_scene.gltf(filepath="$work/from_blender.glb", export_format="GLB",
                          export_extras=True)
PY
if ! blender -b --python "$work/through_blender.py" >"$work/blender.log" 2>&1 ||
    [ ! -f "$work/from_blender.glb" ]; then
    echo "SKIPPED: Blender could not import and export glTF (see $work/blender.log)."
    exit 77
fi
"$cli" import "$work/from_blender.glb" "$work/back.oof" >"$work/import.log"
grep -q "as exported" "$work/import.log"
strip() { sed -E 's/  [0-9]+ vertices, [0-9]+ faces//'; }
"$cli" info "$sample" | strip >"$work/expected.txt"
"$cli" info "$work/back.oof" | strip >"$work/found.txt"
diff "$work/expected.txt" "$work/found.txt"
