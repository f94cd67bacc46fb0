// Draws the plug-in's icons. Run at build time with the output folder and the resource paths
// to produce; the picture is chosen by file name so the build's list stays the only list.
//     kel_icongen <output folder> png/phybutton/gasPressed.png ...

#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTextStream>
#include <QtMath>

#include <cmath>
#include <functional>
#include <map>

namespace {

const QColor kInk(0x33, 0x33, 0x33);
const QColor kLaserRed(0xd3, 0x1f, 0x2a);
const QColor kAccent(0x8a, 0x01, 0x21);
const QColor kNavInk(0x37, 0x47, 0x4f);

struct ButtonColours
{
    QColor background;
    QColor border;
    QColor ink;
};

ButtonColours buttonColours(bool pressed)
{
    if (pressed)
        return {QColor(0x3a, 0x3a, 0x3a), QColor(0x1e, 0x1e, 0x1e), Qt::white};
    return {QColor(0xee, 0xee, 0xee), QColor(0xa0, 0xa0, 0xa0), kInk};
}

QPen roundPen(const QColor &colour, qreal width)
{
    return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// A filled triangular head at tip, pointing along the angle in degrees (0 = right).
void drawArrowHead(QPainter &p, QPointF tip, qreal angle, qreal size, const QColor &colour)
{
    const qreal rad = qDegreesToRadians(angle);
    const QPointF back(std::cos(rad) * size, -std::sin(rad) * size);
    const QPointF side(std::sin(rad) * size * 0.6, std::cos(rad) * size * 0.6);
    QPainterPath head;
    head.moveTo(tip);
    head.lineTo(tip - back + side);
    head.lineTo(tip - back - side);
    head.closeSubpath();
    p.fillPath(head, colour);
}

void drawButtonFrame(QPainter &p, const ButtonColours &c)
{
    p.setPen(QPen(c.border, 2));
    p.setBrush(c.background);
    p.drawRoundedRect(QRectF(2, 2, 60, 60), 10, 10);
}

// Two half circles chasing each other: toggling between real and simulated welding.
void drawSwitchMode(QPainter &p, const ButtonColours &c)
{
    const QRectF ring(14, 14, 36, 36);
    p.setBrush(Qt::NoBrush);
    p.setPen(roundPen(c.ink, 5));
    p.drawArc(ring, 30 * 16, 140 * 16);
    p.drawArc(ring, 210 * 16, 140 * 16);
    // Heads at the arc ends (170 and 350 degrees), pointing counter-clockwise.
    const QPointF centre = ring.center();
    const auto onRing = [&](qreal degrees) {
        const qreal rad = qDegreesToRadians(degrees);
        return centre + QPointF(std::cos(rad) * 18, -std::sin(rad) * 18);
    };
    drawArrowHead(p, onRing(176) + QPointF(0, 6), 270, 10, c.ink);
    drawArrowHead(p, onRing(356) - QPointF(0, 6), 90, 10, c.ink);
    p.setPen(c.ink);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    font.setBold(true);
    p.setFont(font);
    p.drawText(QRectF(14, 14, 36, 36), Qt::AlignCenter, QStringLiteral("R/S"));
}

// A wire spool with the wire leaving it; the arrow says which way the wire runs.
void drawWire(QPainter &p, const ButtonColours &c, bool forward)
{
    p.setBrush(Qt::NoBrush);
    p.setPen(roundPen(c.ink, 3));
    p.drawEllipse(QPointF(18, 40), 9, 9);
    p.drawEllipse(QPointF(18, 40), 3, 3);
    p.setPen(roundPen(kLaserRed, 3));
    p.drawLine(QPointF(18, 31), QPointF(54, 31));
    p.setPen(roundPen(c.ink, 4));
    if (forward) {
        p.drawLine(QPointF(24, 18), QPointF(44, 18));
        drawArrowHead(p, QPointF(54, 18), 0, 11, c.ink);
    } else {
        p.drawLine(QPointF(34, 18), QPointF(54, 18));
        drawArrowHead(p, QPointF(24, 18), 180, 11, c.ink);
    }
}

// A gas bottle with a small cloud escaping from its valve.
void drawGas(QPainter &p, const ButtonColours &c)
{
    p.setPen(roundPen(c.ink, 3));
    p.setBrush(Qt::NoBrush);
    QPainterPath bottle;
    bottle.addRoundedRect(QRectF(14, 24, 20, 32), 8, 8);
    p.drawPath(bottle);
    p.drawLine(QPointF(24, 24), QPointF(24, 17));
    p.drawLine(QPointF(19, 16), QPointF(34, 16));
    // The cloud: three overlapping puffs.
    QPainterPath cloud;
    cloud.setFillRule(Qt::WindingFill);
    cloud.addEllipse(QPointF(42, 16), 6, 6);
    cloud.addEllipse(QPointF(50, 12), 7, 7);
    cloud.addEllipse(QPointF(50, 21), 6, 6);
    p.fillPath(cloud, c.ink);
    p.setPen(roundPen(c.ink, 2));
    p.drawLine(QPointF(20, 38), QPointF(28, 38));
}

// A pointer sending a red beam onto a spot.
void drawRedLight(QPainter &p, const ButtonColours &c)
{
    p.save();
    p.translate(20, 20);
    p.rotate(45);
    p.setPen(roundPen(c.ink, 2));
    p.setBrush(c.ink);
    p.drawRoundedRect(QRectF(-14, -5, 22, 10), 3, 3);
    p.restore();
    p.setPen(roundPen(kLaserRed, 4));
    p.drawLine(QPointF(27, 27), QPointF(45, 45));
    p.setPen(Qt::NoPen);
    p.setBrush(kLaserRed);
    p.drawEllipse(QPointF(47, 47), 6, 6);
    p.setPen(roundPen(kLaserRed, 2));
    for (int ray = 0; ray < 8; ++ray) {
        const qreal rad = qDegreesToRadians(ray * 45.0 + 22.5);
        const QPointF dir(std::cos(rad), std::sin(rad));
        p.drawLine(QPointF(47, 47) + dir * 9, QPointF(47, 47) + dir * 13);
    }
}

QImage buttonIcon(bool pressed, const std::function<void(QPainter &, const ButtonColours &)> &draw)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const ButtonColours colours = buttonColours(pressed);
    drawButtonFrame(p, colours);
    draw(p, colours);
    return image;
}

// The work-mode tag of the status bar: a coloured label with the mode's word; simulation
// gets a dashed rim, like a mode that only pretends.
QImage statusTag(const QColor &colour, const QString &word, bool dashedRim)
{
    QImage image(106, 50, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawRoundedRect(QRectF(1, 1, 104, 48), 10, 10);
    if (dashedRim) {
        p.setPen(QPen(Qt::white, 3, Qt::DashLine));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(6, 6, 94, 38), 7, 7);
    }
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(26);
    font.setBold(true);
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(QRectF(0, 0, 106, 50), Qt::AlignCenter, word);
    return image;
}

QImage navIcon(const std::function<void(QPainter &)> &draw)
{
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    draw(p);
    return image;
}

void drawGear(QPainter &p)
{
    QPainterPath gear;
    const QPointF centre(24, 24);
    const int teeth = 8;
    for (int i = 0; i < teeth * 2; ++i) {
        const qreal rad = qDegreesToRadians(i * 180.0 / teeth);
        const qreal next = qDegreesToRadians((i + 1) * 180.0 / teeth);
        const qreal radius = (i % 2 == 0) ? 20 : 15;
        const QPointF a = centre + QPointF(std::cos(rad), std::sin(rad)) * radius;
        const QPointF b = centre + QPointF(std::cos(next), std::sin(next)) * radius;
        if (i == 0)
            gear.moveTo(a);
        else
            gear.lineTo(a);
        gear.lineTo(b);
    }
    gear.closeSubpath();
    QPainterPath hole;
    hole.addEllipse(centre, 7, 7);
    p.fillPath(gear.subtracted(hole), kNavInk);
}

void drawIo(QPainter &p)
{
    p.setPen(roundPen(kNavInk, 3));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(15, 10, 18, 28), 3, 3);
    for (int y = 16; y <= 32; y += 8) {
        p.drawLine(QPointF(9, y), QPointF(15, y));
        p.drawLine(QPointF(33, y), QPointF(39, y));
    }
    p.setPen(roundPen(kAccent, 3));
    p.drawLine(QPointF(4, 44), QPointF(18, 44));
    drawArrowHead(p, QPointF(24, 44), 0, 7, kAccent);
    p.drawLine(QPointF(30, 44), QPointF(44, 44));
    drawArrowHead(p, QPointF(47, 44), 0, 7, kAccent);
}

void drawCurve(QPainter &p)
{
    p.setPen(roundPen(kNavInk, 3));
    p.drawLine(QPointF(8, 6), QPointF(8, 40));
    p.drawLine(QPointF(8, 40), QPointF(44, 40));
    p.setPen(roundPen(kAccent, 3));
    p.drawLine(QPointF(10, 36), QPointF(42, 10));
    p.setPen(Qt::NoPen);
    p.setBrush(kNavInk);
    for (const QPointF &node : {QPointF(16, 30), QPointF(26, 24), QPointF(36, 14)})
        p.drawEllipse(node, 3.5, 3.5);
}

void drawProcess(QPainter &p)
{
    p.setPen(roundPen(kNavInk, 3));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(7, 5, 34, 38), 4, 4);
    const qreal knobs[] = {30, 18, 25};
    for (int row = 0; row < 3; ++row) {
        const qreal y = 14 + row * 10;
        p.setPen(roundPen(kNavInk, 2));
        p.drawLine(QPointF(13, y), QPointF(35, y));
        p.setPen(Qt::NoPen);
        p.setBrush(kAccent);
        p.drawEllipse(QPointF(knobs[row], y), 3.5, 3.5);
    }
}

void drawWeave(QPainter &p)
{
    QPainterPath wave;
    wave.moveTo(4, 24);
    for (int x = 4; x <= 38; ++x)
        wave.lineTo(x, 24 - 11 * std::sin((x - 4) * M_PI / 8.5));
    p.setPen(roundPen(kAccent, 3));
    p.setBrush(Qt::NoBrush);
    p.drawPath(wave);
    p.setPen(roundPen(kNavInk, 3));
    p.drawLine(QPointF(4, 40), QPointF(36, 40));
    drawArrowHead(p, QPointF(46, 40), 0, 9, kNavInk);
}

QImage downArrow()
{
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QPainterPath arrow;
    arrow.moveTo(2, 5);
    arrow.lineTo(14, 5);
    arrow.lineTo(8, 12);
    arrow.closeSubpath();
    p.fillPath(arrow, Qt::white);
    return image;
}

using Painter = std::function<QImage()>;

std::map<QString, Painter> painters()
{
    std::map<QString, Painter> all;
    const auto addButton = [&all](const QString &name,
                               const std::function<void(QPainter &, const ButtonColours &)> &draw) {
        all[name + QStringLiteral("Unpressed")] = [draw] { return buttonIcon(false, draw); };
        all[name + QStringLiteral("Pressed")] = [draw] { return buttonIcon(true, draw); };
    };
    addButton(QStringLiteral("switchMode"), drawSwitchMode);
    addButton(QStringLiteral("feedWire"),
        [](QPainter &p, const ButtonColours &c) { drawWire(p, c, true); });
    addButton(QStringLiteral("pullWire"),
        [](QPainter &p, const ButtonColours &c) { drawWire(p, c, false); });
    addButton(QStringLiteral("gas"), drawGas);
    addButton(QStringLiteral("redLight"), drawRedLight);
    all[QStringLiteral("LaserSwitchReal")]
        = [] { return statusTag(kLaserRed, QStringLiteral("REAL"), false); };
    all[QStringLiteral("LaserSwitchSimu")]
        = [] { return statusTag(QColor(0x54, 0x6e, 0x7a), QStringLiteral("SIM"), true); };
    all[QStringLiteral("LaserWeldDeviceSetting")] = [] { return navIcon(drawGear); };
    all[QStringLiteral("LaserWeldIO")] = [] { return navIcon(drawIo); };
    all[QStringLiteral("LaserWeldCharacteristicCurve")] = [] { return navIcon(drawCurve); };
    all[QStringLiteral("LaserWeldProcessSetting")] = [] { return navIcon(drawProcess); };
    all[QStringLiteral("LaserWeldWeaveFunction")] = [] { return navIcon(drawWeave); };
    all[QStringLiteral("down_arrow_white")] = downArrow;
    return all;
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        err << "usage: kel_icongen <output folder> <icon path>...\n";
        return 2;
    }
    const QDir out(args.at(1));
    const std::map<QString, Painter> all = painters();
    for (int i = 2; i < args.size(); ++i) {
        const QString path = out.filePath(args.at(i));
        const auto painter = all.find(QFileInfo(path).completeBaseName());
        if (painter == all.end()) {
            err << "kel_icongen: no picture for " << args.at(i) << '\n';
            return 1;
        }
        if (!QDir().mkpath(QFileInfo(path).absolutePath()) || !painter->second().save(path)) {
            err << "kel_icongen: cannot write " << path << '\n';
            return 1;
        }
    }
    return 0;
}
