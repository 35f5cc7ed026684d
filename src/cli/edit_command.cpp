#include <charconv>
#include <functional>
#include <ostream>
#include <sstream>

#include "cli/cli.h"
#include "model/geometry.h"
#include "model/keys.h"
#include "model/properties.h"
#include "model/structure.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kEditUsage =
    "Usage: meshwright-cli edit IN OUT OPERATION...\n"
    "Applies the operations in the order given, then writes OUT. Sub-objects are named by\n"
    "their index (as 'info' shows it), points by TYPE:I with TYPE one of ATCH, NATH, GRND,\n"
    "GPNT.\n"
    "  --delete-sobj S          --delete-point TYPE:I      --delete-battery B\n"
    "  --combine A:B            --reparent S:P (P may be -1)\n"
    "  --point-parent TYPE:I:S  --rename S:NAME            --properties S:TEXT\n"
    "  --scale PERCENT          --recalc-normals\n"
    "  --insert-pos-key S:F     --delete-pos-key S:F       --move-pos-key S:F:T\n"
    "  --insert-rot-key S:F     --delete-rot-key S:F       --move-rot-key S:F:T\n"
    "An operation the model refuses stops the command before anything is written.\n";

// An operation returns its refusal message, or an empty text when done.
using Operation = std::function<std::string(ModelData&)>;

std::vector<std::string> Split(const std::string& text, std::size_t maxParts) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (parts.size() + 1 < maxParts) {
        const auto colon = text.find(':', start);
        if (colon == std::string::npos) break;
        parts.push_back(text.substr(start, colon - start));
        start = colon + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

bool ToFloat(const std::string& text, float& v) {
    const auto r = std::from_chars(text.data(), text.data() + text.size(), v);
    return r.ec == std::errc() && r.ptr == text.data() + text.size() && !text.empty();
}

// Integers separated by ':'; false unless there are exactly `count` of them.
bool Ints(const std::string& text, std::size_t count, std::vector<int>& out) {
    const auto parts = Split(text, count + 1);
    if (parts.size() != count) return false;
    out.assign(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        if (!ParseInt(parts[i], out[i])) return false;
    }
    return true;
}

std::string NoSub(int s) {
    return "Sub-object " + std::to_string(s) + " does not exist";
}

// A sub-object that heads a save slot (a live one, not merged into another).
std::string CheckLive(const ModelData& m, int s) {
    return GetArrayIndex(m, s) < 0 ? NoSub(s) : std::string();
}

std::string CheckPoint(const ModelData& m, PointType t, int i) {
    if (i >= 0 && i < static_cast<int>(m.Points(t).size())) return {};
    return std::string("There is no ") + PointTag(t) + " point " + std::to_string(i);
}

std::string KeyOp(bool done, const char* what, int frame) {
    if (done) return {};
    return std::string("No ") + what + " key can be changed at frame " + std::to_string(frame);
}

// Builds the operation for one option and its argument; empty on a usage error.
Operation ParseOperation(const std::string& option, const std::string& arg) {
    std::vector<int> n;
    if (option == "--delete-sobj" && Ints(arg, 1, n)) {
        return [s = n[0]](ModelData& m) -> std::string {
            if (auto e = CheckLive(m, s); !e.empty()) return e;
            int roots = 0;
            for (int k = 0; k < m.SubObjectCount(); ++k)
                roots += m.Sub(m.Head(k)).Parent == -1;
            if (m.Sub(s).Parent == -1 && roots < 2) {
                return "The only top-level sub-object cannot be deleted";
            }
            DeleteSOBJ(m, s);
            CreatePushPop(m);
            MoveSOBJ(m);
            return {};
        };
    }
    if (option == "--delete-point" || option == "--point-parent") {
        const auto parts = Split(arg, 3);
        const auto type = PointTypeFromTag(parts[0]);
        const std::size_t want = option == "--delete-point" ? 2 : 3;
        if (!type || parts.size() != want) return {};
        int i = 0, s = 0;
        if (!ParseInt(parts[1], i) || (want == 3 && !ParseInt(parts[2], s))) return {};
        if (want == 2) {
            return [t = *type, i](ModelData& m) -> std::string {
                if (auto e = CheckPoint(m, t, i); !e.empty()) return e;
                DeletePNT(m, t, i);
                return {};
            };
        }
        return [t = *type, i, s](ModelData& m) -> std::string {
            if (auto e = CheckPoint(m, t, i); !e.empty()) return e;
            if (auto e = CheckLive(m, s); !e.empty()) return e;
            ChangePNTParent(m, t, i, s);
            return {};
        };
    }
    if (option == "--delete-battery" && Ints(arg, 1, n)) {
        return [b = n[0]](ModelData& m) -> std::string {
            if (DeleteWBAT(m, b)) return {};
            return "There is no battery " + std::to_string(b);
        };
    }
    if (option == "--combine" && Ints(arg, 2, n)) {
        return [a = n[0], b = n[1]](ModelData& m) -> std::string {
            if (auto e = CheckLive(m, a); !e.empty()) return e;
            if (auto e = CheckLive(m, b); !e.empty()) return e;
            if (a != b && IsInSubtree(m, a, b)) {
                return "You can not combine a Parent Sub-Object to it's childen";
            }
            if (!CombineAndAdopt(m, a, b)) {
                return "Sub-object " + std::to_string(a) + " cannot be combined into " +
                       std::to_string(b);
            }
            return {};
        };
    }
    if (option == "--reparent" && Ints(arg, 2, n)) {
        return [s = n[0], p = n[1]](ModelData& m) -> std::string {
            if (auto e = CheckLive(m, s); !e.empty()) return e;
            if (p != -1) {
                if (auto e = CheckLive(m, p); !e.empty()) return e;
            }
            if (IsInSubtree(m, s, p))
                return "You can not make a Sub-Object a child of its children";
            ChangeSOBJParent(m, s, p);
            CreatePushPop(m);
            return {};
        };
    }
    if (option == "--rename" || option == "--properties") {
        const auto parts = Split(arg, 2);
        int s = 0;
        if (parts.size() != 2 || !ParseInt(parts[0], s)) return {};
        const bool rename = option == "--rename";
        return [s, rename, text = Cp1252FromUtf8(parts[1])](ModelData& m) -> std::string {
            if (!m.IsRecord(s)) return NoSub(s);
            SubObject& sub = m.Sub(s);
            if (rename) {
                sub.Name = text;
            } else {
                sub.Properties = text;
                sub.PropertyFlags = 0;
                ParseProperties(sub);
            }
            return {};
        };
    }
    float percent = 0.0f;
    if (option == "--scale" && ToFloat(arg, percent)) {
        return [percent](ModelData& m) -> std::string {
            switch (ScaleModel(m, percent)) {
                case ScaleResult::TooSmall:
                    return "Scaling would result in a Model Radius < 0.1 - Scaling not done.";
                case ScaleResult::TooLarge:
                    return "Scalng would result in a Model Radius > 90000.0 - Scaling not done.";
                case ScaleResult::Done:
                    break;
            }
            return {};
        };
    }
    const bool pos = option.find("-pos-") != std::string::npos;
    const char* what = pos ? "position" : "rotation";
    if ((option == "--insert-pos-key" || option == "--insert-rot-key") && Ints(arg, 2, n)) {
        return [s = n[0], f = n[1], pos, what](ModelData& m) -> std::string {
            if (!m.IsRecord(s)) return NoSub(s);
            const int existing = pos ? GetPANIindex(m, s, f, true) : GetRANIindex(m, s, f, true);
            if (existing >= 0) return KeyOp(false, what, f);
            return KeyOp(pos ? InsertPANIKey(m, s, f) : InsertRANIKey(m, s, f), what, f);
        };
    }
    if ((option == "--delete-pos-key" || option == "--delete-rot-key") && Ints(arg, 2, n)) {
        return [s = n[0], f = n[1], pos, what](ModelData& m) -> std::string {
            if (!m.IsRecord(s)) return NoSub(s);
            return KeyOp(pos ? DeletePANIKey(m, s, f) : DeleteRANIKey(m, s, f), what, f);
        };
    }
    if ((option == "--move-pos-key" || option == "--move-rot-key") && Ints(arg, 3, n)) {
        return [s = n[0], from = n[1], to = n[2], pos, what](ModelData& m) -> std::string {
            if (!m.IsRecord(s)) return NoSub(s);
            const int taken = pos ? GetPANIindex(m, s, to, true) : GetRANIindex(m, s, to, true);
            if (taken >= 0 && from != to) return KeyOp(false, what, to);
            return KeyOp(pos ? MovePANIkey(m, s, from, to) : MoveRANIkey(m, s, from, to), what,
                         from);
        };
    }
    return {};
}

}  // namespace

int EditCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kEditUsage;
        return 0;
    }
    if (args.size() < 2) {
        err << kEditUsage;
        return kExitUsage;
    }
    std::vector<Operation> operations;
    for (std::size_t i = 2; i < args.size(); ++i) {
        if (args[i] == "--recalc-normals") {
            operations.push_back([](ModelData& m) {
                RecalcVertexNormals(m);
                return std::string();
            });
            continue;
        }
        Operation op = i + 1 < args.size() ? ParseOperation(args[i], args[i + 1]) : Operation{};
        if (!op) {
            err << "Bad operation '" << args[i] << (i + 1 < args.size() ? " " + args[i + 1] : "")
                << "'\n\n"
                << kEditUsage;
            return kExitUsage;
        }
        operations.push_back(std::move(op));
        ++i;
    }

    ModelData model;
    if (const int status = LoadModelFile(args[0], model, err)) return status;
    for (const Operation& op : operations) {
        if (const std::string refusal = op(model); !refusal.empty()) {
            err << refusal << "\n";
            return kExitRefused;
        }
    }
    return SaveModelFile(args[1], model, err);
}

}  // namespace mw
