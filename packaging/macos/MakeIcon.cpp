// Makes the application's icon for macOS from its drawing: orvesa-make-icon DRAWING.svg ICON.icns

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

#include <utility>

namespace {

QByteArray bigEndian(qsizetype number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(static_cast<quint32>(number), bytes.data());
    return bytes;
}

QByteArray picture(QSvgRenderer &drawing, int pixels)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    // Icons leave a tenth of their square free on macOS.
    const double margin = pixels * 0.1;
    drawing.render(&painter, QRectF(margin, margin, pixels - 2 * margin, pixels - 2 * margin));
    painter.end();
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    image.save(&png, "PNG");
    return png.data();
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    if (argc != 3) {
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    // The types of the container's entries, by their sizes in pixels.
    constexpr std::pair<const char *, int> entries[] = {{"icp4", 16},  {"icp5", 32},  {"ic11", 32},  {"ic12", 64},
                                                        {"ic07", 128}, {"ic13", 256}, {"ic08", 256}, {"ic14", 512},
                                                        {"ic09", 512}, {"ic10", 1024}};
    QByteArray body;
    for (const auto &[type, pixels] : entries) {
        const QByteArray png = picture(drawing, pixels);
        body.append(type).append(bigEndian(png.size() + 8)).append(png);
    }
    QFile icon(QString::fromLocal8Bit(argv[2]));
    if (!drawing.isValid() || !icon.open(QIODevice::WriteOnly)) {
        return 1;
    }
    icon.write(QByteArray("icns").append(bigEndian(body.size() + 8)).append(body));
    return 0;
}
