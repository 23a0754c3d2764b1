#include "ocr/SampleRenderer.h"

#include "ocr/SampleLook.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

/// A canvas with everything that the kinds of pictures share.
class Page final {
public:
    explicit Page(const SampleLook &look)
        : m_look(look), m_metrics(look.font), m_columns(look.smoothing == SampleLook::Smoothing::subpixel ? 3 : 1),
          m_image(3000 * m_columns, 2400, QImage::Format_RGB32), m_painter(&m_image),
          m_lineHeight(std::ceil(m_metrics.height() * 1.2)), m_margin(std::ceil(m_metrics.height() * 0.7))
    {
        m_image.fill(look.paper);
        m_painter.scale(m_columns, 1);
        m_painter.setFont(look.font);
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_bottom = m_margin;
    }

    [[nodiscard]] double width(const QString &text) const { return m_metrics.horizontalAdvance(text); }
    [[nodiscard]] double em() const { return m_look.font.pixelSize(); }
    [[nodiscard]] double lineHeight() const { return m_lineHeight; }
    [[nodiscard]] double margin() const { return m_margin; }
    [[nodiscard]] double bottom() const { return m_bottom; }
    QPainter &painter() { return m_painter; }

    /// Text whose line begins at `x` and whose top is at `y`.
    void write(double x, double y, const QString &text, const QColor &color)
    {
        m_painter.setPen(color);
        m_painter.drawText(QPointF(std::round(x), std::round(y + m_metrics.ascent())), text);
        extend(x + width(text), y + m_metrics.height());
    }

    void extend(double right, double bottom)
    {
        m_right = std::max(m_right, right);
        m_bottom = std::max(m_bottom, bottom);
    }

    QImage finished()
    {
        m_painter.end();
        const int width = static_cast<int>(std::ceil(m_right + m_margin));
        const QImage page = m_image.copy(0, 0, width * m_columns, static_cast<int>(std::ceil(m_bottom + m_margin)));
        return m_columns == 1 ? page : onSubpixels(page);
    }

private:
    /// Three columns become the red, green and blue stripes of one pixel, each blurred a little against fringes.
    static QImage onSubpixels(const QImage &page)
    {
        QImage result(page.width() / 3, page.height(), QImage::Format_RGB32);
        for (int y = 0; y < page.height(); ++y) {
            const auto *from = reinterpret_cast<const QRgb *>(page.constScanLine(y));
            auto *to = reinterpret_cast<QRgb *>(result.scanLine(y));
            const auto stripe = [&](int column, int (*channel)(QRgb)) {
                static constexpr std::array weights{1, 2, 3, 2, 1};
                int sum = 0;
                for (int tap = 0; tap < 5; ++tap) {
                    const int x = std::clamp(column + tap - 2, 0, page.width() - 1);
                    sum += weights[static_cast<std::size_t>(tap)] * channel(from[x]);
                }
                return sum / 9;
            };
            for (int x = 0; x < result.width(); ++x) {
                to[x] = qRgb(stripe(3 * x, qRed), stripe(3 * x + 1, qGreen), stripe(3 * x + 2, qBlue));
            }
        }
        return result;
    }

    const SampleLook &m_look;
    QFontMetricsF m_metrics;
    int m_columns; ///< drawn for each pixel
    QImage m_image;
    QPainter m_painter;
    double m_lineHeight;
    double m_margin;
    double m_right = 0;
    double m_bottom = 0;
};

void drawLines(Page &page, const SampleLook &look, const QStringList &lines)
{
    double y = page.margin();
    for (const QString &line : lines) {
        page.write(page.margin(), y, line, look.ink);
        y += page.lineHeight();
    }
}

void drawColumns(Page &page, const SampleLook &look, const QStringList &lines, double gap, bool ruled)
{
    std::vector<double> widths;
    for (const QString &line : lines) {
        const QStringList cells = line.split(u'|');
        widths.resize(std::max(widths.size(), static_cast<std::size_t>(cells.size())));
        for (qsizetype column = 0; column < cells.size(); ++column) {
            double &width = widths[static_cast<std::size_t>(column)];
            width = std::max(width, page.width(cells[column]));
        }
    }
    double y = page.margin();
    for (const QString &line : lines) {
        double x = page.margin();
        const QStringList cells = line.split(u'|');
        for (qsizetype column = 0; column < cells.size(); ++column) {
            page.write(x, y, cells[column], look.ink);
            x += widths[static_cast<std::size_t>(column)] + gap;
        }
        y += page.lineHeight();
        if (ruled) {
            page.painter().fillRect(QRectF(page.margin(), y, x - page.margin() - gap, 1), look.accent);
            page.extend(x - gap, y + 1);
            y += 4;
        }
    }
}

void drawDialog(Page &page, const SampleLook &look, const QStringList &lines)
{
    double y = page.margin();
    for (qsizetype index = 0; index + 1 < lines.size(); ++index) {
        page.write(page.margin(), y, lines[index], look.ink);
        y += page.lineHeight() * 1.5;
    }
    double x = page.margin();
    const QStringList buttons = lines.last().split(u'|');
    for (qsizetype index = 0; index < buttons.size(); ++index) {
        const bool isDefault = index + 1 == buttons.size();
        const QRectF frame(x, y, page.width(buttons[index]) + 2 * page.em(), page.lineHeight() + page.em() * 0.6);
        page.painter().setPen(isDefault ? QPen(Qt::NoPen) : QPen(look.accent));
        page.painter().setBrush(isDefault ? QBrush(look.accent) : QBrush(Qt::NoBrush));
        page.painter().drawRoundedRect(frame, 5, 5);
        page.extend(frame.right(), frame.bottom());
        page.write(x + page.em(), y + page.em() * 0.3, buttons[index], isDefault ? QColor(Qt::white) : look.ink);
        x = frame.right() + page.em();
    }
}

/// A menu: entries with their shortcuts at the right, one of them under the pointer, lines between groups.
void drawMenu(Page &page, const SampleLook &look, const QStringList &lines)
{
    double widest = 0;
    for (const QString &line : lines) {
        widest = std::max(widest, page.width(line.section(u'|', 0, 0)) + page.width(line.section(u'|', 1, 1)));
    }
    const double right = page.margin() + widest + 4 * page.em();
    double y = page.margin();
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const bool isUnderPointer = index == 1;
        if (isUnderPointer) {
            page.painter().fillRect(QRectF(page.margin() - 4, y - 2, right - page.margin() + 8, page.lineHeight()),
                                    look.accent);
        }
        const QColor color = isUnderPointer ? QColor(Qt::white) : look.ink;
        const QString keys = lines[index].section(u'|', 1, 1);
        page.write(page.margin(), y, lines[index].section(u'|', 0, 0), color);
        page.write(right - page.width(keys), y, keys, color);
        y += page.lineHeight() * 1.15;
        if (index % 3 == 2) {
            page.painter().fillRect(QRectF(page.margin(), y, right - page.margin(), 1), look.accent);
            y += page.em() * 0.5;
        }
    }
}

/// Settings: a box to tick or a label with its field.
void drawForm(Page &page, const SampleLook &look, const QStringList &lines)
{
    double y = page.margin();
    for (const QString &line : lines) {
        const QString label = line.section(u'|', 0, 0);
        const QString value = line.section(u'|', 1, 1);
        const double side = std::round(page.em() * 0.9);
        double x = page.margin();
        page.painter().setPen(QPen(look.accent));
        page.painter().setBrush(Qt::NoBrush);
        if (value.isEmpty()) {
            page.painter().drawRoundedRect(QRectF(x + 0.5, std::round(y + page.em() * 0.2) + 0.5, side, side), 2, 2);
            x += side + page.em() * 0.6;
        }
        page.write(x, y, label, look.ink);
        if (!value.isEmpty()) {
            x += page.width(label) + page.em();
            const QRectF frame(std::round(x) + 0.5, std::round(y - page.em() * 0.3) + 0.5,
                               page.width(value) + page.em(), page.lineHeight() + page.em() * 0.4);
            page.painter().setPen(QPen(look.accent));
            page.painter().drawRoundedRect(frame, 4, 4);
            page.extend(frame.right(), frame.bottom());
            page.write(x + page.em() * 0.5, y, value, look.ink);
        }
        y += page.lineHeight() * 1.6;
    }
}

/// A conversation: bubbles at the left and, coloured, at the right.
void drawChat(Page &page, const SampleLook &look, const QStringList &lines)
{
    double widest = 0;
    for (const QString &line : lines) {
        widest = std::max(widest, page.width(line));
    }
    const double right = page.margin() + widest + 4 * page.em();
    double y = page.margin();
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const bool isOwn = index % 2 == 1;
        const double width = page.width(lines[index]) + page.em() * 1.2;
        const QRectF bubble(isOwn ? right - width : page.margin(), y, width, page.lineHeight() + page.em() * 0.5);
        page.painter().setPen(Qt::NoPen);
        page.painter().setBrush(
            isOwn ? look.accent : (look.paper.lightness() > 128 ? look.paper.darker(108) : look.paper.lighter(160)));
        page.painter().drawRoundedRect(bubble, page.em() * 0.6, page.em() * 0.6);
        page.write(bubble.left() + page.em() * 0.6, y + page.em() * 0.25, lines[index],
                   isOwn ? QColor(Qt::white) : look.ink);
        page.extend(bubble.right(), bubble.bottom());
        y = bubble.bottom() + page.em() * 0.7;
    }
}

void drawVertical(Page &page, const SampleLook &look, const QStringList &lines, bool marksAtCorner)
{
    const double step = page.em() * 1.05;
    double x = page.margin() + page.em() * 1.7 * static_cast<double>(lines.size() - 1);
    for (const QString &line : lines) {
        double y = page.margin();
        for (const QChar character : line) {
            const bool isSentenceMark = marksAtCorner && u"、。，"_s.contains(character);
            const double shift = isSentenceMark ? page.em() * 0.6 : 0;
            page.write(x + shift, y - shift, QString(character), look.ink);
            y += step;
        }
        x -= page.em() * 1.7;
    }
}

/// A hand-held photograph of the page: uneven light, a small turn, blur, noise, compression.
QImage photographed(const QImage &page, int variant)
{
    QRandomGenerator random(static_cast<quint32>(1'000 + variant));
    QImage turned(page.size(), QImage::Format_RGB32);
    turned.fill(page.pixel(0, 0));
    QPainter painter(&turned);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(page.width() / 2.0, page.height() / 2.0);
    painter.rotate(variant % 2 == 0 ? 0.5 : -0.4);
    painter.translate(-page.width() / 2.0, -page.height() / 2.0);
    painter.drawImage(0, 0, page);
    painter.end();
    const QSize small(turned.width() * 4 / 5, turned.height() * 4 / 5);
    QImage blurred = turned.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                         .scaled(turned.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int y = 0; y < blurred.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(blurred.scanLine(y));
        for (int x = 0; x < blurred.width(); ++x) {
            const double light = 0.78 + 0.22 * x / blurred.width() - 0.1 * y / blurred.height();
            const int noise = random.bounded(25) - 12;
            const auto lit = [&](int value) { return std::clamp(static_cast<int>(value * light) + noise, 0, 255); };
            line[x] = qRgb(lit(qRed(line[x])), lit(qGreen(line[x])), lit(qBlue(line[x])));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    constexpr int quality = 80;
    blurred.save(&buffer, "jpg", quality);
    return QImage::fromData(bytes, "jpg");
}

QString referenceOf(const SampleText &text)
{
    if (text.kind == "2col"_L1) {
        QStringList left;
        QStringList right;
        for (const QString &line : text.lines) {
            left.append(line.section(u'|', 0, 0));
            right.append(line.section(u'|', 1, 1));
        }
        return (left + right).join(u'\n');
    }
    const bool hasCells =
        text.kind == "table"_L1 || text.kind == "dialog"_L1 || text.kind == "menu"_L1 || text.kind == "form"_L1;
    QString reference = text.lines.join(u'\n');
    return hasCells ? reference.replace(u'|', u' ') : reference;
}

} // namespace

RenderedSample renderSample(const SampleText &text, const SampleLook &look, int variant)
{
    Page page(look);
    if (text.kind == "table"_L1) {
        drawColumns(page, look, text.lines, 2 * page.em(), variant % 2 == 0);
    } else if (text.kind == "2col"_L1) {
        drawColumns(page, look, text.lines, 3 * page.em(), false);
    } else if (text.kind == "dialog"_L1) {
        drawDialog(page, look, text.lines);
    } else if (text.kind == "menu"_L1) {
        drawMenu(page, look, text.lines);
    } else if (text.kind == "form"_L1) {
        drawForm(page, look, text.lines);
    } else if (text.kind == "chat"_L1) {
        drawChat(page, look, text.lines);
    } else if (text.kind == "vertical"_L1) {
        drawVertical(page, look, text.lines, text.language == "vja"_L1);
    } else {
        drawLines(page, look, text.lines);
    }
    QImage image = page.finished();
    if (text.kind == "photo"_L1) {
        image = photographed(image, variant);
    }
    return {.image = image,
            .reference = referenceOf(text),
            .font = look.font.family(),
            .pixels = static_cast<int>(std::lround(look.font.pixelSize() / look.scale)),
            .scale = look.scale,
            .dark = look.paper.lightness() < look.ink.lightness()};
}

} // namespace orvesa::benchmark
