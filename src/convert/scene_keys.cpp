#include "convert/scene_keys.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace mw {
namespace {

using Q = gltf::Quaternion;  // x, y, z, w
using Values = std::array<double, 4>;

constexpr double kFramesPerSecond = 30.0;
// Sampling a spline every frame is for animations of sensible length.
constexpr int kMostSampledFrames = 20000;

Q Multiply(const Q& a, const Q& b) {
    return {a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
            a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
            a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
            a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
}
Q Conjugate(const Q& q) {
    return {-q[0], -q[1], -q[2], q[3]};
}
Q Normalized(Q q) {
    const double n = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(n > 0.0) || !std::isfinite(n)) return {0, 0, 0, 1};
    for (double& e : q)
        e /= n;
    return q;
}

struct Sample {
    int Frame = 0;
    double Time = 0;  // seconds, as the file has it (frames are rounded)
    Values V{};
};

Values ValueAt(const SceneChannel& c, std::size_t element) {
    Values v{};
    const std::size_t n = c.Components();
    for (std::size_t i = 0; i < n; ++i)
        v[i] = c.Values[element * n + i];
    return v;
}

// The channel's values at whole frames: its keys (and for STEP the frame before each change,
// holding the old value); a spline is sampled at every frame between its keys.
std::vector<Sample> Samples(const SceneChannel& c) {
    const std::size_t keys = c.Times.size();
    const bool cubic = c.Mode == SceneChannel::Interpolation::CubicSpline;
    const auto value = [&](std::size_t k) { return ValueAt(c, cubic ? 3 * k + 1 : k); };
    std::vector<int> frames(keys);
    for (std::size_t k = 0; k < keys; ++k) {
        const double f = std::round(static_cast<double>(c.Times[k]) * kFramesPerSecond);
        frames[k] = std::isfinite(f) ? static_cast<int>(std::clamp(f, -1e6, 1e6)) : 0;
    }
    std::vector<Sample> out;
    const auto add = [&](int frame, double time, const Values& v) {
        for (const double e : v) {
            if (!std::isfinite(e)) return;
        }
        if (!out.empty() && frame < out.back().Frame) return;  // times must not go back
        if (!out.empty() && frame == out.back().Frame) {
            out.back().V = v;
            out.back().Time = time;
        } else {
            out.push_back({frame, time, v});
        }
    };
    if (cubic && keys > 1 && frames.back() - frames.front() <= kMostSampledFrames) {
        std::size_t k = 0;
        for (int f = frames.front(); f <= frames.back(); ++f) {
            const double t = f / kFramesPerSecond;
            while (k + 2 < keys && t > c.Times[k + 1])
                ++k;
            const double t0 = c.Times[k], t1 = c.Times[k + 1], dt = t1 - t0;
            const double s = dt > 0 ? std::clamp((t - t0) / dt, 0.0, 1.0) : 0.0;
            const Values p0 = value(k), p1 = value(k + 1);
            const Values m0 = ValueAt(c, 3 * k + 2), m1 = ValueAt(c, 3 * (k + 1));
            const double s2 = s * s, s3 = s2 * s;
            Values v{};
            for (std::size_t i = 0; i < 4; ++i) {
                v[i] = (2 * s3 - 3 * s2 + 1) * p0[i] + (s3 - 2 * s2 + s) * dt * m0[i] +
                       (-2 * s3 + 3 * s2) * p1[i] + (s3 - s2) * dt * m1[i];
            }
            add(f, t, v);
        }
        return out;
    }
    for (std::size_t k = 0; k < keys; ++k) {
        add(frames[k], c.Times[k], value(k));
        if (c.Mode == SceneChannel::Interpolation::Step && k + 1 < keys &&
            frames[k + 1] - 1 > frames[k]) {
            add(frames[k + 1] - 1, (frames[k + 1] - 1) / kFramesPerSecond, value(k));
        }
    }
    return out;
}

// A turn as the game keeps it: the axis with Y and Z negated (its rotations are made so in
// its mirrored space) and the angle in 65536ths of a turn.
struct Turn {
    int Frame = 0;
    double Time = 0;
    std::array<double, 3> Axis{1, 0, 0};
    double Units = 0;
};

Turn TurnOf(Q step, int frame, double time) {
    if (step[3] < 0)
        for (double& e : step)
            e = -e;
    const double s = std::sqrt(step[0] * step[0] + step[1] * step[1] + step[2] * step[2]);
    Turn t;
    t.Frame = frame;
    t.Time = time;
    if (s > 1e-12) {
        t.Axis = {step[0] / s, -step[1] / s, -step[2] / s};
        t.Units = 2.0 * std::atan2(s, step[3]) * 32768.0 / std::numbers::pi;
    }
    return t;
}

bool SameAxis(const Turn& a, const Turn& b) {
    if (a.Units == 0 || b.Units == 0) return a.Units == b.Units;
    return a.Axis[0] * b.Axis[0] + a.Axis[1] * b.Axis[1] + a.Axis[2] * b.Axis[2] > 1.0 - 1e-6;
}

std::vector<RotKey> RotationKeys(const SceneChannel& c, const Q& rest, const Q& parent) {
    std::vector<Sample> samples = Samples(c);
    std::vector<Turn> turns;
    Q previous{};
    for (std::size_t k = 0; k < samples.size(); ++k) {
        Q q = Normalized({samples[k].V[0], samples[k].V[1], samples[k].V[2], samples[k].V[3]});
        // The orientation reached, as a turn from the rest orientation in the model's axes.
        const Q d = Multiply(Multiply(parent, Multiply(q, Conjugate(rest))), Conjugate(parent));
        const Q step = k == 0 ? d : Multiply(d, Conjugate(previous));
        previous = d;
        Turn t = TurnOf(step, samples[k].Frame, samples[k].Time);
        if (k >= 2) {
            // Going on about the same axis at the same speed: the same key, longer. Speeds
            // are taken over the file's times (frames of another rate round unevenly).
            Turn& last = turns.back();
            const double lastSpan = last.Time - turns[turns.size() - 2].Time;
            const double span = t.Time - last.Time;
            if (!(lastSpan > 0) || !(span > 0)) {
                turns.push_back(t);
                continue;
            }
            const double lastSpeed = last.Units / lastSpan, speed = t.Units / span;
            if (SameAxis(last, t) &&
                std::fabs(speed - lastSpeed) <= 1e-3 * std::max(1.0, std::fabs(lastSpeed))) {
                last.Frame = t.Frame;
                last.Time = t.Time;
                last.Units += t.Units;
                continue;
            }
        }
        turns.push_back(t);
    }
    // Whole units, rounded along each run of one axis so that the run adds up.
    std::vector<RotKey> keys;
    double sum = 0;
    long long rounded = 0;
    for (std::size_t i = 0; i < turns.size() && i < static_cast<std::size_t>(kMaxKeys); ++i) {
        const Turn& t = turns[i];
        if (i == 0 || !SameAxis(turns[i - 1], t)) {
            sum = 0;
            rounded = 0;
        }
        sum += t.Units;
        const long long now = std::llround(sum);
        RotKey key;
        key.Frame = t.Frame;
        key.Axis = {static_cast<float>(t.Axis[0]), static_cast<float>(t.Axis[1]),
                    static_cast<float>(t.Axis[2])};
        key.Angle = static_cast<std::int32_t>(std::clamp(now - rounded, -(1LL << 30), 1LL << 30));
        rounded = now;
        keys.push_back(key);
    }
    return keys;
}

std::vector<PosKey> PositionKeys(const SceneChannel& c, Vector3 rest, const Transform& parent) {
    std::vector<PosKey> keys;
    for (const Sample& s : Samples(c)) {
        const Vector3 moved{static_cast<float>(s.V[0]) - rest.X,
                            static_cast<float>(s.V[1]) - rest.Y,
                            static_cast<float>(s.V[2]) - rest.Z};
        const Vector3 d = TransformDirection(parent, moved);
        keys.push_back({s.Frame, {-d.X, d.Y, d.Z}});
    }
    // A key on the straight line between its neighbours, at its share of the time, adds
    // nothing.
    std::vector<PosKey> kept;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!kept.empty() && i + 1 < keys.size()) {
            const PosKey& a = kept.back();
            const PosKey& b = keys[i + 1];
            const float t =
                static_cast<float>(keys[i].Frame - a.Frame) / static_cast<float>(b.Frame - a.Frame);
            const Vector3 between = Add(a.Position, Scale(Subtract(b.Position, a.Position), t));
            const float span = std::max(1e-6f, Length(Subtract(b.Position, a.Position)));
            if (Length(Subtract(between, keys[i].Position)) <= 1e-5f * span) continue;
        }
        kept.push_back(keys[i]);
        if (kept.size() == static_cast<std::size_t>(kMaxKeys)) break;
    }
    return kept;
}

// The rotation part of a transform (its columns made unit length).
Q RotationOf(const Transform& m) {
    std::array<Vector3, 3> columns;
    for (int c = 0; c < 3; ++c) {
        const Vector3 v{static_cast<float>(m[4 * c]), static_cast<float>(m[4 * c + 1]),
                        static_cast<float>(m[4 * c + 2])};
        const float n = Length(v);
        columns[static_cast<std::size_t>(c)] = n > 0 ? Scale(v, 1.0f / n) : v;
    }
    return gltf::QuaternionFromColumns(columns);
}

}  // namespace

SubObjectKeys KeysFromChannels(const SceneChannel* translation, const SceneChannel* rotation,
                               Vector3 restTranslation, const gltf::Quaternion& restRotation,
                               const Transform& parentWorld) {
    SubObjectKeys keys;
    if (rotation != nullptr)
        keys.Rot = RotationKeys(*rotation, Normalized(restRotation), RotationOf(parentWorld));
    if (translation != nullptr) keys.Pos = PositionKeys(*translation, restTranslation, parentWorld);
    return keys;
}

}  // namespace mw
