#include "UI/Symbols.h"

#include "UI/SymbolIconEngine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa::Symbols {

namespace {

Source &desktopSource()
{
    static Source source;
    return source;
}

QImage rendered(const QString &name, int pixels)
{
    QSvgRenderer renderer(u":/symbols/%1.svg"_s.arg(name));
    if (!renderer.isValid()) {
        qFatal("no image for the symbol %s", qPrintable(name));
    }
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

} // namespace

void setSource(Source source)
{
    desktopSource() = std::move(source);
}

QPixmap pixmap(const QString &name, const QColor &color, int size, qreal devicePixelRatio)
{
    const QString cacheKey =
        u"orvesa-symbol/%1/%2/%3/%4"_s.arg(name, color.name(QColor::HexArgb)).arg(size).arg(devicePixelRatio);
    QPixmap result;
    if (QPixmapCache::find(cacheKey, &result)) {
        return result;
    }

    const int pixels = qRound(size * devicePixelRatio);
    const Source &source = desktopSource();
    QImage image = source ? source(name, pixels) : QImage();
    if (image.isNull()) {
        image = rendered(name, pixels);
    }
    QPainter painter(&image);
    // The images are drawn in black: only their coverage counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();

    result = QPixmap::fromImage(std::move(image));
    result.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(cacheKey, result);
    return result;
}

QIcon icon(const QString &name, const QColor &color)
{
    return QIcon(new SymbolIconEngine(name, color));
}

} // namespace orvesa::Symbols
