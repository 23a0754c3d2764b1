#include "UI/SymbolIconEngine.h"

#include "UI/Symbols.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace orvesa {

namespace {

/// What a tray that takes pixels gets to choose from.
constexpr std::array pixmapSizes{16, 18, 22, 24, 32, 36, 44, 48, 64};

int side(const QSize &size)
{
    return std::max(1, std::min(size.width(), size.height()));
}

} // namespace

SymbolIconEngine::SymbolIconEngine(QString symbol, const QColor &color, QString themeName)
    : m_symbol(std::move(symbol)), m_color(color), m_themeName(std::move(themeName))
{
}

void SymbolIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State)
{
    const int length = side(rect.size());
    const qreal scale = painter->device() != nullptr ? painter->device()->devicePixelRatio() : 1;
    QRect place(0, 0, length, length);
    place.moveCenter(rect.center());
    painter->drawPixmap(place, Symbols::pixmap(m_symbol, m_color, length, scale));
}

QPixmap SymbolIconEngine::pixmap(const QSize &size, QIcon::Mode, QIcon::State)
{
    return Symbols::pixmap(m_symbol, m_color, side(size), 1);
}

QPixmap SymbolIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal)
{
    return pixmap(size, mode, state); // the size is in pixels already
}

QList<QSize> SymbolIconEngine::availableSizes(QIcon::Mode, QIcon::State)
{
    QList<QSize> sizes;
    for (const int length : pixmapSizes) {
        sizes.append(QSize(length, length));
    }
    return sizes;
}

QSize SymbolIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return {side(size), side(size)};
}

QIconEngine *SymbolIconEngine::clone() const
{
    return new SymbolIconEngine(*this);
}

} // namespace orvesa
