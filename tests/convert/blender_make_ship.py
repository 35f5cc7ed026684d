# Builds a ship as modders make them in Blender and exports it as GLB and as FBX (run by
# blender_ship_test.sh): a cube hull with a PNG texture, a thruster quad ($thruster=), an
# eight-sided turret ($fov=) that turns 90 degrees over 30 frames, a radar ($rotate=5) under it
# that turns a full turn, and two Gun_n empties under the turret pointing forward (-Y).
import numpy

# Debian 12's Blender 3.4 glTF add-on still uses numpy.bool, which its numpy no longer has.
if not hasattr(numpy, "bool"):
    numpy.bool = bool
import bpy, math, os, sys
out = sys.argv[sys.argv.index("--") + 1]
bpy.ops.wm.read_factory_settings(use_empty=True)
scene = bpy.context.scene
scene.frame_start, scene.frame_end = 1, 31

img = bpy.data.images.new("hull", 16, 16)
img.pixels = [0.2, 0.4, 0.8, 1.0] * 256
img.filepath_raw = os.path.join(out, "hull.png")
img.file_format = "PNG"
img.save()
mat = bpy.data.materials.new("hull")
mat.use_nodes = True
tex = mat.node_tree.nodes.new("ShaderNodeTexImage")
tex.image = img
mat.node_tree.links.new(tex.outputs["Color"], mat.node_tree.nodes["Principled BSDF"].inputs["Base Color"])

def mesh_object(name, op, **kw):
    op(**kw)
    o = bpy.context.active_object
    o.name = name
    o.data.materials.append(mat)
    return o

hull = mesh_object("hull", bpy.ops.mesh.primitive_cube_add, size=2)
thruster = mesh_object("thruster", bpy.ops.mesh.primitive_plane_add, size=1, location=(0, 1.2, 0), rotation=(math.radians(90), 0, 0))
thruster.parent = hull
thruster["pof_properties"] = "$thruster=1,0.5,0.1,2"
turret = mesh_object("turret", bpy.ops.mesh.primitive_cylinder_add, vertices=8, radius=0.4, depth=0.3, location=(0, 0, 1.3))
turret.parent = hull
turret["pof_properties"] = "$fov=90,3,1"
radar = mesh_object("radar", bpy.ops.mesh.primitive_cube_add, size=0.2, location=(0, 0, 1.6))
radar.parent = turret
radar.matrix_parent_inverse = turret.matrix_world.inverted()
radar["pof_properties"] = "$rotate=5"

def spin(o, degrees):
    o.rotation_euler = (0, 0, 0)
    o.keyframe_insert("rotation_euler", frame=1)
    o.rotation_euler = (0, 0, math.radians(degrees))
    o.keyframe_insert("rotation_euler", frame=31)
    for fc in o.animation_data.action.fcurves:
        for k in fc.keyframe_points:
            k.interpolation = "LINEAR"
spin(turret, 90)
spin(radar, 360)

for i, x in enumerate((-0.3, 0.3)):
    bpy.ops.object.empty_add(type="SINGLE_ARROW", location=(x, -0.5, 1.3), rotation=(math.radians(90), 0, 0))
    e = bpy.context.active_object
    e.name = "Gun_%d" % i
    e.parent = turret
    e.matrix_parent_inverse = turret.matrix_world.inverted()

scene.frame_set(1)
bpy.ops.export_scene.gltf(filepath=os.path.join(out, "ship.glb"), export_format="GLB", export_extras=True)
bpy.ops.export_scene.fbx(filepath=os.path.join(out, "ship.fbx"), use_custom_props=True, bake_anim=True, object_types={"EMPTY", "MESH"})
