// FBX as tools write it, in files made here (FBX 7.4 text): the file's unit applied, custom
// properties from the user properties, a turn from its animation curves. And a Collada file's
// animation, which comes through the same library.
#include <gtest/gtest.h>
#include <fstream>

#include "convert/model_import.h"
#include "model/game_check.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

// A quad of side 2 at z = -2 in a file of metres (a unit of 100 cm), marked as a thruster.
const std::string kQuad =
    "; FBX 7.4.0 project file\n"
    "FBXHeaderExtension:  {\n"
    "	FBXHeaderVersion: 1003\n"
    "	FBXVersion: 7400\n"
    "	Creator: \"test\"\n"
    "}\n"
    "GlobalSettings:  {\n"
    "	Version: 1000\n"
    "	Properties70:  {\n"
    "		P: \"UpAxis\", \"int\", \"Integer\", \"\",1\n"
    "		P: \"UpAxisSign\", \"int\", \"Integer\", \"\",1\n"
    "		P: \"FrontAxis\", \"int\", \"Integer\", \"\",2\n"
    "		P: \"FrontAxisSign\", \"int\", \"Integer\", \"\",1\n"
    "		P: \"CoordAxis\", \"int\", \"Integer\", \"\",0\n"
    "		P: \"CoordAxisSign\", \"int\", \"Integer\", \"\",1\n"
    "		P: \"UnitScaleFactor\", \"double\", \"Number\", \"\",100\n"
    "	}\n"
    "}\n"
    "Definitions:  {\n"
    "	Version: 100\n"
    "	Count: 2\n"
    "	ObjectType: \"Model\" {\n"
    "		Count: 1\n"
    "	}\n"
    "	ObjectType: \"Geometry\" {\n"
    "		Count: 1\n"
    "	}\n"
    "}\n"
    "Objects:  {\n"
    "	Geometry: 1000, \"Geometry::Quad\", \"Mesh\" {\n"
    "		Vertices: *12 {\n"
    "			a: -1,-1,0,1,-1,0,1,1,0,-1,1,0\n"
    "		}\n"
    "		PolygonVertexIndex: *4 {\n"
    "			a: 0,1,2,-4\n"
    "		}\n"
    "		GeometryVersion: 124\n"
    "	}\n"
    "	Model: 2000, \"Model::Thruster\", \"Mesh\" {\n"
    "		Version: 232\n"
    "		Properties70:  {\n"
    "			P: \"Lcl Translation\", \"Lcl Translation\", \"\", \"A\",0,0,-2\n"
    "			P: \"pof_properties\", \"KString\", \"\", \"U\", "
    "\"$thruster=1,0.5,0.1,2\"\n"
    "		}\n"
    "		Shading: T\n"
    "		Culling: \"CullingOff\"\n"
    "	}\n"
    "}\n"
    "Connections:  {\n"
    "	C: \"OO\",2000,0\n"
    "	C: \"OO\",1000,2000\n"
    "}\n"
    "\n";

// The same quad as a turret turning a quarter turn about Y over a second: a take, its layer,
// a rotation curve node and the curve of its Y angle.
const std::string kTurnObjects =
    "\tAnimationStack: 3000, \"AnimStack::Take 001\", \"\" {\n"
    "\t\tProperties70:  {\n"
    "\t\t\tP: \"LocalStop\", \"KTime\", \"Time\", \"\",46186158000\n"
    "\t\t}\n"
    "\t}\n"
    "\tAnimationLayer: 3001, \"AnimLayer::BaseLayer\", \"\" {\n"
    "\t}\n"
    "\tAnimationCurveNode: 3002, \"AnimCurveNode::R\", \"\" {\n"
    "\t\tProperties70:  {\n"
    "\t\t\tP: \"d|X\", \"Number\", \"\", \"A\",0\n"
    "\t\t\tP: \"d|Y\", \"Number\", \"\", \"A\",0\n"
    "\t\t\tP: \"d|Z\", \"Number\", \"\", \"A\",0\n"
    "\t\t}\n"
    "\t}\n"
    "\tAnimationCurve: 3003, \"AnimCurve::\", \"\" {\n"
    "\t\tDefault: 0\n"
    "\t\tKeyVer: 4009\n"
    "\t\tKeyTime: *2 {\n"
    "\t\t\ta: 0,46186158000\n"
    "\t\t}\n"
    "\t\tKeyValueFloat: *2 {\n"
    "\t\t\ta: 0,90\n"
    "\t\t}\n"
    "\t\tKeyAttrFlags: *1 {\n"
    "\t\t\ta: 24836\n"
    "\t\t}\n"
    "\t\tKeyAttrDataFloat: *4 {\n"
    "\t\t\ta: 0,0,255790911,0\n"
    "\t\t}\n"
    "\t\tKeyAttrRefCount: *1 {\n"
    "\t\t\ta: 2\n"
    "\t\t}\n"
    "\t}\n";

std::string Turret() {
    std::string t = kQuad;
    t.replace(t.find("Model::Thruster"), 15, "Model::Turret");
    t.replace(t.find("$thruster=1,0.5,0.1,2"), 21, "$fov=90,3,1");
    t.insert(t.find("\tModel: 2000,"), kTurnObjects);
    t.insert(t.find("Connections:  {\n") + 16,
             "\tC: \"OO\",3001,3000\n\tC: \"OO\",3002,3001\n"
             "\tC: \"OP\",3002,2000, \"Lcl Rotation\"\n\tC: \"OP\",3003,3002, \"d|Y\"\n");
    return t;
}
const std::string kTurret = Turret();

// The turret as Blender writes it with "All Actions": a take for the turret with every
// action of the scene, the radar's (a full turn) first, its own (a quarter turn) after.
std::string Takes() {
    std::string own = kTurret;
    own.replace(own.find("Take 001"), 8, "Turret|TurretAction");
    const std::size_t from = own.find("\tAnimationStack: 3000");
    const std::size_t to = own.find("\tModel: 2000,");
    std::string other = own.substr(from, to - from);
    for (const char* id : {"3000", "3001", "3002", "3003"}) {
        for (std::size_t at; (at = other.find(id)) != std::string::npos;)
            other[at] = '4';
    }
    other.replace(other.find("TurretAction"), 12, "RadarAction");
    other.replace(other.find("a: 0,90"), 7, "a: 0,360");
    own.insert(from, other);
    own.insert(own.find("\tC: \"OO\",3001,3000"),
               "\tC: \"OO\",4001,4000\n\tC: \"OO\",4002,4001\n"
               "\tC: \"OP\",4002,2000, \"Lcl Rotation\"\n\tC: \"OP\",4003,4002, \"d|Y\"\n");
    return own;
}

ImportResult ImportText(const test::TempDir& dir, const std::string& name,
                        const std::string& text) {
    std::ofstream(dir / name) << text;
    return ImportModel(dir / name);
}

TEST(FbxImport, TheFilesUnitMakesOneMetreOneUnit) {
    const test::TempDir dir("fbx_units");
    const ImportResult metres = ImportText(dir, "m.fbx", kQuad);
    ASSERT_EQ(metres.Status, ImportStatus::Done) << metres.Error;
    EXPECT_NEAR(metres.Model.Sub(0).Offset.Z, -2.0f, 1e-5f);
    EXPECT_NEAR(metres.Model.Sub(0).BoxMax.X, 1.0f, 1e-5f);
    // In centimetres, with a hundred times the numbers: the same model.
    std::string cm = kQuad;
    cm.replace(cm.find("\"\",100"), 7, "\"\",1");
    cm.replace(cm.find("a: -1,-1,0,1,-1,0,1,1,0,-1,1,0"), 30,
               "a: -100,-100,0,100,-100,0,100,100,0,-100,100,0");
    cm.replace(cm.find("\"A\",0,0,-2"), 10, "\"A\",0,0,-200");
    const ImportResult centimetres = ImportText(dir, "cm.fbx", cm);
    ASSERT_EQ(centimetres.Status, ImportStatus::Done) << centimetres.Error;
    EXPECT_NEAR(centimetres.Model.Sub(0).Offset.Z, -2.0f, 1e-4f);
    EXPECT_NEAR(centimetres.Model.Header.Radius, metres.Model.Header.Radius, 1e-4f);
}

TEST(FbxImport, UserPropertiesAndAnimationCurves) {
    const test::TempDir dir("fbx_keys");
    const ImportResult thruster = ImportText(dir, "thruster.fbx", kQuad);
    ASSERT_EQ(thruster.Status, ImportStatus::Done) << thruster.Error;
    EXPECT_EQ(thruster.Model.Sub(0).Properties, "$thruster=1,0.5,0.1,2");
    EXPECT_EQ(thruster.Model.Sub(0).FaceCount(), 1);

    const ImportResult turret = ImportText(dir, "turret.fbx", kTurret);
    ASSERT_EQ(turret.Status, ImportStatus::Done) << turret.Error;
    const SubObject& sub = turret.Model.Sub(0);
    EXPECT_EQ(sub.Properties, "$fov=90,3,1");
    ASSERT_EQ(sub.Rot.Keys.size(), 2u);
    EXPECT_EQ(sub.Rot.Keys[1].Frame, 30);
    EXPECT_EQ(sub.Rot.Keys[1].Angle, 16384);
    EXPECT_NEAR(sub.Rot.Keys[1].Axis.Y, -1.0f, 1e-5f);
    EXPECT_TRUE(sub.Pos.Keys.empty());  // it does not move
    EXPECT_EQ(turret.Model.FrameMax, 30);
    for (const Finding& f : CheckModel(turret.Model))
        ADD_FAILURE() << f.Code << ": " << f.Message;
}

TEST(FbxImport, TheNodesOwnTakeAndBlendersArrows) {
    const test::TempDir dir("fbx_takes");
    const ImportResult takes = ImportText(dir, "takes.fbx", Takes());
    ASSERT_EQ(takes.Status, ImportStatus::Done) << takes.Error;
    ASSERT_EQ(takes.Model.Sub(0).Rot.Keys.size(), 2u);
    EXPECT_EQ(takes.Model.Sub(0).Rot.Keys[1].Angle, 16384);

    // An empty under the turret, not turned: its arrow is its local +Z in Blender's FBX, local
    // +Y elsewhere (as in glTF).
    std::string gun = kTurret;
    gun.replace(gun.find("\tModel: 2000,"), 0,
                "\tModel: 2100, \"Model::Gun_0\", \"Null\" {\n\t\tProperties70:  {\n"
                "\t\t\tP: \"Lcl Translation\", \"Lcl Translation\", \"\", \"A\",0.3,0,0.5\n"
                "\t\t}\n\t}\n");
    gun.replace(gun.find("\tC: \"OO\",2000,0"), 0, "\tC: \"OO\",2100,2000\n");
    const ImportResult other = ImportText(dir, "other.fbx", gun);
    ASSERT_EQ(other.Status, ImportStatus::Done) << other.Error;
    ASSERT_EQ(other.Model.GunPoints.size(), 1u);
    EXPECT_EQ(other.Model.GunPoints[0].Normal, (Vector3{0, 1, 0}));
    gun.replace(gun.find("Creator: \"test\""), 15, "Creator: \"Blender (stable FBX IO) - 3.4.1\"");
    const ImportResult blender = ImportText(dir, "blender.fbx", gun);
    ASSERT_EQ(blender.Model.GunPoints.size(), 1u);
    EXPECT_EQ(blender.Model.GunPoints[0].Normal, (Vector3{0, 0, 1}));
    EXPECT_EQ(blender.Model.GunPoints[0].Position, other.Model.GunPoints[0].Position);
}

// A quad turning a quarter turn about Y in a second, as a Collada rotate element's angle.
const std::string kColladaTurn =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"1.4.1\">\n"
    "  <asset><unit name=\"meter\" meter=\"1\"/><up_axis>Y_UP</up_axis></asset>\n"
    "  <library_geometries>\n"
    "    <geometry id=\"quad\" name=\"quad\"><mesh>\n"
    "      <source id=\"quad-pos\"><float_array id=\"quad-pos-array\" count=\"12\">-1 0 -1 1 0 -1 "
    "1 0 1 -1 0 1</float_array>\n"
    "        <technique_common><accessor source=\"#quad-pos-array\" count=\"4\" "
    "stride=\"3\"><param name=\"X\" type=\"float\"/><param name=\"Y\" type=\"float\"/><param "
    "name=\"Z\" type=\"float\"/></accessor></technique_common></source>\n"
    "      <vertices id=\"quad-verts\"><input semantic=\"POSITION\" "
    "source=\"#quad-pos\"/></vertices>\n"
    "      <polylist count=\"1\"><input semantic=\"VERTEX\" source=\"#quad-verts\" "
    "offset=\"0\"/><vcount>4</vcount><p>0 3 2 1</p></polylist>\n"
    "    </mesh></geometry>\n"
    "  </library_geometries>\n"
    "  <library_animations>\n"
    "    <animation id=\"spin\">\n"
    "      <source id=\"spin-in\"><float_array id=\"spin-in-array\" count=\"2\">0 "
    "1</float_array><technique_common><accessor source=\"#spin-in-array\" count=\"2\"><param "
    "name=\"TIME\" type=\"float\"/></accessor></technique_common></source>\n"
    "      <source id=\"spin-out\"><float_array id=\"spin-out-array\" count=\"2\">0 "
    "90</float_array><technique_common><accessor source=\"#spin-out-array\" count=\"2\"><param "
    "name=\"ANGLE\" type=\"float\"/></accessor></technique_common></source>\n"
    "      <source id=\"spin-interp\"><Name_array id=\"spin-interp-array\" count=\"2\">LINEAR "
    "LINEAR</Name_array><technique_common><accessor source=\"#spin-interp-array\" "
    "count=\"2\"><param name=\"INTERPOLATION\" "
    "type=\"name\"/></accessor></technique_common></source>\n"
    "      <sampler id=\"spin-sampler\"><input semantic=\"INPUT\" source=\"#spin-in\"/><input "
    "semantic=\"OUTPUT\" source=\"#spin-out\"/><input semantic=\"INTERPOLATION\" "
    "source=\"#spin-interp\"/></sampler>\n"
    "      <channel source=\"#spin-sampler\" target=\"Turret/rotY.ANGLE\"/>\n"
    "    </animation>\n"
    "  </library_animations>\n"
    "  <library_visual_scenes>\n"
    "    <visual_scene id=\"scene\">\n"
    "      <node id=\"Turret\" name=\"Turret\">\n"
    "        <translate sid=\"location\">0 1 0</translate>\n"
    "        <rotate sid=\"rotY\">0 1 0 0</rotate>\n"
    "        <instance_geometry url=\"#quad\"/>\n"
    "      </node>\n"
    "    </visual_scene>\n"
    "  </library_visual_scenes>\n"
    "  <scene><instance_visual_scene url=\"#scene\"/></scene>\n"
    "</COLLADA>\n";

TEST(ColladaImport, AnAnimatedAngleBecomesKeys) {
    const test::TempDir dir("collada_keys");
    const ImportResult r = ImportText(dir, "spin.dae", kColladaTurn);
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    const SubObject& sub = r.Model.Sub(0);
    ASSERT_EQ(sub.Rot.Keys.size(), 2u);
    EXPECT_EQ(sub.Rot.Keys[1].Frame, 30);
    EXPECT_EQ(sub.Rot.Keys[1].Angle, 16384);
    EXPECT_NEAR(sub.Rot.Keys[1].Axis.Y, -1.0f, 1e-5f);
    EXPECT_NEAR(sub.Offset.Y, 1.0f, 1e-5f);
    EXPECT_TRUE(sub.Pos.Keys.empty());
}

}  // namespace
}  // namespace mw
