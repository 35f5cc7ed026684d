#include "editor/toolbar_icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>
#include <functional>
#include <map>

namespace mw {
namespace {

constexpr int kSize = 24;
const QColor kInk(40, 48, 60);
const QColor kAccent(38, 110, 200);

using Painter = std::function<void(QPainter&)>;

void Folder(QPainter& p) {
    p.setPen(QPen(QColor(150, 110, 20), 1.2));
    p.setBrush(QColor(240, 196, 80));
    p.drawRoundedRect(QRectF(2.5, 6.5, 19, 14), 1.5, 1.5);
    p.setBrush(QColor(250, 216, 110));
    QPainterPath flap;
    flap.moveTo(2.5, 9.5);
    flap.lineTo(7, 4.5);
    flap.lineTo(11, 4.5);
    flap.lineTo(13, 6.5);
    flap.lineTo(2.5, 6.5);
    p.drawPath(flap);
}

void Disk(QPainter& p) {
    p.setPen(QPen(kInk, 1.2));
    p.setBrush(kAccent);
    p.drawRoundedRect(QRectF(3.5, 3.5, 17, 17), 2, 2);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(7, 3.5, 10, 6));
    p.setBrush(QColor(220, 226, 235));
    p.drawRect(QRectF(6.5, 13, 11, 7.5));
}

void Gear(QPainter& p) {
    p.setPen(QPen(kInk, 1.2));
    p.setBrush(QColor(150, 160, 175));
    QPainterPath gear;
    for (int i = 0; i < 16; ++i) {
        const double a = i * M_PI / 8.0;
        const double r = i % 2 == 0 ? 10.0 : 7.5;
        const QPointF pt(12 + r * std::cos(a), 12 + r * std::sin(a));
        if (i == 0) {
            gear.moveTo(pt);
        } else {
            gear.lineTo(pt);
        }
    }
    gear.closeSubpath();
    gear.addEllipse(QPointF(12, 12), 3.2, 3.2);
    gear.setFillRule(Qt::OddEvenFill);
    p.drawPath(gear);
}

void Arrow(QPainter& p) {
    QPainterPath arrow;
    arrow.moveTo(6, 3);
    arrow.lineTo(6, 19);
    arrow.lineTo(10, 15);
    arrow.lineTo(13, 21);
    arrow.lineTo(15.5, 20);
    arrow.lineTo(12.5, 14);
    arrow.lineTo(18, 14);
    arrow.closeSubpath();
    p.setPen(QPen(kInk, 1.2));
    p.setBrush(Qt::white);
    p.drawPath(arrow);
}

void Magnifier(QPainter& p) {
    p.setPen(QPen(kInk, 3, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(15, 15), QPointF(21, 21));
    p.setPen(QPen(kInk, 1.6));
    p.setBrush(QColor(200, 225, 250));
    p.drawEllipse(QPointF(10, 10), 6.5, 6.5);
    p.setPen(QPen(kAccent, 1.6));
    p.drawLine(QPointF(7, 10), QPointF(13, 10));
    p.drawLine(QPointF(10, 7), QPointF(10, 13));
}

void Rotate(QPainter& p) {
    p.setPen(QPen(kAccent, 2.4, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(4, 4, 16, 16), 60 * 16, 280 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(kAccent);
    QPolygonF head;
    head << QPointF(14, 1.5) << QPointF(20.5, 5.5) << QPointF(13.5, 9);
    p.drawPolygon(head);
}

void Cross(QPainter& p) {
    p.setPen(QPen(kInk, 1.8, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(12, 3), QPointF(12, 21));
    p.drawLine(QPointF(3, 12), QPointF(21, 12));
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    const QPointF tips[4][3] = {{{12, 1.5}, {9, 5.5}, {15, 5.5}},
                                {{12, 22.5}, {9, 18.5}, {15, 18.5}},
                                {{1.5, 12}, {5.5, 9}, {5.5, 15}},
                                {{22.5, 12}, {18.5, 9}, {18.5, 15}}};
    for (const auto& t : tips)
        p.drawPolygon(t, 3);
}

// A cube in three-point view; `faces` fills its sides.
void Cube(QPainter& p, const QColor& top, const QColor& left, const QColor& right, bool faces) {
    const QPointF a(12, 3), b(20.5, 7.5), c(12, 12), d(3.5, 7.5);
    const QPointF e(3.5, 17), f(12, 21.5), g(20.5, 17);
    p.setPen(QPen(kInk, 1.1));
    if (faces) {
        p.setBrush(top);
        p.drawPolygon(QPolygonF({a, b, c, d}));
        p.setBrush(left);
        p.drawPolygon(QPolygonF({d, c, f, e}));
        p.setBrush(right);
        p.drawPolygon(QPolygonF({c, b, g, f}));
        return;
    }
    p.setBrush(Qt::NoBrush);
    p.drawPolygon(QPolygonF({a, b, g, f, e, d}));
    p.drawLine(c, a);
    p.drawLine(c, d);
    p.drawLine(c, b);
    p.drawLine(c, f);
    p.setPen(QPen(kInk, 0.8, Qt::DashLine));
    p.drawLine(a, QPointF(12, 12.5));
}

void Smooth(QPainter& p) {
    QRadialGradient shade(QPointF(9, 8), 12);
    shade.setColorAt(0, QColor(235, 240, 255));
    shade.setColorAt(0.6, QColor(90, 140, 215));
    shade.setColorAt(1, QColor(30, 60, 120));
    p.setPen(QPen(kInk, 1.0));
    p.setBrush(shade);
    p.drawEllipse(QPointF(12, 12), 9, 9);
}

void Textured(QPainter& p) {
    Cube(p, QColor(190, 120, 60), QColor(150, 90, 45), QColor(120, 70, 35), true);
    p.setPen(QPen(QColor(250, 220, 160), 1.0));
    p.drawLine(QPointF(7.75, 5.25), QPointF(16.25, 9.75));
    p.drawLine(QPointF(16.25, 5.25), QPointF(7.75, 9.75));
    p.drawLine(QPointF(3.5, 12.25), QPointF(12, 16.75));
    p.drawLine(QPointF(12, 16.75), QPointF(20.5, 12.25));
    p.drawLine(QPointF(7.75, 10), QPointF(7.75, 19.25));
    p.drawLine(QPointF(16.25, 10), QPointF(16.25, 19.25));
}

void Glasses(QPainter& p) {
    p.setPen(QPen(kInk, 1.4));
    p.setBrush(QColor(230, 40, 40));
    p.drawRoundedRect(QRectF(2, 8, 9, 8), 2.5, 2.5);
    p.setBrush(QColor(40, 220, 230));
    p.drawRoundedRect(QRectF(13, 8, 9, 8), 2.5, 2.5);
    p.drawLine(QPointF(11, 11), QPointF(13, 11));
}

void Points(QPainter& p) {
    p.setPen(QPen(kInk, 1.0));
    const std::pair<QPointF, QColor> dots[] = {{{6, 7}, QColor(230, 60, 60)},
                                               {{17, 6}, QColor(60, 190, 80)},
                                               {{11, 13}, QColor(240, 200, 40)},
                                               {{5, 18}, kAccent},
                                               {{18, 17}, QColor(200, 80, 200)}};
    for (const auto& [at, colour] : dots) {
        p.setBrush(colour);
        p.drawEllipse(at, 2.6, 2.6);
    }
}

void Normals(QPainter& p) {
    p.setPen(QPen(kInk, 1.6));
    p.drawLine(QPointF(2, 19), QPointF(22, 19));
    p.setPen(QPen(kAccent, 1.6, Qt::SolidLine, Qt::RoundCap));
    for (double x : {6.0, 12.0, 18.0}) {
        p.drawLine(QPointF(x, 19), QPointF(x, 6));
        p.drawLine(QPointF(x, 5), QPointF(x - 2.5, 8.5));
        p.drawLine(QPointF(x, 5), QPointF(x + 2.5, 8.5));
    }
}

void Triangle(QPainter& p, bool right) {
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    QPolygonF t;
    if (right) {
        t << QPointF(6, 4) << QPointF(18, 12) << QPointF(6, 20);
    } else {
        t << QPointF(18, 4) << QPointF(6, 12) << QPointF(18, 20);
    }
    p.drawPolygon(t);
}

void Step(QPainter& p, bool next) {
    Triangle(p, next);
    p.setBrush(kInk);
    p.drawRect(next ? QRectF(18, 4, 3, 16) : QRectF(3, 4, 3, 16));
}

void Loop(QPainter& p) {
    p.setPen(QPen(kAccent, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(3, 6, 18, 12), 5, 5);
    p.setPen(Qt::NoPen);
    p.setBrush(kAccent);
    p.drawPolygon(QPolygonF({QPointF(13, 2.5), QPointF(18, 6), QPointF(13, 9.5)}));
}

// The tree's node pictures: a small coloured mark per kind of node.
Painter Node(QColor colour, int shape) {
    return [colour, shape](QPainter& p) {
        p.setPen(QPen(kInk, 1.2));
        p.setBrush(colour);
        switch (shape) {
            case 0:
                p.drawRoundedRect(QRectF(3, 3, 18, 18), 3, 3);
                break;
            case 1:
                p.drawPolygon(
                    QPolygonF({QPointF(12, 2), QPointF(22, 12), QPointF(12, 22), QPointF(2, 12)}));
                break;
            default:
                p.drawEllipse(QPointF(12, 12), 8, 8);
                p.drawLine(QPointF(12, 12), QPointF(12, 2));
                break;
        }
    };
}

const std::map<QString, Painter>& Painters() {
    static const std::map<QString, Painter> painters{
        {"open", Folder},
        {"save", Disk},
        {"preferences", Gear},
        {"select", Arrow},
        {"zoom", Magnifier},
        {"rotate", Rotate},
        {"pan", Cross},
        {"wireframe", [](QPainter& p) { Cube(p, {}, {}, {}, false); }},
        {"flatcolor",
         [](QPainter& p) {
             Cube(p, QColor(170, 200, 235), QColor(110, 150, 205), QColor(70, 110, 170), true);
         }},
        {"smoothcolor", Smooth},
        {"textured", Textured},
        {"threed", Glasses},
        {"viewpoints", Points},
        {"viewnormals", Normals},
        {"play", [](QPainter& p) { Triangle(p, true); }},
        {"stop",
         [](QPainter& p) {
             p.setPen(Qt::NoPen);
             p.setBrush(kInk);
             p.drawRect(QRectF(6, 6, 12, 12));
         }},
        {"nextframe", [](QPainter& p) { Step(p, true); }},
        {"previousframe", [](QPainter& p) { Step(p, false); }},
        {"looping", Loop},
        {"ROOT",
         [](QPainter& p) {
             Cube(p, QColor(170, 200, 235), QColor(110, 150, 205), QColor(70, 110, 170), true);
         }},
        {"SOBJ", Node(QColor(150, 160, 175), 0)},
        {"ATCH", Node(QColor(240, 200, 40), 1)},
        {"NATH", Node(QColor(240, 140, 40), 2)},
        {"GRND", Node(QColor(60, 190, 80), 1)},
        {"GPNT", Node(QColor(230, 60, 60), 2)},
    };
    return painters;
}

}  // namespace

QIcon ToolbarIcon(const QString& key) {
    // Drawn once each: the tree asks for its node pictures on every rebuild.
    static std::map<QString, QIcon> cache;
    if (const auto hit = cache.find(key); hit != cache.end()) return hit->second;
    const auto& painters = Painters();
    const auto it = painters.find(key);
    if (it == painters.end()) return {};
    QIcon& icon = cache[key];
    for (int scale : {1, 2}) {
        QPixmap pixmap(kSize * scale, kSize * scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        it->second(painter);
        painter.end();
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace mw
